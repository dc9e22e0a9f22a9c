// The fields that are measured: how a page gets one, and what is loaded for it.

/** What a page is made of; `script` defines `bench`: `ready` (a promise), `set(latex)`, `get()`, `clear()`, `focus()`. */
export const fields = {
  "zolt-formula": {
    files: ["ours/zolt-formula.js", "ours/zolt_first.wasm", "ours/fonts/KaTeX_Main-Regular-frequent.woff2", "ours/fonts/KaTeX_Math-Italic-frequent.woff2"],
    head: `<script type="module" async blocking="render" src="/ours/zolt-formula.js"></script>
      <link rel="preload" as="fetch" crossorigin href="/ours/zolt_first.wasm">`,
    body: `<zolt-formula id="field" style="display:block"></zolt-formula>`,
    script: `
      const field = document.getElementById("field");
      window.bench = {
        ready: customElements.whenDefined("zolt-formula").then(() => field.ready),
        set: (latex) => { field.latex = latex; },
        get: () => field.latex,
        clear: () => { field.latex = ""; },
        focus: () => { field.focus(); },
      };`,
  },
  MathLive: {
    files: ["node_modules/mathlive/mathlive.min.js", "node_modules/mathlive/fonts/KaTeX_Main-Regular.woff2", "node_modules/mathlive/fonts/KaTeX_Math-Italic.woff2",
      "node_modules/mathlive/fonts/KaTeX_Size1-Regular.woff2", "node_modules/mathlive/fonts/KaTeX_Size2-Regular.woff2"],
    head: `<script src="/node_modules/mathlive/mathlive.min.js"></script>`,
    body: `<math-field id="field" style="display:block"></math-field>`,
    script: `
      MathLive.MathfieldElement.fontsDirectory = "/node_modules/mathlive/fonts";
      MathLive.MathfieldElement.soundsDirectory = null;
      const field = document.getElementById("field");
      window.bench = {
        ready: customElements.whenDefined("math-field").then(() => new Promise(requestAnimationFrame)),
        set: (latex) => { field.setValue(latex); },
        get: () => field.getValue(),
        clear: () => { field.setValue(""); },
        focus: () => { field.focus(); },
      };`,
  },
  MathQuill: {
    files: ["node_modules/jquery/dist/jquery.min.js", "node_modules/mathquill/build/mathquill.min.js", "node_modules/mathquill/build/mathquill.css",
      "node_modules/mathquill/build/font/Symbola.woff2"],
    head: `<link rel="stylesheet" href="/node_modules/mathquill/build/mathquill.css"><script src="/node_modules/jquery/dist/jquery.min.js"></script>
      <script src="/node_modules/mathquill/build/mathquill.min.js"></script>`,
    body: `<div id="field" style="display:block"></div>`,
    script: `
      const field = MathQuill.getInterface(2).MathField(document.getElementById("field"));
      window.bench = {
        ready: new Promise(requestAnimationFrame),
        set: (latex) => { field.latex(latex); },
        get: () => field.latex(),
        clear: () => { field.latex(""); },
        focus: () => { field.focus(); },
      };`,
  },
};

/** No field at all: what a key and a frame cost a page anyway. */
export const nothing = {
  files: [],
  head: "",
  body: `<button id="field">nothing</button>`,
  script: `window.bench = { ready: Promise.resolve(), set() {}, get: () => "", clear() {}, focus: () => { document.getElementById("field").focus(); } };`,
};

const term = (i) => `\\frac{a_{${i}}x^{${i}}+\\sqrt{b_{${i}}+1}}{c_{${i}}y^{${i}}+\\sin z}`;

/** Formulas in LaTeX: sums of fractions, and a mix with so many leaves. */
export function terms(count) {
  return Array.from({ length: count }, (_, i) => term(i + 1)).join("+");
}

export function mix(leaves) {
  const pieces = [(i) => `a_{${i}}`, (i) => `\\frac{x}{${i}}`, (i) => `\\sqrt{y+${i}}`, () => `x^{2}y`, (i) => `\\left(b+${i}\\right)`, () => `\\sin z`];
  const sizes = [1, 2, 2, 3, 2, 1];
  const sum = [];
  for (let i = 0, n = 0; n < leaves; ++i) {
    sum.push(pieces[i % pieces.length](i));
    n += sizes[i % pieces.length];
  }
  return sum.join("+");
}
