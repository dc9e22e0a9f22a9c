// The list of names that can be completed.

import type { Completion } from './completion.js';
import { hide, keepFocus, make, putAt, setAttribute, showAbove } from './dom.js';
import type { Box } from './frame.js';
import type { Owner } from './owner.js';
import { paintPicture } from './painter.js';

const PICTURE = { width: 46, height: 30, zoom: 1.2 };

export class CompletionList {
  readonly #owner: Owner;
  #list: HTMLElement | null = null;
  #key = '';
  #isOpen = false;

  constructor(owner: Owner) { this.#owner = owner; }

  /** Shows them below a box of the layout; `accept` is called with the number of the one that is clicked. */
  show(entries: readonly Completion[], current: number, box: Box, accept: (number: number) => void): void {
    const { handle, parts: { input }, root } = this.#owner;
    if (!handle) return;
    this.#isOpen = true;
    if (!this.#list) {
      this.#list = make('div', {
        class: 'panel completions', part: 'completions', id: 'completions', role: 'listbox', 'aria-label': 'Completions', popover: 'manual',
      });
      keepFocus(this.#list);
      // There is nothing in it that could have the focus, so that only the wheel scrolls it.
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
    putAt(list, this.#owner.shown.toWindow(box), 6);
  }

  close(): void {
    if (!this.#isOpen) return;
    this.#isOpen = false;
    this.#key = '';
    if (this.#list) hide(this.#list);
    const { input } = this.#owner.parts;
    for (const name of ['aria-controls', 'aria-activedescendant', 'aria-autocomplete']) setAttribute(input, name, null);
  }
}
