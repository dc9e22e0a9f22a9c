// Mouse, pen and touch: placing the caret, selecting, dragging what is selected, and the handles for fingers.

import type { Copies } from './clipboard.js';
import { make } from './dom.js';
import { anchorOf, bandsOf, caretOf, Flag, has, type Box, type FrameWords } from './frame.js';
import { commandsOf, type Owner } from './owner.js';
import type { View } from './view.js';

const AGAIN = 500;  // ms between the presses of a double click
const NEAR = 8;  // CSS pixels
const LONG = 450;  // ms
const GLASS = { width: 168, height: 84, zoom: 1.6, gap: 34 };

export class Pointer {
  /** Called when the field has been touched or clicked: true by a finger. */
  onpress: (isTouch: boolean) => void = () => undefined;
  onlongpress: (x: number, y: number) => void = () => undefined;
  readonly #owner: Owner;
  readonly #view: View;
  #clicks = 0;
  #last = { time: 0, x: 0, y: 0 };
  #isSelecting = false;
  #pressed: { x: number; y: number; pointer: number } | null = null;
  #scrolling = 0;
  #long = 0;
  #isTouch = false;
  #handles: { anchor: HTMLElement; caret: HTMLElement } | null = null;
  #glass: HTMLCanvasElement | null = null;

