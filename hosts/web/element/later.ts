// Work that may wait for a pause.

/** The more it costs, the longer the pause must be, so that large formulas do not make a person wait. */
export class Later {
  readonly #act: () => void;
  readonly #rest: number;
  readonly #share: number;
  #timer = 0;
  #due = 0;
  #cost = 0;

  /** `rest` in ms, at least; of the time, it takes one part in `share` at most. */
  constructor(act: () => void, rest: number, share: number) {
    this.#act = act;
    this.#rest = rest;
    this.#share = share;
  }

  /** There is something to do. A timer that runs already goes on, since a new one with every key costs more. */
  touch(): void {
    const pause = Math.max(this.#rest, this.#share * this.#cost);
    this.#due = performance.now() + pause;
    if (this.#timer === 0) this.#wait(pause);
  }

  #wait(pause: number): void {
    this.#timer = window.setTimeout(() => {
      const left = this.#due - performance.now();
      if (left > 1) this.#wait(left); else this.now();
    }, pause);
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
