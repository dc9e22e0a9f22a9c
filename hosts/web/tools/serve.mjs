// Serves a folder on the loopback address: node serve.mjs <folder> [<command-line tool>]. It prints the address.
// With the command-line tool, the page may compute with the algebra system that this one runs in a process of its own.

import { spawn } from 'node:child_process';
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
const LONGEST = 1 << 22;

/** The first message of the tool, without its name. */
const sentenceOf = (complaint) => complaint.split('\n')[0].replace(/^\w+: |\.$/g, '').replace(/^./, (first) => first.toUpperCase());

/** What a page may send as { expression, operation, variable }; null for anything else. */
function questionIn(body) {
  try {
    const { expression, operation, variable } = JSON.parse(body);
    // A name, since an option of the tool would be one as well.
    const isName = typeof variable === 'string' && /^\p{L}[\p{L}\d_]*$/u.test(variable);
    return typeof expression === 'string' && Object.hasOwn(asked, operation) && isName ? { expression, operation, variable } : null;
  } catch {
    return null;
  }
}

/** Asks the tool's algebra system, in a process that is ended after `most` ms, or when nobody waits for the answer any more. */
function compute(tool, { expression, operation, variable }, most, response) {
  const words = ['eval', '--engine', 'giac', '--from', 'prefix', '--to', 'prefix', '--deadline', '4', ...asked[operation]];
  if (/solve|differentiate|integrate/.test(operation)) words.push(variable);
  // The tool starts the algebra system as a process of its own, which belongs to its group.
  const started = spawn(tool, [...words, '--', expression], { detached: true, stdio: ['ignore', 'pipe', 'pipe'] });
  const end = () => { try { process.kill(-started.pid, 'SIGKILL'); } catch { /* It has ended by itself. */ } };
  let out = '', complaint = '';
  started.stdout.setEncoding('utf8').on('data', (text) => { if ((out += text).length > LONGEST) end(); });
  started.stderr.setEncoding('utf8').on('data', (text) => { complaint = (complaint + text).slice(0, 1000); });
  const deadline = setTimeout(end, most);
  response.once('close', end);
  return new Promise((settle, fail) => started.once('error', fail).once('close', (status) => {
    clearTimeout(deadline);
    response.off('close', end);
    const text = out.trim();
    if (text && status === 0) settle({ outcome: 'value', text, part: 0 });
    else settle({ outcome: 'none', text: status === null ? 'This takes too long' : sentenceOf(complaint), part: 0 });
  }));
}

async function answer(tool, request, response, headers, most) {
  let body = '';
  for await (const piece of request) if ((body += piece).length > 1e6) return response.writeHead(413, headers).end();
  // Only this page may ask: others can send nothing of this type without being let.
  if (request.headers['content-type'] !== 'application/json') return response.writeHead(415, headers).end();
  const question = questionIn(body);
  if (!question) return response.writeHead(400, headers).end();
  const result = await compute(tool, question, most, response);
  response.writeHead(200, { ...headers, 'Content-Type': 'application/json' }).end(JSON.stringify(result));
}

/** The file of a path of the address; undefined: there is none. */
function fileOf(folders, path) {
  const files = folders.map((folder) => join(folder, path.endsWith('/') ? `${path}index.html` : path));
  return path.includes('\0') ? undefined : files.find((file) => statSync(file, { throwIfNoEntry: false })?.isFile());
}

/** Listens; `pages` are made on the spot, by path. What the tool computes may take `most` ms. */
export function serve(folders, port = 0, pages = {}, tool = null, most = MOST) {
  const server = createServer((request, response) => {
    const headers = { 'Content-Security-Policy': policy, 'Cache-Control': 'no-cache', 'X-Content-Type-Options': 'nosniff' };
    let path;
    try { path = normalize(decodeURIComponent(new URL(request.url, 'http://localhost').pathname)); } catch { path = null; }
    // Another site can have its name lead here, and then ask as if it were this page.
    const isOwn = /^(127\.0\.0\.1|localhost)(:\d+)?$/.test(request.headers.host ?? '');
    if (path === null || !isOwn) return void response.writeHead(path === null ? 400 : 403, headers).end();
    if (path === '/giac') {
      if (request.method === 'POST' && tool) void answer(tool, request, response, headers, most).catch(() => response.destroy());
      else response.writeHead(200, { ...headers, 'Content-Type': 'application/json' }).end(JSON.stringify({ isThere: !!tool }));
      return;
    }
    const file = pages[path] === undefined ? fileOf(folders, path) : undefined;
    if (pages[path] === undefined && !file) return void response.writeHead(404, headers).end('not found');
    response.writeHead(200, { ...headers, 'Content-Type': types[extname(file ?? path)] ?? (file ? 'application/octet-stream' : types['.html']) });
    if (file) createReadStream(file).pipe(response); else response.end(pages[path]);
  });
  return new Promise((settle, fail) => server.once('error', fail).listen(port, '127.0.0.1', () =>
    settle({ address: `http://127.0.0.1:${server.address().port}/`, close: () => server.close() })));
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  const [folder, tool = null] = process.argv.slice(2);
  const { address } = await serve([folder], 8016, {}, tool).catch(() => serve([folder], 0, {}, tool));
  console.log(`The formula field is at ${address} (Ctrl+C ends it).`);
}
