// A keyboard on the screen with the keys of formulas, for fingers and pointers.

import { hide, keepFocus, make, showAbove } from './dom.js';
import { commandsOf, type Owner } from './owner.js';
import { paletteOf } from './palette.js';
import { paintPicture } from './painter.js';

/** A key: what it types; or what it shows, then `:` and the title of an entry of the palette; or `!` and a command. */
type Layout = readonly (readonly string[])[];

const layouts: Record<string, Layout> = {
  '123': [
    ['x', 'y', '7', '8', '9', '/', '!delete-left'],
    ['a', 'b', '4', '5', '6', '*', '^'],
    ['(', ')', '1', '2', '3', '-', '√'],
    ['=', ',', '0', '.', 'π', '+', '!left', '!right'],
  ],
  'f(x)': [
    ['sin(', 'cos(', 'tan(', 'ln(', 'log(', '!delete-left'],
    ['²', '^', '√', '|', '!', '°', 'e'],
    ['∫', '∑', 'diff(', 'lim(', '∞', '<', '>'],
    ['matrix(', '≤', '≥', '≠', '±', '→', '!left', '!right'],
  ],
  abc: [
    [...'qwertyuiop'], [...'asdfghjkl'], ['!shift', ...'zxcvbnm', '!delete-left'],
    ['(', ')', '_', '!space', ',', '=', '!left', '!right'],
  ],
  αβγ: [[...'θωερτψυιοπ'], [...'ασδφγηξκλ'], ['!shift', ...'ζχβνμ', '!delete-left'], ['∞', '∂', '∇', '∈', '∪', '∩', '!left', '!right']],
};

/** Pictures for keys whose text says too little, in tree notation. */
const faces: Record<string, string> = {
  '/': '["", /<[""] ; [""]>, ""]', '√': '["", sqrt<[""]>, ""]', '^': '["x", P[""], ""]', '²': '["x", P["2"], ""]',
};
const commandFaces: Record<string, readonly [string, string]> = {
  'delete-left': ['⌫', 'Delete left'], left: ['←', 'Left'], right: ['→', 'Right'], shift: ['⇧', 'Capital letters'], space: ['␣', 'Space'],
};
const titles: Record<string, string> = {
  '/': 'Fraction', '√': 'Square root', '^': 'Power', '²': 'Square', '*': 'Times', '-': 'Minus', '|': 'Absolute value', '∫': 'Integral',
  '∑': 'Sum', '!': 'Factorial', 'diff(': 'Derivative', 'lim(': 'Limit', 'matrix(': 'Matrix',
};
const labels: Record<string, string> = { '*': '·', '-': '−', 'diff(': 'd/dx', 'lim(': 'lim', 'matrix(': '▦', '|': '|x|' };

export class Keyboard {
  readonly #owner: Owner;
  #board: HTMLElement | null = null;
  #rows: HTMLElement | null = null;
  #tabs: HTMLElement | null = null;
  #layout = '123';
  #isShifted = false;
  #repeating = 0;

