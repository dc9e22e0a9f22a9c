// MathML as text and as elements, without the parser of the page: that one is closed to scripts where trusted types
// are required, and values must stay data.

const named: Record<string, string> = {
  lt: '<', gt: '>', amp: '&', quot: '"', apos: "'", nbsp: '\u00a0', InvisibleTimes: '\u2062', it: '\u2062',
  ApplyFunction: '\u2061', af: '\u2061', InvisibleComma: '\u2063', ic: '\u2063', minus: '\u2212', times: '\u00d7',
  PlusMinus: '\u00b1', pm: '\u00b1', int: '\u222b', sum: '\u2211', prod: '\u220f', infin: '\u221e', pi: '\u03c0',
  alpha: '\u03b1', beta: '\u03b2', gamma: '\u03b3', delta: '\u03b4', epsilon: '\u03b5', theta: '\u03b8',
  lambda: '\u03bb', mu: '\u03bc', sigma: '\u03c3', phi: '\u03c6', omega: '\u03c9', ExponentialE: '\u2147',
  ee: '\u2147', DifferentialD: '\u2146', dd: '\u2146', ImaginaryI: '\u2148', ii: '\u2148', middot: '\u00b7',
  sdot: '\u22c5', le: '\u2264', ge: '\u2265', ne: '\u2260', rarr: '\u2192', part: '\u2202', hellip: '\u2026',
};

function decode(text: string): string {
  return text.replace(/&(?:#x([\da-f]{1,6})|#(\d{1,7})|(\w+));/gi, (whole, hex, decimal, name) => {
    if (name) return named[name] ?? whole;
    const code = parseInt(hex ?? decimal, hex ? 16 : 10);
    return code <= 0x10ffff ? String.fromCodePoint(code) : '\ufffd';
  });
}

const namespace = 'http://www.w3.org/1998/Math/MathML';
const start = /<(?:\w+:)?math[\s/>]/;
const token = /<!--[^]*?-->|<!\[CDATA\[([^]*?)\]\]>|<[?!][^>]*>|<(\/?)([\w:.-]+)((?:"[^"]*"|'[^']*'|[^"'>])*?)(\/?)>|([^<]+)/y;
const attribute = /([\w:.-]+)\s*=\s*(?:"([^"]*)"|'([^']*)')/g;

/** Whether there may be a formula in the text, which else may be a page. */
export const hasMathml = (text: string): boolean => start.test(text);

/** The first formula in a text as an element that is in no document; null when there is none. */
export function buildMathml(text: string): Element | null {
  let root: Element | null = null;
  let at: Element | null = null;
  token.lastIndex = text.search(start);
  if (token.lastIndex < 0) return null;
  for (let found; (found = token.exec(text)); ) {
    const [, data, closing, full, attributes = '', empty, words] = found;
    if (!full) {
      at?.append(data ?? decode(words ?? ''));
      continue;
    }
    const name = full.slice(full.indexOf(':') + 1);
    if (!closing) {
      const made = document.createElementNS(namespace, name);
      for (const [, key, one, other] of attributes.matchAll(attribute)) {
        // Of foreign text only what describes a formula is taken over.
        if (!/^(on|xml|href|style)|:/.test(key!)) made.setAttribute(key!, decode(one ?? other ?? ''));
      }
      at?.append(made);
      root ??= made;
      at = made;
    } else if (at?.localName !== name) {
      return null;
    }
    if (closing || empty) at = at!.parentElement;
    if (!at) return root;
  }
  return null;
}
