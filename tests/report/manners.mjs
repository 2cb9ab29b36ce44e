// What a report owes small screens, dark desktops and browsers without scripts: node manners.mjs REPORT.html...
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';
import { KEEP_DRAWINGS, shownRequest } from './Page.mjs';

const reports = process.argv.slice(2).map((file) => pathToFileURL(file).href);
let browser;
before(async () => {
  browser = await Chromium.start();
  await browser.before(KEEP_DRAWINGS);
});
after(() => browser.stop());

const open = async (report) => {
  await browser.open(report);
  await browser.evaluate(`(async () => { while (!document.documentElement.dataset.ready) await new Promise((resolve) => setTimeout(resolve, 10)); })()`);
};

// Everything that is seen: texts with their size on the screen, and what a finger may want to hit.
const SEEN = `(() => {
  const isSeen = (node) => node.checkVisibility() && node.getBoundingClientRect().width > 1 && !node.closest('.unseen');
  const scaleOf = (node) => node.ownerSVGElement ? node.getScreenCTM().a : 1;
  const all = [...document.querySelectorAll('body *')].filter(isSeen);
  const hasText = (node) => [...node.childNodes].some(({ nodeType, textContent }) => nodeType === 3 && textContent.trim());
  const name = (node) => (node.id || node.className.baseVal || node.className || node.tagName) + ' ' + node.textContent.trim().slice(0, 30);
  return {
    texts: all.filter(hasText).map((node) => [parseFloat(getComputedStyle(node).fontSize) * scaleOf(node), name(node)]),
    unseen: all.filter((node) => hasText(node) && !node.ownerSVGElement).filter((node) => {
      let ground = node;
      while (ground && getComputedStyle(ground).backgroundColor === 'rgba(0, 0, 0, 0)') ground = ground.parentElement;
      return getComputedStyle(node).color === getComputedStyle(ground ?? node).backgroundColor;
    }).map(name),
    targets: all.filter((node) => node.matches('button, a, input, select, summary, label:has(input[type=checkbox]), #timeline, #strip, #why li')).map((node) => {
      const { width, height } = (node.closest('label') ?? node).getBoundingClientRect();
      return [Math.min(width, height), name(node)];
    }),
    names: (({ drawn, clientWidth }) => {
      const context = Object.assign(document.createElement('canvas').getContext('2d'), { font: '11px ' + getComputedStyle(document.body).fontFamily });
      const names = drawn.filter(({ name, left }) => name === 'fillText' && left === 0).map(({ what: [text, right] }) => right - context.measureText(text).width);
      return { least: Math.min(...names), gutter: drawn.find(({ left }) => left > 0).left / clientWidth };
    })(document.getElementById('lanes')),
    isWide: document.documentElement.scrollWidth > innerWidth,
  };
})()`;

test('390 pixels are enough to read and to hit', async () => {
  for (const report of reports) {
    await browser.resize(390, 844, { mobile: true });
    await open(report);
    await browser.evaluate(`document.getElementById('jumps').open = true; document.querySelector('#findings button').click()`);
    await shownRequest(browser, await browser.evaluate(`document.querySelector('#walk-list [aria-current]').textContent`));
    const { texts, unseen, targets, names, isWide } = await browser.evaluate(SEEN);
    assert.ok(texts.length > 100 && targets.length > 30);
    assert.deepEqual(texts.filter(([size]) => size < 10.95), [], report);
    assert.deepEqual(unseen, [], 'texts have another colour than their ground');
    assert.deepEqual(targets.filter(([size]) => size < 23.95), [], report);
    assert.equal(isWide, false, 'nothing scrolls sideways');
    assert.ok(names.least >= 0 && names.gutter < 0.25, `names of lanes have room and leave room: ${JSON.stringify(names)}`);
    const [pictures, numbers] = await browser.evaluate(`['sensors', 'request'].map((id) => document.getElementById(id).getBoundingClientRect())
      .map(({ top, bottom }) => ({ top, bottom }))`);
    assert.ok(Math.min(Math.abs(numbers.top - pictures.bottom), Math.abs(pictures.top - numbers.bottom)) < 40, 'numbers are near the pictures');
  }
});

