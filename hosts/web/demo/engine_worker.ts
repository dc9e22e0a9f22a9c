// The embedded engine in a worker.

import { FormulaEngine, Operation, Outcome } from '../module/zolt_engine.mjs';
import type { Answer, Question } from './computer.js';

const engine = FormulaEngine.load(fetch(new URL('./zolt_engine.wasm', import.meta.url)));

onmessage = async ({ data }: MessageEvent<Question>) => {
  const operation = Operation[data.operation as keyof typeof Operation];
  // What is asked of the whole needs no variable.
  const variable = /solve|differentiate|integrate/.test(data.operation) ? data.variable : '';
  const { outcome, text, part } = (await engine).compute({ expression: data.expression, operation, variable, milliseconds: 2000 });
  const answer: Answer = { outcome: outcome === Outcome.value ? 'value' : 'none', text, part };
  postMessage(answer);
};
