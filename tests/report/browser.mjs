// Opens a report in a browser, steps through its requests and holds the crops to the result file of
// the same run: node browser.mjs REPORT.html RESULTS.jsonl
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';
import { PATIENCE } from './Patience.mjs';

const [report, resultFile] = process.argv.slice(2);
const address = pathToFileURL(report).href;
const results = readFileSync(resultFile, 'utf8').trim().split('\n').map((line) => JSON.parse(line));
const queries = new Map(results.filter((result) => result.need).map((result) => [result.line, result]));

// The crops of a result line as [sensor, port or kind, x, y, w, h].
function expectedCrops({ need, result }) {
  if (!result) return [];
  const ports = Object.entries(need.tgCrops ?? {}).flatMap(([sensor, crops]) =>
    Object.entries(crops).map(([port, crop]) => [sensor, port, ...crop]));
  const kinds = [['crop', need.streamCrops], ['extra', need.extraTgCrops]].flatMap(([kind, crops]) =>
    Object.entries(crops ?? {}).map(([sensor, crop]) => [sensor, kind, ...crop]));
  return [...ports, ...kinds].map((row) => row.map(String)).sort();
}

// What the table of numbers shows, ports that share a row told apart.
const SHOWN = `(() => {
  const rows = [...document.querySelectorAll('#numbers tbody tr')];
  return {
    title: document.getElementById('request-title').textContent,
    slider: document.getElementById('timeline').getAttribute('aria-valuetext'),
    hash: location.hash,
    queries: rows.filter((row) => row.className === 'query').map(({ dataset }) => ({
      line: Number(dataset.line), asked: dataset.asked, override: dataset.override,
      state: document.querySelectorAll('#stages li')[rows.filter((row) => row.className === 'query')
        .findIndex((row) => row.dataset.line === dataset.line)].dataset.state,
      crops: rows.filter((row) => row.className !== 'query' && row.dataset.line === dataset.line)
        .flatMap((row) => {
          const cells = [...row.cells].map((cell) => cell.textContent);
          return cells[2].split(' ').map((port) => [cells[1], port, ...cells.slice(4, 8)]);
        }),
    })),
    pictures: [...document.querySelectorAll('#sensors svg')].map((svg) => svg.getAttribute('aria-label')),
  };
})()`;

// Details are unpacked when they are shown.
const SETTLED = `(async () => {
  const name = () => location.hash.replace('#request=', 'Request ');
  for (const start = Date.now(); Date.now() - start < ${PATIENCE};) {
    if (document.documentElement.dataset.ready && document.getElementById('request-title').textContent === name()) return;
    await new Promise((resolve) => setTimeout(resolve, 10));
  }
  throw new Error(\`\${document.getElementById('request-title').textContent} instead of \${name()}\`);
})()`;

const browser = await Chromium.start();
try {
  const show = async () => {
    await browser.evaluate(SETTLED);
    return browser.evaluate(SHOWN);
  };
  const number = () => browser.evaluate(
    `Number(/\\d+/.exec(document.getElementById('timeline').getAttribute('aria-valuetext')))`);
  await browser.open(`${address}#request=3`);
  await show();
  assert.equal(await number(), 3, 'a link opens its request');

  await browser.evaluate(`document.getElementById('timeline').focus()`);
  await browser.press('Home');
  const first = await number();
  await browser.press('End');
  const last = await number();

  // Every request, every query, every crop.
  await browser.press('Home');
  const seen = new Set();
  for (let expected = first; expected <= last; ++expected) {
    const shown = await show();
    assert.equal(shown.title, `Request ${expected}`);
    assert.equal(shown.hash, `#request=${expected}`);
    assert.match(shown.slider, new RegExp(`^Request ${expected}: `));
    for (const query of shown.queries) {
      const result = queries.get(query.line);
      assert.ok(result, `line ${query.line} is a query`);
      seen.add(query.line);
      assert.equal(query.override, String(result.need.zoomRatio), `override of line ${query.line}`);
      assert.equal(query.state, result.result ? 'overridden' : 'refused', `state of line ${query.line}`);
      assert.deepEqual(query.crops.sort(), expectedCrops(result), `crops of line ${query.line}`);
    }
    const [crop] = shown.queries.flatMap((query) => query.crops);
    if (crop) {
      const [x, y, w, h] = crop.slice(2);
      assert.ok(shown.pictures.some((text) => text.includes(`(${x}, ${y})/${w}\u00d7${h}`)),
        'the pictures have texts that tell the crops');
    }
    await browser.press('ArrowRight');
  }
  assert.deepEqual([...seen].sort(), [...queries.keys()].sort(), 'no query is left out');
  assert.equal(await number(), last, 'the last request has no next one');

  const sheets = {};
  for (const scheme of ['light', 'dark']) {
    await browser.send('Emulation.setEmulatedMedia',
      { features: [{ name: 'prefers-color-scheme', value: scheme }] });
    sheets[scheme] = await browser.evaluate('getComputedStyle(document.body).backgroundColor');
    assert.equal(await browser.evaluate('document.documentElement.scrollWidth <= innerWidth'), true,
      `no sideways scrolling, ${scheme}`);
  }
  assert.notEqual(sheets.light, sheets.dark, 'a dark page for dark desktops');

  assert.deepEqual(browser.errors, [], 'nothing on the console');
  assert.deepEqual(browser.addresses.filter((url) => !url.startsWith('data:') && !url.startsWith(address)), [],
    'nothing is loaded beside the page');
} finally {
  await browser.stop();
}
