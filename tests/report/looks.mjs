// Holds what pages say and how they look to looks/*.txt, where nothing depends on fonts: node looks.mjs ZOOMREPLAY FOLDER MOVES.html TOUR.html
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdirSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';

import { Live, SETUP, requestLines } from '../live/Live.mjs';
import { Chromium } from './Chromium.mjs';
import { hold, saidBy, shownRequest } from './Page.mjs';
import { eventually } from './Patience.mjs';

const [tool, folder, ...reports] = process.argv.slice(2);
let browser;
before(async () => {
  browser = await Chromium.start();
  await browser.resize(1280, 1000);
});
after(() => browser.stop());

// What the style makes of each kind of element, by the names of the palette. Of what is inherited, where it begins.
const STYLED = `((isPointedAt) => {
  const sheet = document.querySelector('style');
  const text = sheet.textContent;
  if (isPointedAt) sheet.textContent = text.replace(':focus-visible', '#timeline').replaceAll(/:(hover|focus)\\b/g, ':not(.no)');
  const names = [...new Set(sheet.textContent.match(/--[\\w-]+(?=:)/g))].filter((name) => name !== '--mono');
  const root = document.documentElement.style;
  names.forEach((name, i) => root.setProperty(name, 'rgb(1, 2, ' + i + ')'));
  const named = (value) => value.replace(/rgb\\(1, 2, (\\d+)\\)/g, (_, i) => names[i]).replace(/^(ui-mono|system)[^,]*,.*/, '$1...');
  const properties = new Set();
  const collect = (rules) => [...rules].forEach((rule) => {
    for (const name of rule.style ?? []) if (!/^--|^border-(inline|bottom-\\w+-r|top-right-r)|^text-wrap|^white-space/.test(name)) properties.add(name);
    if (rule.cssRules) collect(rule.cssRules);
  });
  collect(sheet.sheet.cssRules);
  const label = (node) => node.id ? '#' + node.id : node.localName + [...node.classList].map((each) => '.' + each).join('');
  const path = (node) => node.id || node === document.body ? label(node) : path(node.parentNode) + ' ' + label(node);
  const all = [document.body, ...document.querySelectorAll('#page, #page :not(option), #plain, #plain *')].filter((node) => (!node.parentNode.closest('.chart') || node.matches('.dygraph-axis-label')) && !node.closest('tr:nth-child(n + 4):not(:last-child)'));
  const values = () => new Map(all.map((node) => {
    const map = node.computedStyleMap();
    return [node, { ...Object.fromEntries([...properties].map((name) => [name, named(String(map.get(name)))])), 'white-space': getComputedStyle(node).whiteSpace }];
  }));
  const styled = values();
  sheet.disabled = true;
  const bare = values();
  sheet.disabled = false;
  if (isPointedAt) sheet.textContent = text;
  names.forEach((name) => root.removeProperty(name));
  const INHERITED = /^(border-collapse|color|cursor|fill|font|line-height|list-style|overflow-wrap|paint-order|pointer-events|stroke|text-align|user-select|white-space)/;
  const SIDES = ['top', 'right', 'bottom', 'left'];
  const lines = all.map((node) => {
    const [own, plain, above, aboveBare] = [styled.get(node), bare.get(node), styled.get(node.parentNode), bare.get(node.parentNode)];
    const told = Object.fromEntries(Object.entries(own).filter(([name, value]) => value !== plain[name] &&
      !(INHERITED.test(name) && above && value === above[name] && plain[name] === aboveBare[name]) &&
      !(/^(border|outline|text-decoration).*color/.test(name) && value === own.color) && !(name === 'box-sizing' && above)));
    for (const name of Object.keys(told).filter((each) => each.includes('-top'))) {
      const four = SIDES.map((side) => name.replace('top', side));
      if (four.every((each) => each in told)) {
        told[name.replace('-top', '')] = [...new Set(four.map((each) => told[each]))].length === 1 ? told[name] : four.map((each) => told[each]).join(' ');
        for (const each of four) delete told[each];
      }
    }
    return [path(node), Object.entries(told).filter(([name]) => name !== 'max-width' || !above).map((fact) => '  ' + fact.join(' ')).sort().join('\\n')];
  });
  return lines;
})`;
const PALETTE = `[...new Set(document.querySelector('style').textContent.match(/--[\\w-]+(?=:)/g))]
  .map((name) => [name, getComputedStyle(document.documentElement).getPropertyValue(name).trim().replace(/^ui-mono.*/, 'ui-mono...')])`;

