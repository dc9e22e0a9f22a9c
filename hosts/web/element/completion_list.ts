// The list of names that can be completed.

import type { Completion } from './completion.js';
import { hide, keepFocus, make, putBeside, scaleOf, setAttribute, showAbove } from './dom.js';
import type { Box } from './frame.js';
import type { Owner } from './owner.js';
import { paintPicture } from './painter.js';

const PICTURE = { width: 46, height: 30, zoom: 1.2 };
/** In rows: how high it is, and what it is at least before it goes above its line. */
const MOST = 8.7, LEAST = 4.7;

export class CompletionList {
  readonly #owner: Owner;
  #list: HTMLElement | null = null;
  #key = '';
  #isOpen = false;
  #isAbove = false;
  #box: Box = [0, 0, 0, 0];
  readonly #floor: () => number;

  /** `floor` tells where the window ends for it. */
  constructor(owner: Owner, floor: () => number) {
    this.#owner = owner;
    this.#floor = floor;
  }

  /** Shows them beside a box of the layout; `accept` is called with the number of the one that is clicked. */
  show(entries: readonly Completion[], current: number, box: Box, accept: (number: number) => void): void {
    const { handle, parts: { input }, root } = this.#owner;
    if (!handle) return;
    this.#box = box;
    if (!this.#list) {
      this.#list = make('div', {
        class: 'panel completions', part: 'completions', id: 'completions', role: 'listbox', 'aria-label': 'Completions', popover: 'manual',
      });
      keepFocus(this.#list);
      // There is nothing in it that could have the focus, so that only the wheel and fingers scroll it.
      this.#list.addEventListener('wheel', (event) => {
        event.preventDefault();
        this.#list!.scrollTop += event.deltaY;
      });
    }
    const list = this.#list;
    if (!list.isConnected) root.append(list);
    const key = entries.map(({ title }) => title).join('\n');
    if (key !== this.#key || !entries.length) {
      this.#key = key;
      const rows = entries.map((entry, i) => {
        const picture = make('canvas', { 'aria-hidden': 'true' });
        picture.style.width = `${PICTURE.width}px`;
        picture.style.height = `${PICTURE.height}px`;
        const row = make('div', { class: 'option', part: 'completion', id: `completion-${i}`, role: 'option' }, picture,
          make('span', {}, entry.title), make('span', { class: 'typed' }, entry.shortcut));
        row.addEventListener('click', () => accept(i));
        return row;
      });
      list.replaceChildren(...(rows.length ? rows
        : [make('div', { class: 'option', role: 'option', 'aria-disabled': 'true' }, 'Nothing of that name')]));
    }
    showAbove(list);
    if (!this.#isOpen) for (const name of ['scroll', 'resize']) addEventListener(name, this.#put, true);
    this.#isOpen = true;
    this.#put();
    list.scrollTop = current < 0 ? 0 : list.scrollTop;
    entries.forEach((entry, i) => {
      const row = list.children[i] as HTMLElement;
      const isCurrent = i === current;
      const was = row.getAttribute('aria-selected');
      if (was === String(isCurrent)) return;
      row.setAttribute('aria-selected', String(isCurrent));
      const { width, height, zoom } = PICTURE;
      paintPicture(row.firstChild as HTMLCanvasElement, entry.picture, handle.module, width, height, zoom, getComputedStyle(row).color);
      if (isCurrent) row.scrollIntoView({ block: 'nearest' });
    });
    setAttribute(input, 'aria-autocomplete', 'list');
    setAttribute(input, 'aria-controls', 'completions');
    setAttribute(input, 'aria-activedescendant', current < 0 ? null : `completion-${current}`);
  }

  /** Where the line is now, which moves with the page. */
  readonly #put = () => {
    const list = this.#list!;
    const row = list.firstElementChild!.getBoundingClientRect().height;
    const height = Math.min((list.scrollHeight + list.offsetHeight - list.clientHeight) * scaleOf(list), MOST * row);
    this.#isAbove = putBeside(list, this.#owner.shown.toWindow(this.#box), this.#owner.getBoundingClientRect(),
      { height, least: LEAST * row, floor: this.#floor(), isAbove: this.#isAbove });
  };

  close(): void {
    if (!this.#isOpen) return;
    this.#isOpen = this.#isAbove = false;
    for (const name of ['scroll', 'resize']) removeEventListener(name, this.#put, true);
    this.#key = '';
    if (this.#list) hide(this.#list);
    const { input } = this.#owner.parts;
    for (const name of ['aria-controls', 'aria-activedescendant', 'aria-autocomplete']) setAttribute(input, name, null);
  }
}
