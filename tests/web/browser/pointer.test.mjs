import assert from 'node:assert/strict';
import { caretBox, get, painted, withPage } from './harness.mjs';

const sum = '<zolt-formula id="f" aria-label="F" value="alpha+bc+d"></zolt-formula>';
const fingers = { context: { hasTouch: true, viewport: { width: 400, height: 700 } } };

withPage('the mouse places the caret and selects', sum, async (page) => {
  const { x, y } = await caretBox(page, 'f');
  await page.mouse.click(x - 1, y);
  assert.equal(await page.evaluate(() => document.activeElement.id), 'f');
  await page.keyboard.type('e');
  assert.equal(await get(page, 'f', 'prefix'), '+(+(α,bc),de)');
  const box = await page.locator('#f').boundingBox();
  await page.mouse.click(box.x + 3, y);
  await page.keyboard.type('2+');
  assert.equal(await get(page, 'f', 'value').then((value) => value.slice(0, 2)), '2+');
  // Two presses select the name, three the row; typing replaces it.
  const end = await caretBox(page, 'f');
  await page.mouse.dblclick(end.x + 8, y);
  await page.keyboard.type('z');
  assert.equal(await get(page, 'f', 'prefix'), '+(+(+(2,z),bc),de)');
  await page.waitForTimeout(600);
  await page.mouse.move(end.x + 2, y);
  await page.mouse.down();
  await page.mouse.move(end.x + 300, y, { steps: 4 });
  await page.mouse.up();
  await page.keyboard.press('Delete');
  assert.equal(await get(page, 'f', 'value').catch(() => ''), '');
  await page.keyboard.type('1');
  assert.equal(await get(page, 'f', 'prefix'), '+(2,1)');
});

withPage('what is selected is dragged within a field and to another',
  '<zolt-formula id="f" aria-label="F" value="a+bc"></zolt-formula> <zolt-formula id="g" aria-label="G" value="x="></zolt-formula>', async (page) => {
    const { x, y } = await caretBox(page, 'f');
    await page.focus('#f');
    await page.keyboard.press('End');
    await page.keyboard.press('Shift+ArrowLeft');
    await page.keyboard.press('Shift+ArrowLeft');
    await painted(page);
    const start = await page.locator('#f').boundingBox();
    const drag = async (to) => {
      await page.mouse.move(x - 6, y);
      await page.mouse.down();
      await page.mouse.move(x - 16, y, { steps: 3 });
      await page.mouse.move(to.x, to.y, { steps: 4 });
      await page.mouse.up();
      await painted(page);
    };
    await drag({ x: start.x + 4, y });
    assert.equal(await get(page, 'f', 'tree').then((tree) => /bc.*a\+/.test(tree)), true);
  });

withPage('the pointer finds its place in pages that are enlarged, or written in other directions', '<div id="d"><zolt-formula id="f" aria-label="F"></zolt-formula></div>', async (page) => {
  for (const style of ['zoom: 1.5', 'transform: scale(1.6); transform-origin: 0 0', 'direction: rtl', 'writing-mode: vertical-rl']) {
    await page.evaluate((style) => {
      document.getElementById('d').style.cssText = style;
      Object.assign(document.getElementById('f'), { value: 'abc+def' }).style.inlineSize = '';
    }, style);
    await painted(page);
    const { x, y } = await caretBox(page, 'f'), box = await page.locator('#f').boundingBox();
    // At places apart, so that these are no double click.
    for (const at of [x, box.x + (x - box.x) / 5]) await page.mouse.click(at, y);
    await page.keyboard.type('!');
    assert.match(await get(page, 'f', 'tree'), /^\["a!‸bc\+def"\]$/, style);
    await page.evaluate(() => {
      const field = document.getElementById('f');
      field.style.inlineSize = '180px';
      field.value = Array.from({ length: 40 }, (_, i) => `x_${i}`).join('+');
    });
    await page.keyboard.press('Control+Home');
    await page.keyboard.press('Control+End');
    await painted(page);
    const end = await caretBox(page, 'f'), narrow = await page.locator('#f').boundingBox();
    assert.ok(end.x > narrow.x && end.x < narrow.x + narrow.width, style);
  }
});

withPage('the wheel and the caret bring what is hidden into sight', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  await page.evaluate(() => {
    const field = document.getElementById('f');
    field.style.inlineSize = '200px';
    field.value = Array.from({ length: 60 }, (_, i) => `x_${i}`).join('+');
  });
  await painted(page);
  const left = () => page.evaluate(() => document.getElementById('f').parts.scroller.scrollLeft);
  assert.equal(await left(), 0);
  await page.focus('#f');
  await page.keyboard.press('Control+End');
  await painted(page);
  const most = await left();
  assert.ok(most > 1500);
  const caret = await caretBox(page, 'f'), box = await page.locator('#f').boundingBox();
  assert.ok(caret.x > box.x && caret.x < box.x + box.width);
  await page.keyboard.press('Home');
  await painted(page);
  assert.equal(await left(), 0);
  await page.mouse.move(box.x + 50, box.y + 10);
  await page.mouse.wheel(300, 0);
  await page.waitForFunction(() => document.getElementById('f').parts.scroller.scrollLeft >= 300);
});

