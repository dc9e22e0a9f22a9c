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

/** How many pixels of the window a pixel of an element is, where the page enlarges it by its style. */
export function scaleOf(element: HTMLElement): number {
  return element.getBoundingClientRect().width / element.offsetWidth || 1;
}

/** Moves a shown element to a place of the window, at most as high as said. */
export function moveTo(what: HTMLElement, left: number, top: number, height?: number): void {
  // Above all others, a `zoom` of the page counts and a `transform` does not.
  const zoom = scaleOf(what);
  if (height !== undefined) what.style.maxBlockSize = `${height / zoom}px`;
  what.style.left = `${left / zoom}px`;
  what.style.top = `${top / zoom}px`;
}

/** Puts a shown element below (else above) a box of the window, within the window. */
export function putAt(what: HTMLElement, box: DOMRectReadOnly, gap: number): void {
  const { width, height } = what.getBoundingClientRect();
  const shown = document.documentElement;
  const fits = box.bottom + gap + height <= shown.clientHeight || box.top - gap - height < 0;
  const top = fits ? box.bottom + gap : box.top - gap - height;
  moveTo(what, Math.max(EDGE, Math.min(box.left, shown.clientWidth - width - EDGE)), Math.max(EDGE, Math.min(top, shown.clientHeight - height - EDGE)));
}

/** A stretch of the window from top to bottom, in CSS pixels. */
export type Stretch = Pick<DOMRectReadOnly, 'top' | 'bottom'>;

/** In CSS pixels: between a line and what is put beside it; how far from its line something still belongs to it; edges of the window. */
const GAP = 6, REACH = 100, EDGE = 4;

/**
 * Puts a shown element below a line of the window, and below `whole`, which the line is a part of, if that does not end far away; above
 * where there is too little room for `least` of its `height`. It never covers the line; what there is no room for is scrolled to.
 * `floor` is where the free part of the window ends. What was above (`isAbove`, as returned) stays there while it can.
 */
export function putBeside(what: HTMLElement, line: DOMRectReadOnly, whole: Stretch,
  { height, least, floor, isAbove }: { height: number; least: number; floor: number; isAbove: boolean }): boolean {
  // The keyboard of a phone takes a part of the window away.
  const { offsetTop: top, height: seen } = visualViewport ?? { offsetTop: 0, height: innerHeight };
  const bottom = Math.min(top + seen, floor) - EDGE;
  const near = { top: line.top - whole.top > REACH ? line.top : whole.top, bottom: whole.bottom - line.bottom > REACH ? line.bottom : whole.bottom };
  const places = [near, line].flatMap((edge) => [{ isAbove: false, at: edge.bottom + GAP, room: bottom - edge.bottom - GAP },
    { isAbove: true, at: edge.top - GAP, room: edge.top - GAP - top - EDGE }]);
  if (isAbove) places.sort((one, other) => Number(other.isAbove) - Number(one.isAbove));
  const place = places.find(({ room }) => room >= Math.min(height, least)) ?? places.reduce((one, other) => other.room > one.room ? other : one);
  const shown = Math.max(0, Math.min(height, place.room));
  const { width } = what.getBoundingClientRect();
  moveTo(what, Math.max(EDGE, Math.min(line.left, document.documentElement.clientWidth - width - EDGE)), place.isAbove ? place.at - shown : place.at, shown);
  return place.isAbove;
}
