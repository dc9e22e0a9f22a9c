// What the parts of a field know of the element that they belong to.

import type { FormulaHandle } from '../module/zolt_module.mjs';
import type { FrameWords } from './frame.js';
import type { Parts } from './look.js';
import type { Module } from './shared.js';

/** Of a formula, or of a text that was given: what is to blame, and why. */
export type { Fault } from '../module/zolt_module.mjs';

export interface Owner extends HTMLElement {
  readonly parts: Parts;
  /** The root of the parts. */
  readonly root: ShadowRoot;
  /** Null until the module is there. */
  readonly handle: FormulaHandle | null;
  /** It may be read, but not changed. */
  readonly isLocked: boolean;
  /** Does what a person asks for: tells the page before and after, and paints. True: it had an effect. */
  act(inputType: string, data: string | null, action: (handle: FormulaHandle) => boolean): boolean;
  /** The same for a command, by name or number. */
  runCommand(command: string | number, inputType?: string): boolean;
  readonly hasFocus: boolean;
  /** Says it to those who listen. */
  say(words: string): void;
  /** Copies or cuts the selection through the clipboard of the system, or pastes from it. */
  useClipboard(act: 'copy' | 'cut' | 'paste'): void;
  /** What an act of a part has changed besides the formula is to be shown. */
  refresh(): void;
  readonly shown: Shown;
}

/** Where things are in the window, by what was painted last. */
export interface Shown {
  /** The words of a frame without what is painted. */
  peek(): FrameWords | null;
  /** A point of the window in units of the layout. */
  toUnits(x: number, y: number): [number, number];
  /** A box of the layout in the window. */
  toWindow(box: readonly [number, number, number, number]): DOMRect;
}

/** The commands of a module by name and by key. */
export interface Commands {
  readonly list: readonly { name: string; title: string; help: string; keys: string; modifies: boolean }[];
  readonly byName: ReadonlyMap<string, number>;
  readonly byChord: ReadonlyMap<string, number>;
}

const known = new WeakMap<Module, Commands>();

export function commandsOf(module: Module): Commands {
  let found = known.get(module);
  if (!found) {
    const list = module.commands;
    const chords = list.flatMap(({ keys }, i) => keys.split(', ').filter(Boolean).map((chord) => [chord, i] as const));
    found = { list, byName: new Map(list.map(({ name }, i) => [name, i])), byChord: new Map(chords) };
    known.set(module, found);
  }
  return found;
}
