// Compiles formulas, one a line, with Typst, and fails for those that have an error or a warning.
// Usage: node compile_typst.mjs <folder with node_modules> < formulas.txt
import { createRequire } from "node:module";
import { readFileSync } from "node:fs";

const { NodeCompiler } = createRequire(process.argv[2] + "/")("@myriaddreamin/typst-ts-node-compiler");
const compiler = NodeCompiler.create();
const formulas = readFileSync(0, "utf8").split("\n").filter((line) => line !== "");
let wrong = formulas.length >= 200 ? 0 : 1;
for (const formula of formulas) {
  const result = compiler.compile({ mainFileContent: `$ ${formula} $` });
  const faults = result.takeDiagnostics() ?? result.takeWarnings();
  if (faults === null) continue;
  console.error(formula, faults.shortDiagnostics);
  ++wrong;
}
console.log(`${formulas.length} formulas, ${wrong} of them wrong`);
process.exit(wrong === 0 ? 0 : 1);
