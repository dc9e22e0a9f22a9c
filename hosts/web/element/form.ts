// The field as a control of a form: its value is computed when a form asks for it, not with every key.

import { Form } from '../module/zolt_module.mjs';
import { Later } from './later.js';
import type { Fault, Owner } from './owner.js';
import { whenWhole } from './shared.js';
import { loaded } from './shared.js';

export interface FormSide extends Owner {
  readonly internals: ElementInternals;
  readonly required: boolean;
  readonly placeholder: string;
  readonly name: string;
  /** The text that is submitted; "" when there is none. */
  readonly value: string;
  readonly isEmpty: boolean;
}

export class FormValue {
  readonly #owner: FormSide;
  #isStale = true;
  readonly #later = new Later(() => whenWhole(() => this.update()), 300, 50);
  #form: HTMLFormElement | null = null;
  #custom = '';

  constructor(owner: FormSide) { this.#owner = owner; }

  /** The formula, or what is asked of it, has changed. */
  touch(): void {
    this.#isStale = true;
    // The browser keeps what is in a page that is left.
    if (!this.#later.isWaiting) addEventListener('pagehide', this.#onLeave);
    this.#later.touch();
  }

  /** The same where the formula is known to be complete or empty, as after a program has set it: forms are checked without asking. */
  touchWhole(): void {
    this.touch();
    // A field that is not shown takes no memory for being asked.
    if (this.#owner.handle || !loaded()) this.#check(null);
  }

  readonly #onLeave = () => void this.update();

  stop(): void {
    this.#later.stop();
    removeEventListener('pagehide', this.#onLeave);
  }

  /** Brings value and validity up to date. */
  update(): Fault | null {
    this.stop();
    const { internals, handle, isEmpty } = this.#owner;
    if (!this.#isStale) return null;
    const fault = handle && !isEmpty ? handle.diagnose() : null;
    internals.setFormValue(this.#owner.value, handle?.get(Form.tree) ?? null);
    this.#check(fault);
    this.#isStale = false;
    return fault;
  }

  #check(fault: Fault | null): void {
    const { internals, required, isEmpty, parts } = this.#owner;
    if (this.#custom) internals.setValidity({ customError: true }, this.#custom, parts.frame);
    else if (isEmpty && required) internals.setValidity({ valueMissing: true }, 'Please enter a formula.', parts.frame);
    else if (fault) internals.setValidity({ badInput: true }, `${fault.message}.`, parts.frame);
    else internals.setValidity({});
  }

  setCustom(message: string): void {
    this.#custom = message;
    this.#isStale = true;
    this.update();
  }

  /** Follows the form that the field belongs to. */
  join(form: HTMLFormElement | null): void {
    this.#form?.removeEventListener('formdata', this.#onData);
    this.#form = form;
    form?.addEventListener('formdata', this.#onData);
  }

  /** A script may ask while what was typed last is not in the value yet. */
  readonly #onData = (event: FormDataEvent) => {
    const { name } = this.#owner;
    if (!this.#isStale || !name || this.#owner.matches(':disabled')) return;
    this.update();
    // Several fields may have one name: this one's value is at its place among them.
    const place = [...this.#form!.elements].filter((one) => (one as HTMLInputElement).name === name).indexOf(this.#owner);
    const all = [...event.formData];
    const at = all.map(([key], i) => key === name ? i : -1).filter((i) => i >= 0)[place];
    const mine: [string, string] = [name, this.#owner.value];
    at === undefined ? all.push(mine) : all[at] = mine;
    for (const key of new Set(event.formData.keys())) event.formData.delete(key);
    for (const [key, value] of all) event.formData.append(key, value as string);
  };
}
