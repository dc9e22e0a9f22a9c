// What is seen of a field: the canvas with formula, selection, fault and caret, and what of the formula is in sight.

import { scaleOf } from './dom.js';
import {
  anchorOf, bandsOf, baselineOf, caretOf, composedOf, Flag, has, heightOf, revealOf, widthOf, type Box, type FrameWords,
} from './frame.js';
import { Later } from './later.js';
import type { Owner, Shown } from './owner.js';
import { fillBox, paintFrame, type Transform } from './painter.js';
import { beginToPaint, inNextFrame, paintWith } from './shared.js';

const BLINK = 530;  // ms
/** In letters. */
const SIDE = 0.32, TOP = 0.26, CARET = 0.075;
/** Pixels on paper to a CSS pixel. */
const PRINTED = 4;
/** In CSS pixels. */
const REVEAL = 12, FADE = 24, SLACK = 96, LEAP = 80, STEP = 128;
const STRIPS = 12;
const Side = { left: 1, right: 2, top: 4, bottom: 8 } as const;
/** In units, beyond everything. */
const ALL = 2 ** 30;

/** What is painted with, by the style of the page. */
interface Style {
  readonly em: number;
  readonly ink: string;
  readonly caret: string;
  readonly band: string;
  readonly fault: string;
  readonly zoom: number;
}

/** By how much the style of the page enlarges an element. */
const zoomOf = (element: Element) => (element as { currentCSSZoom?: number }).currentCSSZoom ?? 1;

const still = typeof matchMedia === 'function' ? matchMedia('(prefers-reduced-motion: reduce)') : null;

/** How much room a formula is given: a new one is a new layout of the page, which costs more than all else of a key. */
function roomFor(wanted: number, given: number, area: number): number {
  // The field's size does not come from the formula.
  if (given < area && wanted <= area) return given;
  // The formula goes on beyond the field, which is as large as it may be.
  if (given > area && wanted > area) return Math.ceil(wanted / STEP) * STEP;
  return wanted;
}

/** Browsers print no backgrounds, so that what is light on a dark page is black on paper. */
function onPaper(context: CanvasRenderingContext2D, ink: string): string {
  context.fillStyle = ink;
  const parts = /^#(..)(..)(..)$/.exec(String(context.fillStyle))?.slice(1).map((part) => parseInt(part, 16));
  return parts && 0.3 * parts[0]! + 0.6 * parts[1]! + 0.1 * parts[2]! > 140 ? 'black' : ink;
}

export class View implements Shown {
  /** Called after each painting. */
  onpaint: (frame: FrameWords) => void = () => undefined;
  fault: Box | null = null;
  /** Whether the caret is to be brought into sight, as the module asks after each key. */
  wantsCaret = false;
  /** Where something that is dragged would go. */
  drop: Box | null = null;
  readonly #owner: Owner;
  #style: Style | null = null;
  #isCaretOn = true;
  #isPrinting = false;
  #stop: (() => void) | null = null;
  readonly #sizes: ResizeObserver;
  // In CSS pixels.
  #area = { width: 0, height: 0 };
  #content = { width: 0, height: 0 };
  #room = { width: 0, height: 0 };
  #offset = { x: 0, y: 0 };
  #rows = 0;
  #ratio = 0;
  #context: CanvasRenderingContext2D | null = null;
  /** All that the canvas shows besides the display list; null: it must be painted as a whole. */
  #painted: readonly unknown[] | null = null;
  #marks: Box | null = null;

