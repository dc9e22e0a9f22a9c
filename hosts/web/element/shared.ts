// What all fields of a page share: the module, the faces, and the moments at which all are painted anew.

import { RestOfModule } from '../module/rest_of_module.mjs';
import { FormulaModule } from '../module/zolt_module.mjs';

export type Module = FormulaModule;

/** What `load` may be told; all of it is beside the script otherwise. */
export interface Sources {
  /** The module: an address, its bytes, or itself. */
  module?: string | URL | BufferSource | WebAssembly.Module;
  /** The folder of the font files; null: the page has the faces already. */
  fonts?: string | URL | null;
  /** Only the standard operators, instead of the extended catalogue. */
  standardOnly?: boolean;
}

let module: Module | null = null;
let rest: RestOfModule | null = null;
let loading: Promise<Module> | null = null;
/** Of the font files; null: the page has the faces. */
let folder: URL | null = null;
const painters = new Set<() => void>();

/** The module, once it is there. */
export const loaded = (): Module | null => module;

/** Loads the module of the page. The first call decides from where; fields call it when the page has not. */
export function load(sources: Sources = {}): Promise<Module> {
  return loading ??= start(sources).catch((error: unknown) => {
    loading = null;
    throw error;
  });
}

/** The same with its second file, which showing a formula takes: both come at once. */
export async function loadWhole(): Promise<Module> {
  const first = load();
  await Promise.all([first, rest?.load()]);
  return first;
}

/** A folder beside the script. Bundlers take an address that is written out for a file, and fail where it is none. */
const beside = (folder: string) => new URL(folder, import.meta.url);

/** Does what takes the second file when that is there: calling into it before makes the page wait. */
export function whenWhole(act: () => void): void {
  if (!module?.rest || module.rest.isThere) act();
  else module.rest.load().then(act, () => undefined);
}

async function start(sources: Sources): Promise<Module> {
  const from = sources.module ?? new URL('./zolt_first.wasm', import.meta.url);
  rest = sources.module ? null : new RestOfModule(new URL('./zolt_rest.wasm', import.meta.url));
  const fonts = sources.fonts === undefined ? beside('fonts/') : sources.fonts;
  if (fonts !== null && typeof document !== 'undefined') folder = new URL(String(fonts).replace(/\/?$/, '/'), document.baseURI);
  const isAddress = typeof from === 'string' || from instanceof URL;
  const made = await FormulaModule.load(isAddress ? fetch(from) : from, { extended: !sources.standardOnly, ...rest && { rest } });
  // The fields are painted first.
  (globalThis.requestIdleCallback ?? setTimeout)(() => {
    made.prepare();
    made.rest?.load().catch(() => undefined);
  }, { timeout: 300 } as never);
  return module = made;
}

export interface Face {
  readonly style: string;
  readonly family: string;
}

const faces = new WeakMap<Module, readonly Face[]>();

/** The faces of glyphs, by their numbers. */
export function facesOf(of: Module): readonly Face[] {
  let found = faces.get(of);
  if (!found) {
    found = of.faces.map((face) => {
      const [family, italic] = face.split(/( italic)$/);
      return { style: italic ? 'italic' : 'normal', family: family! };
    });
    faces.set(of, found);
  }
  return found;
}

/** The faces have names of their own, since the page may have other cuts of them. */
export const familyOf = (family: string): string => `Zolt ${family}`;

/** What most formulas are written with is in smaller files of its own, as ../fonts/make_fonts.py cuts them. */
const frequent = [
  'U+20-21, U+28-29, U+2B-3A, U+3C-3E, U+61-69, U+6C-70, U+72-75, U+78, U+2032, U+2212, U+221A, U+221E, U+2264-2265, U+22C5',
  'U+41-49, U+4C-4E, U+50, U+52-54, U+56, U+58, U+61-7A',
];

function addFaces(of: Module, folder: URL): void {
  facesOf(of).forEach(({ style, family }, i) => {
    const isItalic = style === 'italic' ? '-Italic' : family.startsWith('KaTeX') ? '-Regular' : '';
    const add = (suffix: string, range: FontFaceDescriptors) => {
      const file = new URL(`${family.replace(' ', '')}${isItalic}${suffix}.woff2`, folder);
      const face = new FontFace(familyOf(family), `url("${file.href}")`, { style, ...range });
      document.fonts.add(face);
      return face;
    };
    // These load when a character of theirs is shown.
    add('', {});
    // Of two faces with a character the later one shows it.
    const unicodeRange = frequent[i];
    const face = unicodeRange && add('-frequent', { unicodeRange });
    if (face) face.load().catch(() => undefined);
  });
}

// ---- Painting

/** Calls `paint` whenever all must be painted anew, until the returned function is called. */
export function paintWith(paint: () => void): () => void {
  painters.add(paint);
  return () => painters.delete(paint);
}

export function repaintAll(): void { for (const paint of painters) paint(); }

let hasBegun = false;

/** Before a formula is painted: not earlier, since this takes some milliseconds, and fields take keys before. */
export function beginToPaint(of: Module): void {
  if (hasBegun) return;
  hasBegun = true;
  if (folder) addFaces(of, folder);
  document.fonts.addEventListener('loadingdone', repaintAll);
  for (const query of ['(prefers-color-scheme: dark)', '(forced-colors: active)', '(prefers-contrast: more)']) {
    matchMedia(query).addEventListener('change', repaintAll);
  }
  const watchDensity = () => matchMedia(`(resolution: ${devicePixelRatio}dppx)`).addEventListener('change', () => {
    repaintAll();
    watchDensity();
  }, { once: true });
  watchDensity();
}

const waiting = new Set<() => void>();

/** Calls `act` in the next animation frame, once. */
export function inNextFrame(act: () => void): void {
  if (waiting.size === 0) {
    requestAnimationFrame(() => {
      const now = [...waiting];
      waiting.clear();
      for (const one of now) one();
    });
  }
  waiting.add(act);
}
