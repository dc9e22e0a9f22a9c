// The demonstration page: a sheet of formulas whose values are shown beside them as they are typed.

import type { ZoltFormulaElement } from '../element/element.js';
import { askGiac, Computer, hasGiac, type Answer } from './computer.js';

const operations = ['evaluate', 'approximate', 'simplify', 'expand', 'factor', 'solve', 'differentiate', 'integrate'] as const;
const samples: readonly (readonly [string, typeof operations[number]])[] = [
  ['(-b+sqrt(b^2-4*a*c))/(2*a)', 'evaluate'], ['2^100/6', 'evaluate'], ['sqrt(2)*pi', 'approximate'], ['(x+1)^5', 'expand'],
  ['sin(x)^2*cos(x)', 'differentiate'], ['x^2-5*x+6=0', 'solve'], ['sum(k,1,100,k^2)', 'evaluate'], ['', 'evaluate'],
];

const at = <T extends HTMLElement>(id: string) => document.getElementById(id) as T;
const make = <Tag extends keyof HTMLElementTagNameMap>(tag: Tag, properties: Partial<HTMLElementTagNameMap[Tag]> = {}) =>
  Object.assign(document.createElement(tag) as HTMLElement, properties) as HTMLElementTagNameMap[Tag];

const computer = new Computer(new URL('./engine_worker.js', import.meta.url));
const rows = at<HTMLOListElement>('rows');
let current: ZoltFormulaElement | null = null;

