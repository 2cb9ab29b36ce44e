// Moves through the report of movesScenario.mjs with mouse, wheel, fingers and keys: node moves.mjs REPORT.html
import assert from 'node:assert/strict';
import { after, before, beforeEach, test } from 'node:test';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';
import { COUNT, DIFFERENT_BY, SPECIAL, askedOf, askerOf, modesOf, overrideOf } from './movesScenario.mjs';
import { KEEP_DRAWINGS, coloursOf, shownRequest } from './Page.mjs';
import { eventually, pause } from './Patience.mjs';

const address = pathToFileURL(process.argv[2]).href;
const SHIFT = 8;

let browser;
before(async () => {
  browser = await Chromium.start();
  await browser.resize(1280, 1200);
  await browser.send('Emulation.setTouchEmulationEnabled', { enabled: true, maxTouchPoints: 2 });
  await browser.before(KEEP_DRAWINGS);
  await browser.before(`addEventListener('DOMContentLoaded', () => {
    const { updateOptions } = Dygraph.prototype;
    Dygraph.prototype.updateOptions = function (options) {
      globalThis.drawnWindow = options.dateWindow;
      globalThis.ranges = { ...globalThis.ranges, [this.graphDiv?.parentNode?.id ?? this.maindiv_.id]: options };
      return updateOptions.call(this, options);
    };
  })`);
});
after(() => browser.stop());
beforeEach(async () => {
  await browser.open(`${address}?${Math.random()}#request=5`);
  await shownRequest(browser, '5');
  await browser.evaluate(`document.getElementById('zoom-all').click()`);
  await drawn();
});

const drawn = () => browser.evaluate('new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)))');
/** The requests in view, from edge to edge. */
const view = async () => {
  await drawn();
  return browser.evaluate('globalThis.drawnWindow');
};
const current = () => browser.evaluate(`Number(document.getElementById('timeline').getAttribute('aria-valuenow'))`);
const text = (id) => browser.evaluate(`document.getElementById('${id}').textContent`);
const boxOf = (id) => browser.evaluate(`(() => {
  const { left, top, width, height } = document.getElementById('${id}').getBoundingClientRect();
  return { left, top, width, height, middle: top + height / 2 };
})()`);
const click = (id) => browser.evaluate(`document.getElementById('${id}').click()`);
const near = (actual, expected, slack, what) => assert.ok(Math.abs(actual - expected) <= slack, `${what}: ${actual}, not ${expected}`);
/** Waits until the value is the expected one. */
const until = (value, expected, what = expected) => eventually(async () => await value() === expected, what);
// Playing goes by the clock of the test.
const PLAY_BY_HAND = `globalThis.setInterval = (step, period) => { globalThis.tick = { step, period }; return 1; };
  globalThis.clearInterval = () => { globalThis.tick = null; };`;
const tick = () => browser.evaluate('tick?.step(); tick?.period');

// The timeline's plot, right of the names: where each request of the window stands.
const plot = async () => {
  const { left, width, top } = await boxOf('timeline');
  const gutter = 96;
  return { y: top + 40, left: left + gutter, width: width - gutter,
    xOf: (index, [from, to]) => left + gutter + (index - from) / (to - from) * (width - gutter) };
};

test('the wheel zooms where the mouse is, and moves with Shift', async () => {
  const { xOf, y } = await plot();
  const all = await view();
  assert.deepEqual(all, [-0.5, COUNT - 0.5]);
  const x = xOf(30, all);
  await browser.wheel(x, y, -600);
  const zoomed = await view();
  near(zoomed[1] - zoomed[0], COUNT * 1.0015 ** -600, 0.01, 'length');
  near(xOf(30, zoomed), x, 2, 'request 30 stays under the mouse');
  await browser.wheel(x, y, 100, SHIFT);
  const moved = await view();
  near(moved[1] - moved[0], zoomed[1] - zoomed[0], 0.01, 'length');
  assert.ok(moved[0] > zoomed[0] + 0.5, 'moved on');
  await browser.evaluate(`document.getElementById('timeline').dispatchEvent(new WheelEvent('wheel', { deltaX: -100, deltaY: 1, clientX: ${x}, cancelable: true }))`);
  near((await view())[0], zoomed[0], 0.01, 'moved back sideways');
  await browser.wheel(x, y, 100000);
  assert.deepEqual(await view(), all, 'no further out than all requests');
  await browser.wheel(x, y, -100000);
  const closest = await view();
  near(closest[1] - closest[0], 5, 0.01, 'no further in than five requests');
});

