// Builds the package folder and the demonstration page: node build.mjs <folder of zolt.wasm and fonts> <output folder>
//   <output>/package   what npm packs
//   <output>/site      the page, with the package beside it

import { execFileSync } from 'node:child_process';
import { cpSync, existsSync, mkdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { dirname, join, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { gzipSync } from 'node:zlib';
import { build } from 'esbuild';

const web = dirname(dirname(fileURLToPath(import.meta.url)));
const [from, to] = process.argv.slice(2).map((folder) => resolve(folder));
if (!from || !to) throw new Error('usage: node build.mjs <folder of the module> <output folder>');

/** Style sheets in template strings lose the blanks that are for people. */
const shortStyles = {
  name: 'short-styles',
  setup: ({ onLoad }) => onLoad({ filter: /look\.ts$/ }, ({ path }) => ({
    loader: 'ts',
    contents: readFileSync(path, 'utf8').replace(/`\n[^`]*`/, (css) =>
      css.replace(/\/\*[^]*?\*\//g, '').replace(/\s+/g, ' ').replace(/ ?([{};]) ?/g, '$1').replace(/: /g, ':').replace(/;}/g, '}')),
  })),
};

/** What opens at a field is a file of its own, which the first loads when it is needed. */
const panels = {
  name: 'panels',
  setup: ({ onResolve }) => onResolve({ filter: /\/panel_set\.js$/ }, ({ kind }) =>
    kind === 'dynamic-import' ? { path: './zolt-panels.js', external: true } : undefined),
};

const options = { bundle: true, format: 'esm', target: 'es2022', legalComments: 'none', logLevel: 'warning', plugins: [shortStyles, panels] };
const dist = join(to, 'package', 'dist');
rmSync(to, { recursive: true, force: true });
mkdirSync(dist, { recursive: true });

const parts = { 'zolt-formula': 'index', 'zolt-panels': 'panel_set' };
await build({ ...options, minify: true, sourcemap: true, outdir: dist,
  entryPoints: Object.entries(parts).map(([out, entry]) => ({ in: join(web, `element/${entry}.ts`), out })) });
execFileSync(process.execPath, [join(web, 'node_modules/typescript/bin/tsc'), '-p', web, '--noEmit', 'false', '--emitDeclarationOnly', '--outDir', join(dist, 'types')],
  { stdio: 'inherit' });
rmSync(join(dist, 'types/demo'), { recursive: true, force: true });
for (const file of ['package.json', 'README.md']) cpSync(join(web, 'package', file), join(to, 'package', file));
cpSync(join(web, '../../LICENSE'), join(to, 'package/LICENSE'));
for (const part of ['zolt', 'zolt_first', 'zolt_rest']) cpSync(join(from, `${part}.wasm`), join(dist, `${part}.wasm`));
cpSync(join(from, 'fonts'), join(dist, 'fonts'), { recursive: true });

const site = join(to, 'site');
cpSync(join(web, 'demo'), site, { recursive: true, filter: (path) => !path.endsWith('.ts') });
cpSync(dist, join(site, 'zolt-formula'), { recursive: true, filter: (path) => !path.includes('types') });
for (const entry of ['demo', 'engine_worker']) {
  await build({ ...options, minify: true, entryPoints: [join(web, `demo/${entry}.ts`)], outfile: join(site, `${entry}.js`), external: ['./zolt-formula/*'] });
}
if (existsSync(join(from, 'zolt_engine.wasm'))) cpSync(join(from, 'zolt_engine.wasm'), join(site, 'zolt_engine.wasm'));

const size = (file) => `${file} ${Math.round(gzipSync(readFileSync(join(dist, file)), { level: 9 }).length / 100) / 10} KB`;
console.log(`gzipped: ${['zolt-formula.js', 'zolt-panels.js', 'zolt_first.wasm', 'zolt_rest.wasm', 'fonts/KaTeX_Main-Regular-frequent.woff2', 'fonts/KaTeX_Math-Italic-frequent.woff2'].map(size).join(', ')}`);
