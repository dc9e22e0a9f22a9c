// What opens at a field comes in a file of its own, since a field is seen and typed into without it.

import type { Owner } from './owner.js';
import type { PanelActs, PanelSet } from './panel_set.js';
import type { View } from './view.js';

let loading: Promise<typeof import('./panel_set.js')> | null = null;

/** Begins to load what opens at fields. */
export function loadPanels(): Promise<typeof import('./panel_set.js')> {
  return loading ??= import('./panel_set.js').catch((error: unknown) => {
    loading = null;
    throw error;
  });
}

export class Panels {
  /** Null until it has been used. */
  set: PanelSet | null = null;
  readonly #owner: Owner;
  readonly #view: View;
  readonly #acts: PanelActs;

  constructor(owner: Owner, view: View, acts: PanelActs) {
    this.#owner = owner;
    this.#view = view;
    this.#acts = acts;
  }

  /** Does it now, or when the file has arrived. */
  use(act: (set: PanelSet) => void): void {
    if (this.set) return act(this.set);
    loadPanels().then(({ PanelSet }) => {
      this.set ??= new PanelSet(this.#owner, this.#view, this.#acts);
      act(this.set);
    }, (error: unknown) => console.warn('zolt-formula: what opens at a field cannot be loaded', error));
  }

  /** The field is in another document. */
  adoptSheet(): void { this.set?.adoptSheet(); }

  /** Closes all, when the focus has gone. */
  close(): void { this.set?.close(); }
}