test('two fingers stretch the timeline and keep what is under them', async () => {
  const { xOf, y } = await plot();
  const all = await view();
  const [a, b] = [20, 28].map((index) => xOf(index, all));
  await browser.touch('touchStart', [[a, y]]);
  await browser.touch('touchStart', [[a, y], [b, y]]);
  assert.equal(await current(), 21, 'the second finger chooses nothing');
  await browser.touch('touchMove', [[a - 60, y], [b + 100, y]]);
  const pinched = await view();
  near(xOf(20, pinched), a - 60, 2, 'under the left finger');
  near(xOf(28, pinched), b + 100, 2, 'under the right finger');
  await browser.touch('touchMove', [[b + 150, y], [a - 150, y]]);
  const crossed = await view();
  near(crossed[1] - crossed[0], COUNT * (b - a) / (b - a + 300), 0.1, 'past each other they stretch as well');
  await browser.evaluate(`(() => {
    const timeline = document.getElementById('timeline');
    const lift = ({ pointerId }) => timeline.dispatchEvent(new PointerEvent('pointerup', { pointerId }));
    timeline.addEventListener('pointermove', lift, { once: true });
  })()`);
  await browser.touch('touchMove', [[b + 160, y], [a - 160, y]]);
  await browser.touch('touchMove', [[b, y], [a, y]]);
  const left = await view();
  near(left[1] - left[0], COUNT * (b - a) / (b - a + 310), 0.1, 'one finger alone stretches nothing');
  await browser.touch('touchEnd', []);
});

test('a finger chooses requests', async () => {
  const { xOf, y } = await plot();
  const all = await view();
  await browser.touch('touchStart', [[xOf(11, all), y]]);
  await browser.touch('touchMove', [[xOf(17, all), y]]);
  await browser.touch('touchCancel', []);
  assert.equal(await current(), 18);
  await browser.touch('touchStart', [[xOf(20, all), y]]);
  await browser.touch('touchEnd', []);
  assert.equal(await current(), 21, 'one that the browser took away is no second finger');
});

test('the mouse chooses, reads out, and moves the window with Shift', async () => {
  const { xOf, y } = await plot();
  const all = await view();
  await browser.mouse('mouseMoved', xOf(24, all), y, 0);
  assert.match(await text('hover'), /^request 25 /);
  assert.equal(await current(), 5, 'looking chooses nothing');
  await browser.mouse('mouseMoved', xOf(24, all), y - 100, 0);
  assert.match(await text('hover'), /^request 5 /, 'what is chosen, when the mouse has gone');
  await browser.mouse('mouseMoved', xOf(0, all) - 60, y, 0);
  assert.equal(await text('hover'), '', 'nothing left of the requests');
  await browser.evaluate(`document.getElementById('timeline').dispatchEvent(new PointerEvent('pointerdown', { button: 2, clientX: ${xOf(9, all)}, bubbles: true }))`);
  assert.equal(await current(), 5, 'another button has its own meaning');
  await browser.mouse('mousePressed', xOf(11, all), y, 1);
  await browser.mouse('mouseMoved', xOf(14, all), y, 1);
  await until(() => text('request-title'), 'Request 15', 'what is passed is shown');
  await browser.mouse('mouseMoved', xOf(17, all), y + 900, 1);
  assert.equal(await current(), 18, 'the mouse is held above other things');
  await until(() => text('request-title'), 'Request 18', 'what is passed later, too');
  await browser.mouse('mouseMoved', xOf(14, all), y + 900, 1);
  await browser.mouse('mouseReleased', xOf(14, all), y + 900, 0);
  await browser.mouse('mouseMoved', xOf(20, all), y, 0);
  assert.equal(await current(), 15, 'let go');
  await click('zoom-in');
  const before = await view();
  near((before[0] + before[1]) / 2, 14, 0.5 + COUNT / 4, 'zoomed in at the chosen request');
  await browser.mouse('mousePressed', xOf(14, before), y, 1, SHIFT);
  await browser.mouse('mouseMoved', xOf(14, before) - 90, y, 1, SHIFT);
  await browser.mouse('mouseReleased', xOf(14, before) - 90, y, 0, SHIFT);
  const after = await view();
  const { width } = await plot();
  near(after[0] - before[0], 90 / width * (before[1] - before[0]), 0.1, 'moved by the mouse');
});