  constructor(owner: Owner) { this.#owner = owner; }

  get isOpen(): boolean { return this.#board !== null && !this.#board.hidden; }
  /** Where it begins in the window. */
  get top(): number { return this.isOpen ? this.#board!.getBoundingClientRect().top : Infinity; }

  /** The keyboard of the device stays away while this one is there. */
  open(): void {
    if (!this.#owner.handle || this.#owner.isLocked) return;
    this.#board ??= this.#make();
    if (!this.#board.isConnected) this.#owner.root.append(this.#board);
    this.#owner.parts.input.inputMode = 'none';
    showAbove(this.#board);
    this.#fill();
    this.#owner.parts.input.focus({ preventScroll: true });
    const { bottom } = this.#owner.getBoundingClientRect(), top = innerHeight - this.#board.offsetHeight;
    if (bottom > top) scrollBy({ top: bottom - top + 12 });
    this.#owner.dispatchEvent(new CustomEvent('keyboard-toggle', { bubbles: true, composed: true, detail: { open: true } }));
  }

  close(): void {
    if (!this.isOpen) return;
    clearInterval(this.#repeating);
    hide(this.#board!);
    this.#owner.parts.input.inputMode = this.#owner.getAttribute('inputmode') ?? '';
    this.#owner.dispatchEvent(new CustomEvent('keyboard-toggle', { bubbles: true, composed: true, detail: { open: false } }));
  }

  #make(): HTMLElement {
    const board = make('div', { class: 'panel keyboard', part: 'keyboard', role: 'group', 'aria-label': 'Formula keyboard', popover: 'manual' });
    keepFocus(board);
    const tabs = this.#tabs = make('div', { class: 'tabs', role: 'tablist', 'aria-label': 'Keys' });
    for (const name of Object.keys(layouts)) {
      const tab = make('button', { type: 'button', role: 'tab' }, name);
      tab.addEventListener('click', () => {
        this.#layout = name;
        this.#fill();
      });
      tabs.append(tab);
    }
    const close = make('button', { type: 'button', class: 'close', 'aria-label': 'Close the formula keyboard' }, '▾');
    close.addEventListener('click', () => this.close());
    const top = make('div', { class: 'tabs' }, tabs, close);
    this.#rows = make('div', { class: 'panel-rows', role: 'tabpanel', 'aria-label': 'Keys' });
    this.#rows.style.display = 'grid';
    this.#rows.style.gap = '.3rem';
    board.append(top, this.#rows);
    return board;
  }

  #fill(): void {
    for (const tab of this.#tabs!.children) {
      const isChosen = tab.textContent === this.#layout;
      tab.setAttribute('aria-selected', String(isChosen));
      (tab as HTMLElement).tabIndex = isChosen ? 0 : -1;
    }
    this.#rows!.replaceChildren(...layouts[this.#layout]!.map((row) =>
      make('div', { class: 'row' }, ...row.map((key) => this.#makeKey(key)))));
  }

  #makeKey(key: string): HTMLButtonElement {
    const isCommand = key.length > 1 && key.startsWith('!');
    if (isCommand) return this.#makeCommand(key.slice(1));
    const text = this.#isShifted && key.length === 1 ? key.toUpperCase() : key;
    const label = labels[text] ?? text.replace(/(.)\($/, '$1');
    const button = make('button', { type: 'button', part: 'key', 'aria-label': titles[text] ?? label });
    const { module } = this.#owner.handle!;
    const tree = faces[text] ?? paletteOf(module).flatMap(({ entries }) => entries).find(({ title }) => title === text)?.picture;
    if (tree) {
      const picture = make('canvas', { 'aria-hidden': 'true' });
      picture.style.width = '40px';
      picture.style.height = '36px';
      button.append(picture);
      paintPicture(picture, tree, module, 40, 36, 1.35, getComputedStyle(this.#board!).color);
    } else button.append(label);
    button.addEventListener('click', () => this.#type(text));
    return button;
  }

  #type(text: string): void {
    this.#owner.act('insertText', text, (handle) => {
      // Key by key, so that all that typing does is done.
      let isDone = false;
      for (const character of text) isDone = handle.type(character) || isDone;
      return isDone;
    });
    if (!this.#isShifted) return;
    this.#isShifted = false;
    this.#fill();
  }

  #makeCommand(name: string): HTMLButtonElement {
    const [face, title] = commandFaces[name]!;
    const button = make('button', { type: 'button', part: 'key', class: 'wide', 'aria-label': title }, face);
    if (name === 'shift') {
      button.setAttribute('aria-pressed', String(this.#isShifted));
      button.addEventListener('click', () => {
        this.#isShifted = !this.#isShifted;
        this.#fill();
      });
    } else if (name === 'space') {
      button.addEventListener('click', () => this.#type(' '));
    } else {
      const act = () => this.#owner.runCommand(commandsOf(this.#owner.handle!.module).byName.get(name)!);
      button.addEventListener('click', act);
      // A key that is held goes on.
      button.addEventListener('pointerdown', () => {
        this.#repeating = window.setTimeout(() => { this.#repeating = window.setInterval(act, 70); }, 450);
      });
      for (const end of ['pointerup', 'pointercancel', 'pointerleave'] as const) {
        button.addEventListener(end, () => clearInterval(this.#repeating));
      }
    }
    return button;
  }
}
