// The WebAssembly module as JavaScript objects: a FormulaModule for the page, a FormulaHandle for each field. What the
// calls mean is in ../bridge/bridge.h.

import { RestOfModule } from "./rest_of_module.mjs";
import { WasmModule } from "./wasm_module.mjs";

export const BRIDGE_VERSION = 3;

/** Words of a frame (`ZoltFrameE`). */
export const Frame = {
  words: 0, flags: 1, revision: 2, history: 3, width: 4, height: 5, baseline: 6, caret: 7, anchor: 11, reveal: 15,
  composed: 19, bands: 23, numBands: 24, list: 25, head: 26,
};
/** `ZoltFlagE`. */
export const Flag = {
  empty: 1, selected: 2, reveal: 4, composes: 8, completes: 16, editable: 32, canUndo: 64, canRedo: 128,
};
/** `ZoltItemE`. */
export const Item = { glyphs: 0, fill: 1, stroke: 2, rule: 3, text: 4 };
/** `ZoltFormE`. */
export const Form = { plain: 0, prefix: 1, latex: 2, mathml: 3, contentMathml: 4, words: 5, tree: 6, bytes: 7, html: 8 };
/** What `FormulaHandle.set` answers. */
export const SetResult = { refused: 0, done: 1, same: 2 };

/**
 * @typedef {import("./wasm_module.mjs").Source} Source
 * @typedef {{cause: number, begin: number, end: number, box: number[], message: string}} Fault
 * @typedef {{ints: Int32Array, floats: Float32Array}} FrameWords the same words, read as either
 * @typedef {{title: string, label: string, shortcut: string, toolTip: string, keywords: string, picture: string,
 *   table: string}} PaletteEntry `table`: what `insert` takes with a size, as "matrix:3x4"
 */

export class FormulaModule extends WasmModule {
  /**
   * @param {Source | Promise<Source>} source
   * @param {{extended?: boolean, rest?: import("./rest_of_module.mjs").RestSource | RestOfModule}} [options] `extended` false: the standard operators
   *   alone; `rest`: the other file of a module in two
   */
  static async load(source, { extended = true, rest } = {}) {
    const other = rest === undefined ? null : rest instanceof RestOfModule ? rest : new RestOfModule(rest);
    return new FormulaModule(await WasmModule.start(source, other), { extended, rest: other });
  }

  /** @param {{extended?: boolean, rest?: RestOfModule | null}} [options] */
  constructor(/** @type {WebAssembly.Instance} */ instance, { extended = true, rest = null } = {}) {
    super(instance);
    /** The part that is not needed for a first field; null: there is none. */
    this.rest = rest;
    if (this.calls.zolt_version() !== BRIDGE_VERSION) throw new Error("zolt: the module is of another version");
    this.calls.zolt_start(extended ? 1 : 0);
  }

  /** What the faces are called in `@font-face`: "KaTeX_Main", "KaTeX_Math italic". */
  get faces() {
    return this.texts(this.calls.zolt_faces());
  }

  /** Does in a pause what the first key would do otherwise. */
  prepare() {
    this.calls.zolt_prepare();
  }

  /** The fault that a call has left. @returns {Fault} */
  fault() {
    const [cause, begin, end, ...box] = this.numbers(7);
    return { cause, begin, end, box, message: this.take(this.calls.zolt_text_length()) ?? "" };
  }

  /** The words of a frame; valid until the next call. @returns {FrameWords | null} */
  frameAt(/** @type {number} */ at) {
    if (at === 0) return null;
    const [count] = new Int32Array(this.memory.buffer, at, 1);
    return { ints: new Int32Array(this.memory.buffer, at, count), floats: new Float32Array(this.memory.buffer, at, count) };
  }

  // ---- What belongs to no field

  open() {
    const number = this.calls.zolt_open();
    return number === 0 ? null : new FormulaHandle(this, number);
  }