  constructor(owner: Owner) {
    this.#owner = owner;
    const { scroller, canvas, em } = owner.parts;
    scroller.addEventListener('scroll', () => this.paintSoon(), { passive: true });
    canvas.addEventListener('transitionend', () => this.restyle());
    canvas.addEventListener('contextrestored', () => this.restyle());
    this.#sizes = new ResizeObserver((entries) => {
      if (entries.some(({ target }) => target === em)) this.#style = null;
      const { clientWidth: width, clientHeight: height } = scroller;
      const isSame = width === this.#area.width && height === this.#area.height && devicePixelRatio * zoomOf(canvas) === this.#ratio;
      if (this.#isPrinting || this.#style && isSame) return;
      this.#style = null;
      this.paint();
    });
  }

  start(): void {
    this.#stop ??= paintWith(() => this.restyle());
    for (const name of ['beforeprint', 'afterprint']) addEventListener(name, this.#print);
    const { scroller } = this.#owner.parts;
    // Its device pixels change with the zoom of the page as well; not every browser counts them.
    try { this.#sizes.observe(scroller, { box: 'device-pixel-content-box' }); } catch { this.#sizes.observe(scroller); }
    this.#sizes.observe(this.#owner.parts.em);
    this.#style = this.#painted = null;
    // A frame takes the page some time, and there is nothing to show yet.
    if (this.#owner.handle) this.paintSoon();
  }

  stop(): void {
    this.#stop?.();
    this.#stop = null;
    for (const name of ['beforeprint', 'afterprint']) removeEventListener(name, this.#print);
    this.#sizes.disconnect();
    this.blink(false);
    // The memory of a canvas is not the page's to collect in time.
    const { canvas } = this.#owner.parts;
    canvas.width = canvas.height = 0;
  }

  restyle(): void {
    this.#style = this.#painted = null;
    this.paintSoon();
  }

  readonly #print = ({ type }: Event) => {
    this.#isPrinting = type === 'beforeprint';
    if (!this.#isPrinting) return this.restyle();
    // Asking for style or layout now would give the page those of the screen on paper.
    const frame = this.#style && this.#getSeen(this.#unit);
    if (frame) this.#draw(frame);
  };

  readonly #paint = () => this.paint();
  paintSoon(): void { inNextFrame(this.#paint); }

  /** Shows the caret for a while, and then on and off. */
  blink(on: boolean): void {
    this.#isCaretOn = true;
    if (on && !still?.matches) this.#blinking.touch(); else this.#blinking.stop();
  }

  readonly #blinking = new Later(() => {
    this.#isCaretOn = !this.#isCaretOn;
    this.paintSoon();
    this.#blinking.touch();
  }, BLINK, 0);

  // ---- Where things are

  get #unit(): number { return this.#styles.em / 12; }

  toUnits(x: number, y: number): [number, number] {
    const { scroller } = this.#owner.parts, { left, top } = scroller.getBoundingClientRect(), scale = scaleOf(scroller);
    return [Math.round(((x - left) / scale - this.#offset.x) / this.#unit), Math.round(((y - top) / scale - this.#offset.y) / this.#unit)];
  }

  toWindow([left, top, right, bottom]: Box): DOMRect {
    const { scroller } = this.#owner.parts, area = scroller.getBoundingClientRect(), scale = scaleOf(scroller);
    const unit = this.#unit * scale;
    return new DOMRect(area.left + this.#offset.x * scale + left * unit, area.top + this.#offset.y * scale + top * unit,
      (right - left) * unit, (bottom - top) * unit);
  }

  // ---- Painting

  get #styles(): Style {
    if (this.#style) return this.#style;
    const found = getComputedStyle(this.#owner.parts.canvas);
    return this.#style = {
      em: parseFloat(found.fontSize) || 16, ink: found.color, caret: found.caretColor, band: found.textDecorationColor,
      fault: found.outlineColor, zoom: zoomOf(this.#owner.parts.canvas),
    };
  }

  /** The frame of what is in sight where the formula was put last. */
  #getSeen(unit: number): FrameWords | null {
    const { x, y } = this.#offset, { width, height } = this.#area;
    const box = [-x / unit - 4, -y / unit - 4, (width - x) / unit + 4, (height - y) / unit + 4].map(Math.floor);
    return this.#owner.handle?.frame(...(box as [number, number, number, number])) ?? null;
  }

  paint(): void {
    const { handle, parts } = this.#owner;
    if (!handle || !this.#stop) return;
    const unit = this.#unit, { em } = this.#styles;
    const side = SIDE * em, top = TOP * em;
    const left = parts.scroller.scrollLeft, above = parts.scroller.scrollTop;
    const clip = [(left - side) / unit - 4, (above - top) / unit - 4, (left + this.#area.width + SLACK) / unit,
      (above + this.#area.height + SLACK) / unit].map(Math.floor) as [number, number, number, number];
    beginToPaint(handle.module);
    let frame = handle.frame(...clip);
    if (!frame) return;
    this.#layOut(frame, unit, side, top);
    // Who reads a formula begins at its start.
    const isWanted = this.#owner.hasFocus && (this.wantsCaret || has(frame, Flag.reveal));
    const reveal = !isWanted ? null : has(frame, Flag.reveal) ? revealOf(frame) : caretOf(frame);
    this.wantsCaret &&= !isWanted;
    const isMoved = reveal && this.#reveal(reveal, unit, side, top);
    const { width, height } = this.#area;
    const isBeyond = this.#offset.x + (clip[2] * unit) < width || this.#offset.y + clip[3] * unit < height;
    // What has come into sight was not asked for.
    if (isMoved || isBeyond) frame = this.#getSeen(unit) ?? frame;
    this.onpaint(this.#draw(frame));
  }

  /** Gives the formula its room. */
  #layOut(frame: FrameWords, unit: number, side: number, top: number): void {
    const { sizer, strut, scroller } = this.#owner.parts;
    const width = Math.ceil(widthOf(frame) * unit + 2 * side), height = Math.ceil(heightOf(frame) * unit + 2 * top);
    this.#content = { width, height };
    const room = { width: roomFor(width, this.#room.width, this.#area.width), height: roomFor(height, this.#room.height, this.#area.height) };
    if (room.width !== this.#room.width) sizer.style.width = `${room.width}px`;
    if (room.height !== this.#room.height) sizer.style.height = `${room.height}px`;
    this.#room = room;
    this.#area = { width: scroller.clientWidth, height: scroller.clientHeight };
    const free = Math.max(0, Math.floor((this.#area.height - height) / 2));
    this.#offset = { x: side - scroller.scrollLeft, y: top + free - scroller.scrollTop };
    const rows = Math.round(top + free + baselineOf(frame) * unit);
    if (rows !== this.#rows) strut.style.height = `${this.#rows = rows}px`;
  }

  /** Brings a box into sight; true when that moved the formula. */
  #reveal([left, top, right, bottom]: Box, unit: number, side: number, above: number): boolean {
    const { scroller } = this.#owner.parts;
    const { width, height } = this.#area;
    if (this.#content.width <= width && this.#content.height <= height) return false;
    const shift = (low: number, high: number, from: number, room: number) => {
      const margin = Math.min(REVEAL, Math.max(0, (room - (high - low)) / 2));
      return low - margin < from ? low - margin - from : high + margin > from + room ? high + margin - from - room : 0;
    };
    const { scrollLeft, scrollTop } = scroller;
    const x = shift(left * unit + side, right * unit + side, scrollLeft, width);
    const y = shift(top * unit + above, bottom * unit + above, scrollTop, height);
    if (!x && !y) return false;
    // Some way more, so that the next keys need not scroll again.
    const leap = Math.sign(x) * Math.min(LEAP, width / 8);
    scroller.scrollTo({ left: scrollLeft + x + leap, top: scrollTop + y, behavior: 'instant' });
    this.#offset = { x: this.#offset.x + scrollLeft - scroller.scrollLeft, y: this.#offset.y + scrollTop - scroller.scrollTop };
    return true;
  }

  /** Paints what has changed since it was painted last; returns the frame with what is painted of it. */
  #draw(frame: FrameWords): FrameWords {
    const { handle, hasFocus, parts: { canvas } } = this.#owner;
    const density = devicePixelRatio * this.#styles.zoom;
    const ratio = this.#ratio = this.#isPrinting ? Math.max(PRINTED, density) : density;
    const width = Math.ceil(this.#area.width * ratio), height = Math.ceil(this.#area.height * ratio);
    // In steps, since a new size takes new memory.
    if (width > canvas.width || height > canvas.height || canvas.width > 2 * width + 256 || canvas.height > 2 * height + 256) {
      canvas.width = Math.ceil(width / 128) * 128;
      canvas.height = Math.ceil(height / 32) * 32;
      this.#painted = null;
    }
    const cssWidth = `${canvas.width / ratio}px`, cssHeight = `${canvas.height / ratio}px`;
    if (canvas.style.width !== cssWidth) canvas.style.width = cssWidth;
    if (canvas.style.height !== cssHeight) canvas.style.height = cssHeight;
    // Little is painted at a time, for which handing it to the graphics processor costs more than it saves.
    const shown = this.#context ??= canvas.getContext('2d', { willReadFrequently: true });
    if (!shown || !handle) return frame;
    const at: Transform = {
      scale: this.#unit * ratio, x: Math.round(this.#offset.x * ratio), y: Math.round(this.#offset.y * ratio),
    };
    const fades = this.#findFades();
    const composes = has(frame, Flag.composes);
    const painted = [composes, at.scale, at.x, at.y, width, height, hasFocus, this.#isPrinting, this.#styles, this.fault, fades];
    const isWhole = !this.#painted?.every((one, i) => one === painted[i]);
    const marks = this.#findMarks(frame, at, hasFocus && !this.#isPrinting);
    const [from, to] = isWhole ? [-ALL, ALL] : this.#compareMarks(marks, composes);
    const changes = handle.changes(from, to);
    if (!changes) {
      this.#painted = null;
      return frame;
    }
    this.#painted = painted;
    this.#marks = marks;
    if (changes.left > changes.right) return changes.frame;
    // What is drawn smoothly is a little wider than it is.
    const left = isWhole ? 0 : Math.floor(changes.left * at.scale + at.x) - 2;
    const right = isWhole ? canvas.width : Math.ceil(changes.right * at.scale + at.x) + 2;
    // Fonts of a canvas of the page ask for its style, which must not be while it is printed.
    const beside = this.#isPrinting ? new OffscreenCanvas(canvas.width, canvas.height) : null;
    const context = beside?.getContext('2d') as unknown as CanvasRenderingContext2D | null ?? shown;
    context.save();
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.clearRect(left, 0, right - left, canvas.height);
    if (!isWhole) {
      context.beginPath();
      context.rect(left, 0, right - left, canvas.height);
      context.clip();
    }
    this.paintOn(context, at, changes.frame, handle.module, hasFocus && !this.#isPrinting);
    const reach = FADE * ratio;
    const isFading = fades & ((left < reach ? Side.left : 0) | (right > width - reach ? Side.right : 0) | Side.top | Side.bottom);
    if (isFading) this.#fade(context, isFading, width, height, reach);
    context.restore();
    if (beside) {
      shown.clearRect(0, 0, canvas.width, canvas.height);
      shown.drawImage(beside, 0, 0);
    }
    return changes.frame;
  }

  /** Where the caret is painted, and what is being composed is underlined; null: neither is. */
  #findMarks(frame: FrameWords, at: Transform, hasFocus: boolean): Box | null {
    const caret = this.#findCaret(frame, hasFocus), composed = has(frame, Flag.composes) ? composedOf(frame) : null;
    const one = caret ?? composed;
    if (!one) return null;
    const other = composed ?? one;
    // The caret is wider than its box, and what is beside it is paled.
    const spare = CARET * 12 + 2 + 2 / at.scale;
    return [Math.floor(Math.min(one[0], other[0]) - spare), one[1], Math.ceil(Math.max(one[2], other[2]) + spare), one[3]];
  }

  /** From where to where the marks are to be painted anew. */
  #compareMarks(now: Box | null, composes: boolean): [number, number] {
    const before = this.#marks;
    if (!before || !now) return before ? [before[0], before[2]] : now ? [now[0], now[2]] : [1, 0];
    if (!composes && now.every((edge, i) => edge === before[i])) return [1, 0];
    return [Math.min(before[0], now[0]), Math.max(before[2], now[2])];
  }

  #findCaret(frame: FrameWords, hasFocus: boolean): Box | null {
    const isSeen = hasFocus && this.#isCaretOn && !this.#owner.isLocked && !has(frame, Flag.selected);
    return this.drop ?? (isSeen ? caretOf(frame) : null);
  }

  /** Paints what is in the frame, also for the magnifier. */
  paintOn(context: CanvasRenderingContext2D, at: Transform, frame: FrameWords, module: Parameters<typeof paintFrame>[3],
          hasFocus: boolean): void {
    const style = this.#styles;
    if (hasFocus) {
      context.fillStyle = style.band;
      for (const [left, top, right, bottom] of bandsOf(frame)) fillBox(context, at, left, top - 0.5, right, bottom + 0.5);
    }
    if (this.fault && !this.#isPrinting) {
      const [left, top, right, bottom] = this.fault;
      // The box of what is missing is no wider than the caret.
      const spare = Math.max(1, ((bottom - top) / 2 - (right - left)) / 2);
      context.globalAlpha = 0.24;
      context.fillStyle = style.fault;
      context.setTransform(at.scale, 0, 0, at.scale, at.x, at.y);
      context.beginPath();
      context.roundRect(left - spare, top - 1, right - left + 2 * spare, bottom - top + 2, 2);
      context.fill();
      context.globalAlpha = 1;
    }
    context.fillStyle = context.strokeStyle = this.#isPrinting ? onPaper(context, style.ink) : style.ink;
    paintFrame(frame, context, at, module);
    if (has(frame, Flag.composes)) {
      const [left, , right, bottom] = composedOf(frame);
      fillBox(context, at, left, bottom, right, bottom + 0.7);
    }
    const caret = this.#findCaret(frame, hasFocus);
    if (caret) {
      const middle = (caret[0] + caret[2]) / 2, half = Math.max(CARET * 12, 1.4 * devicePixelRatio / at.scale) / 2;
      // Letters are paled beside it, so that it cannot be taken for a stroke of theirs.
      const pixel = 1 / at.scale;
      context.globalCompositeOperation = 'destination-out';
      context.globalAlpha = 0.7;
      fillBox(context, at, middle - half - pixel, caret[1], middle + half + pixel, caret[3]);
      context.globalCompositeOperation = 'source-over';
      context.globalAlpha = 1;
      context.fillStyle = style.caret;
      fillBox(context, at, middle - half, caret[1] - 0.6, middle + half, caret[3] + 0.6);
    }
  }

  /** At which sides the formula goes on. */
  #findFades(): number {
    const beyondX = this.#content.width - this.#area.width, beyondY = this.#content.height - this.#area.height;
    if (beyondX <= 1 && beyondY <= 1) return 0;
    const { scrollLeft: x, scrollTop: y } = this.#owner.parts.scroller;
    return (beyondX > 1 && x > 1 ? Side.left : 0) | (beyondX > 1 && x < beyondX - 1 ? Side.right : 0) |
      (beyondY > 1 && y > 1 ? Side.top : 0) | (beyondY > 1 && y < beyondY - 1 ? Side.bottom : 0);
  }

  /** Shows that the formula goes on. */
  #fade(context: CanvasRenderingContext2D, sides: number, width: number, height: number, reach: number): void {
    // In strips, which cost less than a gradient.
    const fadeOut = (x: number, y: number, across: number, down: number) => {
      for (let i = 0; i < STRIPS; ++i) {
        context.globalAlpha = 1 - (i + 0.5) / STRIPS;
        const at = Math.round(i * reach / STRIPS), thick = Math.round((i + 1) * reach / STRIPS) - at;
        if (across) context.fillRect(x + (across > 0 ? at : -at - thick), y, thick, height);
        else context.fillRect(x, y + (down > 0 ? at : -at - thick), width, thick);
      }
    };
    context.setTransform(1, 0, 0, 1, 0, 0);
    context.fillStyle = '#000';
    context.globalCompositeOperation = 'destination-out';
    if (sides & Side.left) fadeOut(0, 0, 1, 0);
    if (sides & Side.right) fadeOut(width, 0, -1, 0);
    if (sides & Side.top) fadeOut(0, 0, 0, 1);
    if (sides & Side.bottom) fadeOut(0, height, 0, -1);
    context.globalAlpha = 1;
    context.globalCompositeOperation = 'source-over';
  }

  /** The words of a frame without what is painted, at any time. */
  peek(): FrameWords | null {
    const frame = this.#owner.handle?.frame(0, 0, 1, 1) ?? null;
    // The next painting answers the request that this took.
    if (frame && has(frame, Flag.reveal)) this.wantsCaret = true;
    return frame;
  }

  /** What was painted last; its words are gone with the next call of the module. */
  get boxes(): { caret: Box; anchor: Box } | null {
    const frame = this.peek();
    return frame ? { caret: caretOf(frame), anchor: anchorOf(frame) } : null;
  }
  get scale(): number { return this.#unit; }
}