withPage('fingers place the caret, select with handles under a magnifier, and type on the formula keyboard', sum, async (page) => {
  const { x, y } = await caretBox(page, 'f');
  await page.touchscreen.tap(x, y);
  await painted(page);
  const field = page.locator('#f');
  const keyboard = field.locator('[part=keyboard]');
  await keyboard.waitFor();
  assert.equal(await page.evaluate(() => document.getElementById('f').parts.input.inputMode), 'none');
  await keyboard.getByRole('button', { name: 'Fraction' }).tap();
  await keyboard.getByRole('button', { name: '2', exact: true }).tap();
  assert.equal(await get(page, 'f', 'prefix'), '+(+(α,bc),/(d,2))');
  await keyboard.getByRole('tab', { name: 'abc' }).tap();
  await keyboard.getByRole('button', { name: 'q' }).tap();
  await keyboard.getByRole('button', { name: 'Delete left' }).tap();
  assert.equal(await get(page, 'f', 'prefix'), '+(+(α,bc),/(d,2))');
  // A second tap in a row selects the name, and each end has a handle.
  const start = await field.boundingBox();
  await page.waitForTimeout(600);
  for (let i = 0; i < 2; ++i) await page.touchscreen.tap(start.x + 10, y + 6);
  await painted(page);
  const handles = field.locator('[part=handle]');
  assert.equal(await handles.evaluateAll((all) => all.filter((one) => !one.hidden).length), 2);
  const client = await page.context().newCDPSession(page);
  const grip = await handles.nth(1).boundingBox();
  const touch = (type, x) => client.send('Input.dispatchTouchEvent', { type, touchPoints: type === 'touchEnd' ? [] : [{ x, y: grip.y + grip.height / 2 }] });
  await touch('touchStart', grip.x + grip.width / 2);
  await touch('touchMove', grip.x + grip.width / 2 + 30);
  await painted(page);
  assert.ok(await field.locator('[part=magnifier]').isVisible());
  await touch('touchMove', grip.x + grip.width / 2 + 60);
  await touch('touchEnd');
  await painted(page);
  assert.ok(!await field.locator('[part=magnifier]').isVisible());
  await page.keyboard.press('Delete');
  assert.doesNotMatch(await get(page, 'f', 'tree'), /α\+b/);
  await keyboard.getByRole('button', { name: 'Close' }).tap();
  assert.ok(!await keyboard.isVisible());
}, fingers);

withPage('menu and palette are led by keys', sum, async (page) => {
  const field = page.locator('#f');
  await page.focus('#f');
  await page.keyboard.type('+');
  await page.keyboard.press('Control+Space');
  const palette = field.locator('[part=palette]');
  await palette.waitFor();
  await page.keyboard.type('square root');
  await page.keyboard.press('Enter');
  assert.ok(!await palette.isVisible());
  await page.keyboard.type('5');
  assert.match(await get(page, 'f', 'value'), /sqrt\(5\)/);
  await page.keyboard.press('Control+Space');
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('ArrowRight');
  await page.keyboard.press('ArrowDown');
  await page.keyboard.press('Escape');
  assert.equal(await page.evaluate(() => document.getElementById('f').root.activeElement.localName), 'textarea');
  await page.keyboard.press('Shift+F10');
  const menu = field.locator('[part=menu]');
  await menu.waitFor();
  await menu.getByRole('menuitem', { name: 'Select all' }).click();
  await page.keyboard.press('Delete');
  assert.equal(await get(page, 'f', 'isEmpty'), true);
  await field.click({ button: 'right' });
  await menu.getByRole('menuitem', { name: 'Undo' }).click();
  assert.match(await get(page, 'f', 'value'), /sqrt\(5\)/);
  await page.evaluate(() => navigator.clipboard.writeText('1/7'));
  await page.keyboard.press('Control+a');
  await field.click({ button: 'right' });
  await menu.getByRole('menuitem', { name: 'Paste' }).click();
  await page.waitForFunction(() => document.getElementById('f').prefix === '/(1,7)');
});

withPage('the palette asks for the size of a table', '<zolt-formula id="f" aria-label="F"></zolt-formula>', async (page) => {
  const field = page.locator('#f');
  await page.focus('#f');
  await page.keyboard.press('Control+Space');
  await field.locator('[part=palette]').waitFor();
  await page.keyboard.type('matrix');
  await page.keyboard.press('Enter');
  const sizes = field.getByRole('group', { name: 'Rows and columns' });
  await sizes.waitFor();
  await page.keyboard.press('ArrowRight');
  assert.equal(await field.getByRole('status').textContent().then((text) => text.slice(-5)), '2 × 3');
  await page.keyboard.press('Enter');
  for (const key of '123456') {
    await page.keyboard.type(key);
    await page.keyboard.press('Tab');
  }
  assert.equal(await get(page, 'f', 'prefix'), 'matrix(list(1,2,3),list(4,5,6))');
  // The menu of a table is longer than this window, and its last lines can be reached.
  await page.keyboard.press('ArrowLeft');
  await page.keyboard.press('Shift+F10');
  await field.getByRole('menuitem', { name: 'Move row up' }).click();
  assert.equal(await get(page, 'f', 'prefix'), 'matrix(list(4,5,6),list(1,2,3))');
  await page.keyboard.press('Shift+F10');
  const { y, height } = await field.locator('[part=menu]').boundingBox();
  assert.ok(y >= 0 && y + height <= 400, `${y} + ${height}`);
}, { context: { viewport: { width: 700, height: 400 } } });
