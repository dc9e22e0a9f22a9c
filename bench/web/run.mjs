// Measures formula fields beside each other, in one browser, in one run:
//   ./run bench-web [--fields zolt-formula,MathLive] [--cases terms-10,terms-200] [<folder of our package's dist>]
// docs/performance.md says what is measured and how. Results go to stdout as a table in Markdown.
import { createReadStream, existsSync, readFileSync, statSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join, resolve } from "node:path";
import { parseArgs } from "node:util";
import { gzipSync } from "node:zlib";
import { chromium } from "playwright-core";
import { fields, mix, nothing, terms } from "./fields.mjs";

const here = import.meta.dirname;
const { values: options, positionals } = parseArgs({
  allowPositionals: true,
  options: { fields: { type: "string" }, cases: { type: "string" }, patience: { type: "string", default: "40" } },
});
const ours = resolve(positionals[0] ?? join(here, "../../build/web/site/package/dist"));
if (!existsSync(join(ours, "zolt.wasm"))) throw new Error(`there is no package in ${ours}: ./run bench-web builds it`);
const patience = Number(options.patience) * 1000;
const cases = { "terms-10": terms(10), "terms-200": terms(200), "terms-1000": terms(1000), "mix-20000": mix(20000) };
const chosen = (all, wanted) => Object.entries(all).filter(([name]) => !wanted || wanted.split(",").includes(name));

const types = { ".html": "text/html", ".js": "text/javascript", ".mjs": "text/javascript", ".css": "text/css", ".wasm": "application/wasm", ".woff2": "font/woff2" };
const toFile = (path) => (path.startsWith("ours/") ? join(ours, path.slice(5)) : join(here, path));
const pageOf = ({ head, body, script }) =>
  `<!doctype html><html lang="en"><head><meta charset="utf-8"><title>bench</title><link rel="icon" href="data:,">${head}</head>
  <body style="font-size:21px"><main>${body}</main><script>${script}
  bench.ready.then(() => { bench.readyAt = performance.now(); });
  // From a key to the frame that shows what it did.
  bench.painted = [];
  const channel = new MessageChannel();
  let pressed = 0;
  channel.port1.onmessage = () => { if (pressed) bench.painted.push(performance.now() - pressed); pressed = 0; };
  window.addEventListener("keydown", (event) => { pressed = event.timeStamp; requestAnimationFrame(() => requestAnimationFrame(() => channel.port2.postMessage(0))); }, true);
  </script></body></html>`;
const pages = Object.fromEntries(Object.entries({ ...fields, nothing }).map(([name, field]) => [`/${name}.html`, pageOf(field)]));
const server = createServer((request, response) => {
  const path = decodeURIComponent(new URL(request.url, "http://localhost").pathname);
  const headers = { "Content-Type": types[extname(path)] ?? "application/octet-stream", "Cache-Control": "no-store" };
  if (pages[path]) return response.writeHead(200, headers).end(pages[path]);
  const file = toFile(path.slice(1));
  if (!statSync(file, { throwIfNoEntry: false })?.isFile()) return response.writeHead(404).end();
  createReadStream(file).pipe(response.writeHead(200, headers));
});
await new Promise((listening) => server.listen(0, "127.0.0.1", listening));
const address = `http://127.0.0.1:${server.address().port}`;

const browser = await chromium.launch({
  executablePath: process.env.ZOLT_CHROMIUM ?? "/usr/bin/chromium",
  args: ["--no-sandbox", "--disable-gpu", "--disable-background-networking", "--disable-component-update", "--disable-sync"],
});

/** A page with the field, ready; `act` gets tools to measure with. Null when it takes longer than anyone waits. */
async function withPage(name, act) {
  const context = await browser.newContext({ viewport: { width: 1000, height: 400 } });
  const page = await context.newPage();
  page.setDefaultTimeout(patience);
  const session = await context.newCDPSession(page);
  await session.send("Performance.enable", { timeDomain: "threadTicks" });
  // The browser is busy with the window itself at first, whatever the page is.
  await new Promise((settle) => setTimeout(settle, 700));
  let late;
  const tooLate = new Promise((_, fail) => { late = setTimeout(() => fail(new Error("too long")), patience); });
  try {
    await page.goto(`${address}/${name}.html`);
    await page.evaluate(() => bench.ready);
    const frame = () => page.evaluate(() => new Promise((done) => requestAnimationFrame(() => requestAnimationFrame(() => setTimeout(done)))));
    /** Milliseconds of the main thread's processor time. */
    const spent = async () => {
      const { metrics } = await session.send("Performance.getMetrics");
      return 1000 * metrics.find((metric) => metric.name === "ThreadTime").value;
    };
    const press = async (key) => {
      await page.keyboard.press(key);
      await frame();
    };
    return await Promise.race([act({ page, spent, frame, press }), tooLate]);
  } catch (error) {
    if (!/too long|imeout/.test(error.message)) console.error(`${name}: ${error.message.split("\n")[0]}`);
    return null;
  } finally {
    clearTimeout(late);
    await Promise.race([context.close(), new Promise((done) => setTimeout(done, 2000))]);
  }
}

