// Work that may wait for a pause.

/** The more it costs, the longer the pause must be, so that large formulas do not make a person wait. */
export class Later {
  readonly #act: () => void;
  readonly #rest: number;
  readonly #share: number;
  #timer = 0;
  #cost = 0;

  /** `rest` in ms, at least; of the time, it takes one part in `share` at most. */
  constructor(act: () => void, rest: number, share: number) {
    this.#act = act;
    this.#rest = rest;
    this.#share = share;
  }

  /** There is something to do. */
  touch(): void {
    this.stop();
    this.#timer = window.setTimeout(() => this.now(), Math.max(this.#rest, this.#share * this.#cost));
  }

  now(): void {
    this.stop();
    const began = performance.now();
    this.#act();
    this.#cost = performance.now() - began;
  }

  stop(): void {
    clearTimeout(this.#timer);
    this.#timer = 0;
  }

  get isWaiting(): boolean { return this.#timer !== 0; }
}
