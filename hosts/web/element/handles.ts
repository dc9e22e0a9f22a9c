// The handles that fingers move the caret and what is selected with, and the magnifier above them.

import { hide, make, moveTo, scaleOf, showAbove } from './dom.js';
import { anchorOf, caretOf, Flag, has, type Box, type FrameWords } from './frame.js';
import type { Owner } from './owner.js';
import type { View } from './view.js';

const GLASS = { width: 168, height: 84, zoom: 1.6, gap: 34 };

export class Handles {
  readonly #owner: Owner;
  readonly #view: View;
  #ends: { anchor: HTMLElement; caret: HTMLElement } | null = null;
  #glass: HTMLCanvasElement | null = null;

  constructor(owner: Owner, view: View) {
    this.#owner = owner;
    this.#view = view;
  }

  /** Puts them where the frame has the ends of what is selected, or else the caret. */
  show(frame: FrameWords): void {
    const { caret, anchor } = this.#ends ??= { anchor: this.#make('anchor'), caret: this.#make('caret') };
    const isSelected = has(frame, Flag.selected), isBackward = caretOf(frame)[0] < anchorOf(frame)[0];
    // The handles of a selection hang outwards, so that those of a narrow one are apart.
    caret.dataset.side = !isSelected ? '' : isBackward ? 'left' : 'right';
    anchor.dataset.side = isBackward ? 'right' : 'left';
    this.#place(caret, caretOf(frame));
    this.#place(anchor, isSelected ? anchorOf(frame) : null);
  }

  hide(): void {
    if (this.#ends) this.#ends.anchor.hidden = this.#ends.caret.hidden = true;
  }

  #place(handle: HTMLElement, box: Box | null): void {
    const field = this.#owner.parts.frame, frame = field.getBoundingClientRect(), scale = scaleOf(field);
    const at = box && this.#owner.shown.toWindow(box);
    const x = at ? (at.left + at.right) / 2 - frame.left : -1;
    handle.hidden = !at || x < -2 || x > frame.width + 2;
    if (at) handle.style.transform = `translate(${x / scale}px, ${Math.min(at.bottom - frame.top, frame.height) / scale}px)`;
  }

  #make(end: 'anchor' | 'caret'): HTMLElement {
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
      const isSelected = !this.#ends!.anchor.hidden;
      this.#owner.act('', null, (field) => isSelected ? field.dragEnd(end, ...at)
        : field.pointerDown(...at, 1, false) && field.pointerUp(...at));
      this.#magnify(end);
    });
    for (const name of ['pointerup', 'pointercancel'] as const) {
      handle.addEventListener(name, () => {
        grip = null;
        if (this.#glass) hide(this.#glass);
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
    const glass = this.#glass ??= make('canvas', { class: 'magnifier', part: 'magnifier', 'aria-hidden': 'true', popover: 'manual' });
    if (!glass.isConnected) this.#owner.root.append(glass);
    showAbove(glass);
    const ratio = devicePixelRatio, { width, height, zoom, gap } = GLASS;
    glass.width = width * ratio;
    glass.height = height * ratio;
    glass.style.width = `${width}px`;
    glass.style.height = `${height}px`;
    const place = this.#owner.shown.toWindow(box);
    const middle = (place.left + place.right) / 2;
    moveTo(glass, Math.max(4, Math.min(middle - width / 2, document.documentElement.clientWidth - width - 4)),
      place.top - height - gap < 4 ? place.bottom + 2 * gap : place.top - height - gap);
    const scale = this.#view.scale * zoom;
    const x = (box[0] + box[2]) / 2, y = (box[1] + box[3]) / 2;
    const reach = [width / 2 / scale + 4, height / 2 / scale + 4] as const;
    frame = field.frame(...([x - reach[0], y - reach[1], x + reach[0], y + reach[1]].map(Math.floor) as [number, number, number, number]));
    const context = glass.getContext('2d');
    if (!context || !frame) return;
    const at = { scale: scale * ratio, x: glass.width / 2 - x * scale * ratio, y: glass.height / 2 - y * scale * ratio };
    this.#view.paintOn(context, at, frame, field.module, true);
  }
}
