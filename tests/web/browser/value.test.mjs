import assert from 'node:assert/strict';
import { becomes, get, listen, painted, withPage } from './harness.mjs';

withPage('values go in and out in every notation', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  const result = await page.evaluate(() => {
    const field = document.getElementById('f');
    const shown = [];
    for (const [name, text] of [['value', 'x^2/2'], ['latex', '\\sqrt{a}'], ['prefix', '+(1,x)'],
      ['mathml', '<math><mfrac><mi>&pi;</mi><mn>2</mn></mfrac></math>']]) {
      field[name] = text;
      shown.push(field.prefix);
    }
    return shown;
  });
  assert.deepEqual(result, ['/(^(x,2),2)', 'sqrt(a)', '+(1,x)', '/(_PI,2)']);
  assert.match(await get(page, 'f', 'mathml'), /<mfrac>/);
  assert.equal(await get(page, 'f', 'latex'), '\\frac{\\pi}{2}');
  // What is refused leaves the formula, and says where the fault is.
  const fault = await page.evaluate(() => document.getElementById('f').setValue('a+*b'));
  assert.ok(fault.message.length > 5 && fault.begin >= 2);
  assert.equal(await get(page, 'f', 'prefix'), '/(_PI,2)');
});

withPage('setting what is shown already keeps caret and history', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  await page.focus('#f');
  await page.keyboard.type('a+b');
  await page.keyboard.press('ArrowLeft');
  await page.evaluate(() => {
    const field = document.getElementById('f');
    field.value = field.value;
    field.latex = field.latex;
    field.mathml = field.mathml;
  });
  await page.keyboard.type('c');
  assert.equal(await get(page, 'f', 'value'), 'a+cb');
  for (let i = 0; i < 4; ++i) await page.keyboard.press('Control+z');
  assert.equal(await get(page, 'f', 'isEmpty'), true);
});

withPage('values are data', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  await page.evaluate(() => {
    const field = document.getElementById('f');
    window.hit = 0;
    for (const text of ['<img src=x onerror="hit=1">', '"><script>hit=1</' + 'script>', '<math><mtext><img src=x onerror=hit=1></mtext></math>',
      '<math href="javascript:hit=1"><mi onclick="hit=1">x</mi></math>', '\ud800', '&lt;', '\0\u202e']) {
      for (const name of ['value', 'latex', 'mathml', 'prefix', 'tree']) field[name] = text;
      field.setAttribute('value', text);
      field.setAttribute('placeholder', text);
    }
  });
  await painted(page);
  await page.waitForTimeout(300);
  assert.equal(await page.evaluate(() => window.hit), 0);
  assert.equal(await page.evaluate(() => document.getElementById('f').root.querySelectorAll('img, script, [onclick], [href]').length), 0);
});

const form = `<form id="form" action="/tried.html"><label for="f">Term</label> <zolt-formula id="f" name="term" value="x+1" required></zolt-formula>
  <zolt-formula id="g" name="term" aria-label="Second" value="y" format="latex"></zolt-formula><fieldset id="set"><zolt-formula id="h" name="off" aria-label="Third" value="z"></zolt-formula></fieldset>
  <button>Send</button></form>`;

withPage('a form takes its value and resets it', form, async (page) => {
  const data = () => page.evaluate(() => [...new FormData(document.getElementById('form'))].map((pair) => pair.join('=')));
  assert.deepEqual(await data(), ['term=x+1', 'term=y', 'off=z']);
  await page.click('label');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'f');
  await page.keyboard.press('End');
  await page.keyboard.type('/2');
  // At once, and in the order of the page.
  assert.deepEqual(await data(), ['term=x+1/2', 'term=y', 'off=z']);
  await page.evaluate(() => { document.getElementById('set').disabled = true; });
  assert.deepEqual(await data(), ['term=x+1/2', 'term=y']);
  await page.evaluate(() => { document.getElementById('form').reset(); });
  assert.equal(await get(page, 'f', 'value'), 'x+1');
  await page.evaluate(() => { document.getElementById('g').latex = '\\frac{1}{2}'; });
  assert.deepEqual(await data(), ['term=x+1', 'term=\\frac{1}{2}']);
  await page.focus('#f');
  await Promise.all([page.waitForURL(/term=x%2B1/), page.keyboard.press('Enter')]);
});

