import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readdirSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { test } from 'node:test';
import { gzipSync } from 'node:zlib';
import { get, withPage } from './harness.mjs';

const source = process.env.ZOLT_WEB_PACKAGE;
const web = new URL('../../../hosts/web/', import.meta.url).pathname;
const esbuild = createRequire(`${web}package.json`)('esbuild');

test('what a first empty field loads is less than 130 KB', () => {
  const files = ['zolt-formula.js', 'zolt_first.wasm', 'fonts/KaTeX_Main-Regular-frequent.woff2', 'fonts/KaTeX_Math-Italic-frequent.woff2'];
  const sizes = files.map((file) => gzipSync(readFileSync(join(source, 'dist', file)), { level: 9 }).length);
  assert.ok(sizes.reduce((sum, size) => sum + size) < 130000, sizes.join(' + '));
});

test('the package is packed, installed, bundled with its types, and imported by a server', { timeout: 120000 }, async () => {
  const folder = mkdtempSync(join(tmpdir(), 'zolt-'));
  const npm = (...words) => execFileSync('npm', [...words, '--offline', '--no-audit', '--no-fund'], { cwd: folder, encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] });
  const [packed] = JSON.parse(npm('pack', source, '--json'));
  assert.ok(['README.md', 'LICENSE', 'dist/zolt.wasm', 'dist/fonts/KaTeX_Main-Regular.woff2'].every((name) => packed.files.some(({ path }) => path === name)));
  writeFileSync(join(folder, 'package.json'), '{ "type": "module" }');
  npm('install', join(folder, packed.filename));
  const { dependencies } = JSON.parse(readFileSync(join(folder, 'node_modules/zolt-formula/package.json')));
  assert.equal(dependencies, undefined);

  const entry = join(folder, 'main.ts');
  writeFileSync(entry, `import { ZoltFormulaElement } from 'zolt-formula';
    const field: ZoltFormulaElement = document.createElement('zolt-formula');
    field.value = 'x'; const { prefix }: { prefix: string } = field; console.log(prefix, field.toSVG({ fontSize: 20 }));`);
  const { outputFiles } = await esbuild.build({ entryPoints: [entry], bundle: true, format: 'esm', write: false, logLevel: 'silent' });
  assert.ok(outputFiles[0].text.includes('zolt-formula'));
  execFileSync(process.execPath, [`${web}node_modules/typescript/bin/tsc`, '--noEmit', '--strict', '--target', 'es2022', '--module', 'esnext',
    '--moduleResolution', 'bundler', '--lib', 'es2022,dom,dom.iterable', '--types', '', entry], { cwd: folder, stdio: 'inherit' });

  writeFileSync(join(folder, 'server.js'), `import { readFileSync } from 'node:fs';
    import { load, toSvg } from 'zolt-formula';
    const module = await load({ module: readFileSync(new URL(import.meta.resolve('zolt-formula/zolt.wasm'))), fonts: null });
    const field = module.open();
    field.set(0, 'sqrt(x)/2');
    console.log(toSvg(field.frame(), module));`);
  assert.match(execFileSync(process.execPath, ['server.js'], { cwd: folder, encoding: 'utf8' }), /^<svg .*<path .*<\/svg>/);
  rmSync(folder, { recursive: true });
});

/** A page whose program is bundled with the element, with the files beside it that the README names. */
const dist = join(source, 'dist');
const { outputFiles: chunks } = await esbuild.build({ stdin: { contents: "import './zolt-formula.js';", resolveDir: dist }, bundle: true, splitting: true, format: 'esm', outdir: '/bundled', write: false });
const bundled = Object.fromEntries([...chunks.map(({ path, text }) => [path, text]),
  ...['zolt_first.wasm', 'zolt_rest.wasm', ...readdirSync(join(dist, 'fonts')).map((name) => `fonts/${name}`)].map((name) => [`/bundled/${name}`, readFileSync(join(dist, name))]),
  ['/bundled/index.html', '<!doctype html><html lang="en"><link rel="icon" href="data:,"><script type="module" src="stdin.js"></script><zolt-formula id="f" aria-label="F"></zolt-formula></html>']]);
withPage('a bundle of a program and the element works', '', async (page) => {
  await page.waitForFunction(() => document.getElementById('f')?.ready);
  await page.evaluate(() => document.getElementById('f').ready);
  await page.focus('#f');
  await page.keyboard.type('1/2+\\alp');
  await page.locator('#f').locator('[part=completions]').waitFor();
  await page.keyboard.press('Enter');
  assert.equal(await get(page, 'f', 'prefix'), '+(/(1,2),α)');
}, { path: 'bundled/index.html', scripts: bundled });
