import assert from 'node:assert/strict';
import { becomes, caretBox, get, listen, painted, withPage } from './harness.mjs';

const field = '<zolt-formula id="f" aria-label="Formula"></zolt-formula>';

withPage('every construct can be typed', field, async (page) => {
  await page.focus('#f');
  for (const [keys, prefix] of [
    ['1/2', '/(1,2)'], ['x^2+1', '+(^(x,2),1)'], ['sqrt(x)/2', '/(sqrt(x),2)'], ['root(3,x)', 'nthroot(3,x)'], ['abs(x)', 'abs(x)'],
    ['|x|', 'abs(x)'], ['alpha*pi+1', '+(*(α,_PI),1)'], ['log_2(x)', 'log(x,2)'], ['x<=1', '<=(x,1)'], ['n!', '!(n)'],
    ['sin(x)^2', '^(sin(x),2)'], ['matrix(1,2;3,4', 'matrix(list(1,2),list(3,4))'], ['int(x,0,1,x)', 'integral(x,0,1,x)'], ['x_1+y', '+(x_1,y)'],
    ['sum(i=1,n,i)', 'sum(i,1,n,i)'], ['\\frac{a}{b}', '/(a,b)'],
  ]) {
    await page.keyboard.type(keys);
    assert.equal(await get(page, 'f', 'prefix'), prefix, keys);
    await page.keyboard.press('Control+Shift+Delete');
    assert.equal(await get(page, 'f', 'isEmpty'), true);
  }
});

withPage('one act of a person is one step to undo, and tells the page once', field, async (page) => {
  await listen(page, 'f', 'beforeinput', 'input', 'change');
  await page.focus('#f');
  await page.keyboard.type('abc');
  await page.keyboard.press('Backspace');
  await page.keyboard.press('Control+z');
  assert.equal(await get(page, 'f', 'value'), 'abc');
  await page.keyboard.press('Control+Shift+z');
  assert.equal(await get(page, 'f', 'value'), 'ab');
  await page.keyboard.press('Control+z');
  await page.keyboard.press('Control+z');
  assert.equal(await get(page, 'f', 'isEmpty'), true);
  await page.keyboard.type('y');
  await page.evaluate(() => document.activeElement.blur());
  const seen = await get(page, 'f', 'seen');
  const both = (type) => [`beforeinput:${type}`, `input:${type}`];
  assert.deepEqual(seen, [...both('insertText'), ...both('insertText'), ...both('insertText'), ...both('deleteContentBackward'),
    ...both('historyUndo'), ...both('historyRedo'), ...both('historyUndo'), ...both('historyUndo'), ...both('insertText'), 'change']);
});

withPage('a page can refuse input before it happens', field, async (page) => {
  await page.evaluate(() => document.getElementById('f').addEventListener('beforeinput', (event) => {
    if (event.data === '7') event.preventDefault();
  }));
  await page.focus('#f');
  await page.keyboard.type('1727');
  assert.equal(await get(page, 'f', 'value'), '12');
});

withPage('dead keys and input methods compose in the layout', field, async (page) => {
  const client = await page.context().newCDPSession(page);
  const compose = (text) => client.send('Input.imeSetComposition', { text, selectionStart: text.length, selectionEnd: text.length });
  await page.focus('#f');
  await page.keyboard.type('x');
  await painted(page);
  const before = await caretBox(page, 'f');
  await compose('に');
  await painted(page);
  assert.ok((await caretBox(page, 'f')).x > before.x + 5);
  assert.equal(await get(page, 'f', 'value'), 'x');
  await compose('');
  await painted(page);
  assert.deepEqual(await caretBox(page, 'f'), before);
  // A dead key alone, and on a letter.
  await compose('^');
  await client.send('Input.insertText', { text: '^' });
  await client.send('Input.insertText', { text: '2' });
  assert.equal(await get(page, 'f', 'prefix'), '^(x,2)');
  await page.keyboard.press('End');
  await page.keyboard.press('End');
  await compose('αβ');
  await client.send('Input.insertText', { text: '+β' });
  assert.equal(await get(page, 'f', 'prefix'), '+(^(x,2),β)');
  await page.keyboard.press('Control+z');
  assert.equal(await get(page, 'f', 'prefix'), '^(x,2)');
});