  constructor(owner: Owner, view: View) {
    this.#owner = owner;
    this.#view = view;
    const { scroller } = owner.parts;
    scroller.addEventListener('pointerdown', (event) => this.#onDown(event));
    scroller.addEventListener('pointermove', (event) => this.#onMove(event));
    scroller.addEventListener('pointerup', (event) => this.#onUp(event));
    scroller.addEventListener('pointercancel', () => this.#stop());
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
    this.#stop();
    if (this.#isTouch ? !pressed : !wasDragged) return;
    this.onpress(this.#isTouch);
    this.#press(event.clientX, event.clientY, false);
    this.#owner.handle?.pointerUp(0, 0);
    this.#view.paintSoon();
  }

  #stop(): void {
    clearTimeout(this.#long);
    clearInterval(this.#scrolling);
    this.#pressed = null;
    this.#owner.parts.scroller.draggable = false;
    if (this.#isSelecting) this.#owner.handle?.pointerUp(0, 0);
    this.#isSelecting = false;
  }

  #onLong(x: number, y: number): void {
    this.#stop();
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
    const isShown = this.#isTouch && this.#owner.hasFocus && !this.#owner.matches(':disabled');
    if (!isShown) return this.hideHandles();
    const { caret, anchor } = this.#handles ??= { anchor: this.#makeHandle('anchor'), caret: this.#makeHandle('caret') };
    const isSelected = has(frame, Flag.selected), isBackward = caretOf(frame)[0] < anchorOf(frame)[0];
    // The handles of a selection hang outwards, so that those of a narrow one are apart.
    caret.dataset.side = !isSelected ? '' : isBackward ? 'left' : 'right';
    anchor.dataset.side = isBackward ? 'right' : 'left';
    this.#place(caret, caretOf(frame));
    this.#place(anchor, isSelected ? anchorOf(frame) : null);
  }

  /** Typing takes them away until the next touch. */
  hideHandles(): void {
    this.#isTouch = false;
    if (this.#handles) this.#handles.anchor.hidden = this.#handles.caret.hidden = true;
  }

  #place(handle: HTMLElement, box: Box | null): void {
    const frame = this.#owner.parts.frame.getBoundingClientRect();
    const at = box && this.#owner.shown.toWindow(box);
    const x = at ? (at.left + at.right) / 2 - frame.left : -1;
    handle.hidden = !at || x < -2 || x > frame.width + 2;
    if (at) handle.style.transform = `translate(${x}px, ${Math.min(at.bottom - frame.top, frame.height)}px)`;
  }

  #makeHandle(end: 'anchor' | 'caret'): HTMLElement {
    const handle = make('div', { class: 'handle', part: 'handle', 'aria-hidden': 'true', hidden: true });
    handle.style.left = handle.style.top = '0';
    let grip: { x: number; y: number } | null = null;
    handle.addEventListener('pointerdown', (event) => {
      event.preventDefault();
      event.stopPropagation();
      const frame = this.#view.peek();
      if (!frame) return;
      const box = this.#owner.shown.toWindow(end === 'caret' ? caretOf(frame) : anchorOf(frame));
      // The finger stays below the place that it moves.
      grip = { x: (box.left + box.right) / 2 - event.clientX, y: (box.top + box.bottom) / 2 - event.clientY };
      handle.setPointerCapture(event.pointerId);
    });
    handle.addEventListener('pointermove', (event) => {
      if (!grip) return;
      const x = event.clientX + grip.x, y = event.clientY + grip.y;
      const at = this.#owner.shown.toUnits(x, y);
      const isSelected = !this.#handles!.anchor.hidden;
      this.#owner.act('', null, (field) => isSelected ? field.dragEnd(end, ...at)
        : field.pointerDown(...at, 1, false) && field.pointerUp(...at));
      this.#magnify(end);
    });
    for (const name of ['pointerup', 'pointercancel'] as const) {
      handle.addEventListener(name, () => {
        grip = null;
        if (this.#glass) this.#glass.hidden = true;
      });
    }
    this.#owner.parts.frame.append(handle);
    return handle;
  }

  /** Shows the place, which the finger covers, larger and above it. */
  #magnify(end: 'anchor' | 'caret'): void {
    const field = this.#owner.handle;
    let frame = this.#view.peek();
    if (!field || !frame) return;
    const box = end === 'caret' ? caretOf(frame) : anchorOf(frame);
    const glass = this.#glass ??= make('canvas', { class: 'magnifier', part: 'magnifier', 'aria-hidden': 'true' });
    if (!glass.isConnected) this.#owner.root.append(glass);
    glass.hidden = false;
    const ratio = devicePixelRatio, { width, height, zoom, gap } = GLASS;
    glass.width = width * ratio;
    glass.height = height * ratio;
    glass.style.width = `${width}px`;
    glass.style.height = `${height}px`;
    const place = this.#owner.shown.toWindow(box);
    const middle = (place.left + place.right) / 2;
    glass.style.left = `${Math.max(4, Math.min(middle - width / 2, document.documentElement.clientWidth - width - 4))}px`;
    glass.style.top = `${place.top - height - gap < 4 ? place.bottom + 2 * gap : place.top - height - gap}px`;
    const scale = this.#view.scale * zoom;
    const x = (box[0] + box[2]) / 2, y = (box[1] + box[3]) / 2;
    const reach = [width / 2 / scale + 4, height / 2 / scale + 4] as const;
    frame = field.frame(...([x - reach[0], y - reach[1], x + reach[0], y + reach[1]].map(Math.floor) as [number, number, number, number]));
    const context = glass.getContext('2d');
    if (!context || !frame) return;
    const at = { scale: scale * ratio, x: glass.width / 2 - x * scale * ratio, y: glass.height / 2 - y * scale * ratio };
    this.#view.paintOn(context, at, frame, field.module, true);
  }

  // ---- Dragging what is selected

  listenToDrags(copies: Copies): void {
    const { scroller } = this.#owner.parts;
    let isFromHere = false;
    const view = this.#view;
    const nearest = (event: DragEvent) => this.#owner.shown.toUnits(event.clientX, event.clientY);
    scroller.addEventListener('dragstart', (event) => {
      if (!event.dataTransfer || !copies.write(event.dataTransfer, 'copy')) return event.preventDefault();
      event.dataTransfer.effectAllowed = this.#owner.isLocked ? 'copy' : 'copyMove';
      isFromHere = true;
    });
    scroller.addEventListener('dragend', (event) => {
      const isGone = isFromHere && event.dataTransfer?.dropEffect === 'move' && !this.#owner.isLocked;
      isFromHere = false;
      this.#stop();
      if (isGone) this.#owner.act('deleteByDrag', null, (handle) => handle.run(commandsOf(handle.module).byName.get('delete-left')!));
    });
    scroller.addEventListener('dragover', (event) => {
      if (this.#owner.isLocked || !event.dataTransfer || !copies.canRead(event.dataTransfer)) return;
      event.preventDefault();
      event.dataTransfer.dropEffect = isFromHere && !event.ctrlKey ? 'move' : event.dataTransfer.effectAllowed === 'move' ? 'move' : 'copy';
      view.drop = this.#owner.handle?.findPlace(...nearest(event)) as Box | null ?? null;
      view.paintSoon();
    });
    scroller.addEventListener('dragleave', () => {
      view.drop = null;
      view.paintSoon();
    });
    scroller.addEventListener('drop', (event) => {
      view.drop = null;
      if (this.#owner.isLocked || !event.dataTransfer) return;
      event.preventDefault();
      const at = nearest(event), data = event.dataTransfer;
      const isMoved = isFromHere && data.dropEffect === 'move';
      // The end of the drag must not delete what has been moved.
      if (isMoved) isFromHere = false;
      this.onpress(false);
      this.#owner.act('insertFromDrop', null, (handle) => {
        if (isMoved) return handle.moveSelection(...at);
        handle.pointerDown(...at, 1, false);
        handle.pointerUp(...at);
        return copies.read(data);
      });
    });
  }
}
