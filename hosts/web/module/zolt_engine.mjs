// The embedded engine as a JavaScript object, for a worker of a page: ../bridge/engine.h.

import { WasmModule } from "./wasm_module.mjs";

export const ENGINE_VERSION = 1;
/** `ZoltOperationE`. */
export const Operation = {
  evaluate: 1, approximate: 2, simplify: 4, expand: 8, factor: 16, solve: 32, differentiate: 64, integrate: 128, substitute: 256,
};
/** `ZoltOutcomeE`. */
export const Outcome = { value: 0, unevaluated: 1, noValue: 2, malformed: 3 };

export class FormulaEngine extends WasmModule {
  /** @param {import("./wasm_module.mjs").Source | Promise<import("./wasm_module.mjs").Source>} source */
  static async load(source) {
    return new FormulaEngine(await WasmModule.start(source));
  }

  constructor(/** @type {WebAssembly.Instance} */ instance) {
    super(instance);
    if (this.calls.zolt_engine_version() !== ENGINE_VERSION) throw new Error("zolt: the engine is of another version");
  }

  /**
   * Computes with an expression in prefix text, and waits for it. What it defines, later ones know.
   * @param {{expression: string, operation?: number, variable?: string, value?: string, digits?: number, degrees?: boolean,
   *   milliseconds?: number}} request
   * @returns {{outcome: number, text: string, certainDigits: number, part: number}} `text` is the value in prefix text, or a sentence
   *   that says why there is none; `certainDigits` is -1 for an exact value, `part` for no part
   */
  compute({ expression, operation = Operation.evaluate, variable = "", value = "", digits = 15, degrees = false, milliseconds = 2000 }) {
    this.put(expression + variable + value);
    const outcome = this.calls.zolt_compute(
      operation, expression.length, variable.length, value.length, digits, degrees ? 1 : 0, milliseconds);
    const [certainDigits, part] = this.numbers(2);
    return { outcome, text: this.take(this.calls.zolt_text_length()) ?? "", certainDigits, part };
  }

  /** Forgets what is defined. */
  forget() {
    this.calls.zolt_forget();
  }
}