withPage('keyboards without keys edit the text around the caret', '<zolt-formula id="f" aria-label="F" value="ab+cd" keyboard="manual"></zolt-formula>', async (page) => {
  await page.touchscreen.tap(...Object.values(await caretBox(page, 'f')));
  await page.focus('#f');
  await page.keyboard.press('End');
  const control = (act) => page.evaluate(act);
  await becomes(() => control(() => document.getElementById('f').parts.input.value), 'ab+cd');
  // The space bar of such a keyboard moves the caret; a suggestion replaces a word.
  await control(() => document.getElementById('f').parts.input.setSelectionRange(2, 2));
  await becomes(() => get(page, 'f', 'tree'), /ab‸/);
  await page.keyboard.type('x');
  assert.equal(await get(page, 'f', 'value'), 'abx+cd');
  await becomes(() => control(() => document.getElementById('f').parts.input.value), 'abx+cd');
  await control(() => {
    const { input } = document.getElementById('f').parts;
    input.value = 'abx+delta';
    input.dispatchEvent(new InputEvent('input', { inputType: 'insertReplacementText' }));
  });
  assert.equal(await get(page, 'f', 'prefix'), '+(abx,δ)');
}, { context: { hasTouch: true } });

withPage('the list of completions is led by keys', field, async (page) => {
  const shown = () => page.locator('#f').locator('[role=listbox]');
  const current = () => page.evaluate(() => {
    const { parts, root } = document.getElementById('f');
    return root.getElementById(parts.input.getAttribute('aria-activedescendant') ?? '')?.textContent ?? '';
  });
  await page.focus('#f');
  await page.keyboard.type('\\sqr');
  await shown().waitFor();
  await becomes(current, /Square root/);
  await page.keyboard.press('Enter');
  await shown().waitFor({ state: 'hidden' });
  await page.keyboard.type('x');
  assert.equal(await get(page, 'f', 'prefix'), 'sqrt(x)');
  await page.keyboard.press('End');
  await page.keyboard.press('End');
  await page.keyboard.type('+\\al');
  await shown().waitFor();
  await page.keyboard.press('Escape');
  await shown().waitFor({ state: 'hidden' });
  assert.equal(await get(page, 'f', 'fault').then((fault) => !!fault), true);
  await page.keyboard.type('alp');
  await shown().waitFor();
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('Tab');
  assert.equal(await get(page, 'f', 'prefix'), '+(sqrt(x),α)');
  // A press of the pointer takes an entry, and the focus stays.
  await shown().waitFor({ state: 'hidden' });
  await page.keyboard.type('+\\bet');
  await shown().locator('[role=option]').first().click();
  assert.equal(await get(page, 'f', 'prefix'), '+(+(sqrt(x),α),β)');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'f');
});

withPage('the list of completions leaves the formula to be seen, and never covers the line that is edited', field, async (page) => {
  const list = page.locator('#f').locator('[role=listbox]');
  for (const [height, top, clear] of [[600, 20, 'f'], [600, 480, 'f'], [220, 60, 'line'], [160, 20, 'line']]) {
    await page.setViewportSize({ width: 700, height });
    await page.evaluate((top) => { document.querySelector('h1').style.cssText = `margin:0;height:${top}px`; }, top);
    await page.focus('#f');
    await page.keyboard.type('a/(b+c/\\a');
    await list.waitFor();
    await painted(page);
    const [shown, line, whole] = await page.evaluate(() => {
      const field = document.getElementById('f'), { shown } = field;
      return [field.root.querySelector('[role=listbox]').getBoundingClientRect(), shown.toWindow(shown.boxes.caret), field.getBoundingClientRect()];
    });
    const free = clear === 'f' ? whole : line;
    assert.ok((shown.bottom <= free.top || shown.top >= free.bottom) && shown.height > 20 && shown.top >= 0 && shown.bottom <= height, JSON.stringify([height, shown, line, whole]));
    await page.keyboard.press('Escape');
    await page.keyboard.press('Control+Shift+Delete');
  }
});

