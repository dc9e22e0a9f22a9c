// What every control of a form has: its attributes as properties, and its validity.

import { Form } from '../module/zolt_module.mjs';
import type { Fault } from './owner.js';

/** The notations of a value. */
export const notations = { plain: Form.plain, prefix: Form.prefix, latex: Form.latex, mathml: Form.mathml } as const;
export type Notation = keyof typeof notations;

/** Servers have no elements; there the class is only a name. */
const Base = (globalThis.HTMLElement ?? class {}) as typeof HTMLElement;

export abstract class ControlElement extends Base {
  readonly internals = this.attachInternals();
  /** With value and validity up to date. */
  protected abstract get checked(): ElementInternals;
  abstract getValue(notation?: Notation): string;
  abstract setValue(text: string, notation?: Notation): Fault | null;

  /** In the notation of `format`; "" while the formula is incomplete. Setting what is shown already changes nothing. */
  get value(): string { return this.getValue(this.format); }
  set value(text: string) { this.setValue(text); }
  get latex(): string { return this.getValue('latex'); }
  set latex(text: string) { this.setValue(text, 'latex'); }
  get mathml(): string { return this.getValue('mathml'); }
  set mathml(text: string) { this.setValue(text, 'mathml'); }
  override get prefix(): string { return this.getValue('prefix'); }
  override set prefix(text: string) { this.setValue(text, 'prefix'); }

  protected attributeText(name: string): string { return this.getAttribute(name) ?? ''; }
  get name(): string { return this.attributeText('name'); }
  set name(name: string) { this.setAttribute('name', name); }
  get defaultValue(): string { return this.getAttribute('value') ?? this.textContent?.trim() ?? ''; }
  set defaultValue(value: string) { this.setAttribute('value', value); }
  /** The notation of `value`, and of what a form submits. */
  get format(): Notation {
    const format = this.attributeText('format');
    return format in notations ? format as Notation : 'plain';
  }
  set format(format: Notation) { this.setAttribute('format', format); }
  get placeholder(): string { return this.attributeText('placeholder'); }
  set placeholder(text: string) { this.setAttribute('placeholder', text); }
  get readOnly(): boolean { return this.hasAttribute('readonly'); }
  set readOnly(on: boolean) { this.toggleAttribute('readonly', on); }
  get disabled(): boolean { return this.hasAttribute('disabled'); }
  set disabled(on: boolean) { this.toggleAttribute('disabled', on); }
  get required(): boolean { return this.hasAttribute('required'); }
  set required(on: boolean) { this.toggleAttribute('required', on); }
  /** Whether the formula keyboard opens for fingers ("auto"), or when it is asked for. */
  get keyboard(): 'auto' | 'manual' { return this.attributeText('keyboard') === 'manual' ? 'manual' : 'auto'; }

  get form(): HTMLFormElement | null { return this.internals.form; }
  get type(): string { return 'formula'; }
  get labels(): NodeList { return this.internals.labels; }
  get validity(): ValidityState { return this.checked.validity; }
  get validationMessage(): string { return this.checked.validationMessage; }
  get willValidate(): boolean { return this.internals.willValidate; }
  checkValidity(): boolean { return this.checked.checkValidity(); }
  reportValidity(): boolean { return this.checked.reportValidity(); }
}
