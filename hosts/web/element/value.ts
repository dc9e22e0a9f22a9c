// The formula of an element: the module's, while the element is in a page, and as it was given before and after.

import { Form, SetResult, type FormulaHandle } from '../module/zolt_module.mjs';
import type { Notation } from './control.js';
import { notations } from './control.js';
import { Flag, has } from './frame.js';
import { buildMathml } from './mathml.js';
import { commandsOf, type Fault, type Owner } from './owner.js';
import { loaded } from './shared.js';

interface Given {
  readonly form: number;
  readonly text: string;
}

export interface ValueSide extends Owner {
  readonly format: Notation;
  readonly defaultValue: string;
}

/** Fields whose memory is not given back by their leaving the page. */
const forgotten = new FinalizationRegistry<() => void>((close) => close());

export class Value {
  handle: FormulaHandle | null = null;
  /** Something else than the default has been set or typed. */
  isDirty = false;
  /** The formula that the last "change" was about. */
  seen = 0;
  readonly #owner: ValueSide;
  readonly #onset: (isWhole: boolean) => void;
  #given: Given | null = null;

  /** `onset` is called when another formula has been set, and told whether it cannot be an incomplete one. */
  constructor(owner: ValueSide, onset: (isWhole: boolean) => void) {
    this.#owner = owner;
    this.#onset = onset;
  }

  /** Takes a formula of the module; false when there is no memory for it. */
  open(prepare: (handle: FormulaHandle) => void): boolean {
    const handle = this.handle = loaded()!.open();
    if (!handle) return false;
    forgotten.register(this.#owner, () => handle.close(), handle);
    prepare(handle);
    const given = this.#pending;
    this.#given = null;
    if (given.text) this.#put(given);
    this.seen = handle.revision;
    return true;
  }

  close(): void {
    const { handle } = this;
    if (!handle) return;
    // The formula stays, as it is.
    this.#given = { form: Form.tree, text: handle.get(Form.tree) ?? '' };
    forgotten.unregister(handle);
    handle.close();
    this.handle = null;
  }

  get #default(): Given { return { form: notations[this.#owner.format], text: this.#owner.defaultValue }; }
  /** Without the module, whether there is something to show. */
  get hasText(): boolean { return this.#pending.text !== ''; }
  get #pending(): Given { return this.#given ?? this.#default; }

  /** Without the module, what was given in that form. */
  get(form: number): string {
    if (this.handle) return this.handle.get(form) ?? '';
    const { form: has, text } = this.#pending;
    return has === form ? text : '';
  }

  /** Why the text is refused; null: it is the formula. */
  set(form: number, text: string): Fault | null {
    this.isDirty = true;
    if (!this.handle) {
      this.#given = { form, text };
      this.#onset(form !== Form.tree);
      return null;
    }
    const fault = this.#put({ form, text });
    this.seen = this.handle.revision;
    return fault;
  }

  #put({ form, text }: Given): Fault | null {
    const handle = this.handle!;
    let answer: number = SetResult.done;
    if (form === Form.mathml && text.trim()) {
      const element = buildMathml(text);
      if (!element) return { message: 'This is not MathML', cause: 1, begin: 0, end: text.length, box: [0, 0, 0, 0] };
      answer = handle.setMathml(element);
    } else {
      answer = handle.set(form, text);
    }
    if (answer === SetResult.same) return null;
    if (answer === SetResult.refused) {
      const fault = handle.module.fault();
      this.#owner.dispatchEvent(new CustomEvent('refuse', { detail: fault }));
      return fault;
    }
    // As in a line of text, the caret is at the end of what a program sets.
    if (form !== Form.tree) handle.run(commandsOf(handle.module).byName.get('formula-end')!);
    this.#onset(form !== Form.tree);
    return null;
  }

  reset(): void {
    this.isDirty = false;
    if (this.handle) this.#put(this.#default); else this.#given = this.#default;
    this.seen = this.handle?.revision ?? 0;
  }

  get isEmpty(): boolean {
    const { handle } = this;
    // A frame takes a new field longer than all else.
    if (handle?.revision === 0) return true;
    const frame = handle && this.#owner.shown.peek();
    return frame ? has(frame, Flag.empty) : !this.#pending.text.trim();
  }
}
