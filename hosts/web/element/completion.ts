// The list of names that a backslash opens, or a pause in typing.

import { hide, keepFocus, make, putAt, setAttribute, showAbove } from './dom.js';
import { Flag, has, type Box, type FrameWords } from './frame.js';
import type { Owner } from './owner.js';
import { paintPicture } from './painter.js';

const PICTURE = { width: 46, height: 30, zoom: 1.2 };
/** More are reached by typing on. */
const MOST = 60;

export class CompletionList {
  readonly #owner: Owner;
  #list: HTMLElement | null = null;
  #entries: readonly { title: string; shortcut: string; picture: string }[] = [];
  #key = '';
  #kind = 0;
  #current = -1;

  constructor(owner: Owner) { this.#owner = owner; }

  get isOpen(): boolean { return this.#kind !== 0; }

  /** After each painting. */
  onPaint(frame: FrameWords): void {
    if (!has(frame, Flag.completes) || !this.#owner.hasFocus) return this.close();
    const completion = this.#owner.handle!.completion();
    if (completion.kind === 0) return this.close();
    this.#kind = completion.kind;
    this.#current = completion.current;
    this.#entries = completion.entries.slice(0, MOST);
    this.#show();
    putAt(this.#list!, this.#owner.shown.toWindow(completion.box as unknown as Box), 6);
  }

  close(): void {
    if (!this.isOpen) return;
    this.#kind = 0;
    this.#key = '';
    if (this.#list) hide(this.#list);
    const { input } = this.#owner.parts;
    for (const name of ['aria-controls', 'aria-activedescendant', 'aria-autocomplete']) setAttribute(input, name, null);
  }

  /** Keys that are for the list while it is open. */
  takeKey(chord: string): boolean {
    const { handle } = this.#owner;
    if (!this.isOpen || !handle) return false;
    const isCommand = this.#kind === 1, accepts = isCommand || this.#current >= 0;
    const run = (name: string) => {
      this.#owner.runCommand(name, 'insertReplacementText');
      return true;
    };
    switch (chord) {
      case 'Escape': return run('drop-selection');
      case 'Down': return run('down');
      case 'Up': return accepts && run('up');
      case 'Ctrl+Z': return isCommand && run('undo');
      case 'Tab': case 'Enter':
        if (accepts) this.#accept(this.#current);
        return accepts;
      default: return false;
    }
  }

  #accept(number: number): void {
    this.#owner.act('insertReplacementText', this.#entries[number]?.title ?? null, (handle) => handle.accept(number));
  }

  #show(): void {
    const { handle, parts: { input }, root } = this.#owner;
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
    const key = this.#entries.map(({ title }) => title).join('\n');
    if (key !== this.#key || !this.#entries.length) {
      this.#key = key;
      const rows = this.#entries.map((entry, i) => {
        const picture = make('canvas', { 'aria-hidden': 'true' });
        picture.style.width = `${PICTURE.width}px`;
        picture.style.height = `${PICTURE.height}px`;
        const row = make('div', { class: 'option', part: 'completion', id: `completion-${i}`, role: 'option' }, picture,
          make('span', {}, entry.title), make('span', { class: 'typed' }, entry.shortcut));
        row.addEventListener('click', () => this.#accept(i));
        return row;
      });
      list.replaceChildren(...(rows.length ? rows
        : [make('div', { class: 'option', role: 'option', 'aria-disabled': 'true' }, 'Nothing of that name')]));
    }
    showAbove(list);
    list.scrollTop = this.#current < 0 ? 0 : list.scrollTop;
    this.#entries.forEach((entry, i) => {
      const row = list.children[i] as HTMLElement;
      const isCurrent = i === this.#current;
      const was = row.getAttribute('aria-selected');
      if (was === String(isCurrent)) return;
      row.setAttribute('aria-selected', String(isCurrent));
      const { width, height, zoom } = PICTURE;
      paintPicture(row.firstChild as HTMLCanvasElement, entry.picture, handle!.module, width, height, zoom, getComputedStyle(row).color);
      if (isCurrent) row.scrollIntoView({ block: 'nearest' });
    });
    setAttribute(input, 'aria-autocomplete', 'list');
    setAttribute(input, 'aria-controls', 'completions');
    setAttribute(input, 'aria-activedescendant', this.#current < 0 ? null : `completion-${this.#current}`);
  }
}
