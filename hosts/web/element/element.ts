// <zolt-formula>: a field for one formula, as <input> is one for a line of text. docs/web.md describes it.

import { Form, type FormulaHandle } from '../module/zolt_module.mjs';
import { Copies, type CopyForm, type PngOptions } from './clipboard.js';
import { Completions } from './completion.js';
import { ControlElement, notations, type Notation } from './control.js';
import { setAttribute } from './dom.js';
import { listenToDrags } from './drags.js';
import { Focus } from './focus.js';
import { FormValue, type FormSide } from './form.js';
import { Flag, has, type Box, type FrameWords } from './frame.js';
import { Input } from './input.js';
import { adoptSheet, build, type Parts } from './look.js';
import { commandsOf, type Fault } from './owner.js';
import { Panels } from './panels.js';
import { Pointer } from './pointer.js';
import { load, loaded, loadWhole } from './shared.js';
import { Speech } from './speech.js';
import type { SvgOptions } from './svg.js';
import { Value } from './value.js';
import { View } from './view.js';

/** Where the caret, and the other end of what is selected, are: to be kept and given back, not to be read. */
export type Places = readonly number[];

const kebab = (name: string) => name.replace(/[A-Z]/g, (letter) => `-${letter.toLowerCase()}`);

export class ZoltFormulaElement extends ControlElement implements FormSide {
  static readonly formAssociated = true;
  static readonly observedAttributes = [
    'value', 'format', 'readonly', 'disabled', 'required', 'placeholder', 'constraints', 'options', 'aria-label',
    'aria-labelledby', 'aria-describedby', 'inputmode', 'speech', 'lang',
  ];

