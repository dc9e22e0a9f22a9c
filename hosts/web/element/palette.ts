// The palette of what can be inserted.

import { make, putBeside } from './dom.js';
import type { Owner } from './owner.js';
import { paintPicture } from './painter.js';
import { Panel } from './panel.js';
import type { Module } from './shared.js';

const PICTURE = { width: 44, height: 32, zoom: 1.15 };
/** How high it is at least before it goes above its line, in CSS pixels. */
const LEAST = 200;

/** Larger tables grow by their own keys. */
const MOST_ROWS = 6, MOST_COLUMNS = 6;

type Group = Module['palette'][number];
const palettes = new WeakMap<Module, Group[]>();

export function paletteOf(module: Module): Group[] {
  let found = palettes.get(module);
  if (!found) palettes.set(module, found = module.palette as Group[]);
  return found;
}

export class Palette {
  readonly #owner: Owner;
  readonly #panel: Panel;
  #search: HTMLInputElement | null = null;
  #found: HTMLElement | null = null;

  constructor(owner: Owner) {
    this.#owner = owner;
    this.#panel = new Panel(owner, { class: 'panel palette', part: 'palette', role: 'dialog', 'aria-label': 'Insert into the formula' });
  }

  get isOpen(): boolean { return this.#panel.isOpen; }

  open(at: DOMRectReadOnly): void {
    if (!this.#search) {
      const search = this.#search = make('input', { type: 'search', 'aria-label': 'Find', placeholder: 'Find: root, alpha, ≤ …' });
      this.#found = make('div');
      search.addEventListener('input', (event) => {
        event.stopPropagation();
        this.#fill(search.value.trim());
      });
      for (const name of ['beforeinput', 'change'] as const) search.addEventListener(name, (event) => event.stopPropagation());
      search.addEventListener('keydown', (event) => {
        if (event.key !== 'Enter') return;
        // Else the key would also press what is given the focus.
        event.preventDefault();
        this.#found!.querySelector<HTMLElement>('button:enabled')?.click();
      });
      this.#panel.element.append(search, this.#found);
    }
    this.#search.value = '';
    this.#panel.element.hidden = false;
    this.#fill('');
    this.#panel.open(at, () => {
      const { element } = this.#panel;
      element.style.maxBlockSize = '';
      // What is inserted is to be seen.
      putBeside(element, at, this.#owner.getBoundingClientRect(),
        { height: element.getBoundingClientRect().height, least: LEAST, floor: Infinity, isAbove: false });
    });
    this.#search.focus({ preventScroll: true });
  }

  close(): void { this.#panel.close(); }

  #fill(wanted: string): void {
    const { handle } = this.#owner;
    if (!handle) return;
    const { module } = handle;
    const enabled = handle.enabledEntries(), ranks = wanted ? module.search(wanted) : null;
    const colour = getComputedStyle(this.#panel.element).color;
    let number = 0;
    const found: { button: HTMLButtonElement; rank: number }[] = [];
    const sections = paletteOf(module).flatMap(({ title, entries }, group) => {
      const buttons = entries.map((entry, i) => {
        const rank = ranks ? ranks[number]! : 1;
        const isEnabled = enabled[number++]!;
        if (!rank) return null;
        const picture = make('canvas', { 'aria-hidden': 'true' });
        picture.style.width = `${PICTURE.width}px`;
        picture.style.height = `${PICTURE.height}px`;
        const button = make('button', { type: 'button', title: entry.toolTip, 'aria-label': entry.title, disabled: !isEnabled, part: 'palette-entry' }, picture);
        // What is scrolled to is painted.
        this.#whenSeen(button, () => paintPicture(picture, entry.picture, module, PICTURE.width, PICTURE.height, PICTURE.zoom, colour));
        button.addEventListener('click', () => {
          if (entry.table) return this.#askSize(entry.title, entry.table);
          this.#panel.close(true);
          this.#owner.act('insertText', entry.title, (field) => field.runEntry(group, i));
        });
        found.push({ button, rank });
        return button;
      }).filter((one) => one !== null);
      return buttons.length && !ranks ? [make('div', { class: 'title' }, title), make('div', { class: 'found' }, ...buttons)] : [];
    });
    if (ranks) {
      found.sort((one, other) => other.rank - one.rank);
      sections.push(found.length ? make('div', { class: 'found' }, ...found.map(({ button }) => button))
        : make('p', {}, 'Nothing of that name'));
    }
    this.#seen.disconnect();
    this.#found!.replaceChildren(...sections);
    for (const { button } of found) this.#seen.observe(button);
  }

  /** For a table that comes in any size. */
  #askSize(title: string, table: string): void {
    const size = make('p', { class: 'title', role: 'status' }, title);
    const grid = make('div', { class: 'sizes', role: 'group', 'aria-label': 'Rows and columns' });
    const cells = Array.from({ length: MOST_ROWS * MOST_COLUMNS }, (_, i) => {
      const rows = Math.floor(i / MOST_COLUMNS) + 1, columns = i % MOST_COLUMNS + 1;
      const cell = make('button', { type: 'button', part: 'palette-size', 'aria-label': `${rows} by ${columns}` });
      const show = () => {
        size.textContent = `${title}: ${rows} × ${columns}`;
        cells.forEach((one, k) => one.classList.toggle('in', k % MOST_COLUMNS < columns && k < rows * MOST_COLUMNS));
      };
      cell.addEventListener('pointerenter', show);
      cell.addEventListener('focus', show);
      cell.addEventListener('click', () => {
        this.#panel.close(true);
        this.#owner.act('insertText', title, (field) => field.insert(`${table}:${rows}x${columns}`));
      });
      return cell;
    });
    grid.append(...cells);
    this.#found!.replaceChildren(size, grid);
    // As the entry itself would be: two rows of two.
    cells[MOST_COLUMNS + 1]!.focus();
  }

  readonly #pictures = new WeakMap<Element, () => void>();
  readonly #seen = new IntersectionObserver((entries) => {
    for (const { isIntersecting, target } of entries) {
      if (!isIntersecting) continue;
      this.#pictures.get(target)?.();
      this.#seen.unobserve(target);
    }
  });
  #whenSeen(what: Element, act: () => void): void { this.#pictures.set(what, act); }
}
