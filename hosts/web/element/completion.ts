// The names that a backslash offers, or a pause in typing: their keys, and what is shown of them.

import { Flag, has, type Box, type FrameWords } from './frame.js';
import type { Owner } from './owner.js';
import type { Panels } from './panels.js';

export interface Completion {
  readonly title: string;
  readonly shortcut: string;
  /** In tree notation. */
  readonly picture: string;
}

/** More are reached by typing on. */
const MOST = 60;
/** `kind` of a completion. */
const NONE = 0, COMMAND = 1;

export class Completions {
  readonly #owner: Owner;
  readonly #panels: Panels;
  #entries: readonly Completion[] = [];
  #kind = NONE;
  #current = -1;

  constructor(owner: Owner, panels: Panels) {
    this.#owner = owner;
    this.#panels = panels;
  }

  /** After each painting. */
  onPaint(frame: FrameWords): void {
    if (!has(frame, Flag.completes) || !this.#owner.hasFocus) return this.close();
    this.#read();
    if (this.#kind === NONE) return this.close();
    this.#panels.use((set) => {
      if (this.#kind !== NONE) set.completions.show(this.#entries, this.#current, this.#box, (number) => this.#accept(number));
    });
  }

  #box: Box = [0, 0, 0, 0];

  #read(): void {
    const { kind, current, entries, box } = this.#owner.handle!.completion();
    this.#kind = kind;
    this.#current = current;
    this.#entries = entries.slice(0, MOST);
    this.#box = box as unknown as Box;
  }

  close(): void {
    this.#kind = NONE;
    this.#panels.set?.completions.close();
  }

  /** Keys that are for the list while it is open. */
  takeKey(chord: string): boolean {
    const { handle } = this.#owner;
    if (!handle || !/^(Escape|Down|Up|Ctrl\+Z|Tab|Enter)$/.test(chord)) return false;
    // Keys can be faster than the painting.
    this.#read();
    if (this.#kind === NONE) return false;
    const isCommand = this.#kind === COMMAND, accepts = isCommand || this.#current >= 0;
    const run = (name: string) => {
      this.#owner.runCommand(name, 'insertReplacementText');
      return true;
    };
    switch (chord) {
      case 'Escape': return run('drop-selection');
      case 'Down': return run('down');
      case 'Up': return accepts && run('up');
      case 'Ctrl+Z': return isCommand && run('undo');
      default:
        if (accepts) this.#accept(this.#current);
        return accepts;
    }
  }

  #accept(number: number): void {
    this.#owner.act('insertReplacementText', this.#entries[number]?.title ?? null, (handle) => handle.accept(number));
  }
}