test('the overview strip takes the window along', async () => {
  const strip = await boxOf('strip');
  const at = (index) => strip.left + (index + 0.5) / COUNT * strip.width;
  await browser.mouse('mousePressed', at(30), strip.middle, 1);
  const first = await view();
  near((first[0] + first[1]) / 2, 30, 0.5, 'where it was pressed');
  assert.ok(first[1] - first[0] < COUNT / 5, 'a part of all');
  await browser.mouse('mouseMoved', at(20), strip.middle, 1);
  await browser.mouse('mouseReleased', at(20), strip.middle, 0);
  const second = await view();
  near((second[0] + second[1]) / 2, 20, 0.5, 'dragged');
  const { what: [x, , w], colour } = await browser.evaluate(`document.getElementById('strip').drawn.find(({ name }) => name === 'strokeRect')`);
  near(strip.left + x, at(second[0]) + 1, 2, 'the window in the strip begins');
  near(strip.left + x + w, at(second[1]) - 1, 2, 'and ends');
  assert.equal(colour, (await coloursOf(browser))['--accent']);
  await browser.mouse('mouseMoved', at(10), strip.middle, 0);
  assert.deepEqual(await view(), second, 'no more when it is let go');
});

test('keys move, zoom and play on the timeline, and scroll elsewhere', async () => {
  const press = async (key) => {
    await browser.press(key);
    return current();
  };
  const scrolls = (key) => browser.evaluate(`document.body.dispatchEvent(new KeyboardEvent('keydown', { key: '${key}', bubbles: true, cancelable: true }))`);
  await browser.evaluate('document.activeElement.blur()');
  for (const key of ['PageDown', 'PageUp', 'Home', 'End', ' ']) assert.equal(await scrolls(key), true, `${key} elsewhere scrolls`);
  assert.equal(await current(), 5, 'and chooses nothing');
  assert.equal(await press('ArrowRight'), 6, 'the arrows work everywhere');
  await browser.evaluate(`document.getElementById('go-to').focus()`);
  assert.equal(await press('ArrowLeft'), 6, 'except in a field');
  await browser.evaluate(`document.getElementById('timeline').focus()`);
  for (const [key, expected] of [['PageDown', 16], ['ArrowLeft', 15], ['PageUp', 5], ['End', COUNT], ['ArrowRight', COUNT], ['Home', 1], ['ArrowLeft', 1]]) {
    assert.equal(await press(key), expected, key);
  }
  await press('+');
  near((await view())[1] - (await view())[0], COUNT / 2, 0.01, '+');
  await press('-');
  assert.deepEqual(await view(), [-0.5, COUNT - 0.5], '-');
  const playing = () => browser.evaluate(`[document.getElementById('play').textContent, document.getElementById('play').getAttribute('aria-pressed')]`);
  await browser.evaluate(PLAY_BY_HAND);
  await press(' ');
  assert.deepEqual(await playing(), ['Pause', 'true']);
  for (const expected of [2, 3, 4]) {
    assert.equal(await tick(), 100, 'ten requests a second');
    assert.equal(await current(), expected);
  }
  assert.equal(await press(' '), 4);
  assert.equal(await browser.evaluate('location.hash'), '#request=4', 'where somebody wanted to go');
  assert.deepEqual([await tick(), ...await playing()], [undefined, 'Play', 'false'], 'stopped');
  assert.equal(await press('End'), COUNT);
  await press('ArrowLeft');
  await press(' ');
  assert.equal(await tick(), undefined, 'stops at the end');
  assert.deepEqual([await current(), ...await playing()], [COUNT, 'Play', 'false']);
  assert.equal(await browser.evaluate(`document.getElementById('timeline').dispatchEvent(
    new KeyboardEvent('keydown', { key: 'Home', ctrlKey: true, bubbles: true, cancelable: true }))`), true, 'Ctrl+Home is the page\u2019s');
});