withPage('a formula that is missing or incomplete stops its form, and says why', form, async (page) => {
  await listen(page, 'f', 'invalid', 'change');
  // Without a pause, in which the field would look at itself.
  await page.evaluate(() => {
    document.getElementById('f').value = '';
    document.getElementById('form').requestSubmit();
  });
  assert.deepEqual(await get(page, 'f', 'seen'), ['invalid']);
  const check = () => page.evaluate(() => {
    const field = document.getElementById('f');
    return { valid: field.checkValidity(), missing: field.validity.valueMissing, bad: field.validity.badInput, message: field.validationMessage };
  });
  assert.deepEqual(await check().then(({ valid, missing }) => [valid, missing]), [false, true]);
  await page.focus('#f');
  await page.keyboard.type('a+');
  assert.deepEqual(await check().then(({ valid, bad }) => [valid, bad]), [false, true]);
  assert.ok((await check()).message.length > 8);
  const url = page.url();
  await page.keyboard.press('Enter');
  assert.equal(page.url(), url);
  assert.ok(await page.evaluate(() => document.querySelector('zolt-formula:invalid:state(faulty)') !== null));
  await page.keyboard.type('b');
  assert.equal((await check()).valid, true);
  await page.evaluate(() => { document.getElementById('f').setCustomValidity('Not this one'); });
  assert.equal((await check()).message, 'Not this one');
});

withPage('what a page sets before the script arrives is taken over', '<zolt-formula id="f" aria-label="F"></zolt-formula><script src="/early.js"></script>', async (page) => {
  await page.focus('#f');
  await page.keyboard.press('Control+End');
  await page.keyboard.type('+1,5');
  assert.deepEqual([await get(page, 'f', 'value'), await get(page, 'f', 'placeholder')], ['a/b+1.5', 'Term']);
}, { scripts: { '/early.js': `Object.assign(document.getElementById('f'), { value: 'a/b', options: { decimalComma: true }, placeholder: 'Term' });` } });

withPage('constraints and options hold', '<zolt-formula id="f" aria-label="F" constraints="number" options="decimal-comma"></zolt-formula>', async (page) => {
  await page.focus('#f');
  await page.keyboard.type('3,5x');
  assert.equal(await get(page, 'f', 'prefix'), '3.5');
  assert.equal(await page.evaluate(() => {
    try { document.getElementById('f').constraints = 'number and'; } catch (error) { return error.name; }
    return 'none';
  }), 'SyntaxError');
  await page.evaluate(() => { Object.assign(document.getElementById('f'), { constraints: '', options: { decimalComma: false } }); });
  await page.keyboard.press('Control+a');
  await page.keyboard.type('x+1.5');
  assert.equal(await get(page, 'f', 'value'), 'x+1.5');
});

