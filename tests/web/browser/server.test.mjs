import assert from 'node:assert/strict';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { connect, createServer } from 'node:net';
import { networkInterfaces, tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, test } from 'node:test';
import { serve } from '../../../hosts/web/tools/serve.mjs';

// In the place of the command-line tool: it shows what it is given, fails, or does not end.
const folder = mkdtempSync(join(tmpdir(), 'zolt-'));
const tool = join(folder, 'tool');
writeFileSync(tool, `#!${process.execPath}
const words = process.argv.slice(2), last = words.at(-1);
if (last === 'slow') {
  const system = require('node:child_process').spawn(process.execPath, ['-e', 'setTimeout(Object, 90000)']);
  require('node:fs').writeFileSync(__dirname + '/system', String(system.pid));
  for (;;);
}
if (last === 'wrong') { console.error('ved: division by zero.'); process.exit(1); }
console.log(JSON.stringify(words));
`, { mode: 0o755 });
writeFileSync(join(folder, 'secret'), 'x');
const system = join(folder, 'system');
const server = await serve([join(folder, 'site')], 0, { '/a.html': 'page' }, tool, 6000);
after(() => {
  server.close();
  rmSync(folder, { recursive: true });
});

const send = (body, type = 'application/json', signal = null) => fetch(`${server.address}giac`, { method: 'POST', body, headers: { 'Content-Type': type }, signal });
const ask = (expression, operation = 'solve', variable = 'x') =>
  send(JSON.stringify({ expression, operation, variable })).then((response) => response.json());
/** What comes back for a line of a request that no browser would send. */
const raw = (path, host) => new Promise((settle) => {
  let text = '';
  const { hostname, port } = new URL(server.address);
  connect(port, hostname).on('data', (data) => { text += data; }).on('close', () => settle(text.split('\r\n')[0]))
    .end(`GET ${path} HTTP/1.1\r\nHost: ${host ?? hostname}\r\nConnection: close\r\n\r\n`);
});

test('the algebra system of the command-line tool answers, and is ended when it takes too long', { timeout: 60000 }, async () => {
  const given = JSON.parse((await ask('=(^(x,2),1)')).text);
  assert.deepEqual(given.slice(-4), ['--solve', 'x', '--', '=(^(x,2),1)']);
  assert.deepEqual(await ask('wrong'), { outcome: 'none', text: 'Division by zero', part: 0 });
  assert.deepEqual(await ask('slow'), { outcome: 'none', text: 'This takes too long', part: 0 });
  // What the tool has started ends with it, also when the page no longer wants an answer.
  const pause = () => new Promise((settle) => setTimeout(settle, 20));
  const end = async () => {
    while (!existsSync(system)) await pause();
    const process = readFileSync(system, 'utf8');
    return async () => { while (existsSync(`/proc/${process}/stat`) && !/\) [XZ] /.test(readFileSync(`/proc/${process}/stat`, 'utf8'))) await pause(); };
  };
  await (await end())();
  rmSync(system);
  const asking = new AbortController();
  const gone = assert.rejects(send(JSON.stringify({ expression: 'slow', operation: 'solve', variable: 'x' }), 'application/json', asking.signal));
  const ended = await end();
  asking.abort();
  await gone;
  await ended();
  // What looks like an option or a command is an expression all the same.
  for (const text of ['--help', '$(id)', 'a\n;b']) assert.deepEqual(JSON.parse((await ask(text, 'factor')).text).slice(-3), ['--factor', '--', text]);
});

test('it takes nothing but questions, from its own page alone', async () => {
  assert.equal((await send('{', 'text/plain')).status, 415);
  for (const question of [{}, { expression: 1, operation: 'solve', variable: 'x' }, { expression: 'x', operation: 'constructor', variable: 'x' },
    { expression: 'x', operation: 'solve', variable: '--output=/tmp/x' }]) assert.equal((await send(JSON.stringify(question))).status, 400);
  assert.equal((await send('{')).status, 400);
  assert.match(await raw('/a.html'), / 200 /);
  assert.match(await raw('/a.html', 'elsewhere.example'), / 403 /);
  for (const path of ['/%', '/%00', '/../secret', '/%2e%2e/secret', '/..%2fsecret']) assert.match(await raw(path), / 40[04] /, path);
});

test('it is reached from this computer alone', async () => {
  const { port } = new URL(server.address);
  const outer = Object.values(networkInterfaces()).flat().find(({ family, internal }) => family === 'IPv4' && !internal);
  // Nothing listens there, so that another server can.
  if (outer) await new Promise((settle, fail) => createServer().once('error', fail).listen(port, outer.address, function () { this.close(settle); }));
});