test('without scripts there is a plain table', async () => {
  await browser.send('Emulation.setScriptExecutionDisabled', { value: true });
  await browser.resize(1280, 900);
  await browser.open(reports[0]);
  const { root } = await browser.send('DOM.getDocument', { depth: -1 });
  const seen = async (selector) => {
    const { nodeIds } = await browser.send('DOM.querySelectorAll', { nodeId: root.nodeId, selector });
    return Promise.all(nodeIds.map((nodeId) => browser.send('DOM.getBoxModel', { nodeId }).then(({ model }) => model.width > 1, () => false)));
  };
  assert.ok((await seen('#plain tbody tr')).length > 8 && (await seen('#plain tbody tr')).every(Boolean));
  assert.ok((await seen('#plain li')).every(Boolean));
  const { nodeId } = await browser.send('DOM.querySelector', { nodeId: root.nodeId, selector: '#plain table' });
  assert.ok((await browser.send('DOM.getBoxModel', { nodeId })).model.width < 1280, 'long cells go on in a next line');
  assert.ok((await seen('button')).every((isSeen) => !isSeen), 'no dead buttons');
});

test('a dark page for dark desktops', async () => {
  await browser.send('Emulation.setScriptExecutionDisabled', { value: false });
  const sheets = [];
  for (const value of ['light', 'dark']) {
    await browser.send('Emulation.setEmulatedMedia', { features: [{ name: 'prefers-color-scheme', value }] });
    const faint = await browser.evaluate(`(() => {
      const context = document.createElement('canvas').getContext('2d');
      const light = (name) => {
        context.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(name).trim();
        const [r, g, b] = context.fillStyle.match(/\\w\\w/g).map((part) => parseInt(part, 16) / 255).map((v) => v <= 0.04045 ? v / 12.92 : ((v + 0.055) / 1.055) ** 2.4);
        return 0.2126 * r + 0.7152 * g + 0.0722 * b + 0.05;
      };
      const contrast = (a, b) => Math.max(a / b, b / a);
      const own = [0, 1, 2, 3, 4, 5].map((i) => light('--c' + i));
      if (new Set(own).size < own.length) return 'sensors have the same colour';
      return ['ink', 'faint', 'accent', 'alarm', 'c0', 'c1', 'c2', 'c3', 'c4', 'c5', 'least', 'expected', 'override', 'phone', 'refused', 'overridden', 'cached', 'exception',
        'fatal', 'corrected', 'jump', 'stale', 'outside', 'undone'].map((name) => [name, contrast(light('--' + name), light('--card'))]).filter(([, value]) => !(value >= 3));
    })()`);
    const veil = await browser.evaluate(`getComputedStyle(document.documentElement).getPropertyValue('--veil').match(/ (\\d+)%/)[1]`);
    assert.ok(veil >= 40 && veil <= 80, 'a veil is seen, and seen through');
    assert.deepEqual(faint, [], `what is drawn stands out by ${value === 'dark' ? 'night' : 'day'}`);
    sheets.push(await browser.evaluate(`(() => {
      const field = document.body.appendChild(Object.assign(document.createElement('i'), { style: 'color: FieldText' }));
      return [field, document.body].flatMap((node) => [getComputedStyle(node).color, getComputedStyle(node).backgroundColor]);
    })()`));
  }
  for (const i of [0, 2, 3]) assert.notEqual(sheets[0][i], sheets[1][i], 'what the browser draws, ink, and ground');
});

test('pictures have the larger part of the width', async () => {
  await browser.resize(1280, 1000);
  await open(reports[0]);
  await shownRequest(browser, '1');
  const [pictures, request] = await browser.evaluate(`['sensors', 'request'].map((id) => document.getElementById(id).getBoundingClientRect().toJSON())`);
  assert.ok(pictures.right <= request.left && pictures.width > request.width && pictures.top === request.top);
});

test('nothing on the console, and nothing is loaded beside the page', () => {
  assert.deepEqual(browser.errors, []);
  assert.deepEqual(browser.addresses.filter((url) => !url.startsWith('data:') && !reports.includes(url)), []);
});
