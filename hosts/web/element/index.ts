// The package: importing it defines <zolt-formula>, where there are elements.

import { ZoltFormulaElement } from './element.js';

export { ZoltFormulaElement } from './element.js';
export type { CopyForm, PngOptions } from './clipboard.js';
export type { Notation } from './control.js';
export type { Places } from './element.js';
export type { Fault } from './owner.js';
export { load, type Sources } from './shared.js';
export { toSvg, type SvgOptions } from './svg.js';

declare global {
  interface HTMLElementTagNameMap { 'zolt-formula': ZoltFormulaElement }
}

if (globalThis.customElements && !customElements.get('zolt-formula')) customElements.define('zolt-formula', ZoltFormulaElement);
