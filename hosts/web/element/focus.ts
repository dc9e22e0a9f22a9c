// A field that is given the focus and loses it, as a line of text is.

import type { FormValue } from './form.js';
import type { Input } from './input.js';
import type { Owner } from './owner.js';
import { loadPanels, type Panels } from './panels.js';
import type { Speech } from './speech.js';
import type { Value } from './value.js';
import type { View } from './view.js';

export interface FocusParts {
  readonly view: View;
  readonly input: Input;
  readonly form: FormValue;
  readonly speech: Speech;
  readonly panels: Panels;
  readonly value: Value;
}

export class Focus {
  isHere = false;
  readonly #owner: Owner & { readonly internals: ElementInternals };
  readonly #parts: FocusParts;
  /** It has come by a key and not by a press. */
  #isTabbed = false;

  constructor(owner: Owner & { readonly internals: ElementInternals }, parts: FocusParts) {
    this.#owner = owner;
    this.#parts = parts;
    const { input, scroller } = owner.parts;
    owner.root.addEventListener('focusin', (event) => {
      // A formula that goes on beyond the edges can be given the focus, as browsers do with what scrolls.
      if (event.target === scroller) input.focus({ preventScroll: true });
      this.#come();
    });
    owner.root.addEventListener('focusout', (event) => this.#go(event as FocusEvent));
    input.addEventListener('keydown', () => { this.#isTabbed = false; });
    input.addEventListener('keyup', (event) => {
      // Who comes with the Tab key finds all selected, as in a line of text.
      if (event.key === 'Tab' && this.#isTabbed) owner.runCommand('select-all');
      this.#isTabbed = false;
    });
    // A press beside the formula is for it, too.
    owner.addEventListener('mousedown', (event) => {
      if (event.composedPath()[0] !== owner) return;
      event.preventDefault();
      input.focus({ preventScroll: true });
    });
  }

  /** A press in the field; by a finger, the formula keyboard opens. */
  press(opensKeyboard: boolean): void {
    this.#isTabbed = false;
    const { input } = this.#owner.parts;
    // Before the focus, so that the keyboard of the device stays away.
    if (opensKeyboard) input.inputMode = 'none';
    input.focus({ preventScroll: true });
    if (opensKeyboard) this.#parts.panels.use(({ keyboard }) => { if (this.isHere) keyboard.open(); });
  }

  #come(): void {
    if (this.isHere) return;
    this.isHere = true;
    this.#isTabbed = true;
    const { value, view, speech, input } = this.#parts;
    this.#owner.internals.states.add('focused');
    value.seen = value.handle?.revision ?? 0;
    view.blink(true);
    view.wantsCaret = true;
    speech.listen();
    input.begin();
    void loadPanels().catch(() => undefined);
    this.#owner.refresh();
  }

  #go(event: FocusEvent): void {
    const to = event.relatedTarget;
    if (to instanceof Node && this.#owner.root.contains(to)) return;
    const { view, speech, input, panels, form } = this.#parts;
    this.isHere = false;
    this.#owner.internals.states.delete('focused');
    input.end();
    view.blink(false);
    panels.close();
    speech.rest();
    this.#owner.act('', null, (handle) => {
      handle.compose('', 0);
      handle.complete();
      return true;
    });
    this.tellChange();
    form.update();
    this.#owner.refresh();
  }

  tellChange(): void {
    const { value } = this.#parts;
    const now = value.handle?.revision ?? 0;
    if (now === value.seen) return;
    value.seen = now;
    this.#owner.dispatchEvent(new Event('change', { bubbles: true }));
  }
}
