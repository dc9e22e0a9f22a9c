// The clipboard: the exact items for other fields, and what other programs read.

import { Form, type FormulaHandle } from '../module/zolt_module.mjs';
import { buildMathml, hasMathml } from './mathml.js';
import type { Module } from './shared.js';

/** The forms, the best first, by the media types that the desktop program uses as well. */
const types = {
  bytes: 'application/x-zolt-formula', prefix: 'application/x-zolt-prefix', mathml: 'application/mathml+xml',
  latex: 'application/x-tex', plain: 'text/plain', html: 'text/html', svg: 'image/svg+xml',
} as const;

const MOST = 1 << 20;

/** Writes what the module has copied to an event's data or a drag's. */
export function writeCopied(module: Module, to: DataTransfer, svg: string): boolean {
  const plain = module.copied(Form.plain);
  if (plain === null) return false;
  for (const [form, type] of [[Form.bytes, types.bytes], [Form.prefix, types.prefix], [Form.latex, types.latex],
    [Form.mathml, types.mathml]] as const) {
    const text = module.copied(form);
    if (text) to.setData(type, text);
  }
  to.setData(types.plain, plain);
  const mathml = module.copied(Form.mathml);
  if (mathml) to.setData(types.html, mathml);
  if (svg) to.setData(types.svg, svg);
  return true;
}

export function canPaste(from: DataTransfer): boolean {
  return Object.values(types).some((type) => from.types.includes(type));
}

/** Hands what is on a clipboard to the module; false when there is nothing for a formula. */
export function offerPasted(module: Module, get: (type: string) => string): boolean {
  const [bytes, prefix, latex, plain] = [types.bytes, types.prefix, types.latex, types.plain].map((type) => {
    const text = get(type);
    return text.length <= MOST ? text : '';
  }) as [string, string, string, string];
  if (!bytes && !prefix) {
    for (const page of [get(types.mathml), get(types.html), plain]) {
      const formula = page.length <= MOST && hasMathml(page) ? buildMathml(page) : null;
      if (formula && module.offerMathml(formula)) return true;
    }
  }
  module.offer({ bytes, prefix, latex: latex || findLatex(get(types.html)), plain });
  return !!(bytes || prefix || latex || plain);
}

/** The LaTeX that pages leave beside the formulas that they show. */
function findLatex(page: string): string {
  const found = /<annotation[^>]*encoding="(?:application\/x-tex|TeX|LaTeX)"[^>]*>([^<]*)<\/annotation>/i.exec(page.slice(0, MOST));
  return found ? found[1]!.replace(/&(lt|gt|amp|quot);/g, (_, name: string) => ({ lt: '<', gt: '>', amp: '&', quot: '"' })[name]!) : '';
}

/** Notations that a person may ask for. */
export const copyForms = { plain: Form.plain, latex: Form.latex, mathml: Form.mathml } as const;

/** The selection, or else the whole formula, in a notation; null: it has none. */
export function textOf(handle: FormulaHandle, form: keyof typeof copyForms, isSelected: boolean, copy: number): string | null {
  if (!isSelected) return handle.get(copyForms[form]);
  handle.run(copy);
  return handle.module.copied(copyForms[form]);
}
