// Debian's Firefox, which is driven by WebDriver BiDi alone. Without it, there is nothing to test.

import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { existsSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { mkdir } from 'node:fs/promises';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { serve } from '../../../hosts/web/tools/serve.mjs';

const { ws: WebSocket } = createRequire(new URL('../../../hosts/web/package.json', import.meta.url))('playwright-core/lib/utilsBundle');
const firefox = process.env.ZOLT_FIREFOX ?? '/usr/bin/firefox-esr';
const out = new URL('../../../out/web/', import.meta.url).pathname;

/** Starts it; `send` calls a method of the protocol. */
async function start(profile) {
  const program = spawn(firefox, ['--headless', '--remote-debugging-port=0', '--profile', profile], { stdio: ['ignore', 'ignore', 'pipe'] });
  const address = await new Promise((settle, fail) => {
    let said = '';
    program.once('exit', () => fail(new Error(said)));
    program.stderr.on('data', (data) => {
      const [, found] = /listening on (ws:\S+)/.exec(said += data) ?? [];
      if (found) settle(found);
    });
  });
  const socket = new WebSocket(`${address}/session`);
  await new Promise((settle, fail) => socket.once('open', settle).once('error', fail));
  const waiting = new Map();
  socket.on('message', (text) => {
    const { id, type, result, message } = JSON.parse(text);
    const [settle, fail] = waiting.get(id) ?? [];
    if (type === 'error') fail?.(new Error(message)); else settle?.(result);
  });
  let id = 0;
  const send = (method, params = {}) => new Promise((settle, fail) => {
    waiting.set(++id, [settle, fail]);
    socket.send(JSON.stringify({ id, method, params }));
  });
  await send('session.new', { capabilities: {} });
  return { send, end: () => new Promise((settle) => program.once('exit', settle).kill('SIGKILL')) };
}

test('Firefox shows a field, and edits it by keys and pointer, forms and clipboard', { skip: !existsSync(firefox) && 'no Firefox', timeout: 120000 }, async () => {
  const profile = mkdtempSync(join(tmpdir(), 'zolt-'));
  const server = await serve([process.env.ZOLT_WEB_SITE], 0, { '/tried.html': `<!doctype html><html lang="en"><title>Tried</title>
    <script type="module" src="/zolt-formula/zolt-formula.js"></script><form id="form"><label for="f">Term</label>
    <zolt-formula id="f" name="f" value="x/2" required></zolt-formula> <zolt-formula id="g" aria-label="G" constraints="number"></zolt-formula></form></html>` });
  const { send, end } = await start(profile);
  try {
    const { contexts: [{ context }] } = await send('browsingContext.getTree');
    await send('browsingContext.navigate', { context, url: `${server.address}tried.html`, wait: 'complete' });
    await send('browsingContext.activate', { context });
    const run = async (expression) => {
      const { result, exceptionDetails } = await send('script.evaluate', { expression: `(async () => JSON.stringify(await (${expression})))()`, target: { context }, awaitPromise: true });
      assert.equal(exceptionDetails?.text, undefined);
      return result.value === undefined ? undefined : JSON.parse(result.value);
    };
    const press = (...keys) => send('input.performActions', { context, actions: [{ type: 'key', id: 'keys', actions: keys.flatMap((key) =>
      key.startsWith('+') && key.length > 1 ? { type: 'keyDown', value: key.slice(1) } : key.startsWith('-') && key.length > 1 ? { type: 'keyUp', value: key.slice(1) }
        : [{ type: 'keyDown', value: key }, { type: 'keyUp', value: key }]) }] });
    const [control, home, end, left, tab] = ['\ue009', '\ue011', '\ue010', '\ue012', '\ue004'];
    await run('f.ready.then(() => g.ready)');
    await run('void f.focus()');
    await press(end, ...'+sqrt(y^2');
    assert.equal(await run('f.prefix'), '+(/(x,2),sqrt(^(y,2)))');
    // Home leads to the beginning of the row, and then of the formula.
    await press(home, home, home, ...'3', left);
    assert.equal(await run('f.value'), '3*(x/2)+sqrt(y^2)');
    assert.equal(await run('[...new FormData(form)].join()'), 'f,3*(x/2)+sqrt(y^2)');
    await press(`+${control}`, 'a', 'x', `-${control}`);
    assert.equal(await run('f.isEmpty && f.validity.valueMissing'), true);
    await press(`+${control}`, 'v', `-${control}`);
    assert.equal(await run('f.value'), '3*(x/2)+sqrt(y^2)');
    await press(`+${control}`, 'z', 'z', `-${control}`);
    assert.equal(await run('f.value'), '3*(x/2)+sqrt(y^2)');
    const { x, y } = await run('(({ right, top, bottom }) => ({ x: Math.round(right - 4), y: Math.round((top + bottom) / 2) }))(f.getBoundingClientRect())');
    await send('input.performActions', { context, actions: [{ type: 'pointer', id: 'mouse', actions: [
      { type: 'pointerMove', x, y }, { type: 'pointerDown', button: 0 }, { type: 'pointerUp', button: 0 }] }] });
    await press(...'+\\alph', tab);
    assert.equal(await run('f.value'), '3*(x/2)+sqrt(y^2)+α');
    await press(tab, ...'12x');
    assert.equal(await run('document.activeElement.id + g.value'), 'g12');
    // The window of a headless Firefox has no focus of its own, without which nothing is shown at the caret.
    await run(`new Promise((settle) => {
      const look = () => g.parts.announcement.textContent.length > 10 ? settle() : setTimeout(look, 20);
      look();
    })`);
    assert.ok(await run("[...f.parts.canvas.getContext('2d').getImageData(0, 0, 90, 30).data].some((one) => one > 0)"));
    await mkdir(out, { recursive: true });
    writeFileSync(`${out}firefox.png`, Buffer.from((await send('browsingContext.captureScreenshot', { context })).data, 'base64'));
  } finally {
    await end();
    server.close();
    rmSync(profile, { recursive: true, force: true });
  }
});