  /** An expression in prefix text in another form; null when it is none. */
  convert(/** @type {string} */ prefix, /** @type {number} */ form) {
    return this.take(this.calls.zolt_convert(this.put(prefix), form));
  }

  /** A small picture of a formula in tree notation, as frames have them. */
  picture(/** @type {string} */ tree) {
    return this.frameAt(this.calls.zolt_picture(this.put(tree)));
  }

  /** True once after memory has run out and a call was taken back. */
  takeShortage() {
    return this.calls.zolt_take_shortage() === 1;
  }

  /** All commands, each at its number. */
  get commands() {
    const texts = this.texts(this.calls.zolt_commands());
    const all = [];
    for (let i = 0; i + 4 < texts.length; i += 5) {
      all.push({ name: texts[i], title: texts[i + 1], help: texts[i + 2], keys: texts[i + 3], modifies: texts[i + 4] === "1" });
    }
    return all;
  }

  /** The command of that name; -1: none. @returns {number} */
  findCommand(/** @type {string} */ name) {
    return this.calls.zolt_find_command(this.put(name));
  }

  /** The command of a chord, "Ctrl+Shift+Z"; -1: none. @returns {number} */
  findKeys(/** @type {string} */ chord) {
    return this.calls.zolt_find_keys(this.put(chord));
  }

  /** The groups of the palette. */
  get palette() {
    const texts = this.texts(this.calls.zolt_palette());
    const [count] = this.numbers(1);
    const sizes = this.numbers(1 + count).slice(1);
    let at = 0;
    return sizes.map((size) => {
      const title = texts[at++];
      /** @type {PaletteEntry[]} */
      const entries = [];
      for (let i = 0; i < size; ++i, at += 7) {
        const [entryTitle, label, shortcut, toolTip, keywords, picture, table] = texts.slice(at, at + 7);
        entries.push({ title: entryTitle, label, shortcut, toolTip, keywords, picture, table });
      }
      return { title, entries };
    });
  }

  /** For each entry of the palette, those of all groups in a row, how well it answers the search: 0 (not) to 3. */
  search(/** @type {string} */ wanted) {
    return this.numbers(this.calls.zolt_search(this.put(wanted)));
  }

  // ---- Clipboard

  /** A form of what was copied last; null when it has none of that form. */
  copied(/** @type {number} */ form) {
    return this.take(this.calls.zolt_clipboard_get(form));
  }

  /** What `FormulaHandle.paste` is to paste; the field takes the best form that is there. */
  offer({ plain = "", prefix = "", latex = "", bytes = "", html = "" }) {
    this.put(plain + prefix + latex + bytes + html);
    this.calls.zolt_clipboard_set(plain.length, prefix.length, latex.length, bytes.length, html.length);
  }

  /** The same for MathML; false when it has no meaning. */
  offerMathml(/** @type {any} */ element) {
    return this.calls.zolt_clipboard_set_mathml(...this.putMathml(element)) === 1;
  }

  /**
   * Puts the elements below `element`, as a browser's DOMParser has read them, into the buffers.
   * @returns {[number, number]} what calls want to know of it
   */
  putMathml(/** @type {any} */ element) {
    /** @type {string[]} */
    const texts = [];
    /** @type {number[]} */
    const words = [];
    const add = (/** @type {number} */ what, /** @type {string} */ text) => {
      words.push(what, text.length);
      texts.push(text);
    };
    const open = (/** @type {any} */ node) => {
      add(0, node.localName);
      for (const { name, value } of node.attributes) {
        add(1, name + value);
        words.push(name.length);
      }
    };
    // Pages nest elements deeper than calls may.
    for (let node = element, entering = true; ; ) {
      if (entering && node.nodeType === 1) open(node);
      if (entering && (node.nodeType === 3 || node.nodeType === 4)) add(2, node.data);
      if (entering && node.firstChild) {
        node = node.firstChild;
        continue;
      }
      if (node.nodeType === 1) add(3, "");
      if (node === element) break;
      entering = node.nextSibling !== null;
      node = node.nextSibling ?? node.parentNode;
    }
    return [this.put(texts.join("")), this.putNumbers(words)];
  }
}

