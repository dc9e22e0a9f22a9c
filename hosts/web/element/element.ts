// <zolt-formula>: a field for one formula, as <input> is one for a line of text. docs/web.md describes it.

import { Form, SetResult, type FormulaHandle } from '../module/zolt_module.mjs';
import { canPaste, copyForms, offerPasted, textOf, writeCopied } from './clipboard.js';
import { CompletionList } from './completion.js';
import { setAttribute } from './dom.js';
import { FormValue, type FormSide } from './form.js';
import { Flag, has, heightOf, widthOf, type Box, type FrameWords } from './frame.js';
import { Input } from './input.js';
import { Keyboard } from './keyboard.js';
import { build, type Parts } from './look.js';
import { buildMathml } from './mathml.js';
import { commandsOf, type Fault } from './owner.js';
import { paintFrame } from './painter.js';
import { Menu, Palette } from './palette.js';
import { Pointer } from './pointer.js';
import { load, loaded } from './shared.js';
import { Speech } from './speech.js';
import { toSvg, type SvgOptions } from './svg.js';
import { View } from './view.js';

/** The notations of a value. */
const notations = { plain: Form.plain, prefix: Form.prefix, latex: Form.latex, mathml: Form.mathml } as const;
export type Notation = keyof typeof notations;

/** Where the caret, and the other end of what is selected, are: to be kept and given back, not to be read. */
export type Places = readonly number[];

export interface PngOptions extends SvgOptions {
  /** Of a picture: how many of its pixels there are to a CSS pixel. */
  density?: number;
  /** A CSS colour behind the formula; none otherwise. */
  background?: string;
}

const kebab = (name: string) => name.replace(/[A-Z]/g, (letter) => `-${letter.toLowerCase()}`);

/** Servers have no elements; there the class is only a name. */
const Base = (globalThis.HTMLElement ?? class {}) as typeof HTMLElement;

/** Fields whose memory is not given back by their leaving the page. */
const forgotten = new FinalizationRegistry<() => void>((close) => close());

interface Given {
  readonly form: number;
  readonly text: string;
}

export class ZoltFormulaElement extends Base implements FormSide {
  static readonly formAssociated = true;
  static readonly observedAttributes = [
    'value', 'format', 'readonly', 'disabled', 'required', 'placeholder', 'constraints', 'options', 'aria-label',
    'aria-labelledby', 'aria-describedby', 'inputmode', 'speech', 'lang',
  ];

  readonly internals: ElementInternals;
  readonly root: ShadowRoot;
  readonly parts: Parts;
  readonly #view: View;
  readonly #input: Input;
  readonly #pointer: Pointer;
  readonly #form: FormValue;
  readonly #speech: Speech;
  readonly #completions: CompletionList;
  readonly #menu: Menu;
  readonly #palette: Palette;
  readonly #keyboard: Keyboard;
  #handle: FormulaHandle | null = null;
  #given: Given | null = null;
  #options: Readonly<Record<string, boolean>> = {};
  #isDirty = false;
  #isFormDisabled = false;
  #hasFocus = false;
  #isTabbed = false;
  /** The formula that the last "change" was about. */
  #seen = 0;
  #painted = { revision: -1, moves: -1 };
  #becomeReady: () => void = () => undefined;
  /** Settles when the module is there; the element can be used before. */
  readonly ready = new Promise<void>((settle) => { this.#becomeReady = settle; });

  constructor() {
    super();
    this.internals = this.attachInternals();
    this.root = this.attachShadow({ mode: 'open', delegatesFocus: true });
    this.parts = build(this.root);
    this.#view = new View(this);
    this.#input = new Input(this);
    this.#pointer = new Pointer(this, this.#view);
    this.#form = new FormValue(this);
    this.#speech = new Speech(this);
    this.#completions = new CompletionList(this);
    this.#palette = new Palette(this);
    this.#keyboard = new Keyboard(this);
    this.#menu = new Menu(this, {
      copyAs: (notation) => void this.copyAs(notation),
      openPalette: () => this.#palette.open(this.#caretBox()),
      toggleKeyboard: () => this.#keyboard.isOpen ? this.#keyboard.close() : this.#keyboard.open(),
    });
    this.#view.onpaint = (frame) => this.#onPaint(frame);
    this.#input.oncompletionkey = (chord) => chord === 'Ctrl+Space' ? this.#openPalette() : this.#completions.takeKey(chord);
    this.#input.onenter = () => this.#onEnter();
    this.#pointer.onpress = (isTouch) => this.#onPress(isTouch);
    this.#pointer.onlongpress = (x, y) => this.#menu.open(new DOMRect(x, y - 20, 0, 40));
    this.#listen();
  }

