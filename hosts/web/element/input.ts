// The keyboard: keys, typed text, and what input methods, dictation and the keyboards of phones compose. A text control
// that nobody sees takes them, since only such a one is given them all.

import { scaleOf } from './dom.js';
import { caretOf } from './frame.js';
import { Later } from './later.js';
import { commandsOf, type Owner } from './owner.js';
import { whenWhole } from './shared.js';

const PAUSE = 400;  // ms, after which names are suggested
const REST = 1000;  // ms, after which the control follows the caret
/** How much of the row a phone's keyboard is told of, on either side of the caret. */
const REACH = 48;

const isMac = typeof navigator !== 'undefined' && /Mac|iP(hone|ad|od)/.test(navigator.platform);
const keyNames: Record<string, string> = { ' ': 'Space', Esc: 'Escape', Del: 'Delete' };

/** The chord in the form of the table of commands; Ctrl is Command on a Mac. Empty when the key types text. */
export function chordOf(event: KeyboardEvent): string {
  const ctrl = isMac ? event.metaKey : event.ctrlKey;
  const types = event.key.length === 1;
  if (event.getModifierState('AltGraph') || (types && !ctrl) || (isMac ? event.ctrlKey : event.metaKey)) return '';
  let key = keyNames[event.key] ?? event.key.replace(/^Arrow/, '');
  // Keyboards for other scripts have the letters of shortcuts where those of Latin ones are.
  if (types) key = /^[\x21-\x7e]$/.test(key) ? key.toUpperCase() : event.code.replace(/^Key/, '');
  return (ctrl ? 'Ctrl+' : '') + (event.altKey ? 'Alt+' : '') + (event.shiftKey ? 'Shift+' : '') + key;
}

const directions: Record<string, string> = {
  left: 'left', right: 'right', up: 'up', down: 'down', 'next-slot': 'forward', 'previous-slot': 'backward',
};

/** What a keyboard without keys asks for: by the names of `InputEvent.inputType`. */
const deletions: Record<string, readonly string[]> = {
  deleteContentBackward: ['delete-left'], deleteContentForward: ['delete-right'], deleteContent: ['delete-left'],
  deleteWordBackward: ['delete-word-left'], deleteWordForward: ['delete-word-right'],
  deleteSoftLineBackward: ['select-home', 'delete-left'], deleteHardLineBackward: ['select-home', 'delete-left'],
  deleteSoftLineForward: ['select-end', 'delete-right'], deleteHardLineForward: ['select-end', 'delete-right'],
  historyUndo: ['undo'], historyRedo: ['redo'],
};

export class Input {
  /** Whether the list of completions takes the key. */
  oncompletionkey: (chord: string) => boolean = () => false;
  onenter: () => void = () => undefined;
  /** The keyboard of a phone is told what is around the caret. */
  tellsRow = false;
  readonly #owner: Owner;
  readonly #control: HTMLTextAreaElement;
  #isComposing = false;
  /** Where the row's text and caret were when the control was told. */
  #told: { text: string; anchor: number; caret: number } | null = null;
  readonly #suggesting = new Later(() => whenWhole(() => this.#suggest()), PAUSE, 0);
  readonly #following = new Later(() => this.follow(), REST, 0);

