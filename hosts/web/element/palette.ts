// The context menu, and the palette of what can be inserted.

import { hide, make, putAt, showAbove } from './dom.js';
import { commandsOf, type Owner } from './owner.js';
import { paintPicture } from './painter.js';
import type { Module } from './shared.js';

const PICTURE = { width: 44, height: 32, zoom: 1.15 };

type Group = Module['palette'][number];
const palettes = new WeakMap<Module, Group[]>();

export function paletteOf(module: Module): Group[] {
  let found = palettes.get(module);
  if (!found) palettes.set(module, found = module.palette as Group[]);
  return found;
}

/** An element that is open at the field until it has served, or something else is pressed. */
class Panel {
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

  open(at: DOMRectReadOnly): void {
    if (!this.element.isConnected) this.#owner.root.append(this.element);
    showAbove(this.element);
    putAt(this.element, at, 6);
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

// ---- Menu

export interface MenuActs {
  copyAs(notation: 'latex' | 'mathml' | 'png'): void;
  openPalette(at: DOMRectReadOnly): void;
  toggleKeyboard(): void;
}

export class Menu {
  readonly #owner: Owner;
  readonly #acts: MenuActs;
  readonly #panel: Panel;

  constructor(owner: Owner, acts: MenuActs) {
    this.#owner = owner;
    this.#acts = acts;
    this.#panel = new Panel(owner, { class: 'panel menu', part: 'menu', role: 'menu', 'aria-label': 'Formula' });
  }

  open(at: DOMRectReadOnly): void {
    const { handle, isLocked } = this.#owner;
    if (!handle) return;
    const commands = commandsOf(handle.module);
    const item = (title: string, keys: string, isEnabled: boolean, act: () => void) => {
      const button = make('button', { type: 'button', role: 'menuitem', disabled: !isEnabled }, make('span', {}, title),
        make('span', { class: 'keys' }, keys));
      button.addEventListener('click', () => {
        this.#panel.close(true);
        act();
      });
      return button;
    };
    const command = (name: string, act?: () => void) => {
      const number = commands.byName.get(name)!, { title, keys, modifies } = commands.list[number]!;
      const isEnabled = (name === 'paste' ? !isLocked : handle.isEnabled(number)) && !(modifies && isLocked);
      return item(title, keys.split(', ')[0]!, isEnabled, act ?? (() => this.#owner.runCommand(number)));
    };
    const line = () => make('hr');
    const isTable = handle.isEnabled(commands.byName.get('delete-rows')!) && !isLocked;
    this.#panel.element.replaceChildren(
      command('undo'), command('redo'), line(),
      ...(['cut', 'copy', 'paste'] as const).map((name) => command(name, () => this.#owner.useClipboard(name))),
      item('Copy as LaTeX', '', true, () => this.#acts.copyAs('latex')),
      item('Copy as MathML', '', true, () => this.#acts.copyAs('mathml')),
      item('Copy as picture', '', true, () => this.#acts.copyAs('png')), line(),
      ...(isTable ? [...['row-above', 'row-below', 'column-left', 'column-right', 'delete-rows', 'delete-columns'].map((name) => command(name)), line()] : []),
      command('select-all'), command('clear'), line(),
      item('Insert…', 'Ctrl+Space', !isLocked, () => this.#acts.openPalette(at)),
      item('Formula keyboard', '', !isLocked, () => this.#acts.toggleKeyboard()));
    this.#panel.open(at);
    this.#panel.element.querySelector<HTMLElement>('button:enabled')?.focus();
  }

  close(): void { this.#panel.close(); }
}

// ---- Palette

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
        if (event.key === 'Enter') this.#found!.querySelector<HTMLElement>('button:enabled')?.click();
      });
      this.#panel.element.append(search, this.#found);
    }
    this.#search.value = '';
    this.#panel.element.hidden = false;
    this.#fill('');
    this.#panel.open(at);
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

