// The modules under Node.js, through the objects that pages use. Run by ctest in the preset "web":
//   node --test module.test.mjs    with ZOLT_WEB_BUILD naming the folder of the .wasm files
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import test from "node:test";
import { FormulaEngine, Operation, Outcome } from "../../hosts/web/module/zolt_engine.mjs";
import { useFirstField } from "../../hosts/web/tools/first_field.mjs";
import { Flag, Form, FormulaModule, Frame, SetResult } from "../../hosts/web/module/zolt_module.mjs";

const readModule = (name) => readFile(`${process.env.ZOLT_WEB_BUILD}/${name}.wasm`);
const module = await FormulaModule.load(await readModule("zolt"));

function withField(name, run) {
  test(name, () => {
    const field = module.open();
    const command = (wanted) => field.run(module.findCommand(wanted));
    run(field, (text) => [...text].every((c) => field.type(c)), command);
    field.close();
  });
}

withField("what is typed is shown and handed out", (field, type) => {
  assert.ok(type("sqrt(x+1)/2"));
  assert.equal(field.get(Form.prefix), "/(sqrt(+(x,1)),2)");
  const { revision, moves } = field;
  field.run(module.findCommand("home"));
  assert.ok(field.revision === revision && field.moves !== moves);
  const { ints, floats } = field.frame();
  assert.ok(ints[Frame.width] > 30 && floats[Frame.baseline] > 9 && ints[Frame.list] >= Frame.head);
  assert.equal(ints[Frame.flags] & (Flag.editable | Flag.empty | Flag.canUndo), Flag.editable | Flag.canUndo);
});

withField("texts of any length and of any characters cross the border", (field) => {
  const sum = Array.from({ length: 20000 }, (_, i) => `a${i}`).join("+");
  assert.equal(field.set(Form.plain, sum), SetResult.done);
  assert.equal(field.get(Form.plain), sum);
  assert.equal(field.set(Form.plain, sum), SetResult.same);
  assert.equal(field.set(Form.plain, "λ+𝛼"), SetResult.done);
  assert.equal(field.get(Form.plain), "λ+𝛼");
});

withField("a refusal has its sentence and its place", (field) => {
  assert.equal(field.set(Form.latex, "1+\\fracc{a}{b}"), SetResult.refused);
  const { message, begin, end } = module.fault();
  assert.match(message, /frac/);
  assert.deepEqual([begin, end], [2, 8]);
});

// A tree of nodes as a browser makes them.
function parse(text) {
  const root = { nodeType: 1, localName: "none", attributes: [], childNodes: [] };
  let at = root;
  for (const [, close, name, attributes, character] of text.matchAll(/<(\/?)(\w+)([^>]*)>|([^<]+)/g)) {
    if (close) at = at.parentNode;
    else {
      const node = name
        ? { nodeType: 1, localName: name, childNodes: [], attributes: [...attributes.matchAll(/(\w+)="(.*?)"/g)].map(([, n, value]) => ({ name: n, value })) }
        : { nodeType: 3, data: character, childNodes: [] };
      node.parentNode = at;
      at.childNodes.push(node);
      if (name) at = node;
    }
  }
  const link = (node) => {
    node.firstChild = node.childNodes[0] ?? null;
    node.childNodes.forEach((child, i) => ((child.nextSibling = node.childNodes[i + 1] ?? null), link(child)));
  };
  link(root);
  return root.firstChild;
}

withField("MathML is read from the browser's elements", (field) => {
  const fenced = '<math><mfenced open="|" close="|"><mfrac><mi>a</mi><msup><mi>b</mi><mn>2</mn></msup></mfrac></mfenced></math>';
  assert.equal(field.setMathml(parse(fenced)), SetResult.done);
  assert.equal(field.get(Form.prefix), "abs(/(a,^(b,2)))");
  assert.equal(field.set(Form.prefix, "sin(x)"), SetResult.done);
  const text = field.get(Form.mathml);
  field.clear();
  assert.equal(field.setMathml(parse(text.replaceAll("&#x2061;", "\u2061"))), SetResult.done);
  assert.equal(field.get(Form.prefix), "sin(x)");
});

withField("menus and the palette are complete", (field, type, command) => {
  const { commands, palette } = module;
  assert.ok(commands.some(({ name, keys, modifies }) => name === "undo" && keys.startsWith("Ctrl+Z,") && modifies));
  assert.equal(commands[module.findKeys("Ctrl+A")].name, "select-all");
  assert.ok(palette.every(({ title, entries }) => title && entries.every((entry) => entry.title && (entry.picture || entry.label))));
  for (const { entries } of palette) for (const { picture } of entries) assert.ok(!picture || module.picture(picture).ints[Frame.width] > 0);
  const entries = palette.flatMap((group) => group.entries);
  assert.equal(entries[module.search("sqrt").indexOf(3)].title, "Square root");
  assert.ok(type("\\sq"));
  const list = field.completion();
  assert.equal(list.entries[list.current].title, "Square root");
  assert.ok(field.accept(list.current) && type("4") && command("out-right") && type("a"));
  assert.equal(field.get(Form.prefix), "*(sqrt(4),a)");
});