  constructor(owner: Owner) {
    this.#owner = owner;
    const control = this.#control = owner.parts.input;
    control.addEventListener('keydown', (event) => this.#onKey(event));
    control.addEventListener('beforeinput', (event) => this.#onInput(event));
    control.addEventListener('input', (event) => this.#onUntold(event));
    for (const name of ['compositionstart', 'compositionupdate', 'compositionend'] as const) {
      control.addEventListener(name, (event) => this.#onComposition(event));
    }
    // The page is told of the formula, not of this control.
    for (const name of ['beforeinput', 'input', 'change', 'select', 'selectstart', 'selectionchange']) {
      control.addEventListener(name, (event) => event.stopPropagation());
    }
  }

  // ---- Keys

  #onKey(event: KeyboardEvent): void {
    const { handle } = this.#owner;
    if (!handle || event.isComposing || event.keyCode === 229 || event.defaultPrevented) return;
    const chord = chordOf(event);
    if (!chord) return;
    if (this.oncompletionkey(chord)) return event.preventDefault();
    const commands = commandsOf(handle.module);
    let number = commands.byChord.get(chord);
    // Keys for tables mean something else outside of them.
    if (number !== undefined && number >= commands.byName.get('row-above')! &&
        !handle.isEnabled(commands.byName.get(chord === 'Enter' ? 'next-row' : 'delete-rows')!)) number = undefined;
    if (number === undefined) {
      if (event.key === 'Enter') {
        event.preventDefault();
        this.onenter();
      }
      return;
    }
    const { name, modifies } = commands.list[number]!;
    // The browser sends events of their own for these, with the clipboard.
    if (name === 'cut' || name === 'copy' || name === 'paste') return;
    if (modifies && this.#owner.isLocked) return;
    const isTab = name === 'next-slot' || name === 'previous-slot';
    const isDone = !(isTab && this.#owner.isLocked) && this.#owner.runCommand(number);
    // The key that drops a selection also closes a dialog.
    if (name === 'drop-selection') return;
    const direction = directions[name];
    if (!isDone && direction) {
      const event = new CustomEvent('move-out', { bubbles: true, composed: true, cancelable: true, detail: { direction } });
      if (this.#owner.dispatchEvent(event) && isTab) return;
    }
    event.preventDefault();
  }

  // ---- Text

  #onInput(event: InputEvent): void {
    if (event.inputType === 'insertCompositionText' || event.isComposing) return;
    if (event.cancelable) event.preventDefault();
    const { inputType, data } = event;
    if (inputType === 'insertText' || inputType === 'insertReplacementText') {
      const text = data ?? event.dataTransfer?.getData('text/plain') ?? '';
      // What is replaced is selected in the control only.
      if (inputType === 'insertReplacementText') this.#onSelection();
      this.type(text, inputType);
    } else if (inputType === 'insertLineBreak' || inputType === 'insertParagraph') {
      this.onenter();
    } else if (deletions[inputType]) {
      this.#onSelection();
      for (const command of deletions[inputType]!) this.#owner.runCommand(command, inputType);
    }
  }

  type(text: string, inputType = 'insertText'): void {
    if (!text || this.#owner.isLocked) return;
    this.#owner.act(inputType, text, (handle) => handle.type(text));
    this.#suggesting.touch();
  }

  /** What a keyboard has changed in the control without asking first. */
  #onUntold(event: Event): void {
    const told = this.#told;
    if (this.#isComposing || !told || (event as InputEvent).inputType === 'insertCompositionText') return;
    const value = this.#control.value;
    let from = 0, same = 0;
    while (from < value.length && value[from] === told.text[from]) ++from;
    const rest = Math.min(value.length, told.text.length) - from;
    while (same < rest && value.at(-1 - same) === told.text.at(-1 - same)) ++same;
    const end = told.text.length - same, text = value.slice(from, value.length - same);
    if (from === end && !text) return;
    this.#owner.act('insertReplacementText', text, (handle) => {
      handle.selectAround(from - told.caret, end - told.caret);
      return text ? handle.type(text) : handle.run(commandsOf(handle.module).byName.get('delete-left')!);
    });
  }

  /** The keyboard of a phone can move the caret in the control. */
  #onSelection(): void {
    const told = this.#told, { handle } = this.#owner;
    if (!told || !handle || this.#isComposing || this.#control.value !== told.text) return;
    const { selectionStart, selectionEnd, selectionDirection } = this.#control;
    if (selectionStart === Math.min(told.anchor, told.caret) && selectionEnd === Math.max(told.anchor, told.caret)) return;
    const [anchor, caret] = selectionDirection === 'backward' ? [selectionEnd, selectionStart] : [selectionStart, selectionEnd];
    this.#owner.act('', null, () => handle.selectAround(anchor - told.caret, caret - told.caret));
    this.#told = { text: told.text, anchor, caret };
  }

  // ---- Composition

  #onComposition(event: CompositionEvent): void {
    const { handle } = this.#owner;
    if (!handle || this.#owner.isLocked) return;
    if (event.type === 'compositionstart') {
      this.#isComposing = true;
      this.follow();
      // Keyboards take up a word again that is there already.
      if (event.data && this.#told && this.#told.text.slice(0, this.#told.caret).endsWith(event.data)) {
        handle.selectAround(-event.data.length, 0);
        handle.run(commandsOf(handle.module).byName.get('delete-left')!);
      }
    } else if (event.type === 'compositionupdate') {
      handle.compose(event.data, event.data.length);
      this.#owner.refresh();
    } else {
      this.#isComposing = false;
      handle.compose('', 0);
      this.#control.value = '';
      this.#told = null;
      this.type(event.data, 'insertFromComposition');
      this.#owner.refresh();
    }
  }

  /** With the focus. */
  begin(): void {
    document.addEventListener('selectionchange', this.#selected);
    this.follow();
  }

  readonly #selected = () => this.#onSelection();

  /** Ends what is being composed when the focus goes. */
  end(): void {
    document.removeEventListener('selectionchange', this.#selected);
    this.#suggesting.stop();
    this.#following.stop();
    this.#isComposing = false;
    this.#control.value = '';
    this.#told = null;
  }

  // ---- After each painting

  onPaint(isSame: boolean): void {
    if (this.#isComposing || (isSame && (this.#told || !this.tellsRow))) return;
    this.#following.touch();
    if (this.tellsRow && this.#owner.hasFocus) this.#tell();
  }

  #tell(): void {
    const { handle } = this.#owner;
    if (!handle) return;
    const told = handle.getAround(REACH) as { text: string; anchor: number; caret: number };
    const control = this.#control;
    if (control.value !== told.text) control.value = told.text;
    this.#told = told;
    control.setSelectionRange(Math.min(told.anchor, told.caret), Math.max(told.anchor, told.caret),
      told.anchor > told.caret ? 'backward' : 'forward');
  }

  /** Puts the control to the caret, where input methods show their lists; not with every key, which costs much. */
  follow(): void {
    const frame = this.#owner.shown.peek();
    if (!frame) return;
    const box = this.#owner.shown.toWindow(caretOf(frame));
    const { frame: field } = this.#owner.parts, scale = scaleOf(field);
    const { left, top, width, height } = field.getBoundingClientRect();
    this.#control.style.left = `${Math.max(0, Math.min(box.left - left, width - 4)) / scale}px`;
    this.#control.style.top = `${Math.max(0, Math.min(box.top - top, height - 8)) / scale}px`;
    this.#control.style.height = `${Math.min(box.height, height) / scale}px`;
  }

  #suggest(): void {
    if (this.#owner.hasFocus && !this.#isComposing && this.#owner.handle?.suggest()) this.#owner.refresh();
  }
}
