// Writes what programs make of LaTeX, for producers_test: the LaTeX, the program and the MathML, a line each.
// Usage: node make_mathml.mjs <folder with node_modules> < formulas.txt
import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";
import { readFileSync } from "node:fs";

const require = createRequire(process.argv[2] + "/");
const katex = require("katex");
const temml = require("temml");
const { mathjax } = require("mathjax-full/js/mathjax.js");
const { TeX } = require("mathjax-full/js/input/tex.js");
const { AllPackages } = require("mathjax-full/js/input/tex/AllPackages.js");
const { SerializedMmlVisitor } = require("mathjax-full/js/core/MmlTree/SerializedMmlVisitor.js");
const { STATE } = require("mathjax-full/js/core/MathItem.js");
const { liteAdaptor } = require("mathjax-full/js/adaptors/liteAdaptor.js");
const { RegisterHTMLHandler } = require("mathjax-full/js/handlers/html.js");
RegisterHTMLHandler(liteAdaptor());

const packages = AllPackages.filter((name) => name !== "bussproofs");
const page = mathjax.document("", { InputJax: new TeX({ packages }) });
const visitor = new SerializedMmlVisitor();
const programs = {
  katex: (latex) => katex.renderToString(latex, { output: "mathml", throwOnError: true, strict: "ignore" }),
  // As it is copied from a page.
  katexPage: (latex) => katex.renderToString(latex, { throwOnError: true, strict: "ignore" }),
  temml: (latex) => temml.renderToString(latex, { throwOnError: true }),
  mathjax: (latex) => visitor.visitTree(page.convert(latex, { end: STATE.CONVERT })),
};
try {
  execFileSync("pandoc", ["--version"]);
  programs.pandoc = (latex) =>
    execFileSync("pandoc", ["-f", "latex", "-t", "html", "--mathml"], { input: `$${latex}$`, encoding: "utf8" });
} catch {
  console.error("pandoc is not there and left out");
}
for (const latex of readFileSync(0, "utf8").split("\n")) {
  if (latex === "") continue;
  for (const [name, convert] of Object.entries(programs)) {
    const made = convert(latex).replace(/\s*\n\s*/g, " ");
    // What it does not know, pandoc leaves as it is.
    if (made.includes("<math")) console.log([latex, name, made].join("\t"));
  }
}