withPage('copies go from field to field, and to and from other programs',
  '<zolt-formula id="f" aria-label="F" value="sqrt(x)+1/2"></zolt-formula><zolt-formula id="g" aria-label="G"></zolt-formula><textarea id="t" aria-label="T"></textarea>', async (page) => {
    await page.focus('#f');
    await page.keyboard.press('Home');
    await page.keyboard.press('Home');
    await page.keyboard.press('Shift+ArrowRight');
    await page.keyboard.press('Control+c');
    await page.focus('#g');
    await page.keyboard.type('2*');
    await page.keyboard.press('Control+v');
    assert.equal(await get(page, 'g', 'prefix'), '*(2,sqrt(x))');
    // An incomplete piece keeps its exact form between fields.
    await page.keyboard.press('Control+a');
    await page.keyboard.type('1/');
    await page.keyboard.press('Control+a');
    await page.keyboard.press('Control+x');
    assert.equal(await get(page, 'g', 'isEmpty'), true);
    await page.keyboard.press('Control+v');
    await page.keyboard.press('Home');
    await page.keyboard.press('Tab');
    await page.keyboard.type('3');
    assert.equal(await get(page, 'g', 'prefix'), '/(1,3)');
    await page.focus('#f');
    await page.keyboard.press('Control+a');
    await page.keyboard.press('Control+c');
    await page.focus('#t');
    await page.keyboard.press('Control+v');
    assert.equal(await get(page, 't', 'value'), 'sqrt(x)+1/2');
    const paste = (given) => page.evaluate((given) => {
      const data = new DataTransfer();
      for (const [type, text] of Object.entries(given)) data.setData(type, text);
      const field = document.getElementById('g');
      field.runCommand('select-all');
      field.parts.input.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true }));
      return field.prefix;
    }, given);
    assert.equal(await paste({ 'text/plain': 'a/b' }), '/(a,b)');
    assert.equal(await paste({ 'text/plain': '\\frac{1}{x}' }), '/(1,x)');
    assert.equal(await paste({ 'text/html': '<p>See <math xmlns="http://www.w3.org/1998/Math/MathML"><msup><mi>x</mi><mn>2</mn></msup></math>', 'text/plain': 'x2' }), '^(x,2)');
    assert.equal(await paste({ 'text/plain': 'no # formula' }), '^(x,2)');
    const copied = await page.evaluate(() => {
      const data = new DataTransfer();
      document.getElementById('f').parts.input.dispatchEvent(new ClipboardEvent('copy', { clipboardData: data, bubbles: true, cancelable: true }));
      return [...data.types].sort();
    });
    assert.deepEqual(copied, ['application/mathml+xml', 'application/x-tex', 'application/x-zolt-formula', 'application/x-zolt-prefix', 'text/html', 'text/plain']);
    assert.ok(await page.evaluate(() => document.getElementById('f').copyAs('png')));
    assert.deepEqual(await page.evaluate(async () => (await navigator.clipboard.read())[0].types), ['image/png']);
    assert.ok(await page.evaluate(() => document.getElementById('f').copyAs('latex')));
    assert.equal(await page.evaluate(() => navigator.clipboard.readText()), '\\sqrt{x}+\\frac{1}{2}');
  });

withPage('fields come and go, and the memory with them', '', async (page) => {
  const client = await page.context().newCDPSession(page);
  const used = async () => {
    await client.send('HeapProfiler.collectGarbage');
    const { nodes } = await client.send('Memory.getDOMCounters');
    return { nodes, heap: await page.evaluate(() => performance.memory.usedJSHeapSize) };
  };
  const round = (count) => page.evaluate(async (count) => {
    const { load } = await import('/zolt-formula/zolt-formula.js');
    const module = await load();
    for (let i = 0; i < count; i += 50) {
      const box = document.createElement('div');
      document.body.append(box);
      for (let k = 0; k < 50; ++k) box.append(Object.assign(document.createElement('zolt-formula'), { value: 'sqrt(x^2+1)/2' }));
      await new Promise(requestAnimationFrame);
      box.remove();
      await new Promise((settle) => setTimeout(settle, 5));
    }
    return module.memory.buffer.byteLength;
  }, count);
  // The browser keeps what it has compiled.
  const wasm = await round(1000);
  // Collecting goes in steps, since what ends with a field is told of it first.
  for (let i = 0; i < 5; ++i) {
    await page.waitForTimeout(250);
    await used();
  }
  const before = await used();
  assert.equal(await round(1000), wasm);
  let after;
  await becomes(async () => {
    after = await used();
    return after.nodes <= before.nodes && after.heap < before.heap + 100_000;
  }, true).catch(() => assert.fail(JSON.stringify([before, after])));
});

withPage('a field that is moved, or taken out and put in again, keeps its formula', '<div id="a"><zolt-formula id="f" aria-label="F"></zolt-formula></div><div id="b"></div>', async (page) => {
  await page.focus('#f');
  await page.keyboard.type('a/');
  await page.evaluate(async () => {
    const field = document.getElementById('f');
    document.getElementById('b').append(field);
    field.remove();
    await new Promise((settle) => setTimeout(settle, 30));
    document.getElementById('b').append(field);
  });
  await page.focus('#f');
  await page.keyboard.type('b');
  assert.equal(await get(page, 'f', 'value'), 'a/b');
});

