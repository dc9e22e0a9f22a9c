// The clipboard: the exact items for other fields, and what other programs read. Pictures.

import { Form } from '../module/zolt_module.mjs';
import { Flag, has, heightOf, widthOf } from './frame.js';
import { buildMathml, hasMathml } from './mathml.js';
import { commandsOf, type Owner } from './owner.js';
import { paintFrame } from './painter.js';
import { beginToPaint, type Module } from './shared.js';
import { toSvg, type SvgOptions } from './svg.js';
import type { View } from './view.js';

/** The forms, the best first, by the media types that the desktop program uses as well. */
const types = {
  bytes: 'application/x-zolt-formula', prefix: 'application/x-zolt-prefix', mathml: 'application/mathml+xml',
  latex: 'application/x-tex', plain: 'text/plain', html: 'text/html',
} as const;

const MOST = 1 << 20;

/** Writes what the module has copied to an event's data or a drag's. */
function writeCopied(module: Module, to: DataTransfer): void {
  const plain = module.copied(Form.plain);
  if (plain === null) return;
  for (const [form, type] of [[Form.bytes, types.bytes], [Form.prefix, types.prefix], [Form.latex, types.latex],
    [Form.mathml, types.mathml]] as const) {
    const text = module.copied(form);
    if (text) to.setData(type, text);
  }
  to.setData(types.plain, plain);
  // A block of cells is a table; else pages that take formulas take them as MathML.
  const page = module.copied(Form.html) || module.copied(Form.mathml);
  if (page) to.setData(types.html, page);
}

/** Hands what is on a clipboard to the module; false when there is nothing for a formula. */
function offerPasted(module: Module, get: (type: string) => string): boolean {
  const read = (type: string) => {
    const text = get(type);
    return text.length <= MOST ? text : '';
  };
  const [bytes, prefix, latex, plain, html] = [types.bytes, types.prefix, types.latex, types.plain, types.html].map(read) as
    [string, string, string, string, string];
  if (!bytes && !prefix) {
    for (const page of [read(types.mathml), html, plain]) {
      const formula = hasMathml(page) ? buildMathml(page) : null;
      if (formula && module.offerMathml(formula)) return true;
    }
  }
  module.offer({ bytes, prefix, latex: latex || findLatex(html), plain, html });
  return !!(bytes || prefix || latex || plain || html);
}

/** The LaTeX that pages leave beside the formulas that they show. */
function findLatex(page: string): string {
  const found = /<annotation[^>]*encoding="(?:application\/x-tex|TeX|LaTeX)"[^>]*>([^<]*)<\/annotation>/i.exec(page);
  return found ? found[1]!.replace(/&(lt|gt|amp|quot);/g, (_, name: string) => ({ lt: '<', gt: '>', amp: '&', quot: '"' })[name]!) : '';
}

const notations = { plain: Form.plain, latex: Form.latex, mathml: Form.mathml } as const;
/** What a person may ask for. */
export type CopyForm = keyof typeof notations | 'svg' | 'png';

export interface PngOptions extends SvgOptions {
  /** How many pixels of the picture there are to a CSS pixel. */
  density?: number;
  /** A CSS colour behind the formula; none otherwise. */
  background?: string;
}

/** What is handed out of a field, and taken in, beside its value. */
export class Copies {
  readonly #owner: Owner;
  readonly #view: View;

  constructor(owner: Owner, view: View) {
    this.#owner = owner;
    this.#view = view;
    const { input } = owner.parts;
    for (const name of ['copy', 'cut'] as const) {
      input.addEventListener(name, (event) => {
        if (event.clipboardData && this.write(event.clipboardData, name)) event.preventDefault();
      });
    }
    input.addEventListener('paste', (event) => {
      event.preventDefault();
      const data = event.clipboardData;
      if (data && !owner.isLocked) this.#paste((type) => data.getData(type));
    });
  }

  // ---- Events of the clipboard and of drags

  /** Copies what is selected, and cuts it out of the formula. */
  write(to: DataTransfer, command: 'copy' | 'cut'): boolean {
    const { handle, isLocked } = this.#owner;
    const frame = this.#view.peek();
    if (!handle || !frame || !has(frame, Flag.selected) || (command === 'cut' && isLocked)) return false;
    this.#run('copy');
    writeCopied(handle.module, to);
    if (command === 'cut') this.#owner.act('deleteByCut', null, () => this.#run('cut'));
    return true;
  }

