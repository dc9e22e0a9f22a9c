import assert from 'node:assert/strict';
import { mkdir } from 'node:fs/promises';
import { axe, becomes, caretBox, get, listen, painted, withPage } from './harness.mjs';

const out = new URL('../../../out/web/', import.meta.url).pathname;
await mkdir(out, { recursive: true });

const faultsOf = async (page) => {
  // The policy of the page does not hold for the tool that looks at it.
  await page.context().newCDPSession(page).then((client) => client.send('Page.setBypassCSP', { enabled: true }));
  await page.reload();
  await page.evaluate(() => Promise.all([...document.querySelectorAll('zolt-formula')].map((field) => field.ready)));
  await page.addScriptTag({ path: axe });
  return page.evaluate(async () => (await axe.run()).violations.map(({ id, nodes }) => `${id}: ${nodes.map(({ html }) => html).join(' ')}`));
};

withPage('a page of fields has no fault for assistive technology',
  `<label for="f">Term</label> <zolt-formula id="f" value="x/2"></zolt-formula> <zolt-formula aria-label="Empty" placeholder="A formula"></zolt-formula>
   <zolt-formula aria-label="Fixed" readonly value="sqrt(x)"></zolt-formula> <zolt-formula aria-label="Off" disabled value="y"></zolt-formula>`, async (page) => {
    assert.deepEqual(await faultsOf(page), []);
    await page.focus('#f');
    await page.keyboard.type('+\\al');
    await page.locator('#f').locator('[part=completions]').waitFor();
    assert.deepEqual(await page.evaluate(async () => (await axe.run()).violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`)), []);
    await page.keyboard.press('Escape');
    for (const [open, part] of [['openPalette', 'palette'], ['openKeyboard', 'keyboard']]) {
      await page.evaluate((open) => document.getElementById('f')[open](), open);
      await page.locator('#f').locator(`[part=${part}]`).waitFor();
      assert.deepEqual(await page.evaluate(async () => (await axe.run()).violations.map(({ id, nodes }) => `${id}: ${nodes[0].html}`)), [], open);
    }
  });

withPage('the demonstration page has none, and computes', '', async (page) => {
  const first = page.locator('zolt-formula').first();
  await first.waitFor();
  await page.waitForFunction(() => [...document.querySelectorAll('.result')].some((field) => field.value.includes('pi') || field.value));
  await faultsOf(page).then((faults) => assert.deepEqual(faults, []));
  const row = page.locator('li').last();
  await row.locator('zolt-formula').first().click();
  await page.keyboard.type('2^10');
  await page.waitForFunction(() => document.querySelector('li:last-child .result').value === '1024');
  await page.keyboard.type('/0');
  await page.waitForFunction(() => document.querySelector('li:last-child .fault').textContent !== '');
  await page.screenshot({ path: `${out}demo.png` });
}, { path: '', context: { viewport: { width: 1000, height: 900 } } });

withPage('screen readers find name, words and mathematics, and hear what is done', '<label for="f">Term</label> <zolt-formula id="f" value="x/2" required></zolt-formula>', async (page) => {
  const client = await page.context().newCDPSession(page);
  await page.focus('#f');
  await page.waitForFunction(() => document.getElementById('f').parts.formula.querySelector('mfrac'));
  const { nodes } = await client.send('Accessibility.getFullAXTree');
  const control = nodes.find(({ role, name }) => role?.value === 'textbox' && name?.value === 'Term');
  const property = (name) => control.properties.find((one) => one.name === name)?.value.value;
  assert.ok(control && property('focused') === true && property('required') === true);
  assert.match(control.description.value, /fraction|over/);
  assert.ok(nodes.some(({ role }) => role?.value === 'MathMLFraction'), 'the formula is there as mathematics');
  const heard = () => page.evaluate(() => document.getElementById('f').parts.announcement.textContent);
  await page.keyboard.press('Home');
  await page.keyboard.press('ArrowRight');
  await becomes(heard, /numerator/);
  await page.keyboard.type('y');
  await becomes(heard, /y/);
  await page.waitForFunction(() => document.getElementById('f').parts.formula.querySelector('mfrac')?.firstElementChild.textContent.length === 2);
  await page.keyboard.press('Backspace');
  await page.keyboard.press('Delete');
  await page.keyboard.press('Enter');
  await becomes(heard, /.{6}/);
  assert.equal(await page.evaluate(() => document.getElementById('f').parts.input.getAttribute('aria-invalid')), 'true');
});

/** The darkest and the lightest of what is painted, and how many device pixels the canvas has to a CSS pixel. */
const lookAt = (page, id) => page.evaluate((id) => {
  const { canvas } = document.getElementById(id).parts;
  const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
  let ink = null;
  for (let i = 0; i < data.length; i += 4) if (data[i + 3] === 255) ink = [data[i], data[i + 1], data[i + 2]];
  return { ink, density: canvas.width / parseFloat(canvas.style.width), width: parseFloat(canvas.style.width) };
}, id);

withPage('the page decides on colour and size, in light and dark', '<zolt-formula id="f" aria-label="F" value="sqrt(x)"></zolt-formula>', async (page) => {
  const ink = async () => (await lookAt(page, 'f')).ink;
  await becomes(ink, [0, 0, 0]);
  await page.emulateMedia({ colorScheme: 'dark' });
  await becomes(ink, [255, 255, 255]);
  await page.evaluate(() => { document.getElementById('f').style.color = 'rgb(200, 10, 20)'; });
  await becomes(ink, [200, 10, 20]);
  const small = await page.locator('#f').boundingBox();
  await page.evaluate(() => { document.getElementById('f').style.fontSize = '40px'; });
  await becomes(async () => (await page.locator('#f').boundingBox()).height > 1.6 * small.height, true);
  await page.emulateMedia({ forcedColors: 'active', colorScheme: 'dark' });
  await page.evaluate(() => { document.getElementById('f').style.color = ''; });
  await becomes(ink, [255, 255, 255]);
});

for (const deviceScaleFactor of [1, 1.25, 3.5]) {
  withPage(`what is painted is as sharp as a screen of density ${deviceScaleFactor}`, '<p>Text <zolt-formula id="f" aria-label="F" value="a/b"></zolt-formula></p>', async (page) => {
    await becomes(async () => {
      const { density, ink } = await lookAt(page, 'f');
      return !!ink && Math.abs(density - deviceScaleFactor) < 0.01;
    }, true);
  }, { context: { deviceScaleFactor } });
}

withPage('a formula is on the line of the text', '<p>Text <zolt-formula id="f" aria-label="F" value="a/b"></zolt-formula></p>', async (page) => {
  await becomes(() => page.evaluate(() => {
    const range = document.createRange();
    range.selectNodeContents(document.querySelector('p').firstChild);
    const text = range.getBoundingClientRect();
    const { shown } = document.getElementById('f');
    const caret = shown.toWindow(shown.boxes.caret);
    return Math.abs(caret.y + caret.height / 2 - (text.y + text.height / 2)) < 8;
  }), true);
});

withPage('the caret rests where motion is unwanted', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  await page.focus('#f');
  await painted(page);
  const shots = [];
  for (let i = 0; i < 6; ++i) {
    await page.waitForTimeout(200);
    shots.push((await page.locator('#f').screenshot()).toString('base64'));
  }
  assert.equal(new Set(shots).size, 1);
}, { context: { reducedMotion: 'reduce' } });

withPage('fifty fields on a page are shown and edited', Array.from({ length: 50 }, (_, i) => `<zolt-formula id="f${i}" aria-label="F${i}" value="sqrt(x_${i})/${i + 1}"></zolt-formula>`).join(' '), async (page) => {
  for (const i of [0, 17, 49]) {
    await page.focus(`#f${i}`);
    await page.keyboard.press('End');
    await page.keyboard.press('End');
    await page.keyboard.type('+1');
    assert.equal(await get(page, `f${i}`, 'prefix'), `+(/(sqrt(x_${i}),${i + 1}),1)`);
  }
  await page.locator('#f49').scrollIntoViewIfNeeded();
  await becomes(async () => (await lookAt(page, 'f49')).ink !== null, true);
  await page.screenshot({ path: `${out}fifty.png`, fullPage: true });
});

withPage('pictures have what is shown', '<zolt-formula id="f" aria-label="F" value="sqrt(a)/2&lt;π"></zolt-formula>', async (page) => {
  const svg = await page.evaluate(() => document.getElementById('f').toSVG({ fontSize: 20, title: 'a < b & "c"' }));
  assert.match(svg, /^<svg [^>]*viewBox=/);
  assert.ok(svg.includes('a &lt; b &amp; &quot;c&quot;') && svg.includes('>&lt;</text>') && svg.includes('π'));
  const size = await page.evaluate(async (svg) => {
    const picture = new Image();
    picture.src = URL.createObjectURL(new Blob([svg], { type: 'image/svg+xml' }));
    await picture.decode();
    const png = await document.getElementById('f').toPNG({ fontSize: 20, density: 3 });
    const bitmap = await createImageBitmap(png);
    return [picture.naturalWidth, bitmap.width];
  }, svg);
  assert.ok(size[0] > 40 && Math.abs(size[1] - 3 * size[0]) < 9, String(size));
});

withPage('moving the caret is told, and places can be kept', '<zolt-formula id="f" aria-label="F" value="a/b"></zolt-formula>', async (page) => {
  await page.focus('#f');
  await painted(page);
  const places = await get(page, 'f', 'selection');
  await listen(page, 'f', 'selectionchange', 'input');
  await page.keyboard.press('Home');
  await painted(page);
  await page.evaluate((places) => { document.getElementById('f').selection = places; }, places);
  await painted(page);
  assert.deepEqual(await get(page, 'f', 'seen'), ['selectionchange', 'selectionchange']);
  await page.keyboard.type('!');
  assert.equal(await get(page, 'f', 'prefix').then((text) => text.startsWith('!')), true);
  assert.ok((await caretBox(page, 'f')).x > 0);
});

withPage('a dark page is printed black and sharp, without caret', '<zolt-formula id="f" aria-label="F" value="sqrt(x)"></zolt-formula>', async (page) => {
  await page.focus('#f');
  await painted(page);
  const turn = (name) => page.evaluate((name) => { dispatchEvent(new Event(name)); }, name);
  await turn('beforeprint');
  const { ink, density } = await lookAt(page, 'f');
  assert.deepEqual([ink, density], [[0, 0, 0], 4]);
  await turn('afterprint');
  await becomes(async () => {
    const screen = await lookAt(page, 'f');
    return [screen.ink, screen.density];
  }, [[255, 255, 255], 1]);
}, { context: { colorScheme: 'dark' } });

withPage('what is painted with each key is what painting all of it gives',
  '<zolt-formula id="f"></zolt-formula>', async (page) => {
    await page.evaluate(() => Promise.all([...document.fonts].map((face) => face.load())));
    await page.evaluate(() => {
      const field = document.getElementById('f'), { canvas } = field.parts;
      field.style.width = '240px';
      window.pixels = () => canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height).data;
      // Edges of curves are a little darker or lighter where a clip cuts them.
      window.differences = (one, other) => {
        const found = [];
        for (let i = 0; i < one.length && found.length < 6; ++i) if (Math.abs(one[i] - other[i]) > 32) found.push(`${(i >> 2) % canvas.width} ${Math.floor((i >> 2) / canvas.width)}: ${one[i]} ${other[i]}`);
        return found;
      };
    });
    const compare = async (key) => {
      await painted(page);
      await page.evaluate(() => {
        window.inParts = pixels();
        document.getElementById('f').shown.restyle();
      });
      await painted(page);
      assert.deepEqual(await page.evaluate(() => differences(inParts, pixels())), [], key);
    };
    await page.focus('#f');
    await page.evaluate(() => { document.getElementById('f').typeText('sqrt(f_1+2)/y^3-'); });
    const keys = ['a', '+', 'f', '^', '2', 'ArrowRight', '/', '(', 'f', 'ArrowUp', 'Q', 'ArrowDown', 'Backspace', 'Shift+ArrowLeft', 'Shift+ArrowLeft', 'W', 'Control+Z',
      'Home', 'j', 'Delete', 'End', '-', '\\', 'a', 'l', 'Escape', 'Control+A', 'ArrowLeft', 'x', 'Control+Z', 'Control+Y', '1', '2', '3', '4', '5', '6', '7', '8', '9'];
    for (const key of keys) {
      await page.keyboard.press(key);
      await compare(key);
    }
    const client = await page.context().newCDPSession(page);
    for (const text of ['s', 'sumi', 'su', '']) {
      await client.send('Input.imeSetComposition', { text, selectionStart: text.length, selectionEnd: text.length });
      await compare(`composing ${text}`);
    }
    await page.evaluate(() => { document.getElementById('f').latex = '\\frac{a'; document.getElementById('f').check(); });
    await compare('a fault');
    await page.evaluate(() => document.activeElement.blur());
    await compare('without the focus');
  }, { context: { reducedMotion: 'reduce', deviceScaleFactor: 1.5 } });
