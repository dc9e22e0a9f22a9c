// What opens at a field: the base of menu and palette.

import { hide, make, putAt, showAbove } from './dom.js';
import type { Owner } from './owner.js';

/** An element that is open at the field until it has served, or something else is pressed. */
export class Panel {
  readonly element: HTMLElement;
  readonly #owner: Owner;

  constructor(owner: Owner, attributes: Record<string, string>) {
    this.#owner = owner;
    this.element = make('div', { popover: 'manual', ...attributes });
    this.element.addEventListener('keydown', (event) => {
      if (event.key === 'Escape') {
        event.preventDefault();
        event.stopPropagation();
        this.close(true);
      } else this.#onKey(event);
    });
  }

  open(at: DOMRectReadOnly, put = () => putAt(this.element, at, 6)): void {
    if (!this.element.isConnected) this.#owner.root.append(this.element);
    showAbove(this.element);
    put();
    document.addEventListener('pointerdown', this.#outside, true);
  }

  close(toField = false): void {
    document.removeEventListener('pointerdown', this.#outside, true);
    hide(this.element);
    if (toField) this.#owner.parts.input.focus({ preventScroll: true });
  }

  get isOpen(): boolean { return this.element.isConnected && !this.element.hidden; }

  readonly #outside = (event: Event) => {
    if (!event.composedPath().includes(this.element)) this.close();
  };

  /** Arrows go from button to button. */
  #onKey(event: KeyboardEvent): void {
    const buttons = [...this.element.querySelectorAll<HTMLElement>('button:enabled, input')];
    const now = this.#owner.root.activeElement as HTMLElement | null;
    const at = now ? buttons.indexOf(now) : -1;
    const isText = now?.localName === 'input';
    let to = -1;
    if (event.key === 'ArrowRight' && !isText) to = at + 1;
    else if (event.key === 'ArrowLeft' && !isText) to = at - 1;
    else if (event.key === 'Home' && !isText) to = 0;
    else if (event.key === 'End' && !isText) to = buttons.length - 1;
    else if (event.key === 'ArrowDown' || event.key === 'ArrowUp') {
      const step = event.key === 'ArrowDown' ? 1 : -1;
      const box = now?.getBoundingClientRect();
      to = at + step;
      // The nearest of the next line.
      while (box && buttons[to] && Math.abs(buttons[to]!.offsetTop - now!.offsetTop) < 4 && buttons[to]!.offsetParent === now!.offsetParent) to += step;
      const line = buttons[to]?.offsetTop;
      const distance = (one: HTMLElement) => Math.abs(one.getBoundingClientRect().left - box!.left);
      for (let i = to; box && buttons[i] && Math.abs(buttons[i]!.offsetTop - line!) < 4; i += step) {
        if (distance(buttons[i]!) < distance(buttons[to]!)) to = i;
      }
    } else return;
    event.preventDefault();
    buttons[Math.max(0, Math.min(to, buttons.length - 1))]?.focus();
  }
}