test('the window follows what is chosen, and playing begins anew', async () => {
  await click('zoom-in');
  await click('last');
  near((await view())[1], COUNT - 0.5, 0.01, 'the window follows');
  await click('zoom-all');
  assert.deepEqual(await view(), [-0.5, COUNT - 0.5], 'all');
  await browser.evaluate(PLAY_BY_HAND);
  await click('play');
  assert.equal(await current(), 1, 'playing from the end begins anew');
  await tick();
  assert.deepEqual([await current(), await browser.evaluate('location.hash')], [2, '#request=1'], 'the way there is no history');
});

test('keys do what the titles of the buttons say', async () => {
  const titles = await browser.evaluate(`[...document.querySelectorAll('#controls button')].map(({ id, title }) => [id, /\\((\\S+?),?( .*)?\\)$/.exec(title)?.[1]])`);
  assert.equal(titles.length, 8);
  const KEYS = { Left: 'ArrowLeft', Right: 'ArrowRight', Space: ' ' };
  for (const [id, name] of titles.filter(([, key]) => key)) {
    const states = [];
    let before;
    for (const move of [() => click(id), () => browser.press(KEYS[name] ?? name)]) {
      await shownRequest(browser, '15');
      await click('zoom-all');
      await click('zoom-in');
      await browser.evaluate(`${PLAY_BY_HAND} document.getElementById('timeline').focus()`);
      before = await view();
      await move();
      states.push([await current(), await view(), await text('play')]);
      if (name === 'Space') await browser.press(' ');
    }
    assert.deepEqual(states[0], states[1], name);
    assert.notDeepEqual(states[0], [15, before, 'Play'], name);
  }
});

test('links and the history', async () => {
  const visit = async (name) => {
    await pause(450);  // quicker moves are one
    await shownRequest(browser, name);
  };
  await visit('9');
  await pause(450);
  await browser.evaluate(`{ const now = performance.now();
    performance.now = () => now;
    for (let i = 0; i < 3; ++i) document.getElementById('forward').click();
    delete performance.now; }`);
  assert.equal(await browser.evaluate('location.hash'), '#request=12');
  await until(() => text('link'), '#request=12');
  await browser.evaluate('history.back()');
  await until(current, 9, 'three quick steps are one');
  await browser.evaluate('history.back()');
  await until(current, 5);
  await browser.evaluate('history.forward()');
  await until(current, 9);
  await browser.evaluate(`location.hash = '#request=4711'`);
  await until(() => text('message'), 'There is no request 4711 in this report.');
  await browser.evaluate(`location.hash = '#request=7'`);
  await until(() => browser.evaluate(`document.getElementById('message').hidden`), true, 'a known one takes it back');
  for (const name of ['1', String(COUNT)]) await shownRequest(browser, name);
});

test('findings lead both ways and around', async () => {
  const finding = (mark) => browser.evaluate(`document.querySelector('[data-finding=${mark}]').click()`);
  const all = await browser.evaluate(`document.querySelector('[data-finding=undone]').textContent`);
  assert.equal(all, 'never done: 3');
  await finding('undone');
  assert.equal(await current(), 20, 'the next one from here');
  assert.equal(await text('walk-title'), 'never done: 1 of 3');
  await finding('undone');
  assert.equal(await current(), 30, 'again: one further');
  await click('walk-on');
  assert.equal(await current(), 40);
  await click('walk-on');
  assert.equal(await current(), 20, 'around the end');
  await click('walk-back');
  assert.equal(await current(), 40, 'around the beginning');
  await click('walk-back');
  assert.equal(await current(), 30);
  assert.equal(await browser.evaluate(`document.querySelector('#walk-list [aria-current=true]').textContent`), '30');
});

