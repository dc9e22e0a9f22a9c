// Splits a linked module in two, so that a page need not wait for the whole: node split_module.mjs <module> <its map> <first> <rest>
// The first part has the functions that first_field.mjs calls, and the constants that they can reach. The others are called through the
// table of functions, where the rest puts them (../module/rest_of_module.mjs).
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { run } from "./binaryen.mjs";
import { useFirstField } from "./first_field.mjs";
import { replacePlaceholders } from "./late_calls.mjs";
import { startModule } from "./start_module.mjs";
import { findReached, readMap, readMemory, writeData } from "./wasm_data.mjs";
import { FormulaModule } from "../module/zolt_module.mjs";

const [whole, map, first, rest] = process.argv.slice(2);
if (!rest) throw new Error("usage: node split_module.mjs <module> <its map> <first> <rest>");
const folder = mkdtempSync(join(tmpdir(), "zolt-split-"));
const inFolder = (/** @type {string} */ name) => join(folder, name);
const started = inFolder("started.wasm"), counting = inFolder("counting.wasm"), called = inFolder("called"), early = inFolder("early.wasm");

try {
  await startModule(whole, started);
  run("wasm-split", "--instrument", "--quiet", started, "-o", counting);
  const module = await FormulaModule.load(readFileSync(counting));
  useFirstField(module);
  const size = module.calls.__write_profile(0, 0);
  const at = module.calls.zolt_text(size);
  module.calls.__write_profile(at, size);
  writeFileSync(called, new Uint8Array(module.memory.buffer, at, size));
  run("wasm-split", "--quiet", started, "--profile", called, "-o1", early, "-o2", rest);
  replacePlaceholders(early);
  // Nearly all of the first part runs before a field is there, and a browser compiles each of its functions when it is first called: that
  // takes longer for many small ones, even if the part gets no larger.
  run("wasm-opt", "-Oz", "--always-inline-max-function-size=6", "--strip", "--vacuum", early, "-o", first);
  run("wasm-opt", "-Oz", "--strip", "--vacuum", rest, "-o", rest);
  const memory = readMemory(first), constants = readMap(map);
  const reached = findReached(first, memory, constants);
  const others = constants.filter((one) => !reached.has(one));
  writeData(rest, memory, others);
  for (const { at, size } of others) memory.fill(0, at, at + size);
  writeData(first, memory, [{ at: 0, size: memory.length }]);
} finally {
  rmSync(folder, { recursive: true });
}