const median = (numbers) => [...numbers].sort((a, b) => a - b)[Math.floor(numbers.length / 2)];
const repeats = 15;

/** The median over some repeats of what `act` costs. */
async function cost(tools, act, before = async () => {}) {
  const costs = [];
  for (let i = 0; i < repeats; ++i) {
    await before();
    await tools.frame();
    const from = await tools.spent();
    await act();
    costs.push((await tools.spent()) - from);
    if (costs.reduce((a, b) => a + b) > 5000) break;
  }
  return median(costs);
}

const acts = {
  key: (latex) => async (tools) => {
    const { page, press } = tools;
    await page.evaluate((text) => (bench.set(text), bench.focus()), latex);
    await press("End");
    await page.evaluate(() => { bench.painted = []; });
    const each = await cost(tools, () => press("k"));
    return { each, painted: median(await page.evaluate(() => bench.painted)) };
  },
  move: (latex) => async (tools) => {
    const { page, press } = tools;
    await page.evaluate((text) => (bench.set(text), bench.focus()), latex);
    await press("End");
    return { each: await cost(tools, () => press("ArrowLeft")) };
  },
  set: (latex) => async (tools) => ({
    each: await cost(tools, async () => {
      await tools.page.evaluate((text) => bench.set(text), latex);
      await tools.frame();
    }, () => tools.page.evaluate(() => bench.clear())),
  }),
};

const round = (number) => (number === null || number === undefined ? "–" : number < 10 ? number.toFixed(1) : String(Math.round(number)));
const row = (cells) => console.log(`| ${cells.join(" | ")} |`);
const named = chosen(fields, options.fields);

row(["gzipped", "bytes"]);
row(["---", "---:"]);
for (const [name, { files }] of named) {
  const sizes = files.map((file) => gzipSync(readFileSync(toFile(file)), { level: 9 }).length);
  row([`${name}: ${files.map((file, i) => `${file.split("/").at(-1)} ${sizes[i]}`).join(", ")}`, sizes.reduce((a, b) => a + b)]);
}

console.log();
row(["first editable field, ms (median of 7 new pages)", ...named.map(([name]) => name)]);
row(["---", ...named.map(() => "---:")]);
const ready = Object.fromEntries(named.map(([name]) => [name, []]));
for (let i = 0; i < 7; ++i) {
  for (const [name] of named) {
    const at = await withPage(name, ({ page }) => page.evaluate(() => bench.readyAt));
    if (at !== null) ready[name].push(at);
  }
}
row(["", ...named.map(([name]) => round(median(ready[name])))]);

const empty = await withPage("nothing", async (tools) => {
  await tools.page.evaluate(() => bench.focus());
  return { key: await cost(tools, () => tools.press("k")), set: await cost(tools, async () => (await tools.page.evaluate(() => bench.set()), await tools.frame())) };
});
console.log(`\nAn empty page: a key and its frame ${round(empty.key)} ms, a call and its frame ${round(empty.set)} ms. These are taken off below.\n`);
row(["main thread, ms", ...named.map(([name]) => name)]);
row(["---", ...named.map(() => "---:")]);
for (const [caseName, latex] of chosen(cases, options.cases)) {
  const failed = new Set();
  for (const [actName, act] of Object.entries(acts)) {
    const results = [];
    for (const [name] of named) {
      // Whoever took too long for a key is not waited for again.
      const result = failed.has(name) ? null : await withPage(name, act(latex));
      if (!result) failed.add(name);
      results.push(result);
    }
    const base = actName === "set" ? empty.set : empty.key;
    row([`${caseName}, ${actName}`, ...results.map((result) => (result ? round(Math.max(0, result.each - base)) : "–"))]);
    if (actName === "key") row([`${caseName}, key to painted frame`, ...results.map((result) => round(result?.painted ?? null))]);
  }
}
await browser.close();
server.close();