/** What is solved for and differentiated by: x, or else the first name. */
function mainVariable(prefix: string): string {
  const names: string[] = prefix.match(/\p{L}[\p{L}\d_]*(?![\p{L}\d_]*\()/gu) ?? [];
  return names.includes('x') ? 'x' : names[0] ?? 'x';
}

/** What a program that embeds fields does: it listens to "input", asks for `prefix`, and sets a value. */
class Row {
  readonly line = make('li');
  readonly #formula = document.createElement('zolt-formula');
  readonly #operation = make('select', { ariaLabel: 'What is computed' });
  readonly #result = document.createElement('zolt-formula');
  readonly #fault = make('p', { className: 'fault' });
  #later = 0;
  #asked = '';
  #asking = new AbortController();

  constructor(value: string, operation: string) {
    const remove = make('button', { type: 'button', textContent: '×', title: 'Remove', ariaLabel: 'Remove the formula' });
    this.#operation.append(...operations.map((name) => make('option', { textContent: name, selected: name === operation })));
    this.#formula.setAttribute('aria-label', 'Formula');
    this.#formula.placeholder = 'Type a formula';
    this.#formula.value = value;
    this.#result.className = 'result';
    this.#result.setAttribute('aria-label', 'Result');
    this.#result.readOnly = true;
    this.#fault.setAttribute('role', 'status');
    this.line.append(this.#formula, this.#operation, this.#result, remove, this.#fault);
    this.#formula.addEventListener('input', () => {
      clearTimeout(this.#later);
      this.#later = window.setTimeout(() => void this.compute(), 150);
      show();
    });
    this.#formula.addEventListener('focus', () => {
      current = this.#formula;
      show();
    });
    // While it is typed, a formula is incomplete most of the time.
    this.#formula.addEventListener('blur', () => {
      const { fault } = this.#formula;
      if (fault) this.#fault.textContent = `${fault.message}.`;
    });
    this.#formula.addEventListener('refuse', (event) => { this.#fault.textContent = `${(event as CustomEvent).detail.message}.`; });
    this.#formula.addEventListener('move-out', (event) => {
      const { direction } = (event as CustomEvent).detail;
      const to = direction === 'up' ? this.line.previousElementSibling : direction === 'down' ? this.line.nextElementSibling : null;
      (to?.firstElementChild as HTMLElement | null)?.focus();
    });
    this.#operation.addEventListener('change', () => void this.compute());
    remove.addEventListener('click', () => {
      const next = (this.line.nextElementSibling ?? this.line.previousElementSibling)?.firstElementChild as HTMLElement | null;
      this.line.remove();
      (next ?? at('add')).focus();
    });
  }

  get fields() { return [this.#formula, this.#result]; }
  focus(): void { this.#formula.focus(); }

  async compute(): Promise<void> {
    const { prefix } = this.#formula, operation = this.#operation.value;
    this.#asked = `${operation} ${prefix}`;
    this.#asking.abort();
    this.#asking = new AbortController();
    const asked = this.#asked;
    this.#fault.textContent = '';
    if (!prefix || at<HTMLSelectElement>('engine').value === 'none') {
      this.#result.value = '';
      return;
    }
    const question = { expression: prefix, operation, variable: mainVariable(prefix) };
    const answer = await (at<HTMLSelectElement>('engine').value === 'giac' ? askGiac(question, this.#asking.signal) : computer.ask(question));
    // Something else may have been typed meanwhile.
    if (asked === this.#asked) this.#show(answer);
  }

  #show({ outcome, text, part }: Answer): void {
    // Several solutions are a set.
    this.#result.prefix = outcome === 'value' ? text.replace(/^list\(/, 'set(') : '';
    if (outcome === 'value') return;
    this.#fault.textContent = text ? `${text}.` : 'There is no result.';
    if (part > 0 && !this.#formula.matches(':focus')) this.#formula.selectPart(part);
  }
}

const all: Row[] = [];
function add(value = '', operation = 'evaluate'): Row {
  const row = new Row(value, operation);
  all.push(row);
  rows.append(row.line);
  return row;
}

// ---- The current formula in other notations

function show(): void {
  const notation = at<HTMLSelectElement>('notation').value;
  const text = at<HTMLTextAreaElement>('text');
  at('problem').textContent = '';
  if (!current || document.activeElement === text) return;
  text.readOnly = notation === 'words' || notation === 'svg';
  text.value = notation === 'svg' ? current.toSVG() : notation === 'words' ? current.words : current.getValue(notation as 'plain');
  const { fault } = current;
  if (fault) at('problem').textContent = `${fault.message}.`;
}

function save(what: Blob | string, name: string): void {
  const blob = typeof what === 'string' ? new Blob([what], { type: 'image/svg+xml' }) : what;
  const link = make('a', { href: URL.createObjectURL(blob), download: name });
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 1000);
}

async function start(): Promise<void> {
  await import('./zolt-formula/zolt-formula.js' as string);
  for (const [value, operation] of samples) add(value, operation);
  const fields = () => [...document.querySelectorAll('zolt-formula')];
  const isOn = (id: string) => at<HTMLInputElement>(id).checked;
  const applyOptions = () => {
    for (const field of fields()) field.options = { decimalComma: isOn('comma'), singleLetters: isOn('letters') };
  };
  at('add').addEventListener('click', () => {
    const row = add();
    applyOptions();
    row.focus();
  });
  at('notation').addEventListener('change', show);
  at('text').addEventListener('input', () => {
    const fault = current?.setValue(at<HTMLTextAreaElement>('text').value, at<HTMLSelectElement>('notation').value as 'plain');
    at('problem').textContent = fault ? `${fault.message}.` : '';
    if (!fault) current?.dispatchEvent(new InputEvent('input'));
  });
  at('copy').addEventListener('click', () => void navigator.clipboard.writeText(at<HTMLTextAreaElement>('text').value));
  at('svg').addEventListener('click', () => { if (current) save(current.toSVG(), 'formula.svg'); });
  at('png').addEventListener('click', () => void current?.toPNG({ density: 3, colour: 'black', background: 'white' }).then((png) => { if (png) save(png, 'formula.png'); }));
  at('size').addEventListener('input', (event) => document.documentElement.style.setProperty('--size', `${(event.target as HTMLInputElement).value}px`));
  at('theme').addEventListener('change', (event) => { document.documentElement.style.colorScheme = (event.target as HTMLSelectElement).value; });
  for (const id of ['comma', 'letters']) at(id).addEventListener('change', applyOptions);
  at('engine').addEventListener('change', () => { for (const row of all) void row.compute(); });
  if (await hasGiac()) at('engine').append(make('option', { value: 'giac', textContent: 'Giac, on this computer' }));
  else at('no-giac').hidden = false;
  await Promise.all(all.map(({ fields }) => fields[0]!.ready));
  for (const row of all) void row.compute();
  current = all[0]!.fields[0]!;
  show();
}

void start();