withField("tables have the size that is asked for, and go through the clipboard as tables", (field, type, command) => {
  const { table } = module.palette.flatMap((group) => group.entries).find((entry) => entry.table);
  assert.ok(field.insert(`${table}:2x3`) && type("1"));
  for (const name of ["select-right", "select-right", "copy"]) command(name);
  assert.match(module.copied(Form.html), /<td>/);
  module.offer({ html: "<table><tr><td>a<td>b<tr><td>c<td>d</table>" });
  field.clear();
  assert.equal(field.paste(), 1);
  assert.equal(field.get(Form.prefix), "matrix(list(a,b),list(c,d))");
});

withField("a listener hears what happens", (field, type, command) => {
  assert.equal(field.announce().text, "");
  type("a/b");
  field.announce();
  command("left");
  command("left");
  assert.match(field.announce().text, /\w/);
  assert.match(field.getWords().text, /a over b|fraction/);
});

test("a first field needs one part of the module, and more calls the other", async () => {
  const rest = await readModule("zolt_rest");
  const first = await readModule("zolt_first");
  const late = await FormulaModule.load(first, { rest });
  useFirstField(late);
  assert.ok(!late.rest.isThere);
  const field = late.open();
  assert.ok(field.set(Form.latex, "\\frac{a}{b}") === SetResult.done && late.rest.isThere);
  assert.equal(field.get(Form.prefix), "/(a,b)");
  // In the background; afterwards there is nothing to do.
  const early = await FormulaModule.load(first, { rest });
  await early.rest.load();
  early.rest.loadNow();
  assert.match(early.convert("/(a,b)", Form.latex), /frac/);
});

test("the engine computes, remembers and gives up in time", async () => {
  const engine = await FormulaEngine.load(await readModule("zolt_engine"));
  assert.deepEqual(engine.compute({ expression: "+(/(1,3),/(1,6))" }), { outcome: Outcome.value, text: "/(1,2)", certainDigits: -1, part: -1 });
  const root = engine.compute({ expression: "sqrt(2)", operation: Operation.approximate, digits: 5 });
  assert.ok(root.text === "1.4142" && root.certainDigits >= 5);
  assert.equal(engine.compute({ expression: "^(x,2)", operation: Operation.differentiate, variable: "x" }).text, "*(2,x)");
  assert.equal(engine.compute({ expression: ":=(a,2)" }).outcome, Outcome.value);
  assert.equal(engine.compute({ expression: "*(a,3)" }).text, "6");
  engine.forget();
  assert.equal(engine.compute({ expression: "*(a,3)" }).text, "*(3,a)");
  const failed = engine.compute({ expression: "+(1,/(1,0))" });
  assert.ok(failed.outcome === Outcome.noValue && failed.part === 2 && /zero/.test(failed.text));
  assert.equal(engine.compute({ expression: "+(1" }).outcome, Outcome.malformed);
  const started = performance.now();
  const long = engine.compute({ expression: "sum(x,1,100000000,sin(*(x,x)))", operation: Operation.approximate, milliseconds: 100 });
  assert.ok(long.outcome === Outcome.unevaluated && performance.now() - started < 5000, long.text);
});

test("where memory ends, fields refuse and live on", async () => {
  // This module may have 16 MB.
  const small = await FormulaModule.load(await readModule("zolt_test"));
  const command = (name) => small.findCommand(name);
  const field = small.open();
  field.set(Form.plain, "a+1/b");
  let longest = "";
  while (!small.takeShortage()) {
    longest = field.get(Form.plain) ?? longest;
    field.run(command("select-all"));
    field.run(command("copy"));
    field.run(command("formula-end"));
    field.paste();
  }
  assert.ok(longest.length > 10000, `only ${longest.length}`);
  assert.ok(field.frame(0, 0, 400, 100).ints[Frame.width] > longest.length);
  assert.ok(field.type("z") && field.run(command("undo")) && !small.takeShortage());
  assert.equal(field.set(Form.plain, "x+".repeat(200000) + "x"), SetResult.refused);
  assert.match(small.fault().message, /memory/);
  field.close();
  const fields = [];
  for (let next; (next = small.open()); fields.push(next)) next.set(Form.plain, "sqrt(x)");
  assert.ok(fields.length > 100 && small.takeShortage());
  for (const one of fields) {
    one.type("y");
    one.frame();
    one.close();
  }
  small.takeShortage();
  const later = small.open();
  assert.ok(later.type("z") && later.get(Form.plain) === "z" && !small.takeShortage());
});
