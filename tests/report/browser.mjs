// Opens a report in a browser, moves through its requests and holds what it shows to the result file
// of the same run: node browser.mjs REPORT.html RESULTS.jsonl SCENARIO.jsonl
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';
import { PATIENCE, eventually, pause } from './Patience.mjs';

const [report, resultFile, scenarioFile] = process.argv.slice(2);
const address = pathToFileURL(report).href;
const results = readFileSync(resultFile, 'utf8').trim().split('\n').map((line) => JSON.parse(line));
const queries = new Map(results.filter((result) => result.need).map((result) => [result.line, result]));

const scenario = readFileSync(scenarioFile, 'utf8').split('\n');
const requestOf = (line) => JSON.parse(scenario[line - 1]).requestNo;

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
  const goTo = (text) => browser.evaluate(`(() => {
    document.getElementById('go-to').value = '${text}';
    document.getElementById('go').requestSubmit();
  })()`);
  const message = () => browser.evaluate(`document.getElementById('message').textContent`);

  await browser.open(`${address}#request=3`);
  await show();
  assert.equal(await number(), 3, 'a link opens its request');

  await browser.evaluate(`document.getElementById('timeline').focus()`);
  await browser.press('Home');
  const first = await number();
  await browser.press('End');
  const last = await number();
  assert.ok(last > first, 'Home and End');

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

  await browser.press('ArrowLeft');
  assert.equal(await number(), last - 1, 'the left arrow');

  await pause(500);
  await browser.evaluate(`location.hash = '#request=2'`);
  await show();
  assert.equal(await number(), 2, 'a link within the open report');
  await pause(500);
  await goTo('4');
  assert.equal(await number(), 4, 'the field goes to a number');
  await browser.evaluate(`history.back()`);
  await eventually(async () => await number() === 2, 'moves are in the history');
  await goTo('99999');
  assert.match(await message(), /no request 99999/);
  await goTo('overriden');
  assert.match(await message(), /overriden.+means nothing/);
  await goTo('overridden');
  assert.equal(await browser.evaluate(`document.getElementById('walk-title').textContent.split(' ').at(-1)`),
    String(new Set([...queries.values()].filter(({ result }) => result).map(({ line }) => requestOf(line))).size), 'all that meet a filter are listed');
  await browser.evaluate(`location.hash = '#request=2'`);
  await show();
  await browser.evaluate(`document.getElementById('timeline').focus()`);

  await browser.press(' ');
  await eventually(async () => await number() > 2, 'the space bar plays');
  await browser.press(' ');
  await browser.press('Home');

  const box = await browser.evaluate(`(() => {
    const { left, right, top } = document.getElementById('timeline').getBoundingClientRect();
    return { left, right, top };
  })()`);
  await browser.mouse('mousePressed', (box.left + box.right) / 2, box.top + 20, 1);
  const dragged = await number();
  assert.ok(dragged > first && dragged < last, 'pressing in the middle of the timeline');
  await browser.mouse('mouseMoved', box.right - 1, box.top + 20, 1);
  await browser.mouse('mouseReleased', box.right - 1, box.top + 20, 0);
  assert.equal(await number(), last, 'dragging to the end of the timeline');

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
