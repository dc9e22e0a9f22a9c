// A formula as SVG, for print, export and servers.

import { draw, inks, type Surface } from './display_list.js';
import { baselineOf, heightOf, widthOf, type FrameWords } from './frame.js';
import { facesOf, type Module } from './shared.js';

export interface SvgOptions {
  /** Of the letters, in pixels. */
  fontSize?: number;
  /** Around the formula, in pixels. */
  margin?: number;
  /** A CSS colour; `currentColor` otherwise. */
  colour?: string;
  /** Rules for the faces, such as `@font-face` with the data of the fonts; none: the page has them. */
  style?: string;
  /** What the picture says to those who do not see it. */
  title?: string;
}

const signs: Record<string, string> = { '<': '&lt;', '>': '&gt;', '&': '&amp;', '"': '&quot;' };
const escape = (text: string) => text.replace(/[<>&"]/g, (sign) => signs[sign]!);
const short = (value: number) => String(Math.round(value * 100) / 100);

class SvgSurface implements Surface {
  out = '';
  readonly #fonts: string[];
  #font = '';
  #run = { text: '', xs: '', y: 0 };
  #path = '';

  constructor(module: Module) {
    this.#fonts = facesOf(module).map(({ style, family }) =>
      ` font-family="${escape(family)}, serif"${style === 'normal' ? '' : ` font-style="${style}"`}`);
  }

  font(face: number, em: number): void {
    this.end();
    this.#font = `${this.#fonts[face]} font-size="${short(em)}"`;
  }
  glyph(text: string, x: number, y: number): void {
    this.#run.text += text;
    // A character beyond 16 bits takes two of the places.
    this.#run.xs += (this.#run.xs && ' ') + short(x) + (text.length > 1 ? ` ${short(x)}` : '');
    this.#run.y = y;
  }
  /** Ends a run of glyphs. */
  end(): void {
    const { text, xs, y } = this.#run;
    if (text) this.out += `<text${this.#font} x="${xs}" y="${short(y)}">${escape(text)}</text>`;
    this.#run = { text: '', xs: '', y: 0 };
  }
  text(text: string, em: number, x: number, y: number, width: number): void {
    this.end();
    this.out += `<text font-size="${short(em)}" x="${short(x)}" y="${short(y)}" textLength="${short(width)}">${escape(text)}</text>`;
  }
  beginPath(): void {
    this.end();
    this.#path = '';
  }
  moveTo(x: number, y: number): void { this.#path += `M${short(x)} ${short(y)}`; }
  lineTo(x: number, y: number): void { this.#path += `L${short(x)} ${short(y)}`; }
  bezierCurveTo(a: number, b: number, c: number, d: number, x: number, y: number): void {
    this.#path += `C${[a, b, c, d, x, y].map(short).join(' ')}`;
  }
  closePath(): void { this.#path += 'Z'; }
  fill(ink: number): void { this.out += `<path d="${this.#path}"${ink ? ` opacity="${inks[ink]}"` : ''}/>`; }
  stroke(ink: number, thickness: number): void {
    this.out += `<path d="${this.#path}" fill="none" stroke="currentColor" stroke-linecap="round" stroke-linejoin="round"` +
      ` stroke-width="${short(thickness)}"${ink ? ` opacity="${inks[ink]}"` : ''}/>`;
  }
  rule(ink: number, x1: number, y1: number, x2: number, y2: number, thickness: number): void {
    this.end();
    this.out += `<path d="M${short(x1)} ${short(y1)}L${short(x2)} ${short(y2)}" fill="none" stroke="currentColor"` +
      ` stroke-linecap="square" stroke-width="${short(thickness)}"${ink ? ` opacity="${inks[ink]}"` : ''}/>`;
  }
}

/** A whole picture of a frame without clip. */
export function toSvg(frame: FrameWords, module: Module, options: SvgOptions = {}): string {
  const { fontSize = 21, margin = 2, colour = 'currentColor', style = '', title = '' } = options;
  const scale = fontSize / 12;
  const edge = margin / scale;
  const surface = new SvgSurface(module);
  draw(frame, surface);
  surface.end();
  const width = widthOf(frame) + 2 * edge, height = heightOf(frame) + 2 * edge;
  return `<svg xmlns="http://www.w3.org/2000/svg" role="img" width="${short(width * scale)}" height="${short(height * scale)}"` +
    ` viewBox="${short(-edge)} ${short(-edge)} ${short(width)} ${short(height)}" color="${escape(colour)}" fill="currentColor"` +
    ` style="vertical-align:${short((baselineOf(frame) - height + edge) * scale)}px">` +
    (title && `<title>${escape(title)}</title>`) + (style && `<style>${escape(style)}</style>`) + surface.out + '</svg>';
}
