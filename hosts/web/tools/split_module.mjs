// Splits a linked module in two, so that a page need not wait for the whole: node split_module.mjs <module> <its map> <first> <rest>
// The first part has the functions that first_field.mjs calls, and the constants that they can reach. The others are called through the
// table of functions, where the rest puts them (../module/rest_of_module.mjs).
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { useFirstField } from "./first_field.mjs";
import { findReached, readMap, readMemory, writeData } from "./wasm_data.mjs";
import { FormulaModule } from "../module/zolt_module.mjs";

const [whole, map, first, rest] = process.argv.slice(2);
if (!rest) throw new Error("usage: node split_module.mjs <module> <its map> <first> <rest>");
const folder = mkdtempSync(join(tmpdir(), "zolt-split-"));
const counting = join(folder, "counting.wasm"), called = join(folder, "called");
const features = ["mutable-globals", "bulk-memory", "sign-ext", "nontrapping-float-to-int"].map((name) => `--enable-${name}`);
const run = (/** @type {string} */ tool, /** @type {string[]} */ ...args) => execFileSync(tool, [...features, ...args], { stdio: ["ignore", "inherit", "inherit"] });

try {
  run("wasm-split", "--instrument", "--quiet", whole, "-o", counting);
  const module = await FormulaModule.load(readFileSync(counting));
  useFirstField(module);
  const size = module.calls.__write_profile(0, 0);
  const at = module.calls.zolt_text(size);
  module.calls.__write_profile(at, size);
  writeFileSync(called, new Uint8Array(module.memory.buffer, at, size));
  run("wasm-split", "--quiet", whole, "--profile", called, "-o1", first, "-o2", rest);
  // Nearly all of the first part runs before a field is there, and a browser compiles each of its functions when it is first called: that
  // takes longer for many small ones, even if the part gets no larger.
  run("wasm-opt", "-Oz", "--always-inline-max-function-size=6", "--strip", "--vacuum", first, "-o", first);
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