/** One field. Its methods are the calls of bridge.h with the field's number; a boolean tells whether they had an effect. */
export class FormulaHandle {
  constructor(/** @type {FormulaModule} */ module, /** @type {number} */ number) {
    this.module = module;
    this.number = number;
  }

  /** Nothing may be called afterwards. */
  close() {
    this.module.calls.zolt_close(this.number);
    this.number = 0;
  }

  /** @param {any[]} args */
  #do(/** @type {string} */ call, ...args) {
    return this.module.calls["zolt_" + call](this.number, ...args) === 1;
  }
  /** @param {any[]} args */
  #take(/** @type {string} */ call, ...args) {
    return this.module.take(this.module.calls["zolt_" + call](this.number, ...args));
  }

  // ---- Showing

  /** The words of a frame, valid until the next call (without memory there is none); of the display list what may be seen in the box, all without one. */
  frame(left = 0, top = 0, right = 0, bottom = 0) {
    return /** @type {FrameWords} */ (this.module.frameAt(this.module.calls.zolt_frame(this.number, left, top, right, bottom)));
  }

  /** Of the last frame what is to be painted anew, `from` one x `to` another at least, as `zolt_changes` says; null: there is no new frame. */
  changes(/** @type {number} */ from, /** @type {number} */ to) {
    const frame = this.module.frameAt(this.module.calls.zolt_changes(this.number, from, to));
    if (!frame) return null;
    const [left, right] = /** @type {[number, number]} */ (this.module.numbers(2));
    return { frame, left, right };
  }

  /** Another number after every change of the formula. @returns {number} */
  get revision() { return this.module.calls.zolt_revision(this.number); }
  /** Another number after every move of the caret or of the anchor. @returns {number} */
  get moves() { return this.module.calls.zolt_moves(this.number); }

  // ---- Input

  type(/** @type {string} */ text) { return this.#do("type", this.module.put(text)); }
  compose(/** @type {string} */ text, /** @type {number} */ caret) { return this.#do("compose", this.module.put(text), caret); }
  run(/** @type {number} */ command) { return this.#do("run", command); }
  isEnabled(/** @type {number} */ command) { return this.#do("is_enabled", command); }
  complete() { this.#do("complete"); }
  insert(/** @type {string} */ operator) { return this.#do("insert", this.module.put(operator)); }
  pointerDown(/** @type {number} */ x, /** @type {number} */ y, clicks = 1, extend = false) { return this.#do("pointer", 0, x, y, clicks, +extend); }
  pointerMove(/** @type {number} */ x, /** @type {number} */ y) { return this.#do("pointer", 1, x, y, 1, 0); }
  pointerUp(/** @type {number} */ x, /** @type {number} */ y) { return this.#do("pointer", 2, x, y, 1, 0); }
  /** The caret's box where a press would put it. */
  findPlace(/** @type {number} */ x, /** @type {number} */ y) { return this.#do("find_place", x, y) ? this.module.numbers(4) : null; }
  dragEnd(/** @type {"anchor" | "caret"} */ end, /** @type {number} */ x, /** @type {number} */ y) { return this.#do("drag_end", end === "caret" ? 1 : 0, x, y); }
  moveSelection(/** @type {number} */ x, /** @type {number} */ y) { return this.#do("move_selection", x, y); }
  /** Why the last input was refused, once. */
  takeRefusal() { return this.module.calls.zolt_take_refusal(this.number) < 0 ? null : this.module.fault(); }

  // ---- Values

  /** The formula in a `Form`; null when it is incomplete or wrong. */
  get(/** @type {number} */ form) { return this.#take("get", form); }
  /** A `SetResult`; after a refusal `module.fault()` says why. @returns {number} */
  set(/** @type {number} */ form, /** @type {string} */ text) { return this.module.calls.zolt_set(this.number, form, this.module.put(text)); }
  /** The same for an element of MathML. @returns {number} */
  setMathml(/** @type {any} */ element) { return this.module.calls.zolt_set_mathml(this.number, ...this.module.putMathml(element)); }
  clear() { this.#do("clear"); }
  /** Why the formula is no expression; null when it is one. */
  diagnose() { return this.module.calls.zolt_diagnose(this.number) === 0 ? null : this.module.fault(); }
  /** The same, and selects the faulty part. */
  check() { return this.module.calls.zolt_check(this.number) === 0 ? null : this.module.fault(); }
  selectPart(/** @type {number} */ number) { return this.#do("select_part", number); }
  /** Pastes what was copied or offered. @returns {number} 1: done, 2: typed character by character, 0: refused */
  paste() { return this.module.calls.zolt_paste(this.number); }

  // ---- Options

  setEditable(/** @type {boolean} */ editable) { this.#do("set_editable", +editable); }
  setOption(/** @type {string} */ name, /** @type {boolean} */ on) { return this.#do("set_option", this.module.put(name), +on); }
  setNames(/** @type {string} */ names) { this.#do("set_names", this.module.put(names)); }
  /** -1, or the first character that is not understood. @returns {number} */
  setConstraints(/** @type {string} */ rules) { return this.module.calls.zolt_set_constraints(this.number, this.module.put(rules)); }
  setNumbers(/** @type {number} */ precision, /** @type {number} */ format) { this.#do("set_numbers", precision, format); }
  setSpeech(/** @type {number} */ language, /** @type {number} */ verbosity) { this.#do("set_speech", language, verbosity); }

  // ---- The selection as data

  getSelection() { return this.module.numbers(this.module.calls.zolt_get_selection(this.number)); }
  setSelection(/** @type {number[]} */ places) { return this.#do("set_selection", this.module.putNumbers(places)); }
  /** The words of the formula, and where anchor and caret are in them. */
  getWords() { return this.#located("get_words"); }
  selectWords(/** @type {number} */ anchor, /** @type {number} */ caret) { return this.#do("select_words", anchor, caret); }
  /** The text around the caret, for input methods. */
  getAround(/** @type {number} */ reach) { return this.#located("get_around", reach); }
  selectAround(/** @type {number} */ from, /** @type {number} */ to) { return this.#do("select_around", from, to); }
  /** What a listener hears since the last call. */
  announce() {
    const text = this.#take("announce") ?? "";
    return { text, isPlace: this.module.numbers(1)[0] === 1 };
  }
  /** @param {any[]} args */
  #located(/** @type {string} */ call, ...args) {
    const text = this.#take(call, ...args) ?? "";
    const [anchor, caret] = this.module.numbers(2);
    return { text, anchor, caret };
  }

  // ---- Menus

  runEntry(/** @type {number} */ group, /** @type {number} */ entry) { return this.#do("run_entry", group, entry); }
  /** For each entry of the palette, those of all groups in a row, whether it could be inserted now. */
  enabledEntries() { return this.module.numbers(this.module.calls.zolt_enabled_entries(this.number)).map(Boolean); }
  /** The list of completions. */
  completion() {
    const [query, ...texts] = this.module.texts(this.module.calls.zolt_completion(this.number));
    const [kind, current, left, top, right, bottom, count] = this.module.numbers(7);
    const entries = [];
    for (let i = 0; i < count; ++i) {
      const [title, label, shortcut, picture] = texts.slice(i * 4, i * 4 + 4);
      entries.push({ title, label, shortcut, picture });
    }
    return { kind, current, box: [left, top, right, bottom], query, entries };
  }
  suggest() { return this.#do("suggest"); }
  accept(/** @type {number} */ entry) { return this.#do("accept", entry); }
}
