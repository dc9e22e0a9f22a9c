// A sentence at the caret: why a key was refused.

import { hide, make, putAt, showAbove } from './dom.js';
import type { Owner } from './owner.js';

/** In ms, and for each letter: how long it takes to read. */
const SHOWN = 2500, LETTER = 50;

export class Note {
  readonly #owner: Owner;
  #note: HTMLElement | null = null;
  #hiding = 0;

  constructor(owner: Owner) { this.#owner = owner; }

  /** Below a box of the window, until it has been read. */
  show(sentence: string, at: DOMRectReadOnly): void {
    // Who listens is told as well, by the announcement.
    const note = this.#note ??= make('div', { class: 'panel note', part: 'note', 'aria-hidden': 'true', popover: 'manual' });
    if (!note.isConnected) this.#owner.root.append(note);
    note.textContent = `${sentence}.`;
    showAbove(note);
    putAt(note, at, 8);
    clearTimeout(this.#hiding);
    this.#hiding = window.setTimeout(() => this.close(), SHOWN + LETTER * sentence.length);
  }

  close(): void {
    clearTimeout(this.#hiding);
    if (this.#note && !this.#note.hidden) hide(this.#note);
  }
}
