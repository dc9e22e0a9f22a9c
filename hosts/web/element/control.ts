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
  /** The formula in LaTeX. */
  get latex(): string { return this.getValue('latex'); }
  set latex(text: string) { this.setValue(text, 'latex'); }
  /** The formula in presentation MathML. */
  get mathml(): string { return this.getValue('mathml'); }
  set mathml(text: string) { this.setValue(text, 'mathml'); }
  /** The formula in prefix notation, as engines take it. */
  override get prefix(): string { return this.getValue('prefix'); }
  override set prefix(text: string) { this.setValue(text, 'prefix'); }

  protected attributeText(name: string): string { return this.getAttribute(name) ?? ''; }
  /** What a form calls its value. */
  get name(): string { return this.attributeText('name'); }
  set name(name: string) { this.setAttribute('name', name); }
  /** What a reset of the form sets: the attribute `value`, or else the text of the element. */
  get defaultValue(): string { return this.getAttribute('value') ?? this.textContent?.trim() ?? ''; }
  set defaultValue(value: string) { this.setAttribute('value', value); }
  /** The notation of `value`, and of what a form submits. */
  get format(): Notation {
    const format = this.attributeText('format');
    return format in notations ? format as Notation : 'plain';
  }
  set format(format: Notation) { this.setAttribute('format', format); }
  /** Shown while the formula is empty. */
  get placeholder(): string { return this.attributeText('placeholder'); }
  set placeholder(text: string) { this.setAttribute('placeholder', text); }
  /** It can be read and copied, not changed. */
  get readOnly(): boolean { return this.hasAttribute('readonly'); }
  set readOnly(on: boolean) { this.toggleAttribute('readonly', on); }
  /** It cannot be used, and is not submitted. */
  get disabled(): boolean { return this.hasAttribute('disabled'); }
  set disabled(on: boolean) { this.toggleAttribute('disabled', on); }
  /** An empty formula is invalid. */
  get required(): boolean { return this.hasAttribute('required'); }
  set required(on: boolean) { this.toggleAttribute('required', on); }
  /** Whether the formula keyboard opens for fingers ("auto"), or when it is asked for. */
  get keyboard(): 'auto' | 'manual' { return this.attributeText('keyboard') === 'manual' ? 'manual' : 'auto'; }
  set keyboard(when: 'auto' | 'manual') { this.setAttribute('keyboard', when); }

  /** The form that it belongs to. */
  get form(): HTMLFormElement | null { return this.internals.form; }
  /** "formula". */
  get type(): string { return 'formula'; }
  /** Its labels. */
  get labels(): NodeList { return this.internals.labels; }
  /** Whether it satisfies what is asked of it. */
  get validity(): ValidityState { return this.checked.validity; }
  /** Why it does not. */
  get validationMessage(): string { return this.checked.validationMessage; }
  /** Whether anything is asked of it. */
  get willValidate(): boolean { return this.internals.willValidate; }
  /** Dispatches `invalid` where it does not. */
  checkValidity(): boolean { return this.checked.checkValidity(); }
  /** Tells a person as well. */
  reportValidity(): boolean { return this.checked.reportValidity(); }
}
