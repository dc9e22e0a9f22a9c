// Computing in a worker that is ended when it takes too long.

export interface Question {
  readonly expression: string;
  readonly operation: string;
  readonly variable: string;
}

export interface Answer {
  readonly outcome: 'value' | 'none';
  /** The value in prefix text, or a sentence that says why there is none. */
  readonly text: string;
  /** The number of the node that is to blame; 0 or less: none. */
  readonly part: number;
}

/** Whether the page's server has the algebra system, which it runs in a process of its own. */
export async function hasGiac(): Promise<boolean> {
  const answer = await fetch('giac').catch(() => null);
  return !!answer?.ok && (await answer.json().catch(() => null))?.isThere === true;
}

/** It ends what takes too long, as the worker here is ended, and what is no longer wanted. */
export async function askGiac(question: Question, signal: AbortSignal): Promise<Answer> {
  const body = JSON.stringify(question);
  const answer = await fetch('giac', { method: 'POST', body, headers: { 'Content-Type': 'application/json' }, signal }).catch(() => null);
  return answer?.ok ? answer.json() : { outcome: 'none', text: 'The algebra system does not answer', part: 0 };
}

/** What a question may take, in ms; the engine itself stops earlier. */
const MOST = 3000;

interface Policies { createPolicy(name: string, rules: { createScriptURL(url: string): string }): { createScriptURL(url: string): string } }
/** The page allows scripts of workers by this policy alone. */
const policy = (globalThis as { trustedTypes?: Policies }).trustedTypes?.createPolicy('engine', { createScriptURL: (url) => url });

export class Computer {
  readonly #script: string;
  #worker: Worker | null = null;
  #last: Promise<unknown> = Promise.resolve();

  constructor(script: URL) { this.#script = policy?.createScriptURL(script.href) ?? script.href; }

  /** One question after another. */
  ask(question: Question): Promise<Answer> {
    const answer = this.#last.then(() => this.#ask(question));
    this.#last = answer;
    return answer;
  }

  #ask(question: Question): Promise<Answer> {
    const worker = this.#worker ??= new Worker(this.#script, { type: 'module' });
    return new Promise((settle) => {
      const end = (answer: Answer) => {
        clearTimeout(deadline);
        worker.onmessage = worker.onerror = null;
        settle(answer);
      };
      const fail = (text: string) => {
        worker.terminate();
        this.#worker = null;
        end({ outcome: 'none', text, part: 0 });
      };
      const deadline = setTimeout(() => fail('This takes too long'), MOST);
      worker.onmessage = ({ data }: MessageEvent<Answer>) => end(data);
      worker.onerror = () => fail('The engine has failed');
      worker.postMessage(question);
    });
  }
}
