// A page with fields in the installed Chromium. ZOLT_WEB_SITE names the folder that hosts/web/tools/build.mjs has made.

import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { after, test } from 'node:test';
import { isDeepStrictEqual } from 'node:util';
import { serve } from '../../../hosts/web/tools/serve.mjs';

const require = createRequire(new URL('../../../hosts/web/package.json', import.meta.url));
const { chromium } = require('playwright-core');
export const axe = require.resolve('axe-core/axe.min.js');

const site = process.env.ZOLT_WEB_SITE;
const pages = {};
const server = await serve([site, new URL('../../../out/web/', import.meta.url).pathname], 0, pages);
const browser = await chromium.launch({
  executablePath: process.env.ZOLT_CHROMIUM ?? '/usr/bin/chromium',
  args: ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking',
    '--disable-component-update', '--disable-sync', '--enable-precise-memory-info'],
});
after(async () => {
  await browser.close();
  server.close();
});

/** A test on a page of its own with `body` in it; what the page complains of makes it fail. */
export function withPage(name, body, act, { context: options = {}, path = null, scripts = {}, tolerates = 'favicon' } = {}) {
  test(name, { timeout: 120000 }, async () => {
    const context = await browser.newContext({ viewport: { width: 800, height: 600 }, ...options });
    await context.grantPermissions(['clipboard-read', 'clipboard-write'], { origin: server.address.slice(0, -1) });
    const page = await context.newPage();
    page.setDefaultTimeout(60000);
    const complaints = [];
    page.on('console', (message) => {
      if (message.type() === 'error' && !message.text().includes(tolerates)) complaints.push(message.text());
    });
    page.on('pageerror', (error) => complaints.push(error.stack));
    pages['/tried.html'] = `<!doctype html><html lang="en"><head><title>Tried</title><meta name="color-scheme" content="light dark">
      <link rel="icon" href="data:,"><script type="module" src="/zolt-formula/zolt-formula.js"></script></head><body><main><h1>Tried</h1>${body}</main></body></html>`;
    Object.assign(pages, scripts);
    await page.goto(server.address + (path ?? 'tried.html'));
    if (!path) {
      await page.evaluate(() => Promise.all([...document.querySelectorAll('zolt-formula')].map((field) => field.ready)));
      // Painting asks for them.
      await painted(page);
      await page.evaluate(() => document.fonts.ready);
    }
    await act(page, context);
    assert.deepEqual(complaints, []);
    await context.close();
  });
}

/** A property of the field with that id. */
export const get = (page, id, property) => page.evaluate(([id, property]) => document.getElementById(id)[property], [id, property]);
/** Waits until what was done is painted. */
export const painted = (page) => page.evaluate(() => new Promise((settle) => requestAnimationFrame(() => requestAnimationFrame(settle))));
/** Waits until what a look at the page finds is as expected, or matches. */
export async function becomes(look, expected) {
  const fits = (found) => expected instanceof RegExp ? expected.test(found) : isDeepStrictEqual(found, expected);
  let found;
  for (const end = Date.now() + 30000; !fits(found = await look()) && Date.now() < end;) await new Promise((settle) => setTimeout(settle, 20));
  if (!fits(found)) assert.fail(`${JSON.stringify(found)} does not become ${expected instanceof RegExp ? expected : JSON.stringify(expected)}`);
}
/** Remembers the events of a field, as "type" or "type:inputType". */
export const listen = (page, id, ...types) => page.evaluate(([id, types]) => {
  const field = document.getElementById(id);
  field.seen = [];
  for (const type of types) field.addEventListener(type, (event) => field.seen.push(event.inputType ? `${type}:${event.inputType}` : type));
}, [id, types]);
/** Where the caret is in the window. */
export const caretBox = (page, id) => page.evaluate((id) => {
  const field = document.getElementById(id), { shown } = field;
  const box = shown.toWindow(shown.boxes.caret);
  return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
}, id);