  readonly root: ShadowRoot;
  readonly parts: Parts;
  readonly #view: View;
  readonly #input: Input;
  readonly #pointer: Pointer;
  readonly #form: FormValue;
  readonly #speech: Speech;
  readonly #completions: Completions;
  readonly #panels: Panels;
  readonly #copies: Copies;
  readonly #value: Value;
  readonly #focus: Focus;
  #options: Readonly<Record<string, boolean>> = {};
  #isFormDisabled = false;
  #painted = { revision: -1, moves: -1 };
  #becomeReady: () => void = () => undefined;
  /** Settles when the module is there; the element can be used before. */
  readonly ready = new Promise<void>((settle) => { this.#becomeReady = settle; });

  constructor() {
    super();
    this.root = this.attachShadow({ mode: 'open', delegatesFocus: true });
    this.parts = build(this.root);
    const view = this.#view = new View(this);
    this.#value = new Value(this, (isWhole) => {
      view.fault = null;
      if (isWhole) this.#form.touchWhole(); else this.#form.touch();
      this.refresh();
      if (!this.handle && this.isConnected) this.#load().catch(() => undefined);
    });
    const panels = this.#panels = new Panels(this, view, { copyAs: (notation) => void this.copyAs(notation) });
    const input = this.#input = new Input(this);
    this.#pointer = new Pointer(this, view, panels);
    const form = this.#form = new FormValue(this);
    const speech = this.#speech = new Speech(this);
    this.#completions = new Completions(this, panels);
    this.#copies = new Copies(this, view);
    this.#focus = new Focus(this, { view, input, form, speech, panels, value: this.#value });
    view.onpaint = (frame) => this.#onPaint(frame);
    input.oncompletionkey = (chord) => chord === 'Ctrl+Space' ? this.#openPalette() : this.#completions.takeKey(chord);
    input.onenter = () => this.#onEnter();
    this.#pointer.onpress = (isTouch) => this.#onPress(isTouch);
    this.#pointer.onlongpress = (x, y) => panels.use(({ menu }) => menu.open(new DOMRect(x, y - 20, 0, 40)));
    this.parts.frame.addEventListener('contextmenu', (event) => this.#onMenu(event));
    listenToDrags(this, view, this.#copies, { stop: () => this.#pointer.stop(), press: () => this.#onPress(false) });
    // What a page has set before the script arrived would hide the properties of the class.
    const mine = this as unknown as Record<string, unknown>;
    for (const name of Object.keys(this).filter((name) => name in ZoltFormulaElement.prototype)) {
      const given = mine[name];
      delete mine[name];
      mine[name] = given;
    }
  }

  // ---- Life

  connectedCallback(): void {
    const rest = loaded()?.rest;
    if (loaded() && (!rest || rest.isThere || !this.#value.hasText)) this.#open();
    // A formula may be given while the module is on its way.
    else this.#load().then(() => this.#load())
      .then(() => { if (this.isConnected) this.#open(); }).catch((error: unknown) => this.#fail(error));
    this.#view.start();
    this.#speech.name();
  }

  /** Showing a formula takes more of the module than an empty field does. */
  #load(): Promise<unknown> { return this.#value.hasText ? loadWhole() : load(); }

  disconnectedCallback(): void {
    this.#view.stop();
    this.#speech.stop();
    this.#form.stop();
    this.#panels.close();
    // Whoever moves the element takes it out and puts it in again at once.
    setTimeout(() => { if (!this.isConnected) this.#value.close(); }, 0);
  }

  /** Style sheets are a document's, so that a field in another window needs that one's. */
  adoptedCallback(): void {
    adoptSheet(this.root);
    this.#panels.adoptSheet();
    this.#view.restyle();
  }

  #fail(error: unknown): void {
    this.dispatchEvent(new ErrorEvent('error', { error, message: String(error) }));
    // What was given is readable at least.
    this.parts.placeholder.textContent = this.value || this.placeholder;
    this.parts.placeholder.hidden = false;
  }

  #open(): void {
    if (this.handle || !loaded()) return;
    const isOpen = this.#value.open((handle) => {
      for (const [name, on] of Object.entries(this.options)) handle.setOption(kebab(name), on);
      this.#setSpeech();
    });
    if (!isOpen) return this.#fail(new Error('zolt-formula: no memory for another formula'));
    const handle = this.handle!;
    if (this.constraints) handle.setConstraints(this.constraints);
    if (this.isLocked) handle.setEditable(false);
    this.#value.seen = handle.revision;
    this.#painted = { revision: -1, moves: -1 };
    this.#becomeReady();
    if (this.hasFocus) this.#speech.listen();
    this.#form.touch();
    // What a formula is worth is found out in the first pause, and earlier if the form asks.
    if (this.isEmpty) this.#form.update();
    this.#view.paintSoon();
  }

  get handle(): FormulaHandle | null { return this.#value.handle; }

  /** The same for programs, which may use a field that is in no page. */
  get #used(): FormulaHandle | null {
    if (!this.handle) this.#open();
    return this.handle;
  }

  // ---- Attributes

  attributeChangedCallback(name: string, before: string | null, now: string | null): void {
    if (before === now) return;
    switch (name) {
      case 'value':
        if (!this.#value.isDirty) this.#value.reset();
        break;
      case 'readonly':
      case 'disabled':
        this.#lock();
        break;
      case 'constraints':
        if (this.handle && this.handle.setConstraints(now ?? '') >= 0) console.warn(`zolt-formula: constraints="${now}" is not understood`);
        break;
      case 'options':
        for (const [option, on] of Object.entries(this.options)) this.handle?.setOption(kebab(option), on);
        this.refresh();
        break;
      case 'placeholder':
        this.parts.placeholder.textContent = now;
        this.#speech.name();
        this.refresh();
        break;
      case 'required':
        if (this.#value.isEmpty || this.internals.validity.valueMissing) return this.#form.touchWhole();
        break;
      case 'inputmode':
        this.parts.input.inputMode = now ?? '';
        break;
      case 'speech':
      case 'lang':
        this.#setSpeech();
        break;
      default:
        this.#speech.name();
    }
    this.#form.touch();
  }

  /** What may be in the formula, in words: "number or names x y; nodes 50". */
  get constraints(): string { return this.attributeText('constraints'); }
  set constraints(rules: string) {
    const at = this.handle?.setConstraints(rules) ?? -1;
    if (at >= 0) throw new SyntaxError(`The constraints are not understood at "${rules.slice(at)}"`);
    this.setAttribute('constraints', rules);
  }
  /** The rules of typing that are not as usual: `{ decimalComma: true, suggestions: false }`. */
  get options(): Readonly<Record<string, boolean>> {
    const words = this.attributeText('options').split(/[\s,;]+/).filter(Boolean);
    return { ...Object.fromEntries(words.map((word) => [word.replace(/^(-|no-)/, ''), !/^(-|no-)/.test(word)])), ...this.#options };
  }
  set options(options: Readonly<Record<string, boolean>>) {
    this.#options = Object.fromEntries(Object.entries(options).map(([name, on]) => [kebab(name), on]));
    for (const [name, on] of Object.entries(this.#options)) this.handle?.setOption(name, on);
    this.refresh();
  }
  get isLocked(): boolean { return this.readOnly || this.disabled || this.#isFormDisabled; }
  get hasFocus(): boolean { return this.#focus.isHere; }
  get shown(): View { return this.#view; }

  #lock(): void {
    this.handle?.setEditable(!this.isLocked);
    this.parts.input.readOnly = this.isLocked;
    this.parts.input.disabled = this.disabled || this.#isFormDisabled;
    this.refresh();
  }

  #setSpeech(): void {
    const verbosity = ['brief', 'medium', 'full'].indexOf(this.attributeText('speech'));
    const language = this.closest('[lang]')?.getAttribute('lang') ?? '';
    this.handle?.setSpeech(/^de\b/.test(language) ? 1 : 0, verbosity < 0 ? 1 : verbosity);
  }

  // ---- Value

  /** The formula as it stands, complete or not, with caret and selection. */
  get tree(): string { return this.#read(Form.tree); }
  set tree(text: string) { this.#value.set(Form.tree, String(text)); }
  /** The formula in words. */
  get words(): string { return this.#read(Form.words); }

  /** In that notation, or the one of `format`; "" while the formula is incomplete. */
  override getValue(notation: Notation = this.format): string { return this.#read(notations[notation]); }
  #read(form: number): string {
    if (!this.handle) this.#open();
    return this.#value.get(form);
  }

  /** Why the text was refused, with the formula as it was; null: it is shown. */
  override setValue(text: string, notation: Notation = this.format): Fault | null {
    return this.#value.set(notations[notation], text == null ? '' : String(text));
  }

  /** Nothing is in it. */
  get isEmpty(): boolean {
    if (!this.handle) this.#open();
    return this.#value.isEmpty;
  }
  /** Why the formula is incomplete or wrong; null when it is complete or empty. */
  get fault(): Fault | null { return this.isEmpty ? null : this.#used?.diagnose() ?? null; }

  // ---- Form

  /** As of other controls: the formula is invalid while the message is not empty. */
  setCustomValidity(message: string): void { this.#form.setCustom(message); }
  protected override get checked(): ElementInternals {
    this.#form.update();
    return this.internals;
  }
  formAssociatedCallback(form: HTMLFormElement | null): void {
    this.#form.join(form);
    this.#speech.name();
  }
  formResetCallback(): void { this.#value.reset(); }
  formDisabledCallback(isDisabled: boolean): void {
    this.#isFormDisabled = isDisabled;
    this.#lock();
  }
  formStateRestoreCallback(state: unknown): void { if (typeof state === 'string') this.tree = state; }

  // ---- Acts

  act(inputType: string, data: string | null, action: (handle: FormulaHandle) => boolean): boolean {
    const { handle } = this;
    if (!handle) return false;
    const told = { inputType, data, bubbles: true, composed: true };
    if (inputType && !this.dispatchEvent(new InputEvent('beforeinput', { ...told, cancelable: true }))) return false;
    const before = handle.revision;
    const isDone = action(handle);
    const hasChanged = handle.revision !== before;
    const refusal = handle.module.takeShortage() ? { message: 'There is not enough memory for this', box: null }
      : !isDone && inputType ? handle.takeRefusal() : null;
    this.#view.fault = refusal?.box as Box | null | undefined ?? null;
    this.#mark(false);
    if (refusal) this.#refuse(refusal); else this.#panels.set?.note.close();
    if (hasChanged) {
      this.#value.isDirty = true;
      if (inputType) this.#pointer.hideHandles();
      this.#form.touch();
      this.dispatchEvent(new InputEvent('input', told));
    }
    this.refresh();
    return isDone;
  }

  /** Tells the page, who listens and who sees why something was refused. */
  #refuse(refusal: { message: string }): void {
    this.say(refusal.message);
    const isShown = this.dispatchEvent(new CustomEvent('refuse', { bubbles: true, composed: true, cancelable: true, detail: refusal }));
    if (isShown && this.hasFocus) this.#panels.use(({ note }) => note.show(refusal.message, this.#caretBox()));
  }

  /** Runs a command of docs/commands.md. */
  runCommand(command: string | number, inputType?: string): boolean {
    const { handle } = this;
    if (!handle) return false;
    const { byName, list } = commandsOf(handle.module);
    const number = typeof command === 'number' ? command : byName.get(command) ?? -1;
    const named: Record<string, string> = { undo: 'historyUndo', redo: 'historyRedo', 'delete-left': 'deleteContentBackward', 'delete-right': 'deleteContentForward' };
    const { name = '', modifies = false } = list[number] ?? {};
    const type = inputType ?? named[name] ?? (modifies ? `formula-${name}` : '');
    return this.act(modifies ? type : '', null, () => handle.run(number));
  }

  /** Inserts at the caret what the text means, as pasting does. */
  insert(text: string): boolean {
    return this.act('insertText', text, (handle) => {
      handle.module.offer({ plain: text });
      return handle.paste() !== 0;
    });
  }
  /** Types the text, key by key. */
  typeText(text: string): void { for (const character of text) this.#input.type(character); }
  /** Inserts the operator of that name, as a button of a palette does. */
  insertOperator(name: string): boolean { return this.act('insertText', name, (handle) => handle.insert(name)); }
  /** Selects all. */
  select(): void { this.runCommand('select-all'); }
  /** Where the caret and the selection are, to be given back to the same formula. */
  get selection(): Places { return this.handle?.getSelection() ?? []; }
  set selection(places: Places) { this.act('', null, (handle) => handle.setSelection([...places])); }
  /** Selects the part that a node of the expression came from, by its number in `prefix`. */
  selectPart(number: number): boolean { return this.act('', null, (handle) => handle.selectPart(number)); }
  /** Opens the palette of what can be inserted at the caret. */
  openPalette(): void { this.#openPalette(); }
  /** Opens the formula keyboard. */
  openKeyboard(): void { this.#panels.use(({ keyboard }) => keyboard.open()); }
  /** Closes it. */
  closeKeyboard(): void { this.#panels.set?.keyboard.close(); }

  say(words: string): void { this.#speech.say(words); }

  /** Marks what is missing or wrong, and says it. True: the formula is complete. */
  check(): boolean {
    const { handle } = this;
    if (!handle || this.isEmpty) return true;
    const fault = handle.check();
    this.#view.fault = fault ? fault.box as unknown as Box : null;
    this.#mark(!!fault);
    if (fault) this.say(fault.message);
    this.refresh();
    return !fault;
  }

  #mark(isFaulty: boolean): void {
    if (this.internals.states.has('faulty') === isFaulty) return;
    isFaulty ? this.internals.states.add('faulty') : this.internals.states.delete('faulty');
    setAttribute(this.parts.input, 'aria-invalid', isFaulty ? 'true' : null);
  }

  refresh(): void { this.#view.paintSoon(); }

  // ---- Pictures and the clipboard

  /** The formula as a picture in SVG. */
  toSVG(options?: SvgOptions): string { return this.#used ? this.#copies.toSvg(options) : ''; }
  /** The same in pixels, when the fonts have arrived. */
  toPNG(options?: PngOptions): Promise<Blob | null> { return this.#copies.toPng(options); }
  /** Copies what is selected, or else the formula, in a notation or as a picture. */
  copyAs(form: CopyForm): Promise<boolean> { return this.#copies.copyAs(form); }
  useClipboard(act: 'copy' | 'cut' | 'paste'): void { this.#copies.useSystem(act); }

  // ---- Events

  #onMenu(event: MouseEvent): void {
    event.preventDefault();
    const isKey = event.clientX === 0 && event.clientY === 0 || event.button !== 2 && (event as PointerEvent).pointerType === '';
    if (!this.hasFocus) this.parts.input.focus({ preventScroll: true });
    this.#panels.use(({ menu, note }) => {
      note.close();
      menu.open(isKey ? this.#caretBox() : new DOMRect(event.clientX, event.clientY, 0, 0));
    });
  }

  #onPress(isTouch: boolean): void {
    this.#input.tellsRow = isTouch;
    this.#focus.press(isTouch && this.keyboard === 'auto' && !this.isLocked);
  }

  /** The key of a form. */
  #onEnter(): void {
    const { form } = this.internals;
    if (!this.check()) {
      // The browser tells the cause at the field, as it does for other controls.
      this.reportValidity();
      return;
    }
    this.handle?.complete();
    this.#focus.tellChange();
    this.#form.update();
    const button = form?.querySelector<HTMLElement>('button:not([type]), button[type=submit], input[type=submit], input[type=image]');
    if (button) button.click(); else form?.requestSubmit();
  }

  #onPaint(frame: FrameWords): void {
    const handle = this.handle!;
    const { revision, moves } = handle;
    const hasChanged = revision !== this.#painted.revision, hasMoved = moves !== this.#painted.moves;
    const isHidden = this.hasFocus || !has(frame, Flag.empty) || !this.placeholder;
    if (this.parts.placeholder.hidden !== isHidden) this.parts.placeholder.hidden = isHidden;
    this.#pointer.onPaint(frame);
    this.#input.onPaint(!hasChanged && !hasMoved);
    if (hasChanged || hasMoved) {
      this.#painted = { revision, moves };
      if (this.hasFocus) this.#view.blink(true);
      this.#speech.touch(hasChanged);
      if (hasMoved) this.dispatchEvent(new Event('selectionchange', { bubbles: true }));
    }
    this.#completions.onPaint(frame);
  }

  #caretBox(): DOMRect {
    const boxes = this.#view.boxes;
    return boxes ? this.#view.toWindow(boxes.caret) : this.getBoundingClientRect();
  }

  #openPalette(): boolean {
    if (this.isLocked || !this.handle) return false;
    this.#completions.close();
    this.#panels.use(({ palette, note }) => {
      note.close();
      palette.open(this.#caretBox());
    });
    return true;
  }
}