  // ---- Life

  connectedCallback(): void {
    if (loaded()) this.#open();
    else load().then(() => { if (this.isConnected) this.#open(); }, (error: unknown) => this.#fail(error));
    this.#view.start();
    this.#nameControl();
  }

  disconnectedCallback(): void {
    this.#view.stop();
    this.#speech.stop();
    this.#form.stop();
    this.#completions.close();
    this.#keyboard.close();
    // Whoever moves the element takes it out and puts it in again at once.
    setTimeout(() => { if (!this.isConnected) this.#close(); }, 0);
  }

  #fail(error: unknown): void {
    this.dispatchEvent(new ErrorEvent('error', { error, message: String(error) }));
    // What was given is readable at least.
    this.parts.placeholder.textContent = this.value || this.placeholder;
    this.parts.placeholder.hidden = false;
  }

  #open(): void {
    const module = loaded();
    if (this.#handle || !module) return;
    const handle = this.#handle = module.open();
    if (!handle) return this.#fail(new Error('zolt-formula: no memory for another formula'));
    forgotten.register(this, () => handle.close(), handle);
    for (const [name, on] of Object.entries(this.options)) handle.setOption(kebab(name), on);
    this.#setSpeech();
    const given = this.#given ?? { form: notations[this.format], text: this.defaultValue };
    this.#given = null;
    this.#put(given);
    if (this.constraints) handle.setConstraints(this.constraints);
    handle.setEditable(!this.isLocked);
    this.#seen = handle.revision;
    this.#becomeReady();
    if (this.#hasFocus) this.#speech.listen();
    this.#form.touch();
    this.#form.update();
    this.#view.paintSoon();
  }

  #close(): void {
    const handle = this.#handle;
    if (!handle) return;
    // The formula stays, as it is.
    this.#given = { form: Form.tree, text: handle.get(Form.tree) ?? '' };
    forgotten.unregister(handle);
    handle.close();
    this.#handle = null;
    this.#painted = { revision: -1, moves: -1 };
  }

  get handle(): FormulaHandle | null { return this.#handle; }

  /** The same for programs, which may use a field that is in no page. */
  get #used(): FormulaHandle | null {
    if (!this.#handle) this.#open();
    return this.#handle;
  }

  // ---- Attributes

  attributeChangedCallback(name: string, before: string | null, now: string | null): void {
    if (before === now) return;
    switch (name) {
      case 'value':
        if (!this.#isDirty) this.#reset();
        break;
      case 'readonly':
      case 'disabled':
        this.#lock();
        break;
      case 'constraints':
        if (this.#handle && this.#handle.setConstraints(now ?? '') >= 0) console.warn(`zolt-formula: constraints="${now}" is not understood`);
        break;
      case 'options':
        for (const [option, on] of Object.entries(this.options)) this.#handle?.setOption(kebab(option), on);
        this.refresh();
        break;
      case 'placeholder':
        this.refresh();
        break;
      case 'inputmode':
        this.parts.input.inputMode = now ?? '';
        break;
      case 'speech':
      case 'lang':
        this.#setSpeech();
        break;
      default:
        this.#nameControl();
    }
    this.#form.touch();
  }

  #attribute(name: string): string { return this.getAttribute(name) ?? ''; }
  get name(): string { return this.#attribute('name'); }
  set name(name: string) { this.setAttribute('name', name); }
  get defaultValue(): string { return this.getAttribute('value') ?? this.textContent?.trim() ?? ''; }
  set defaultValue(value: string) { this.setAttribute('value', value); }
  /** The notation of `value`, and of what a form submits. */
  get format(): Notation {
    const format = this.#attribute('format');
    return format in notations ? format as Notation : 'plain';
  }
  set format(format: Notation) { this.setAttribute('format', format); }
  get placeholder(): string { return this.#attribute('placeholder'); }
  set placeholder(text: string) { this.setAttribute('placeholder', text); }
  get readOnly(): boolean { return this.hasAttribute('readonly'); }
  set readOnly(on: boolean) { this.toggleAttribute('readonly', on); }
  get disabled(): boolean { return this.hasAttribute('disabled'); }
  set disabled(on: boolean) { this.toggleAttribute('disabled', on); }
  get required(): boolean { return this.hasAttribute('required'); }
  set required(on: boolean) { this.toggleAttribute('required', on); }
  /** What may be in the formula, in words: "number or names x y; nodes 50". */
  get constraints(): string { return this.#attribute('constraints'); }
  set constraints(rules: string) {
    const at = this.#handle?.setConstraints(rules) ?? -1;
    if (at >= 0) throw new SyntaxError(`The constraints are not understood at "${rules.slice(at)}"`);
    this.setAttribute('constraints', rules);
  }
  /** The rules of typing that are not as usual: `{ decimalComma: true, suggestions: false }`. */
  get options(): Readonly<Record<string, boolean>> {
    const words = this.#attribute('options').split(/[\s,;]+/).filter(Boolean);
    return { ...Object.fromEntries(words.map((word) => [word.replace(/^(-|no-)/, ''), !/^(-|no-)/.test(word)])), ...this.#options };
  }
  set options(options: Readonly<Record<string, boolean>>) {
    this.#options = Object.fromEntries(Object.entries(options).map(([name, on]) => [kebab(name), on]));
    for (const [name, on] of Object.entries(this.#options)) this.#handle?.setOption(name, on);
    this.refresh();
  }
  /** Whether the formula keyboard opens for fingers ("auto"), or when it is asked for. */
  get keyboard(): 'auto' | 'manual' { return this.#attribute('keyboard') === 'manual' ? 'manual' : 'auto'; }

  get isLocked(): boolean { return this.readOnly || this.disabled || this.#isFormDisabled; }
  get hasFocus(): boolean { return this.#hasFocus; }
  get shown(): View { return this.#view; }

  #lock(): void {
    this.#handle?.setEditable(!this.isLocked);
    this.parts.input.readOnly = this.isLocked;
    this.parts.input.disabled = this.disabled || this.#isFormDisabled;
    this.refresh();
  }

  #setSpeech(): void {
    const verbosity = ['brief', 'medium', 'full'].indexOf(this.#attribute('speech'));
    const language = this.closest('[lang]')?.getAttribute('lang') ?? '';
    this.#handle?.setSpeech(/^de\b/.test(language) ? 1 : 0, verbosity < 0 ? 1 : verbosity);
  }

  // ---- Value

  /** In the notation of `format`; "" while the formula is incomplete. Setting what is shown already changes nothing. */
  get value(): string { return this.getValue(this.format); }
  set value(text: string) { this.setValue(text); }
  get latex(): string { return this.getValue('latex'); }
  set latex(text: string) { this.setValue(text, 'latex'); }
  get mathml(): string { return this.getValue('mathml'); }
  set mathml(text: string) { this.setValue(text, 'mathml'); }
  override get prefix(): string { return this.getValue('prefix'); }
  override set prefix(text: string) { this.setValue(text, 'prefix'); }
  /** The formula as it stands, complete or not, with caret and selection. */
  get tree(): string { return this.#used?.get(Form.tree) ?? (this.#given?.form === Form.tree ? this.#given.text : ''); }
  set tree(text: string) { this.#assign({ form: Form.tree, text: String(text) }); }
  /** The formula in words. */
  get words(): string { return this.#used?.get(Form.words) ?? ''; }

  getValue(notation: Notation = this.format): string {
    const given = this.#given ?? (this.#handle ? null : { form: notations[this.format], text: this.defaultValue });
    if (!this.#used) return given && given.form === notations[notation] ? given.text : '';
    return this.#handle!.get(notations[notation]) ?? '';
  }

  /** Why the text was refused, with the formula as it was; null: it is shown. */
  setValue(text: string, notation: Notation = this.format): Fault | null {
    return this.#assign({ form: notations[notation], text: text == null ? '' : String(text) });
  }

  #assign(given: Given): Fault | null {
    this.#isDirty = true;
    if (!this.#handle) {
      this.#given = given;
      this.#form.touch();
      return null;
    }
    const fault = this.#put(given);
    this.#seen = this.#handle.revision;
    return fault;
  }

  #put({ form, text }: Given): Fault | null {
    const handle = this.#handle!;
    let answer: number = SetResult.done;
    if (form === Form.mathml && text.trim()) {
      const element = buildMathml(text);
      if (!element) return { message: 'This is not MathML', cause: 1, begin: 0, end: text.length, box: [0, 0, 0, 0] };
      answer = handle.setMathml(element);
    } else {
      answer = handle.set(form, text);
    }
    if (answer === SetResult.same) return null;
    if (answer === SetResult.refused) {
      const fault = handle.module.fault();
      this.dispatchEvent(new CustomEvent('refuse', { detail: fault }));
      return fault;
    }
    // As in a line of text, the caret is at the end of what a program sets.
    if (form !== Form.tree) handle.run(commandsOf(handle.module).byName.get('formula-end')!);
    this.#view.fault = null;
    this.#form.touch();
    this.refresh();
    return null;
  }

  #reset(): void {
    this.#isDirty = false;
    const given = { form: notations[this.format], text: this.defaultValue };
    if (this.#handle) this.#put(given); else this.#given = given;
    this.#seen = this.#handle?.revision ?? 0;
  }

  get isEmpty(): boolean {
    const frame = this.#used && this.#view.peek();
    return frame ? has(frame, Flag.empty) : !(this.#given?.text ?? this.defaultValue).trim();
  }
  /** Why the formula is incomplete or wrong; null when it is complete or empty. */
  get fault(): Fault | null { return this.isEmpty ? null : this.#used?.diagnose() ?? null; }

  // ---- Form

  get form(): HTMLFormElement | null { return this.internals.form; }
  get type(): string { return 'formula'; }
  get labels(): NodeList { return this.internals.labels; }
  get validity(): ValidityState { return this.#checked.validity; }
  get validationMessage(): string { return this.#checked.validationMessage; }
  get willValidate(): boolean { return this.internals.willValidate; }
  checkValidity(): boolean { return this.#checked.checkValidity(); }
  reportValidity(): boolean { return this.#checked.reportValidity(); }
  setCustomValidity(message: string): void { this.#form.setCustom(message); }
  get #checked(): ElementInternals {
    this.#form.update();
    return this.internals;
  }
  formAssociatedCallback(form: HTMLFormElement | null): void {
    this.#form.join(form);
    this.#nameControl();
  }
  formResetCallback(): void { this.#reset(); }
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
    if (handle.module.takeShortage()) this.dispatchEvent(new CustomEvent('refuse', { detail: { message: 'There is not enough memory for this' } }));
    const hasChanged = handle.revision !== before;
    const refusal = !isDone && inputType ? handle.takeRefusal() : null;
    this.#view.fault = refusal ? refusal.box as unknown as Box : null;
    this.#mark(false);
    if (refusal) {
      this.say(refusal.message);
      this.dispatchEvent(new CustomEvent('refuse', { bubbles: true, composed: true, detail: refusal }));
    }
    if (hasChanged) {
      this.#isDirty = true;
      if (inputType) this.#pointer.hideHandles();
      this.#form.touch();
      this.dispatchEvent(new InputEvent('input', told));
    }
    this.refresh();
    return isDone;
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
  select(): void { this.runCommand('select-all'); }
  get selection(): Places { return this.handle?.getSelection() ?? []; }
  set selection(places: Places) { this.act('', null, (handle) => handle.setSelection([...places])); }
  /** Selects the part that a node of the expression came from, by its number in `prefix`. */
  selectPart(number: number): boolean { return this.act('', null, (handle) => handle.selectPart(number)); }
  openPalette(): void { this.#openPalette(); }
  openKeyboard(): void { this.#keyboard.open(); }
  closeKeyboard(): void { this.#keyboard.close(); }

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
    isFaulty ? this.internals.states.add('faulty') : this.internals.states.delete('faulty');
    setAttribute(this.parts.input, 'aria-invalid', isFaulty ? 'true' : null);
  }

  refresh(): void { this.#view.paintSoon(); }

  // ---- Pictures

  toSVG(options: SvgOptions = {}): string {
    const handle = this.#used;
    const frame = handle?.frame();
    return handle && frame ? toSvg(frame, handle.module, { fontSize: this.#view.scale * 12, ...options }) : '';
  }

  async toPNG({ fontSize = this.#view.scale * 12, margin = 2, colour, background = '', density = 2 }: PngOptions = {}): Promise<Blob | null> {
    const { handle } = this;
    await document.fonts.ready;
    const frame = handle?.frame();
    if (!handle || !frame) return null;
    const scale = fontSize / 12 * density, edge = margin * density;
    const canvas = document.createElement('canvas');
    canvas.width = Math.ceil(widthOf(frame) * scale + 2 * edge);
    canvas.height = Math.ceil(heightOf(frame) * scale + 2 * edge);
    const context = canvas.getContext('2d')!;
    if (background) {
      context.fillStyle = background;
      context.fillRect(0, 0, canvas.width, canvas.height);
    }
    context.fillStyle = context.strokeStyle = colour ?? getComputedStyle(this).color;
    paintFrame(frame, context, { scale, x: edge, y: edge }, handle.module);
    return new Promise((settle) => canvas.toBlob(settle, 'image/png'));
  }

  // ---- Clipboard

  /** Copies what is selected, or else the formula, in a notation or as a picture. */
  async copyAs(notation: keyof typeof copyForms | 'svg' | 'png'): Promise<boolean> {
    const { handle } = this;
    if (!handle) return false;
    if (notation === 'png') {
      const picture = this.toPNG({ background: 'white', colour: 'black' }).then((blob) => blob ?? new Blob());
      await navigator.clipboard.write([new ClipboardItem({ 'image/png': picture })]);
      return true;
    }
    const frame = this.#view.peek()!;
    const text = notation === 'svg' ? this.toSVG()
      : textOf(handle, notation, has(frame, Flag.selected), commandsOf(handle.module).byName.get('copy')!);
    if (!text) return false;
    await navigator.clipboard.writeText(text);
    return true;
  }

  useClipboard(act: 'copy' | 'cut' | 'paste'): void {
    this.parts.input.focus({ preventScroll: true });
    if (act !== 'paste') {
      document.execCommand(act);
      return;
    }
    // A page may have to ask for this; without permission the field pastes what was copied in this page.
    navigator.clipboard?.readText().then(
      (text) => this.#paste((type) => type === 'text/plain' && text !== this.#ownText ? text : '', text === this.#ownText),
      () => this.#paste(() => '', true));
  }

  get #ownText(): string { return loaded()?.copied(Form.plain) ?? ''; }

  #paste(get: (type: string) => string, isOwn = false): boolean {
    return this.act('insertFromPaste', get('text/plain') || null, (handle) => (isOwn || offerPasted(handle.module, get)) && handle.paste() !== 0);
  }

  #copy(to: DataTransfer, command: 'copy' | 'cut'): boolean {
    const { handle } = this;
    const frame = this.#view.peek();
    if (!handle || !frame || !has(frame, Flag.selected)) return false;
    const number = commandsOf(handle.module).byName.get(command)!;
    if (command === 'cut' && this.isLocked) return false;
    handle.run(commandsOf(handle.module).byName.get('copy')!);
    writeCopied(handle.module, to, '');
    if (command === 'cut') this.act('deleteByCut', null, () => handle.run(number));
    return true;
  }

  // ---- Events

  #listen(): void {
    const { input, frame } = this.parts;
    this.root.addEventListener('focusin', () => this.#onFocus());
    this.root.addEventListener('focusout', (event) => this.#onBlur(event as FocusEvent));
    input.addEventListener('keydown', () => { this.#isTabbed = false; });
    input.addEventListener('keyup', (event) => {
      // Who comes with the Tab key finds all selected, as in a line of text.
      if (event.key === 'Tab' && this.#isTabbed) this.runCommand('select-all');
      this.#isTabbed = false;
    });
    for (const name of ['copy', 'cut'] as const) {
      input.addEventListener(name, (event) => { if (event.clipboardData && this.#copy(event.clipboardData, name)) event.preventDefault(); });
    }
    input.addEventListener('paste', (event) => {
      event.preventDefault();
      const data = event.clipboardData;
      if (data && !this.isLocked) this.#paste((type) => data.getData(type));
    });
    frame.addEventListener('contextmenu', (event) => {
      event.preventDefault();
      const isKey = event.clientX === 0 && event.clientY === 0 || event.button !== 2 && (event as PointerEvent).pointerType === '';
      if (!this.#hasFocus) input.focus({ preventScroll: true });
      this.#menu.open(isKey ? this.#caretBox() : new DOMRect(event.clientX, event.clientY, 0, 0));
    });
    // A press beside the formula is for it, too.
    this.addEventListener('mousedown', (event) => {
      if (event.composedPath()[0] !== this) return;
      event.preventDefault();
      input.focus({ preventScroll: true });
    });
    this.#pointer.listenToDrags((data) => this.#copy(data, 'copy'),
      (data) => !!this.#handle && offerPasted(this.#handle.module, (type) => data.getData(type)) && this.#handle.paste() !== 0, canPaste);
  }

  #onPress(isTouch: boolean): void {
    this.#isTabbed = false;
    this.#input.tellsRow = isTouch;
    const opens = isTouch && this.keyboard === 'auto' && !this.isLocked;
    // Before the focus, so that the keyboard of the device stays away.
    if (opens) this.parts.input.inputMode = 'none';
    this.parts.input.focus({ preventScroll: true });
    if (opens) this.#keyboard.open();
  }

  #onFocus(): void {
    if (this.#hasFocus) return;
    this.#hasFocus = true;
    this.#isTabbed = true;
    this.internals.states.add('focused');
    this.#seen = this.#handle?.revision ?? 0;
    this.#view.blink(true);
    this.#view.wantsCaret = true;
    this.#speech.listen();
    this.#input.begin();
    this.refresh();
  }

  #onBlur(event: FocusEvent): void {
    const to = event.relatedTarget;
    if (to instanceof Node && this.root.contains(to)) return;
    this.#hasFocus = false;
    this.internals.states.delete('focused');
    this.#input.end();
    this.#view.blink(false);
    this.#completions.close();
    this.#menu.close();
    this.#palette.close();
    this.#keyboard.close();
    this.act('', null, (handle) => {
      handle.compose('', 0);
      handle.complete();
      return true;
    });
    this.#tellChange();
    this.#form.update();
    this.refresh();
  }

  #tellChange(): void {
    const now = this.#handle?.revision ?? 0;
    if (now === this.#seen) return;
    this.#seen = now;
    this.dispatchEvent(new Event('change', { bubbles: true }));
  }

  /** The key of a form. */
  #onEnter(): void {
    const { form } = this.internals;
    if (!this.check()) return;
    this.#handle?.complete();
    this.#tellChange();
    this.#form.update();
    const button = form?.querySelector<HTMLElement>('button:not([type]), button[type=submit], input[type=submit], input[type=image]');
    if (button) button.click(); else form?.requestSubmit();
  }

  #onPaint(frame: FrameWords): void {
    const handle = this.#handle!;
    const { revision, moves } = handle;
    const hasChanged = revision !== this.#painted.revision, hasMoved = moves !== this.#painted.moves;
    this.parts.placeholder.hidden = this.#hasFocus || !has(frame, Flag.empty) || !this.placeholder;
    this.parts.placeholder.textContent = this.placeholder;
    this.#pointer.onPaint(frame);
    this.#input.onPaint(!hasChanged && !hasMoved);
    if (hasChanged || hasMoved) {
      this.#painted = { revision, moves };
      if (this.#hasFocus) this.#view.blink(true);
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
    this.#palette.open(this.#caretBox());
    return true;
  }

  // ---- Names

  /** The name of the hidden control is that of the field. */
  #nameControl(): void {
    const scope = this.getRootNode() as Document | ShadowRoot;
    const textOfIds = (ids: string) => ids.split(/\s+/).map((id) => id && scope.getElementById?.(id)?.textContent?.trim()).filter(Boolean).join(' ');
    const label = [...this.internals.labels ?? []].map((one) => one.textContent?.trim()).join(' ');
    const name = textOfIds(this.#attribute('aria-labelledby')) || this.#attribute('aria-label') || label || this.placeholder || 'Formula';
    setAttribute(this.parts.input, 'aria-label', name);
    setAttribute(this.parts.input, 'aria-required', this.required ? 'true' : null);
    setAttribute(this.parts.input, 'aria-roledescription', 'formula field');
  }
}
