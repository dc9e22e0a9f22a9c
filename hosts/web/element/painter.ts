// Paints frames on a canvas.

import { draw, inks, type Surface } from './display_list.js';
import { heightOf, widthOf, type FrameWords } from './frame.js';
import { facesOf, familyOf, type Module } from './shared.js';

/** Device pixels of a unit, and where the origin of the layout is in them. */
export interface Transform {
  readonly scale: number;
  readonly x: number;
  readonly y: number;
}

// The page's own text is for what the faces lack.
const others = '"DejaVu Serif", "DejaVu Sans", "STIX Two Math", serif';

/** For those who ask for more contrast. */
const strongInks = [1, 0.75, 0.5] as const;
const contrast = typeof matchMedia === 'function' ? matchMedia('(forced-colors: active), (prefers-contrast: more)') : null;

// A canvas knows texts that are there already; new ones it must read.
const fonts = new WeakMap<Module, Map<number, string>[]>();

function fontsOf(module: Module): Map<number, string>[] {
  let all = fonts.get(module);
  if (!all) fonts.set(module, all = facesOf(module).map(() => new Map()));
  return all;
}

class CanvasSurface implements Surface {
  readonly #fonts: Map<number, string>[];
  #font = '';
  readonly #inks = contrast?.matches ? strongInks : inks;

  constructor(readonly to: CanvasRenderingContext2D, readonly at: Transform, readonly module: Module) {
    this.#fonts = fontsOf(module);
    to.setTransform(at.scale, 0, 0, at.scale, at.x, at.y);
    to.lineCap = to.lineJoin = 'round';
    to.fontKerning = 'none';
  }

  font(face: number, em: number): void {
    const sizes = this.#fonts[face]!;
    let font = sizes.get(em);
    if (font === undefined) {
      const { style, family } = facesOf(this.module)[face]!;
      sizes.set(em, font = `${style} ${em}px "${familyOf(family)}", "${family}", ${others}`);
    }
    if (font !== this.#font) this.to.font = this.#font = font;
  }
  glyph(text: string, x: number, y: number): void { this.to.fillText(text, x, y); }
  text(text: string, em: number, x: number, y: number, width: number): void {
    this.to.font = this.#font = `${em}px ${others}`;
    this.to.fillText(text, x, y, width);
  }
  beginPath(): void { this.to.beginPath(); }
  moveTo(x: number, y: number): void { this.to.moveTo(x, y); }
  lineTo(x: number, y: number): void { this.to.lineTo(x, y); }
  bezierCurveTo(a: number, b: number, c: number, d: number, x: number, y: number): void {
    this.to.bezierCurveTo(a, b, c, d, x, y);
  }
  closePath(): void { this.to.closePath(); }
  fill(ink: number): void {
    this.to.globalAlpha = this.#inks[ink]!;
    this.to.fill();
    this.to.globalAlpha = 1;
  }
  stroke(ink: number, thickness: number): void {
    this.to.globalAlpha = this.#inks[ink]!;
    // A line thinner than a pixel would fade.
    this.to.lineWidth = Math.max(thickness, 1 / this.at.scale);
    this.to.stroke();
    this.to.globalAlpha = 1;
  }
  rule(ink: number, x1: number, y1: number, x2: number, y2: number, thickness: number): void {
    if (x1 !== x2 && y1 !== y2) {
      this.to.beginPath();
      this.to.moveTo(x1, y1);
      this.to.lineTo(x2, y2);
      return this.stroke(ink, thickness);
    }
    // Bars are whole pixels thick and begin on one, so that they are sharp and alike.
    const { scale, x, y } = this.at;
    const half = thickness / 2, thick = Math.max(1, Math.round(thickness * scale));
    const isFlat = y1 === y2;
    let left = Math.round((Math.min(x1, x2) - half) * scale + x), right = Math.round((Math.max(x1, x2) + half) * scale + x);
    let top = Math.round((Math.min(y1, y2) - half) * scale + y), bottom = Math.round((Math.max(y1, y2) + half) * scale + y);
    if (isFlat) bottom = top + thick; else right = left + thick;
    this.to.globalAlpha = this.#inks[ink]!;
    this.to.setTransform(1, 0, 0, 1, 0, 0);
    this.to.fillRect(left, top, right - left, bottom - top);
    this.to.setTransform(scale, 0, 0, scale, x, y);
    this.to.globalAlpha = 1;
  }
}

/** Paints the formula in the context's fill and stroke styles. */
export function paintFrame(frame: FrameWords, to: CanvasRenderingContext2D, at: Transform, module: Module): void {
  draw(frame, new CanvasSurface(to, at, module));
}

/** Fills boxes of the layout, on whole pixels. */
export function fillBox(to: CanvasRenderingContext2D, at: Transform, left: number, top: number, right: number,
                        bottom: number): void {
  const x = Math.round(left * at.scale + at.x), y = Math.round(top * at.scale + at.y);
  to.setTransform(1, 0, 0, 1, 0, 0);
  to.fillRect(x, y, Math.max(1, Math.round(right * at.scale + at.x) - x),
    Math.max(1, Math.round(bottom * at.scale + at.y) - y));
}

/** Paints a formula in tree notation into a canvas of that many CSS pixels, as large as it may be. */
export function paintPicture(canvas: HTMLCanvasElement, tree: string, module: Module, width: number, height: number,
                             most: number, colour: string): void {
  const ratio = devicePixelRatio;
  canvas.width = Math.round(width * ratio);
  canvas.height = Math.round(height * ratio);
  const frame = module.picture(tree);
  const context = canvas.getContext('2d');
  if (!frame || !context) return;
  const scale = ratio * Math.min(most, (width - 2) / widthOf(frame), (height - 2) / heightOf(frame));
  context.fillStyle = context.strokeStyle = colour;
  const x = (canvas.width - widthOf(frame) * scale) / 2, y = (canvas.height - heightOf(frame) * scale) / 2;
  paintFrame(frame, context, { scale, x, y }, module);
}