const every = (test) => Array.from({ length: COUNT }, (_, i) => i + 1).filter(test);
const isOneOf = (list) => every((request) => list.includes(request));
const isRatioIn = (low, high) => every((request) => [askedOf(request), overrideOf(request)].some((ratio) => ratio >= low - 1e-6 && ratio <= high + 1e-6));
const { corrected, aside, cached, refused, exception, shifted, undone, different } = SPECIAL;
const FILTERS = {
  overridden: every((request) => request !== refused && request !== exception),
  refused: isOneOf([refused, exception]),
  corrected: isOneOf([aside, ...Object.values(corrected)]),
  cached: [cached], exception: [exception], exceptions: [exception], undone, differs: [different],
  'sensor 2': every((request) => modesOf(request)[2] === 1),
  'sensor 0 corrected': [corrected[0], aside],
  'sensor 2 corrected': [corrected[2]],
  'sensor 2 asks': every((request) => askerOf(request) === 2),
  'mode 2': every((request) => modesOf(request)[0] === 2),
  '2.5x': isRatioIn(2.496, 2.504),
  '1.9-2.1x': isRatioIn(1.9, 2.1),
  'Corrected, 2 - 3x': [corrected[2]],
  'sensor 2 jump': [corrected[2], shifted, 26, exception],
};

test('filters find the requests that meet all their parts', async () => {
  const goTo = async (words) => {
    await browser.evaluate(`(() => {
      document.getElementById('go-to').value = ${JSON.stringify(words)};
      document.querySelector('#go button').click();
    })()`);
    return browser.evaluate(`document.getElementById('message').hidden ? '' : document.getElementById('message').textContent`);
  };
  for (const [words, expected] of Object.entries(FILTERS)) {
    assert.equal(await goTo(words), '', words);
    assert.deepEqual(await browser.evaluate(`[...document.querySelectorAll('#walk-list a')].map((link) => Number(link.textContent))`), expected, words);
    assert.ok(expected.includes(await current()), words);
  }
  assert.equal(await goTo('17'), '');
  assert.equal(await current(), 17);
  for (const words of ['fatal', 'outside', 'sensor 7', 'sensor 7 corrected', 'sensor 0 asks, 8x', 'mode 4']) {
    assert.equal(await goTo(words), `No request is \u201c${words}\u201d.`);
    assert.equal(await browser.evaluate(`document.getElementById('walk').hidden`), true, 'an empty list');
  }
  assert.match(await goTo('kept'), /^No request is .kept/, 'the kept answer is of the same mode');
  assert.match(await goTo('41'), /^There is no request 41/);
  assert.match(await goTo('corected'), /corected.+means nothing/);
  assert.equal(await current(), 17, 'what is not found leads nowhere');
  for (const words of ['undone', '41', '18']) assert.equal((await goTo(words)) === '', words !== '41', 'and is forgotten');
});

const pictured = () => browser.evaluate(`[...document.querySelectorAll('[data-sensor="0"] figure:last-child text.label')].map((label) => label.textContent)`);

test('the axis names requests, and curves go on beyond the window', async () => {
  const named = () => browser.evaluate(`[...document.querySelectorAll('#angle-chart .dygraph-axis-label-x')].map((label) => label.textContent).join()`);
  for (let i = 0; i < 2; ++i) await click('zoom-in');
  await browser.evaluate(`location.hash = '#request=20'`);
  await until(current, 20);
  assert.deepEqual(await view(), [14, 24]);
  assert.match(await named(), /^15,16,17,18,19,20,21,22,23,24/);
  for (const chart of ['ratio-chart', 'angle-chart']) {
    const rows = await browser.evaluate(`globalThis.ranges['${chart}'].file.map(([x]) => x)`);
    assert.deepEqual(rows, Array.from({ length: 12 }, (_, i) => 13 + i), chart);
  }
});

