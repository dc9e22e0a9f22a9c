// The documentation site, opened from disk: every page loads without a complaint, every link within it leads somewhere, and the
// examples of the notations are shown as formulas. Run by ctest in the preset "web":
//   node site.test.mjs <folder of the element's package> <folder to make it in>
import assert from "node:assert/strict";
import { spawnSync } from "node:child_process";
import { existsSync, readFileSync, readdirSync } from "node:fs";
import { createRequire } from "node:module";
import { join } from "node:path";
import { pathToFileURL } from "node:url";

const [distribution, site] = process.argv.slice(2);
const chromium = process.env.ZOLT_CHROMIUM ?? "/usr/bin/chromium";
const made = existsSync(distribution) && existsSync(chromium)
  ? spawnSync("/usr/bin/python3", [join(import.meta.dirname, "../../tools/site/make_site.py"), distribution, site], { encoding: "utf8" }) : null;
if (!made || made.stderr.includes("No module named")) {
  console.log(`skipped: no package of the element, no Chromium or no python3-markdown. ${made?.stderr ?? ""}`);
  process.exit(77);
}
assert.equal(made.status, 0, made.stderr);

const require = createRequire(new URL("../../hosts/web/package.json", import.meta.url));
const browser = await require("playwright-core").chromium.launch({ executablePath: chromium, args: ["--no-sandbox", "--disable-gpu"] });
const page = await browser.newPage();
const complaints = [];
page.on("pageerror", (error) => complaints.push(`${page.url()}: ${error.message}`));
page.on("console", (message) => message.type() === "error" && complaints.push(`${page.url()}: ${message.text()}`));
let shown = 0;
let refused = 0;
const pages = readdirSync(site).filter((name) => name.endsWith(".html"));
for (const name of pages) {
  await page.goto(pathToFileURL(join(site, name)).href);
  for (const target of await page.$$eval("main a, nav a, img", (all) => all.map((one) => one.getAttribute("href") ?? one.getAttribute("src")))) {
    if (target.includes("://")) continue;
    const [file, part] = target.split("#").map(decodeURIComponent);
    const to = join(site, file || name);
    if (!existsSync(to) || part === "" || (part && !readFileSync(to, "utf8").includes(`id="${part}"`))) complaints.push(`${name}: ${target} leads nowhere`);
  }
  const members = await page.$$eval("dt", (all) => all.map((one) => one.textContent));
  if (name === "types.html" && !["value: string", "readonly fault: Fault | null"].every((one) => members.includes(one))) complaints.push("members of the element are missing");
  if (!(await page.$("zolt-formula"))) continue;
  const counts = await page.evaluate(async () => {
    const field = document.querySelector("zolt-formula");
    await field.ready;
    for (const end = Date.now() + 10000; field.value === "" && Date.now() < end;) await new Promise((settled) => setTimeout(settled, 20));
    const start = field.value === "" ? ["empty"] : [];
    return [...document.querySelectorAll("button.example")].reduce((sum, example) => {
      example.click();
      const [played, refusals, empty] = sum;
      return document.querySelector(".player p").textContent ? [played, refusals + 1, empty] : [played + 1, refusals, empty];
    }, [0, 0, start]);
  });
  shown += counts[0];
  refused += counts[1];
  if (counts[2].length > 0) complaints.push(`${name}: the field is empty`);
}
await browser.close();
console.log(`${pages.length} pages, ${shown} examples shown, ${refused} refused`);
assert.deepEqual(complaints, []);
// The tables also have what is refused, and patterns: "\frac{…}{…}".
assert.ok(shown > 150 && shown > 2 * refused);
