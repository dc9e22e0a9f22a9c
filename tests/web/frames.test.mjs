// Every event script of the tests is drawn by the module as by a native build, word for word. Run by ctest in the preset "web":
//   node frames.test.mjs <native program> <folder of the .wasm files>
// Without the program, which the preset "dev" builds (tests/web/play_natively), there is nothing to compare: status 77.
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { existsSync, readdirSync, readFileSync } from "node:fs";
import { Form, FormulaModule } from "../../hosts/web/module/zolt_module.mjs";

const [program, build] = process.argv.slice(2);
if (!existsSync(program)) {
  console.log(`skipped: there is no ${program}`);
  process.exit(77);
}

const tests = new URL("..", import.meta.url);
const read = (path) => readFileSync(new URL(path, tests), "utf8");
const lines = readdirSync(tests, { withFileTypes: true })
  .filter((entry) => entry.isDirectory())
  .flatMap(({ name: folder }) => readdirSync(new URL(folder, tests)).filter((name) => name.endsWith(".cases")).map((name) => `${folder}/${name}`))
  .flatMap((path) => read(path).split("\n").filter((line) => !line.startsWith("#")));
const quote = (text) => `"${text.replaceAll(/["\\]/g, "\\$&")}"`;
// Frames come after every step, so what is typed becomes a step for each character.
const spread = (script) => script.replaceAll(/\btype "([^"\\]+)"/g, (_, text) => [...text].map((c) => `type "${c}"`).join(" "));
const scripts = lines.flatMap((line) => {
  const played = line.match(/^([^#|]*) (?:\||::) (.*) ⇒/u);
  if (played) return [[played[1].trim(), spread(played[2].trim())]];
  const [, pasted] = line.match(/^(.*) [⇒⇔]/u) ?? [];
  return (pasted ? [["", `paste ${quote(pasted)} command left char /`]] : []).concat(
    [...line.matchAll(/\["[^⇒]*"\]/gu)].map(([tree]) => [tree, "paint command select-all command left char 1"]));
});
scripts.push(["", read("../bench/scripts/quadratic_formula.script").replaceAll(/#.*|\n/g, " ")]);

const native = spawnSync(program, { input: scripts.map((pair) => pair.join("\t")).join("\n") + "\n", encoding: "utf8", maxBuffer: 1e8 });
assert.equal(native.status, 0, native.stderr);
const expected = native.stdout.trim().split("\n");
assert.equal(expected.length, scripts.length);

const compile = (name) => WebAssembly.compile(readFileSync(`${build}/${name}.wasm`));
const [whole, first, rest] = await Promise.all(["zolt_test", "zolt_test_first", "zolt_test_rest"].map(compile));

/** Plays a script; true if it is drawn as expected. */
function play(module, [tree, script], i) {
  const field = module.open();
  field.set(Form.tree, tree);
  const steps = module.calls.zolt_play(field.number, module.put(script));
  const found = [steps, ...(steps < 0 ? [0, 0] : module.numbers(2))].join(" ");
  field.close();
  if (found !== expected[i]) console.log(`drawn otherwise: ${tree} | ${script}\n  native ${expected[i]}, module ${found}`);
  return found === expected[i];
}

const module = await FormulaModule.load(whole);
assert.equal(scripts.filter((script, i) => !play(module, script, i)).length, 0);
const played = expected.reduce((sum, line) => sum + Math.max(0, parseInt(line)), 0);
console.log(`${scripts.length} scripts, ${played} steps`);
assert.ok(played > 3000);

// In two parts, of which the second comes when a script calls it: some scripts have a module of their own.
let some = 0;
for (let i = 0; i < scripts.length; i += 11, ++some) {
  const late = await FormulaModule.load(first, { rest });
  assert.ok(!late.rest.isThere && play(late, scripts[i], i));
}
console.log(`${some} scripts, each in a module whose second part comes late`);