const media = (media, scheme) => browser.send('Emulation.setEmulatedMedia', { media, features: [{ name: 'prefers-color-scheme', value: scheme }] });
/** Opens all that can be opened, and looks at one thing of each kind. */
const openAll = async (request) => {
  await shownRequest(browser, request);
  await browser.evaluate(`document.querySelector('#walk:not([hidden])') ?? document.querySelector('#findings button')?.click()`);
  await shownRequest(browser, request);
  await browser.evaluate(`{
    for (const node of document.querySelectorAll('details')) node.open = true;
    document.querySelector('#why li')?.dispatchEvent(new Event('pointerenter'));
  }`);
};
const SCREEN = 'on the screen';
const ON_PAPER = 'on paper';
const POINTED_AT = 'under the mouse and with the focus';
const LOOKS = {
  [SCREEN]: async () => {},
  narrow: () => browser.resize(900, 1000),
  [ON_PAPER]: () => media('print', 'light'),
  [POINTED_AT]: async () => {},
};
const SCHEMES = [['', 'light'], ['', 'dark'], ['print', 'light'], ['print', 'dark']];

const styles = Object.fromEntries(Object.keys(LOOKS).map((what) => [what, new Map()]));  // { kinds of elements } by their facts
const takeStyles = async (looks) => {
  const known = new Set();
  for (const what of looks) {
    await LOOKS[what]();
    await drawn();  // in another size all is made anew
    for (const [kind, facts] of await browser.evaluate(`${STYLED}(${what === POINTED_AT})`)) {
      if (!known.has(kind + facts) && (facts || what !== SCREEN)) styles[what].set(facts, (styles[what].get(facts) ?? new Set()).add(kind));
      if (what === SCREEN) known.add(kind + facts);
    }
    await browser.resize(1280, 1000);
    await media('', 'light');
    await drawn();
  }
};
const drawn = () => browser.evaluate('new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)))');
const say = (roots) => saidBy(browser, roots);

test('reports', async () => {
  const bare = join(folder, 'bare.html');
  mkdirSync(folder, { recursive: true });
  assert.equal(spawnSync(tool, ['bare.jsonl', '-o', '/dev/null', '--report', bare], { cwd: new URL('looks/', import.meta.url) }).status, 0);
  for (const [name, file, looks, ...requests] of [['moves', reports[0], Object.keys(LOOKS), '7'], ['bare', bare, [SCREEN, ON_PAPER], '1'], ['tour', reports[1], [SCREEN], '2:2', '3', '5', '8', '10']]) {
    await browser.open(pathToFileURL(file).href);
    for (const request of requests) {
      await openAll(request);
      if (name !== 'tour') hold(`${name}.txt`, await say('body > :not(script)'));
      await takeStyles(looks);
    }
  }
});

test('a crop of the active array that was expected elsewhere', async () => {
  const run = (published, ...options) => {
    writeFileSync(join(folder, 'compared.jsonl'), [...SETUP, ...requestLines(1, published)].map((line) => JSON.stringify(line) + '\n').join(''));
    return spawnSync(tool, ['compared.jsonl', ...options], { cwd: folder }).status;
  };
  assert.equal(run(2.5, '-o', 'expected.jsonl'), 0);
  assert.equal(run(2, '-o', '/dev/null', '--compare', 'expected.jsonl', '--report', 'compared.html'), 1);
  await browser.open(pathToFileURL(join(folder, 'compared.html')).href);
  await openAll('1');
  const said = await say('main');
  await browser.press('b');
  hold('compared.txt', [...said, ...await say('#sensors, #blink')]);
});

test('a live page', async () => {
  const live = await Live.start(tool);
  await browser.open(`${live.address}#request=2`);
  const said = await say('#live, #what-if');
  live.write(...SETUP, ...requestLines(1, 2));
  await shownRequest(browser, '1', false);
  said.push(...await say('#live'));
  live.write(...requestLines(2, 2));
  await shownRequest(browser, '2', false);
  await openAll('2');
  await browser.evaluate(`{ const slider = document.getElementById('what-if-ratio'); slider.value = 1; slider.dispatchEvent(new Event('input')); }`);
  await eventually(() => browser.evaluate(`document.getElementById('what-if').dataset.answered === '2'`), 'an answer');
  said.push(...await say('#live, #what-if'));
  await takeStyles([SCREEN]);
  await live.interrupt();
  await eventually(() => browser.evaluate(`document.getElementById('what-if').hidden`), 'the end');
  hold('live.txt', [...said, ...await say('#live, #what-if')]);
  await takeStyles([SCREEN]);
});

test('how they look', async () => {
  const palettes = [];
  for (const scheme of SCHEMES) {
    await media(...scheme);
    palettes.push(await browser.evaluate(PALETTE));
  }
  const colours = palettes[0].map(([name], i) => [name, ...palettes.map((palette) => palette[i][1])].join('  '));
  hold('style.txt', ['colours: by day, by night, and on the paper of both:', ...colours, ...Object.entries(styles).flatMap(([what, kinds]) =>
    ['', `${what}:`, ...[...kinds].flatMap(([facts, nodes]) => ['', ...nodes, facts || '  nothing'])])]);
});