  canRead(from: DataTransfer): boolean { return Object.values(types).some((type) => from.types.includes(type)); }

  /** Pastes at the caret. */
  read(from: DataTransfer): boolean {
    const { handle } = this.#owner;
    return !!handle && offerPasted(handle.module, (type) => from.getData(type)) && handle.paste() !== 0;
  }

  #paste(get: (type: string) => string, isOwn = false): boolean {
    return this.#owner.act('insertFromPaste', get('text/plain') || null, (handle) =>
      (isOwn || offerPasted(handle.module, get)) && handle.paste() !== 0);
  }

  #run(name: string): boolean {
    const { handle } = this.#owner;
    return !!handle && handle.run(commandsOf(handle.module).byName.get(name)!);
  }

  // ---- For menus and programs

  useSystem(act: 'copy' | 'cut' | 'paste'): void {
    const { parts: { input }, handle } = this.#owner;
    input.focus({ preventScroll: true });
    if (act !== 'paste') {
      document.execCommand(act);
      return;
    }
    // A page may have to ask for this; without permission the field pastes what was copied in this page.
    const own = handle?.module.copied(Form.plain) ?? '';
    navigator.clipboard?.readText().then(
      (text) => this.#paste((type) => type === 'text/plain' && text !== own ? text : '', text === own),
      () => this.#paste(() => '', true));
  }

  async copyAs(form: CopyForm): Promise<boolean> {
    const { handle } = this.#owner;
    if (!handle) return false;
    if (form === 'png') {
      const picture = this.toPng({ background: 'white', colour: 'black' }).then((blob) => blob ?? new Blob());
      await navigator.clipboard.write([new ClipboardItem({ 'image/png': picture })]);
      return true;
    }
    const frame = this.#view.peek();
    if (form === 'svg') return this.#copySvg();
    let text: string | null;
    if (!frame || !has(frame, Flag.selected)) text = handle.get(notations[form]);
    else text = this.#run('copy') ? handle.module.copied(notations[form]) : null;
    if (!text) return false;
    await navigator.clipboard.writeText(text);
    return true;
  }

  /** As a picture where the browser takes these, and as text. */
  async #copySvg(): Promise<boolean> {
    // The browser reads it under the policy of the page, which may know no styles beside the sheets.
    const picture = this.toSvg().replace(/ style="vertical-align:[^"]*"/, '');
    if (!picture) return false;
    const types = ['image/svg+xml', 'text/plain'].filter((type) => type === 'text/plain' || ClipboardItem.supports?.(type));
    await navigator.clipboard.write([new ClipboardItem(Object.fromEntries(types.map((type) => [type, new Blob([picture], { type })])))]);
    return true;
  }

  toSvg(options: SvgOptions = {}): string {
    const { handle } = this.#owner;
    const frame = handle?.frame();
    return handle && frame ? toSvg(frame, handle.module, { fontSize: this.#view.scale * 12, ...options }) : '';
  }

  async toPng({ fontSize = this.#view.scale * 12, margin = 2, colour, background = '', density = 2 }: PngOptions = {}): Promise<Blob | null> {
    const canvas = document.createElement('canvas');
    const context = canvas.getContext('2d')!;
    const scale = fontSize / 12 * density, edge = margin * density;
    const paint = () => {
      const { handle } = this.#owner;
      const frame = handle?.frame();
      if (!handle || !frame) return false;
      canvas.width = Math.ceil(widthOf(frame) * scale + 2 * edge);
      canvas.height = Math.ceil(heightOf(frame) * scale + 2 * edge);
      if (background) {
        context.fillStyle = background;
        context.fillRect(0, 0, canvas.width, canvas.height);
      }
      context.fillStyle = context.strokeStyle = colour ?? getComputedStyle(this.#owner).color;
      paintFrame(frame, context, { scale, x: edge, y: edge }, handle.module);
      return true;
    };
    const { handle } = this.#owner;
    if (handle) beginToPaint(handle.module);
    // The faces that it takes load when it is painted.
    if (!paint()) return null;
    if (document.fonts.status === 'loading') {
      await document.fonts.ready;
      if (!paint()) return null;
    }
    return new Promise((settle) => canvas.toBlob(settle, 'image/png'));
  }
}