withPage('tables go through the clipboard of other programs, and pictures as pictures', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  const given = '<table><tr><td>1</td><td>x</td></tr><tr><td>y</td><td>4</td></tr></table>';
  await page.focus('#f');
  await page.evaluate((given) => {
    const data = new DataTransfer();
    data.setData('text/html', given);
    data.setData('text/plain', '1\tx\ny\t4');
    document.getElementById('f').parts.input.dispatchEvent(new ClipboardEvent('paste', { clipboardData: data, bubbles: true, cancelable: true }));
  }, given);
  assert.equal(await get(page, 'f', 'prefix'), 'matrix(list(1,x),list(y,4))');
  // From the first cell to the one beside it.
  for (const key of ['Control+Home', 'ArrowRight', 'Shift+ArrowRight', 'Shift+ArrowRight']) await page.keyboard.press(key);
  const copied = await page.evaluate(() => {
    const field = document.getElementById('f'), data = new DataTransfer();
    field.parts.input.dispatchEvent(new ClipboardEvent('copy', { clipboardData: data, bubbles: true, cancelable: true }));
    return data.getData('text/html');
  });
  assert.match(copied, /<table.*1.*<td.*x/s);
  assert.doesNotMatch(copied, /4/);
  assert.ok(await page.evaluate(() => document.getElementById('f').copyAs('svg')));
  const types = await page.evaluate(async () => (await navigator.clipboard.read())[0].types);
  assert.ok(types.includes('image/svg+xml') && types.includes('text/plain'), types.join());
});

withPage('a field is restored with its form, and goes to another window', '<form><zolt-formula id="f" name="f" aria-label="F" value="a"></zolt-formula></form>', async (page) => {
  await page.focus('#f');
  await page.keyboard.type('+1/');
  const tree = await get(page, 'f', 'tree');
  await page.goto('about:blank');
  await page.goBack();
  await page.waitForFunction((tree) => document.getElementById('f').tree === tree, tree);
  const shown = await page.evaluate(async () => {
    const frame = document.body.appendChild(document.createElement('iframe')), field = document.getElementById('f');
    // What was restored can be read before it is shown.
    await field.ready;
    field.openPalette();
    let palette;
    while (!(palette = field.root.querySelector('[part=palette]'))) await new Promise(requestAnimationFrame);
    frame.contentDocument.body.append(field);
    return [field.parts.frame, palette].map((part) => frame.contentWindow.getComputedStyle(part).position);
  });
  assert.deepEqual(shown, ['relative', 'fixed']);
});

withPage('a field that is given the focus at once does not make the page wait for the rest of the module',
  '<zolt-formula id="f" aria-label="F" autofocus></zolt-formula>', async (page) => {
    const waits = [];
    await page.route('**/zolt_rest.wasm', async (route) => {
      if (route.request().resourceType() === 'xhr') waits.push(route.request().url());
      await new Promise((settle) => setTimeout(settle, 1000));
      await route.continue();
    });
    await page.reload();
    await page.evaluate(() => document.getElementById('f').ready);
    await page.focus('#f');
    await page.keyboard.type('x');
    await page.waitForFunction(() => document.getElementById('f').parts.input.getAttribute('aria-description'));
    assert.deepEqual(waits, []);
  });

withPage('a page that asks for the module along with the script has it once', '', async (page) => {
  const asked = [];
  page.on('request', (request) => asked.push(request.url().split('/').at(-1)));
  await page.reload();
  await page.evaluate(() => customElements.whenDefined('zolt-formula').then(() => document.getElementById('f').ready));
  assert.deepEqual(asked.filter((file) => file === 'zolt_first.wasm'), ['zolt_first.wasm']);
}, {
  path: 'early.html',
  scripts: {
    '/early.html': `<!doctype html><script type="module" async blocking="render" src="/zolt-formula/zolt-formula.js"></script>
      <link rel="icon" href="data:,"><link rel="preload" as="fetch" crossorigin href="/zolt-formula/zolt_first.wasm"><zolt-formula id="f"></zolt-formula>`,
  },
});
