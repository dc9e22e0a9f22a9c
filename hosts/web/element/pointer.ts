// Mouse, pen and touch: placing the caret, and selecting.

import { bandsOf, Flag, has, type FrameWords } from './frame.js';
import type { Owner } from './owner.js';
import type { Panels } from './panels.js';
import type { View } from './view.js';

const AGAIN = 500;  // ms between the presses of a double click
const NEAR = 8;  // CSS pixels
const LONG = 450;  // ms

export class Pointer {
  /** Called when the field has been touched or clicked: true by a finger. */
  onpress: (isTouch: boolean) => void = () => undefined;
  onlongpress: (x: number, y: number) => void = () => undefined;
  readonly #owner: Owner;
  readonly #view: View;
  readonly #panels: Panels;
  #clicks = 0;
  #last = { time: 0, x: 0, y: 0 };
  #isSelecting = false;
  #pressed: { x: number; y: number; pointer: number } | null = null;
  #scrolling = 0;
  #long = 0;
  #isTouch = false;

  constructor(owner: Owner, view: View, panels: Panels) {
    this.#owner = owner;
    this.#view = view;
    this.#panels = panels;
    const { scroller } = owner.parts;
    scroller.addEventListener('pointerdown', (event) => this.#onDown(event));
    scroller.addEventListener('pointermove', (event) => this.#onMove(event));
    scroller.addEventListener('pointerup', (event) => this.#onUp(event));
    scroller.addEventListener('pointercancel', () => this.stop());
    // The focus stays in the hidden control.
    scroller.addEventListener('mousedown', (event) => { if (!scroller.draggable) event.preventDefault(); });
  }

  #onDown(event: PointerEvent): void {
    const { handle, parts: { scroller } } = this.#owner;
    if (!handle || event.button !== 0 || this.#owner.matches(':disabled')) return;
    const isTouch = this.#isTouch = event.pointerType === 'touch';
    const { clientX: x, clientY: y, timeStamp: time } = event;
    const isAgain = time - this.#last.time < AGAIN && Math.hypot(x - this.#last.x, y - this.#last.y) < NEAR * (isTouch ? 3 : 1);
    this.#clicks = isAgain ? Math.min(this.#clicks + 1, 4) : 1;
    this.#last = { time, x, y };
    this.#pressed = { x, y, pointer: event.pointerId };
    if (isTouch) {
      // A finger may be about to scroll; a tap tells itself at its end.
      this.#long = window.setTimeout(() => this.#onLong(x, y), LONG);
      return;
    }
    scroller.draggable = this.#clicks === 1 && !event.shiftKey && this.#isOverSelection(x, y);
    if (scroller.draggable) return;
    this.onpress(false);
    this.#isSelecting = true;
    scroller.setPointerCapture(event.pointerId);
    this.#press(x, y, event.shiftKey);
  }

  #press(x: number, y: number, extend: boolean): void {
    const at = this.#owner.shown.toUnits(x, y);
    this.#owner.act('', null, (handle) => handle.pointerDown(...at, this.#clicks, extend));
  }

  #onMove(event: PointerEvent): void {
    const { clientX: x, clientY: y } = event;
    if (this.#isTouch && this.#pressed && Math.hypot(x - this.#pressed.x, y - this.#pressed.y) > NEAR) {
      clearTimeout(this.#long);
      this.#pressed = null;
    }
    if (this.#isSelecting) this.#drag(x, y);
  }

  /** The farther outside the pointer is, the faster the formula scrolls. */
  #drag(x: number, y: number): void {
    clearInterval(this.#scrolling);
    const area = this.#owner.parts.scroller.getBoundingClientRect();
    const beyond = (at: number, low: number, high: number) => at < low ? at - low : at > high ? at - high : 0;
    const dx = beyond(x, area.left, area.right), dy = beyond(y, area.top, area.bottom);
    const move = () => {
      const at = this.#owner.shown.toUnits(x - dx, y - dy);
      this.#owner.act('', null, (handle) => handle.pointerMove(...at));
    };
    if (dx || dy) {
      this.#scrolling = window.setInterval(() => {
        this.#owner.parts.scroller.scrollBy({ left: dx / 3, top: dy / 3, behavior: 'instant' });
        this.#view.paint();
        move();
      }, 40);
    }
    move();
  }

  #onUp(event: PointerEvent): void {
    const pressed = this.#pressed, wasDragged = this.#owner.parts.scroller.draggable;
    this.stop();
    if (this.#isTouch ? !pressed : !wasDragged) return;
    this.onpress(this.#isTouch);
    this.#press(event.clientX, event.clientY, false);
    this.#owner.handle?.pointerUp(0, 0);
    this.#view.paintSoon();
  }

  /** What is being pressed is no press of this field any more. */
  stop(): void {
    clearTimeout(this.#long);
    clearInterval(this.#scrolling);
    this.#pressed = null;
    this.#owner.parts.scroller.draggable = false;
    if (this.#isSelecting) this.#owner.handle?.pointerUp(0, 0);
    this.#isSelecting = false;
  }

  #onLong(x: number, y: number): void {
    this.stop();
    this.#clicks = 2;
    this.onpress(true);
    this.#press(x, y, false);
    this.#owner.handle?.pointerUp(0, 0);
    this.onlongpress(x, y);
  }

  #isOverSelection(x: number, y: number): boolean {
    const frame = this.#view.peek();
    if (!frame || !has(frame, Flag.selected) || !this.#owner.hasFocus) return false;
    const [at, row] = this.#owner.shown.toUnits(x, y);
    return bandsOf(frame).some(([left, top, right, bottom]) => at >= left && at <= right && row >= top && row <= bottom);
  }

  // ---- Handles

  /** After each painting. */
  onPaint(frame: FrameWords): void {
    if (!this.#isTouch || !this.#owner.hasFocus || this.#owner.matches(':disabled')) return this.hideHandles();
    const { set } = this.#panels;
    // A frame is gone with the next call of the module.
    if (set) set.handles.show(frame); else this.#panels.use(() => this.#view.paintSoon());
  }

  /** Typing takes them away until the next touch. */
  hideHandles(): void {
    this.#isTouch = false;
    this.#panels.set?.handles.hide();
  }
}