test('all is drawn anew in another size', async () => {
  await browser.resize(1000, 1200);
  await drawn();
  const { whole, widths } = await browser.evaluate(`({ whole: document.getElementById('timeline').clientWidth, widths: [
    document.getElementById('lanes').width, ...['ratio-chart', 'angle-chart'].map((id) => document.querySelector('#' + id + ' canvas').clientWidth)] })`);
  assert.deepEqual(widths, [whole, whole, whole]);
  const { left, width } = await boxOf('cursor');
  near(left + width / 2, (await plot()).xOf(4, [-0.5, COUNT - 0.5]), 1, 'the cursor');
  near(width, (await plot()).width / COUNT, 0.1, 'the cursor is as wide as a request');
  await browser.resize(1280, 1200, { sharp: 2 });
  await drawn();
  for (const [id, left] of [['lanes', 96], ['strip', 0]]) {
    const told = await browser.evaluate(`(({ width, clientWidth, drawn }) => [width / clientWidth, ...(({ scale, left }) => [scale, left])(drawn.find(({ left }) => ${left} === 0 || left > 0))])(document.getElementById('${id}'))`);
    assert.deepEqual(told, [2, 2, 2 * left], `${id} on a screen of twice as many pixels`);
  }
  await browser.resize(1280, 1200);
});

test('the desktop becomes dark while the page is open', async () => {
  const inks = {};
  for (const value of ['light', 'dark']) {
    await browser.send('Emulation.setEmulatedMedia', { features: [{ name: 'prefers-color-scheme', value }] });
    await drawn();
    const [own, line, ...told] = await browser.evaluate(`[...['--faint', '--line'].map((name) => getComputedStyle(document.documentElement).getPropertyValue(name).trim()), ranges['ratio-chart'].colors[0],
      ...['lanes', 'strip'].map((id) => document.getElementById(id).drawn[0].colour), ranges['angle-chart'].axisLineColor, ranges['angle-chart'].gridLineColor]`);
    inks[value] = told;
    assert.deepEqual(told.slice(1), [own, own, line, line], value);
  }
  assert.notEqual(inks.light[0], inks.dark[0], 'curves');
  await browser.send('Emulation.setEmulatedMedia', { features: [] });
});

test('a port is singled out', async () => {
  await shownRequest(browser, '7');
  assert.deepEqual(await browser.evaluate(`[...document.getElementById('port').options].map(({ text }) => text)`), ['all ports', 'R1', 'R3']);
  const choose = (index) => browser.evaluate(`{ const list = document.getElementById('port');
    list.selectedIndex = ${index}; list.dispatchEvent(new Event('change')); }`);
  assert.deepEqual(await pictured(), ['R1', 'R3']);
  await choose(2);
  assert.deepEqual(await pictured(), ['R3']);
  await browser.press('ArrowRight');
  await shownRequest(browser, '8');
  assert.deepEqual(await pictured(), ['R1 R3 before', 'R1 R3'], 'ports that share a crop');
  await shownRequest(browser, '7');
  assert.deepEqual(await pictured(), ['R3'], 'it stays chosen');
  await choose(0);
  assert.deepEqual(await pictured(), ['R1', 'R3']);
});

test('b blinks between the crop and the expected one', async () => {
  await shownRequest(browser, '7');
  const crops = () => browser.evaluate(`[...document.querySelectorAll('[data-sensor="0"] figure:last-child rect')]
    .map((node) => [node.getAttribute('class').split(' ')[0], Number(node.getAttribute('width'))])`);
  const widthOf = (list, name) => list.find(([own]) => own === name)?.[1];
  const [now, scale] = [await crops(), await crops().then((list) => widthOf(list, 'pixels') / 2016)];
  near(widthOf(now, 'crop') / scale, 1186 - DIFFERENT_BY, 3, 'the crop');
  near(widthOf(now, 'expected') / scale, 1186, 3, 'the expected one');
  assert.equal(await browser.evaluate(`document.getElementById('blink').getAttribute('aria-pressed')`), 'false');
  await browser.press('b');
  assert.deepEqual(await pictured(), ['R1 expected', 'R3 expected']);
  assert.equal(widthOf(await crops(), 'crop'), undefined, 'away');
  assert.equal(await browser.evaluate(`document.getElementById('blink').getAttribute('aria-pressed')`), 'true');
  await click('blink');
  assert.deepEqual(await crops(), now);
  await shownRequest(browser, '8');
  assert.equal(await browser.evaluate(`document.getElementById('differences-card').hidden`), true, 'others differ in nothing');
});

