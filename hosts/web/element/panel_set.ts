// What opens at one field. This is the beginning of a file that is loaded when it is first needed.

import { CompletionList } from './completion_list.js';
import { Handles } from './handles.js';
import { Keyboard } from './keyboard.js';
import { Menu, type MenuActs } from './menu.js';
import { Note } from './note.js';
import type { Owner } from './owner.js';
import { Palette } from './palette.js';
import { adoptPanelSheet } from './panel_look.js';
import type { View } from './view.js';

export type PanelActs = Pick<MenuActs, 'copyAs'>;

export class PanelSet {
  readonly completions: CompletionList;
  readonly handles: Handles;
  readonly keyboard: Keyboard;
  readonly menu: Menu;
  readonly note: Note;
  readonly palette: Palette;

  readonly #root: ShadowRoot;

  constructor(owner: Owner, view: View, { copyAs }: PanelActs) {
    this.#root = owner.root;
    this.adoptSheet();
    this.completions = new CompletionList(owner, () => this.keyboard.top);
    this.handles = new Handles(owner, view);
    this.keyboard = new Keyboard(owner);
    this.note = new Note(owner);
    this.palette = new Palette(owner);
    this.menu = new Menu(owner, {
      copyAs,
      openPalette: (at) => this.palette.open(at),
      toggleKeyboard: () => this.keyboard.isOpen ? this.keyboard.close() : this.keyboard.open(),
    });
  }

  adoptSheet(): void { adoptPanelSheet(this.#root); }

  close(): void {
    for (const panel of [this.completions, this.keyboard, this.menu, this.note, this.palette]) panel.close();
  }
}
