import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { get, withPage } from './harness.mjs';

const web = new URL('../../../hosts/web/', import.meta.url).pathname;
const esbuild = createRequire(`${web}package.json`)('esbuild');

/** A program of a page that uses a framework, in one script. */
async function bundle(contents) {
  const { outputFiles } = await esbuild.build({
    stdin: { contents, loader: 'jsx', resolveDir: web }, bundle: true, write: false, format: 'esm', jsx: 'automatic',
    define: { 'process.env.NODE_ENV': '"production"', __VUE_OPTIONS_API__: 'true', __VUE_PROD_DEVTOOLS__: 'false' },
  });
  return outputFiles[0].text;
}

const programs = {
  React: await bundle(`import { useState } from 'react';
    import { createRoot } from 'react-dom/client';
    function Term() {
      const [term, setTerm] = useState('sqrt(x)/2');
      return <><zolt-formula id="f" aria-label="Term" value={term} onInput={(event) => setTerm(event.target.value || term)} /><output>{term}</output></>;
    }
    createRoot(document.getElementById('app')).render(<Term />);`),
  Vue: await bundle(`import { createApp, h, ref } from 'vue';
    const term = ref('sqrt(x)/2');
    createApp({ render: () => [h('zolt-formula', { id: 'f', 'aria-label': 'Term', '.value': term.value,
      onInput: (event) => { term.value = event.target.value || term.value; } }), h('output', term.value)] }).mount('#app');`),
};

for (const [name, program] of Object.entries(programs)) {
  withPage(`a field that ${name} controls keeps caret and history while it is typed into`, '<div id="app"></div><script type="module" src="/app.js"></script>', async (page) => {
    await page.locator('#f').waitFor();
    await page.evaluate(() => document.getElementById('f').ready);
    await page.focus('#f');
    await page.keyboard.press('Home');
    await page.keyboard.press('Home');
    await page.keyboard.type('1+');
    assert.equal(await get(page, 'f', 'prefix'), '+(1,/(sqrt(x),2))');
    await page.keyboard.type('y+');
    await page.waitForFunction(() => document.querySelector('output').textContent === '1+y+sqrt(x)/2');
    await page.keyboard.press('Control+z');
    assert.notEqual(await get(page, 'f', 'value'), '1+y+sqrt(x)/2');
  }, { scripts: { '/app.js': program }, tolerates: 'TrustedTypePolicy' });
}