test('curves are hidden, and the axis is set', async () => {
  const options = async () => {
    await drawn();
    return browser.evaluate(`Object.fromEntries(Object.entries(globalThis.ranges).map(([id, { visibility, valueRange, colors }]) => [id, { visibility, valueRange, colors }]))`);
  };
  const before = await options();
  assert.deepEqual(before['ratio-chart'].visibility, [true, true]);
  await browser.evaluate(`document.querySelectorAll('#ratio-legend input')[1].click()`);
  const hidden = await options();
  assert.deepEqual([hidden['ratio-chart'].visibility, hidden['ratio-chart'].colors], [[true, false], before['ratio-chart'].colors]);
  for (const [{ 'ratio-chart': { valueRange: [low, high] } }, least, most] of [[before, 0.99, 9], [hidden, 1.1, 5]]) {
    near(low * 1.12, least, 0.01, 'room below what is shown');
    near(high / 1.12, most, 0.01, 'room above');
  }
  assert.deepEqual((await options())['angle-chart'].visibility, [true, true]);
  const range = (words) => browser.evaluate(`{ const field = document.getElementById('range');
    field.value = '${words}'; field.dispatchEvent(new Event('change')); }`);
  await range('-5..7.5');
  assert.deepEqual((await options())['angle-chart'].valueRange, [-5, 7.5]);
  for (const words of ['-5 to 7.5', '1 2', ' -5.0   7.5 ']) {
    await range(words);
    assert.deepEqual((await options())['angle-chart'].valueRange, words === '1 2' ? [1, 2] : [-5, 7.5]);
  }
  assert.equal(await browser.evaluate(`document.getElementById('message').hidden`), true);
  await range('7..-5');
  assert.match(await text('message'), /written as -5\.\.5/);
  await range('');
  assert.deepEqual((await options())['angle-chart'].valueRange, before['angle-chart'].valueRange);
});

test('a step is drawn while it is pointed at', async () => {
  await shownRequest(browser, '8');
  const pointed = () => browser.evaluate(`[...document.querySelectorAll('.pointed')].map((node) => [
    node.closest('[data-sensor]').dataset.sensor, node.closest('figure').querySelector('figcaption').textContent.split(/\\d/)[0],
    Number(node.getAttribute('width')) / Number(node.parentNode.querySelector('.pixels').getAttribute('width'))])`);
  const point = (item) => browser.evaluate(`document.querySelectorAll('#why li')[${item}].dispatchEvent(new Event('pointerenter'))`);
  for (const [item, figure, part] of [[0, 'Active array', 400 / 4032], [1, 'Output of mode ', 200 / 2016], [2, 'Output of mode ', 320 / 2016]]) {
    await point(item);
    const [[sensor, title, share], ...more] = await pointed();
    assert.deepEqual([sensor, title, more], ['0', figure, []]);
    assert.ok(await browser.evaluate(`getComputedStyle(document.querySelector('.pointed')).fillOpacity`) < 0.5, 'what is below is seen');
    near(share, part, 0.003, `step ${item}`);
  }
  for (const [on, off] of [['pointerenter', 'pointerleave'], ['focus', 'blur']]) {
    for (const [event, seen] of [[on, 1], [off, 0]]) {
      await browser.evaluate(`document.querySelectorAll('#why li')[2].dispatchEvent(new Event('${event}'))`);
      assert.equal((await pointed()).length, seen, event);
    }
  }
});

test('nothing on the console', () => assert.deepEqual(browser.errors, []));
