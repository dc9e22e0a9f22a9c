// A module may come in two files (../tools/split_module.mjs): what a first field needs, and the rest. The first starts without the rest; a
// call into the rest that comes too early waits for it.

/** @typedef {string | URL | BufferSource | WebAssembly.Module} RestSource an address, or the file itself */

/** Reads a file while the caller waits, as pages can. */
function readNow(/** @type {string | URL} */ address) {
  const request = new XMLHttpRequest();
  request.open("GET", address, false);
  // A page that waits gets texts only; this one has the bytes in the lower halves of its characters.
  request.overrideMimeType("text/plain; charset=x-user-defined");
  request.send();
  if (request.status !== 200 && request.status !== 0) throw new Error(`zolt: ${address}: ${request.status}`);
  return Uint8Array.from(request.responseText, (c) => c.charCodeAt(0));
}

/** The rest of a module: fetched in the background, or at once when it is called. */
export class RestOfModule {
  #source;
  /** @type {WebAssembly.Exports | null} */
  #first = null;
  #tellFirst = () => {};
  /** @type {Promise<void>} */
  #joined = new Promise((settle) => { this.#tellFirst = settle; });
  #isThere = false;
  /** @type {Promise<void> | null} */
  #arriving = null;

  constructor(/** @type {RestSource} */ source) {
    this.#source = source;
  }

  /** Whether its functions are there. */
  get isThere() { return this.#isThere; }
  get #address() {
    return typeof this.#source === "string" || this.#source instanceof URL ? this.#source : null;
  }
  /** Whether a call can wait for it. */
  get canComeAtOnce() { return this.#address === null || typeof XMLHttpRequest === "function"; }

  /** Says which first part it belongs to. */
  join(/** @type {WebAssembly.Instance} */ first) {
    this.#first = first.exports;
    this.#tellFirst();
  }

  /** Fetches it in the background, also while the first part is still on its way. */
  load() {
    return this.#arriving ??= this.#fetch().catch((error) => {
      this.#arriving = null;
      throw error;
    });
  }

  async #fetch() {
    const address = this.#address;
    const given = address === null ? this.#source : await (await fetch(address)).arrayBuffer();
    const compiled = given instanceof WebAssembly.Module ? given : await WebAssembly.compile(/** @type {BufferSource} */ (given));
    await this.#joined;
    this.#install(compiled);
  }

  loadNow() {
    if (this.#isThere) return;
    const given = this.#address === null ? this.#source : readNow(this.#address);
    this.#install(given instanceof WebAssembly.Module ? given : new WebAssembly.Module(/** @type {BufferSource} */ (given)));
  }

  #install(/** @type {WebAssembly.Module} */ compiled) {
    // It may have come at once in the meantime. Its start puts its functions into the table.
    if (!this.#isThere) new WebAssembly.Instance(compiled, { primary: /** @type {any} */ (this.#first) });
    this.#isThere = true;
  }
}
