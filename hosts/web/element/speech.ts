// For those who do not see the formula: a live MathML for readers of mathematics, words for listeners, and what is said
// of every key and every step of the caret.

import { Form } from '../module/zolt_module.mjs';
import { setAttribute } from './dom.js';
import { Later } from './later.js';
import { buildMathml } from './mathml.js';
import type { FormSide } from './form.js';
import { whenWhole } from './shared.js';

/** Longer ones take a page as long as they take a reader; they are there in words. */
const MOST = 50_000;

export class Speech {
  readonly #owner: FormSide;
  #shown: string | null = null;
  readonly #telling = new Later(() => whenWhole(() => this.#tell()), 120, 20);
  readonly #showing = new Later(() => whenWhole(() => this.#showMathml()), 1000, 50);

  constructor(owner: FormSide) { this.#owner = owner; }

  /** After each painting: what was done is said a moment later, in one piece. */
  touch(hasChanged: boolean): void {
    if (this.#owner.hasFocus) this.#telling.touch();
    if (hasChanged) this.#showing.touch();
  }

  stop(): void {
    this.#telling.stop();
    this.#showing.stop();
  }

  #tell(): void {
    const { handle, hasFocus } = this.#owner;
    const text = handle && hasFocus ? handle.announce().text : '';
    if (text) this.say(text);
  }

  /** The field has the focus: it says what is in it. */
  listen(): void {
    whenWhole(() => {
      const { handle, hasFocus, parts } = this.#owner;
      if (!handle || !hasFocus) return;
      handle.announce();
      setAttribute(parts.input, 'aria-description', handle.get(Form.words) || 'empty');
    });
  }

  /** The focus goes. */
  rest(): void {
    this.#telling.stop();
    if (this.#showing.isWaiting) this.#showing.now();
  }

  #showMathml(): void {
    const { handle, parts: { formula } } = this.#owner;
    if (!handle) return;
    const text = handle.get(Form.mathml);
    const isReadable = text !== null && text !== '' && text.length <= MOST;
    const shown = isReadable ? text : handle.get(Form.words) ?? '';
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

  /** The hidden control has the name of the field. */
  name(): void {
    const { parts: { input }, internals, placeholder, required } = this.#owner;
    const scope = this.#owner.getRootNode() as Document | ShadowRoot;
    const named = (this.#owner.getAttribute('aria-labelledby') ?? '').split(/\s+/).map((id) => id && scope.getElementById?.(id)?.textContent?.trim());
    const labels = [...internals.labels].map((one) => one.textContent?.trim());
    const name = named.filter(Boolean).join(' ') || this.#owner.getAttribute('aria-label') || labels.join(' ') || placeholder || 'Formula';
    setAttribute(input, 'aria-label', name);
    setAttribute(input, 'aria-required', required ? 'true' : null);
    setAttribute(input, 'aria-roledescription', 'formula field');
  }
}
