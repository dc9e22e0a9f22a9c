// For those who do not see the formula: a live MathML for readers of mathematics, words for listeners, and what is said
// of every key and every step of the caret.

import { Form } from '../module/zolt_module.mjs';
import { setAttribute } from './dom.js';
import { buildMathml } from './mathml.js';
import type { Owner } from './owner.js';

const REST = 120;  // ms after a key
/** Longer ones take a page as long as they take a reader; they are there in words. */
const MOST = 100_000;

export class Speech {
  readonly #owner: Owner;
  #later = 0;
  #isSame = true;
  #shown: string | null = null;

  constructor(owner: Owner) { this.#owner = owner; }

  /** After each painting: what was done is said a moment later, in one piece. */
  touch(hasChanged: boolean): void {
    this.#isSame &&= !hasChanged;
    clearTimeout(this.#later);
    this.#later = window.setTimeout(() => this.update(), REST);
  }

  stop(): void { clearTimeout(this.#later); }

  update(): void {
    const { handle, hasFocus } = this.#owner;
    if (!handle) return;
    if (!this.#isSame || this.#shown === null) this.#showMathml();
    if (hasFocus) {
      const { text } = handle.announce();
      if (text) this.say(text);
    }
  }

  /** The field has the focus: it says what is in it. */
  listen(): void {
    const { handle, parts } = this.#owner;
    if (!handle) return;
    handle.announce();
    setAttribute(parts.input, 'aria-description', handle.get(Form.words) || 'empty');
  }

  #showMathml(): void {
    const { handle, parts: { formula } } = this.#owner;
    this.#isSame = true;
    const text = handle!.get(Form.mathml);
    const isReadable = text !== null && text !== '' && text.length <= MOST;
    const shown = isReadable ? text : handle!.get(Form.words) ?? '';
    if (shown === this.#shown) return;
    this.#shown = shown;
    const element = isReadable ? buildMathml(text) : null;
    formula.replaceChildren(element ?? shown);
  }

  say(words: string): void {
    const { announcement } = this.#owner.parts;
    // The same words once more are other words to a reader.
    announcement.textContent = announcement.textContent === words ? `${words}\u00a0` : words;
  }
}
