// Making elements. Texts are only ever set as text.

export type Attributes = Record<string, string | number | boolean>;

export function make<Tag extends keyof HTMLElementTagNameMap>(
  tag: Tag, attributes: Attributes = {}, ...children: (Node | string)[]): HTMLElementTagNameMap[Tag] {
  const made = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value !== false) made.setAttribute(name, value === true ? '' : String(value));
  }
  made.append(...children);
  return made;
}

/** Sets or, for null, takes away an attribute that is not so already. */
export function setAttribute(of: Element, name: string, value: string | null): void {
  if (value === null) of.removeAttribute(name);
  else if (of.getAttribute(name) !== value) of.setAttribute(name, value);
}

/** What gives a root these rules, by one sheet for all roots of a document. */
export function sheetOf(css: string): (root: ShadowRoot) => void {
  const sheets = new WeakMap<Document, CSSStyleSheet>();
  return (root) => {
    const { ownerDocument: document } = root;
    let sheet = sheets.get(document);
    if (!sheet) {
      // The window of another document has a class of its own.
      sheet = new (document.defaultView ?? window as typeof globalThis & Window).CSSStyleSheet();
      sheet.replaceSync(css);
      sheets.set(document, sheet);
    }
    root.adoptedStyleSheets.push(sheet);
  };
}

/** Buttons that leave the focus where it is. */
export function keepFocus(on: HTMLElement): void {
  on.addEventListener('pointerdown', (event) => event.preventDefault());
  on.addEventListener('mousedown', (event) => event.preventDefault());
}

/** Shows an element above all others, where the browser can. */
export function showAbove(what: HTMLElement): void {
  what.hidden = false;
  if (what.isConnected && what.popover && !what.matches(':popover-open')) what.showPopover();
}

export function hide(what: HTMLElement): void {
  if (what.popover && what.isConnected && what.matches(':popover-open')) what.hidePopover();
  what.hidden = true;
}

/** Puts a shown element below (else above) a box of the window, within the window. */
export function putAt(what: HTMLElement, box: DOMRectReadOnly, gap: number): void {
  const { width, height } = what.getBoundingClientRect();
  const shown = document.documentElement;
  const fits = box.bottom + gap + height <= shown.clientHeight || box.top - gap - height < 0;
  const top = fits ? box.bottom + gap : box.top - gap - height;
  what.style.left = `${Math.max(4, Math.min(box.left, shown.clientWidth - width - 4))}px`;
  what.style.top = `${Math.max(4, Math.min(top, shown.clientHeight - height - 4))}px`;
}
