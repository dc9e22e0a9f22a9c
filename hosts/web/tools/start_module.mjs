// Does at build time what a module does once for every page: its memory is then what the module begins with.
import { readFileSync, writeFileSync } from "node:fs";
import { WasmModule } from "../module/wasm_module.mjs";
import { run } from "./binaryen.mjs";
import { readMemory, writeData } from "./wasm_data.mjs";

/** Writes the module that is started already, and so has no `_initialize`. */
export async function startModule(/** @type {string} */ from, /** @type {string} */ to) {
  const module = new WasmModule(await WasmModule.start(readFileSync(from)));
  const size = module.memory.buffer.byteLength;
  // What all fields share is made with the first call that has to do with them.
  module.calls.zolt_faces();
  if (module.memory.buffer.byteLength !== size) throw new Error(`${from}: the memory grew at the start`);

  const kept = WebAssembly.Module.exports(new WebAssembly.Module(readFileSync(from))).map(({ name }) => name).filter((name) => name !== "_initialize");
  const graph = `${to}.json`;
  writeFileSync(graph, JSON.stringify(kept.map((name) => ({ name, root: true, export: name }))));
  run("wasm-metadce", from, "--graph-file", graph, "-o", to);

  const memory = new Uint8Array(module.memory.buffer).slice();
  // Below its own data is the stack, with what has been there.
  const stack = readMemory(from).findIndex((byte) => byte !== 0);
  writeData(to, memory.fill(0, 0, stack), [{ at: 0, size }]);
}