withPage('keys without an effect go on to the page', '<button id="a">a</button><zolt-formula id="f" aria-label="F"></zolt-formula><button id="b">b</button>', async (page) => {
  await page.evaluate(() => {
    const field = document.getElementById('f');
    field.moves = [];
    field.addEventListener('move-out', (event) => field.moves.push(event.detail.direction));
  });
  await page.focus('#a');
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'f');
  await page.keyboard.type('1/');
  // The denominator is empty: Tab leads out of the fraction first, then to the next control.
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'f');
  await page.keyboard.press('Tab');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'b');
  await page.keyboard.press('Shift+Tab');
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('ArrowDown');
  assert.deepEqual(await get(page, 'f', 'moves'), ['forward', 'right', 'down']);
  await page.keyboard.press('Home');
  await page.keyboard.press('Home');
  await page.keyboard.press('Shift+Tab');
  assert.equal(await page.evaluate(() => document.activeElement.id), 'a');
});

withPage('a formula that is locked can be read and copied, not changed', '<zolt-formula id="f" aria-label="F" value="a+b" readonly></zolt-formula>', async (page) => {
  await page.focus('#f');
  await page.keyboard.type('x');
  await page.keyboard.press('Backspace');
  await page.keyboard.press('Control+a');
  await page.keyboard.press('Control+x');
  await page.keyboard.press('Control+v');
  assert.equal(await get(page, 'f', 'value'), 'a+b');
  await page.keyboard.press('Control+c');
  assert.equal(await page.evaluate(() => navigator.clipboard.readText()), 'a+b');
  await page.evaluate(() => { document.getElementById('f').readOnly = false; });
  await page.keyboard.press('End');
  await page.keyboard.type('+c');
  assert.equal(await get(page, 'f', 'value'), 'a+b+c');
});

withPage('what opens at a field is fetched with the first focus, and keys do not wait for it', '<form><zolt-formula id="f" aria-label="F"></zolt-formula></form>', async (page) => {
  const files = () => page.evaluate(() => performance.getEntriesByType('resource').filter(({ name }) => name.endsWith('/zolt-panels.js')).length);
  assert.equal(await files(), 0);
  let release;
  const held = new Promise((settle) => { release = settle; });
  await page.route('**/zolt-panels.js', (route) => held.then(() => route.continue()));
  const url = page.url();
  await page.focus('#f');
  await page.keyboard.type('\\alph');
  await page.keyboard.press('Enter');
  assert.equal(await get(page, 'f', 'prefix'), 'α');
  assert.equal(page.url(), url);
  await page.keyboard.type('+\\be');
  release();
  await page.locator('#f').locator('[part=completions]').waitFor();
});

withPage('a person sees at the caret why a key was refused, until another one is taken', '<zolt-formula id="f" aria-label="F" constraints="number"></zolt-formula>', async (page) => {
  const note = page.locator('#f').locator('[part=note]');
  await page.focus('#f');
  await page.keyboard.type('12x');
  await note.waitFor();
  const heard = await page.evaluate(() => document.getElementById('f').parts.announcement.textContent);
  assert.equal(await note.textContent(), `${heard}.`);
  assert.match(heard, /\w+ \w+/);
  const caret = await caretBox(page, 'f'), box = await note.boundingBox();
  assert.ok(box.y > caret.y && box.y < caret.y + 60 && Math.abs(box.x - caret.x) < 60);
  await page.keyboard.type('3');
  await note.waitFor({ state: 'hidden' });
  assert.equal(await get(page, 'f', 'value'), '123');
  await page.evaluate(() => document.getElementById('f').addEventListener('refuse', (event) => event.preventDefault()));
  await page.keyboard.type('x');
  await page.waitForTimeout(100);
  assert.ok(!await note.isVisible());
});
