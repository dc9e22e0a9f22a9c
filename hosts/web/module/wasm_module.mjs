// What JavaScript needs to start a WebAssembly module of ours and to carry texts and numbers over its border. It needs nothing of a
// page, and runs in workers and under Node.js as well.

import { RestOfModule } from "./rest_of_module.mjs";

/** @typedef {Response | BufferSource | WebAssembly.Module} Source where a module comes from */
/** @typedef {import("./rest_of_module.mjs").RestSource} RestSource */

/** What all modules have: starting, and the two buffers (../bridge/bridge_buffers.h). */
export class WasmModule {
  /** Compiles and starts a module; `rest` is the rest of one that comes in two files. */
  static async start(/** @type {Source | Promise<Source>} */ source, /** @type {RestOfModule | null} */ rest = null) {
    const given = await source;
    /** @type {{memory?: WebAssembly.Memory}} */
    const home = {};
    const instance = await WasmModule.#instantiate(given, WasmModule.#imports(home, rest));
    home.memory = /** @type {WebAssembly.Memory} */ (instance.exports.memory);
    rest?.join(instance);
    if (rest && !rest.canComeAtOnce) await rest.load();
    return instance;
  }

  /** @returns {Promise<WebAssembly.Instance>} */
  static async #instantiate(/** @type {Source} */ given, /** @type {WebAssembly.Imports} */ imports) {
    if (given instanceof WebAssembly.Module) return WebAssembly.instantiate(given, imports);
    if (typeof Response === "undefined" || !(given instanceof Response))
      return (await WebAssembly.instantiate(/** @type {BufferSource} */ (given), imports)).instance;
    if (!given.ok) throw new Error(`zolt: ${given.url}: ${given.status}`);
    // Servers that do not know the type of the file would make streaming fail.
    const isKnown = given.headers.get("Content-Type") === "application/wasm";
    return (isKnown ? await WebAssembly.instantiateStreaming(given, imports) : await WebAssembly.instantiate(await given.arrayBuffer(), imports)).instance;
  }

  /** Asking for the rest, and what the C library asks of a system: the clock, for deadlines. They are made when the module asks
   *  for them, so that it need not be there to be asked what it imports. */
  static #imports(/** @type {{memory?: WebAssembly.Memory}} */ home, /** @type {RestOfModule | null} */ rest) {
    const readClock = (/** @type {any[]} */ ...args) => {
      // Between the clock and the address is what it should be accurate to, in one argument or in two.
      const at = args[args.length - 1];
      const now = BigInt(Math.round(performance.now() * 1e6));
      new DataView(/** @type {WebAssembly.Memory} */ (home.memory).buffer).setBigUint64(at, now, true);
      return 0;
    };
    const find = (/** @type {string} */ module, /** @type {string} */ name) =>
      module === "rest" ? () => rest?.loadNow()
      : name === "clock_time_get" ? readClock : () => 0;
    return /** @type {any} */ (new Proxy({}, {
      get: (_, module) => new Proxy({}, { get: (_, name) => find(String(module), String(name)) }),
    }));
  }

  constructor(/** @type {WebAssembly.Instance} */ instance) {
    /** The calls of the module's header. @type {any} */
    this.calls = instance.exports;
    this.memory = /** @type {WebAssembly.Memory} */ (instance.exports.memory);
    // One that is started already (../tools/start_module.mjs) has no such call.
    this.calls._initialize?.();
  }

  // ---- Buffers

  /** Puts a text into the buffer; returns its length, to be passed to a call. */
  put(/** @type {string} */ text) {
    const { length } = text;
    const at = this.calls.zolt_text(length);
    const units = new Uint16Array(this.memory.buffer, at, length);
    for (let i = 0; i < length; ++i) units[i] = text.charCodeAt(i);
    return length;
  }

  /** The text that a call has left, of the length that it returned; null for -1. */
  take(/** @type {number} */ length) {
    if (length < 0) return null;
    const units = new Uint16Array(this.memory.buffer, this.calls.zolt_text(0), length);
    let text = "";
    // A call takes only so many arguments.
    for (let i = 0; i < length; i += 8192) text += String.fromCharCode(...units.subarray(i, i + 8192));
    return text;
  }

  /** Several texts of one answer. @returns {string[]} */
  texts(/** @type {number} */ length) {
    return (this.take(length) ?? "").split("\0");
  }

  /** The first numbers that a call has left. @returns {number[]} */
  numbers(/** @type {number} */ count) {
    return [...new Int32Array(this.memory.buffer, this.calls.zolt_numbers(0), count)];
  }

  putNumbers(/** @type {ArrayLike<number>} */ numbers) {
    new Int32Array(this.memory.buffer, this.calls.zolt_numbers(numbers.length), numbers.length).set(numbers);
    return numbers.length;
  }
}
