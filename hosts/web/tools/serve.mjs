// Serves a folder on the loopback address: node serve.mjs <folder> [<command-line tool>]. It prints the address.
// With the command-line tool, the page may compute with the algebra system that this one runs in a process of its own.

import { execFile } from 'node:child_process';
import { createReadStream, statSync } from 'node:fs';
import { createServer } from 'node:http';
import { extname, join, normalize } from 'node:path';
import { pathToFileURL } from 'node:url';

const types = {
  '.html': 'text/html; charset=utf-8', '.js': 'text/javascript', '.mjs': 'text/javascript', '.css': 'text/css', '.wasm': 'application/wasm',
  '.woff2': 'font/woff2', '.svg': 'image/svg+xml', '.json': 'application/json', '.map': 'application/json', '.png': 'image/png',
};

/** What the page may do: run its own scripts and the module; nothing that a value could smuggle in. */
export const policy = "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; style-src 'self'; font-src 'self'; connect-src 'self';" +
  " img-src 'self' blob: data:; worker-src 'self'; form-action 'self'; base-uri 'none'; require-trusted-types-for 'script'; trusted-types engine";

const asked = { solve: ['--solve'], differentiate: ['--diff'], integrate: ['--integrate'], approximate: ['--numeric'], simplify: ['--simplify'],
  expand: ['--expand'], factor: ['--factor'], evaluate: [] };
const MOST = 5000;  // ms; the process is ended then

/** The first message of the tool, without its name. */
const sentenceOf = (complaint) => complaint.split('\n')[0].replace(/^\w+: |\.$/g, '').replace(/^./, (first) => first.toUpperCase());

/** Answers a question of the page, { expression, operation, variable }, by the tool's algebra system. */
export function compute(tool, { expression, operation, variable }) {
  const [option, takesVariable] = [asked[operation]?.[0], /solve|differentiate|integrate/.test(operation)];
  const words = ['eval', '--engine', 'giac', '--from', 'prefix', '--to', 'prefix', '--deadline', '4'];
  if (option) words.push(option, ...(takesVariable ? [variable] : []));
  return new Promise((settle) => execFile(tool, [...words, '--', expression], { timeout: MOST, killSignal: 'SIGKILL', maxBuffer: 1 << 22 }, (error, out, complaint) => {
    const text = out.trim();
    if (text) settle({ outcome: 'value', text, part: 0 });
    else settle({ outcome: 'none', text: error?.killed ? 'This takes too long' : sentenceOf(complaint), part: 0 });
  }));
}

async function answer(tool, request, response, headers) {
  let body = '';
  for await (const piece of request) if ((body += piece).length > 1e6) return response.writeHead(413, headers).end();
  // Only this page may ask: others can send nothing of this type without being let.
  if (request.headers['content-type'] !== 'application/json') return response.writeHead(415, headers).end();
  const result = await compute(tool, JSON.parse(body)).catch(() => ({ outcome: 'none', text: '', part: 0 }));
  response.writeHead(200, { ...headers, 'Content-Type': 'application/json' }).end(JSON.stringify(result));
}

/** Listens; `pages` are made on the spot, by path. */
export function serve(folders, port = 0, pages = {}, tool = null) {
  const server = createServer((request, response) => {
    const path = normalize(decodeURIComponent(new URL(request.url, 'http://localhost').pathname));
    const headers = { 'Content-Security-Policy': policy, 'Cache-Control': 'no-cache', 'X-Content-Type-Options': 'nosniff' };
    if (path === '/giac') {
      if (request.method === 'POST' && tool) void answer(tool, request, response, headers).catch(() => response.destroy());
      else response.writeHead(200, { ...headers, 'Content-Type': 'application/json' }).end(JSON.stringify({ isThere: !!tool }));
      return;
    }
    if (pages[path] !== undefined) {
      response.writeHead(200, { ...headers, 'Content-Type': types[extname(path)] ?? types['.html'] }).end(pages[path]);
      return;
    }
    for (const folder of folders) {
      const file = join(folder, path.endsWith('/') ? `${path}index.html` : path);
      if (!statSync(file, { throwIfNoEntry: false })?.isFile()) continue;
      response.writeHead(200, { ...headers, 'Content-Type': types[extname(file)] ?? 'application/octet-stream' });
      createReadStream(file).pipe(response);
      return;
    }
    response.writeHead(404, headers).end('not found');
  });
  return new Promise((settle, fail) => server.once('error', fail).listen(port, '127.0.0.1', () =>
    settle({ address: `http://127.0.0.1:${server.address().port}/`, close: () => server.close() })));
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  const [folder, tool = null] = process.argv.slice(2);
  const { address } = await serve([folder], 8016, {}, tool).catch(() => serve([folder], 0, {}, tool));
  console.log(`The formula field is at ${address} (Ctrl+C ends it).`);
}
