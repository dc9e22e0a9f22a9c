// Serves a folder on the loopback address: node serve.mjs <folder> [port]. It prints the address.

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

/** Listens; `pages` are made on the spot, by path. */
export function serve(folders, port = 0, pages = {}) {
  const server = createServer((request, response) => {
    const path = normalize(decodeURIComponent(new URL(request.url, 'http://localhost').pathname));
    const headers = { 'Content-Security-Policy': policy, 'Cache-Control': 'no-cache', 'X-Content-Type-Options': 'nosniff' };
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
  return new Promise((settle) => server.listen(port, '127.0.0.1', () =>
    settle({ address: `http://127.0.0.1:${server.address().port}/`, close: () => server.close() })));
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
  const [folder, port = '8016'] = process.argv.slice(2);
  const { address } = await serve([folder], Number(port)).catch(() => serve([folder]));
  console.log(`The formula field is at ${address} (Ctrl+C ends it).`);
}
