// The context menu.

import { make } from './dom.js';
import { commandsOf, type Owner } from './owner.js';
import { Panel } from './panel.js';

export interface MenuActs {
  copyAs(notation: 'latex' | 'mathml' | 'png'): void;
  openPalette(at: DOMRectReadOnly): void;
  toggleKeyboard(): void;
}

/** The commands for rows and columns, in groups. */
const ofTables = [
  ['row-above', 'row-below', 'column-left', 'column-right'],
  ['delete-rows', 'delete-columns'],
  ['rows-up', 'rows-down', 'columns-left', 'columns-right', 'next-row'],
];

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
      ...(isTable ? ofTables.flatMap((names) => [...names.map((name) => command(name)), line()]) : []),
      command('select-all'), command('clear'), line(),
      item('Insert…', 'Ctrl+Space', !isLocked, () => this.#acts.openPalette(at)),
      item('Formula keyboard', '', !isLocked, () => this.#acts.toggleKeyboard()));
    this.#panel.open(at);
    this.#panel.element.querySelector<HTMLElement>('button:enabled')?.focus();
  }

  close(): void { this.#panel.close(); }
}
