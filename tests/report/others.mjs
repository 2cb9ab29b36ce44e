// Reports of other kinds than tour's and moves': node others.mjs ZOOMREPLAY FOLDER
import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';

import { SETUP, requestLines } from '../live/Live.mjs';
import { Chromium } from './Chromium.mjs';
import { linesOf as linesOfMoves } from './movesScenario.mjs';
import { shownRequest } from './Page.mjs';
import { eventually } from './Patience.mjs';

const [tool, folder] = process.argv.slice(2);
mkdirSync(folder, { recursive: true });
let browser;
before(async () => { browser = await Chromium.start(); });
after(() => browser.stop());

const textOf = (lines) => lines.map((line) => JSON.stringify(line) + '\n').join('');
const texts = (selector) => browser.evaluate(`[...document.querySelectorAll('${selector}')].map((node) => node.textContent)`);
const resultsOf = (lines) => {
  const file = join(folder, 'expected.jsonl');
  execFileSync(tool, ['-', '-o', file], { input: textOf(lines) });
  return file;
};
const open = async (lines, ...options) => {
  const scenario = join(folder, NAME);
  writeFileSync(scenario, textOf(lines));
  const { status } = spawnSync(tool, [scenario, '-o', '/dev/null', '--report', report, ...options]);
  assert.ok(status < 2 || lines.includes(BAD_LINE));
  await browser.open(`${pathToFileURL(report).href}?${Math.random()}`);
  await eventually(() => browser.evaluate(`document.documentElement.dataset.ready === 'yes' || document.getElementById('requests').textContent.includes('no request')`), 'the page');
};
const report = join(folder, 'r.html');
const NAME = '<!--<script>\u2028.jsonl';  // could end the page's data
const BAD_LINE = { op: 'nonsense' };
const sensor = (id) => ({ op: 'sensor', id, modes: { 1: { size: [2304, 1296], window: [0, 0, 4608, 2592] } } });

test('without angles the parts of the sensors are told', async () => {
  const set = (zoomRatio, previewAaCrops) => ({ op: 'storeOverrideSetting', requestNo: 2, setting: { overrideValid: true, requestNo: 2, zoomRatio, previewAaCrops } });
  await open([sensor(2), sensor(10), { op: 'initialize', mode: 'ByRequest' }, set(3, { 2: [0, 0, 4608, 2592], 10: [0, 0, 2304, 2592] }),
    { op: 'setRunTimeCropNeedData', requestNo: 1, sensorModes: { 2: 1, 10: 1 } },
    { op: 'getP2CropSetting', requestNo: 1, zoomRatio: 1 },
    set(2, { 2: [1152, 648, 2304, 1296], 10: [0, 0, 4608, 1296] }),  // what is answered last stands
    { op: 'getP2CropSetting', requestNo: 1, zoomRatio: 1 },
    { op: 'onRequestDone', requestNo: 1 },
    { op: 'observed', requestNo: 7, activePhysicalId: '6' },  // the phone knows requests that the library was not told
    { op: 'setRunTimeCropNeedData', requestNo: 2, sensorModes: { 2: 1 } },
    ...[['getP1CropSetting', 4], ['getP2CropSetting', 5]].flatMap(([op, zoomRatio]) => [  // neither is overridden
      { op: 'storeOverrideSetting', requestNo: 3, setting: { overrideValid: true, requestNo: 3, zoomRatio } },
      { op: 'setRunTimeCropNeedData', requestNo: 3, sensorModes: { 2: 1 } },
      { op, requestNo: 3, zoomRatio: 9 }])]);
  const [first, second] = [await shownRequest(browser, '1'), await shownRequest(browser, '2')];
  assert.deepEqual(first.angles, [['2', 'P2', '50.0 %', ''], ['10', 'P2', '100.0 %', '']]);
  assert.deepEqual(first.beams, [[25, 50], [0, 100]]);
  assert.deepEqual(first.numbers.filter(([, , port]) => port === 'crop').map((row) => row.slice(1, 8)), [['2', 'crop', 'TG', '0', '0', '2304', '1296'], ['10', 'crop', 'TG', '0', '0', '1152', '1296'],
    ['2', 'crop', 'TG', '576', '324', '1152', '648'], ['10', 'crop', 'TG', '0', '0', '2304', '648']]);
  assert.equal(first.hover, 'request 1 \u00b7 asked 1.00\u00d7 \u00b7 override 2.00\u00d7 \u00b7 width of the crop: sensor 2 0.50, sensor 10 1.00');
  assert.deepEqual(first.cards.map(({ heading, what, figures }) => [heading, what, figures[0].caption]), [2, 10].map((id) =>
    [`Sensor ${id}`, 'no angles configured', 'Read out by its modes4608\u00d72592']));
  assert.equal(second.angleHeads.at(-1), 'No crop was overridden in this request.');
  assert.equal(second.cards[1].note, 'Has no mode in this request.');
  assert.deepEqual(second.stages, ['No crop was asked for.']);
  assert.equal((await shownRequest(browser, '3')).override, '4.00\u00d7', 'the first, where none is applied');
});

test('a sensor without angles beside one that has them', async () => {
  await open([sensor(0), sensor(2), { op: 'initialize', mode: 'ByRequest' },
    { op: 'configSensorInfo', sensorIds: [0], sensorInfos: { 0: { degreeH: 90, degreeV: 60, activeArray: [0, 0, 4608, 2592] } } },
    { op: 'storeOverrideSetting', requestNo: 2, setting: { overrideValid: true, requestNo: 2, zoomRatio: 2, previewAaCrops: { 0: [0, 0, 4608, 2592], 2: [0, 0, 4608, 1296] } } },
    { op: 'setRunTimeCropNeedData', requestNo: 1, sensorModes: { 0: 1, 2: 1 } },
    { op: 'getP2CropSetting', requestNo: 1, zoomRatio: 1 },
    { op: 'onRequestDone', requestNo: 1 },
    { op: 'setRunTimeCropNeedData', requestNo: 1 },  // the same number at once
    { op: 'observed', requestNo: 1, activePhysicalId: 'n\u00e9\u{1f4f7}', cropRegion: [1, 2, 30, 40] },
    { op: 'setRunTimeCropNeedData', requestNo: 2 }, { op: 'getP2CropSetting', requestNo: 2, zoomRatio: 0 }]);
  assert.match((await texts('#timeline-text'))[0], /^Asked ratio 1.00\u00d7 to 1.00\u00d7;/, 'of ratios');
  assert.deepEqual((await shownRequest(browser, '1')).angles, [['0 master', 'P2', '90.00\u00b0', '60.00\u00b0', '\u00b10.00\u00b0, \u00b10.00\u00b0', '\u2013'],
    ['2', 'P2', '\u2013', '\u2013', '\u2013', '\u2013']]);
  assert.match((await shownRequest(browser, '1:2')).sentence, /line 9, the phone itself used camera n\u00e9\u{1f4f7}, cropped to \(1, 2\)\/30\u00d740, never reported done\.$/u);
});

test('a range of what is as expected', async () => {
  await open(linesOfMoves(false), '--compare', resultsOf(linesOfMoves(false)), '--requests', '3-7');
  assert.deepEqual(await texts('#about'), ['InstantRequest \u00b7 5 of 40 requests \u00b7 5 overridden \u00b7 as expected']);
});

test('answers are kept as the library keeps them, and a bad line ends the report', async () => {
  const create = { op: 'getZoomOverrideMode' };
  const close = { op: 'property', name: 'vendor.debug.camera.zoomOverride.closeP1Override', value: 1 };
  const query = { op: 'getP1CropSetting', requestNo: 1, zoomRatio: 4 };
  const refused = ['not overridden, override off', '', 1];
  for (const [begin, answer, kept, override] of [  // the property is read when the manager is made
    [[create, close, ...SETUP], 'overridden', ', from the cache', 2], [[close, ...SETUP], ...refused],
    [[...SETUP, { op: 'initialize', mode: 9 }, { ...query, requestNo: 2, zoomRatio: 'inf' }], ...refused]]) {
    const lines = [...begin, ...requestLines(1, 2, 4).slice(0, 2)];
    await open([...lines, query, query, BAD_LINE, query]);
    const where = [1, 2].map((more) => `4.00\u00d7 \u2192 ${override}.00\u00d7 \u00b7 line ${lines.length + more}`);
    assert.deepEqual((await shownRequest(browser, '1')).stages, [`P1${answer}${where[0]}`, `P1${answer}${kept}${where[1]}`]);
  }
  const second = await shownRequest(browser, '2');  // of which there is nothing but a query
  assert.match(second.stages.join(), /^P1not overridden, override offinf \u2192 1\.00\u00d7/);
  assert.deepEqual([second.sentence, ...second.cards.map(({ note }) => note)],
    [`${join(folder, NAME)}: never reported done.`, ...Array(2).fill('Has no mode in this request.')]);
  assert.doesNotMatch(readFileSync(report, 'utf8'), /<!--/);
  assert.deepEqual(await texts('#title'), [NAME]);
});

test('a lone sensor, large numbers, and crops that were not expected', async () => {
  const numbers = [0, 1, 2].map((more) => 4000000000 + more);  // more than half of what 32 bits hold
  const linesFor = (previewAaCrops) => [sensor(3), { op: 'initialize', mode: 'ByRequest' }, ...numbers.flatMap((requestNo, i) => [
    { op: 'storeOverrideSetting', requestNo: 4000000009, setting: { overrideValid: true, requestNo: 4000000009, zoomRatio: 2, previewAaCrops: previewAaCrops[i] } },
    { op: 'setRunTimeCropNeedData', requestNo, sensorModes: { 3: 1 } }, { op: 'getP2CropSetting', requestNo, zoomRatio: 1 },
    { op: 'observed', requestNo, activePhysicalId: '4294967295' }])];
  const crop = { 3: [0, 0, 2304, 1296] };
  const expected = resultsOf(linesFor([crop, { 3: [0, 20, 2200, 1296] }, crop]));
  writeFileSync(expected, readFileSync(expected, 'utf8').replace(/"result": true, "need": .*\}(?![^]*CropSetting)/, '"exception": "out_of_range", "what": "at"}'));
  await open(linesFor([crop, crop, crop]), '--compare', expected);
  const deltas = ['', 'y \u221210, w +52', 'not expected'];
  for (const [i, no] of numbers.entries()) {
    const page = await shownRequest(browser, String(no));
    assert.deepEqual(page.numbers.filter(([, , port]) => port === 'crop').map((row) => row.at(-1)), [deltas[i]]);
    assert.match(page.slider, new RegExp(`^Request ${no}: `));
    assert.match(page.sentence, /used camera 4294967295, never reported done/);
    assert.ok(page.cards[0].figures.every(({ zoom, picture }) => Math.abs(zoom - 1) < 0.05 && picture[1] <= 182), 'drawn as large as it is shown, and no higher');
  }
  assert.deepEqual((await texts('#plain td:first-child')).map(Number), numbers);
  assert.match((await texts('#plain li')).join(), /first 4000000000/);
});

test('more sensors than colours', async () => {
  const ids = [0, 1, 2, 3, 4, 5, 6, 8];
  await open([...ids.map(sensor), { op: 'initialize', mode: 'ByRequest' }, { op: 'storeOverrideSetting', requestNo: 2, setting: { overrideValid: true, requestNo: 2, zoomRatio: 2,
    previewAaCrops: Object.fromEntries(ids.map((id) => [id, [0, 0, 2304, 1296]])) } },
  { op: 'setRunTimeCropNeedData', requestNo: 1, sensorModes: Object.fromEntries(ids.map((id) => [id, 1])) }, { op: 'getP2CropSetting', requestNo: 1, zoomRatio: 1 }]);
  assert.deepEqual(await browser.evaluate(`[...document.querySelectorAll('#angle-legend path')].map(({ style }) => style.stroke + ' ' + style.strokeDasharray)`),
    ['0) none', '1) 8, 3', '2) 2, 2', '3) 10, 3, 2, 3', '4) 5, 5', '5) 1, 3', '0) none', '1) 8, 3'].map((words) => `var(--c${words}`));
});

test('without requests there is nothing to show', async () => {
  await open([sensor(0)]);
  assert.deepEqual(await texts('#requests'), ['There is no request to show.']);
  assert.deepEqual(await texts('#about'), ['0 requests \u00b7 0 overridden']);
  assert.equal(await browser.evaluate(`document.getElementById('page').hidden`), false);
});

const STREAMS = ['0x70010000000000', '0x70010200000000'];  // of sensors 0 and 2, which leap together
test('of long lists a part is shown', async () => {
  const COUNT = 1010;
  const lines = linesOfMoves(false).slice(0, 4);
  for (let requestNo = 1; requestNo <= COUNT; ++requestNo) {
    const w = requestNo % 4 < 2 ? 2000 : 2100 + requestNo;  // leaps every other request, and stays there
    lines.push({ op: 'setRunTimeCropNeedData', requestNo, sensorModes: { 0: 1, 2: 1 }, streamSizes: Object.fromEntries(STREAMS.map((stream) => [stream, [320, 240]])) },
      { op: 'storeOverrideSetting', metadata: { zoomRatio: 1.5, customStreamCrops: [0, 0, 0, w, 1500, 1, 0, 0, w, 1500] }, streamIdMap: { ...STREAMS } },
      { op: 'getP1CropSetting', requestNo, zoomRatio: 2 });
  }
  const stray = Array.from({ length: 25 }, () => ({ op: 'isPortExist', sensorId: 0, port: 1 }));
  await open([...lines, ...stray], '--compare', resultsOf(lines));
  assert.deepEqual([await texts('#stray-title'), await texts('#stray-list > li')], [['Differences that belong to no request: 25'],
    [...Array.from({ length: 20 }, (_, i) => `line ${lines.length + 1 + i}, isPortExist: not expected`), 'and 5 more']]);
  assert.equal((await texts('#numbers thead th')).at(-1), 'Down to master', 'they are differences of no crop');
  assert.match((await texts('#angle-chart .dygraph-axis-label-x')).join(), /^1,101,201,.*,1001$/);
  const jumps = await texts('#jump-list li');
  const found = Number((await texts('[data-finding=jump]'))[0].replace('jump: ', ''));
  assert.equal(found, 500, 'of a thousand');
  assert.deepEqual([jumps.length, jumps.at(-1)], [21, `and ${COUNT - 20} smaller ones`]);
  const places = jumps.slice(0, -1).map((words) => Number(/^request (\d+): sensor [02] /.exec(words)[1]));
  assert.ok(places.every((no) => no > COUNT - 40), 'the largest ones');
  for (const id of [0, 2]) {
    await browser.evaluate(`document.getElementById('go-to').value = 'sensor ${id} jump'; document.getElementById('go').requestSubmit()`);
    assert.match((await texts('#walk-title'))[0], new RegExp(` of ${found}$`));
  }
  await browser.evaluate(`document.querySelector('[data-finding=undone]').click()`);
  const range = (from, to) => Array.from({ length: to - from + 1 }, (_, i) => String(from + i));
  for (const [name, expected] of [['1', [...range(1, 40), '\u2026']], ['50', ['\u2026', ...range(30, 69), '\u2026']], [String(COUNT), ['\u2026', ...range(COUNT - 39, COUNT)]]]) {
    await shownRequest(browser, name);
    assert.deepEqual(await texts('#walk-list li'), expected);
    assert.deepEqual(await texts('#walk-list [aria-current=true]'), [name]);
    assert.deepEqual(await texts('#walk-title'), [`never done: ${name} of ${COUNT}`]);
  }
  await browser.resize(390, 844);
  assert.ok(await browser.evaluate('document.documentElement.scrollWidth <= innerWidth'), 'a long list needs no more width');
  await browser.resize(1280, 1000);
});

test('requests are found in the order in which they ended', async () => {
  const lines = [{ op: 'sensor', id: 0, modes: { 0: { matrix: [1, 0, 1, 0] } } }, { op: 'initialize', mode: 'InstantRequest' },
    { op: 'storeOverrideSetting', metadata: { zoomRatio: 1.5, customStreamCrops: [0, 0, 0, 8, 8] }, streamIdMap: { 0: '0x70010000000000' } },
    { op: 'configSensorInfo', sensorIds: [5], sensorInfos: { 5: { degreeH: 68, degreeV: 42, activeArray: [0, 0, 4608, 2592] },
      7: { degreeH: '-inf', degreeV: 'inf', activeArray: [0, 0, 8, 8] } } }];
  const request = (requestNo) => lines.push({ op: 'setRunTimeCropNeedData', requestNo, sensorModes: { 0: 0 } });
  const done = (requestNo) => lines.push({ op: 'onRequestDone', requestNo });
  for (let no = 1; no <= 1300; ++no) {
    request(no);
    if (no === 150 || no === 401) lines.push({ op: 'getP1CropSetting', requestNo: no, zoomRatio: 2 });  // has no such stream
    if (no > 400) done(no);
  }
  for (let no = 1; no <= 400; ++no) done(no);
  await open(lines, '--compare', resultsOf([...lines, { op: 'isPortExist', sensorId: 0, port: 1 }]));
  for (const no of [1, 2, 400, 401, 600, 1200, 1300]) {
    const doneLine = lines.findLastIndex(({ op, requestNo }) => op === 'onRequestDone' && requestNo === no) + 1;
    assert.match((await shownRequest(browser, String(no))).sentence, new RegExp(`, done on ${doneLine}\\.$`));
  }
  assert.deepEqual((await shownRequest(browser, '1')).cards.map(({ heading, what, note }) => [heading, what, note]),
    [['Sensor 0', 'no angles configured', 'Mode 0 has no output size.'], ['Sensor 5, master', '68\u00b0 \u00d7 42\u00b0', 'Has no mode in this request.'],
      ['Sensor 7', '-inf\u00b0 \u00d7 inf\u00b0', 'Has no mode in this request.']]);
  await browser.evaluate(`document.getElementById('go-to').value = 'sensor 0'; document.getElementById('go').requestSubmit()`);
  assert.deepEqual(await texts('#walk-title'), ['\u201csensor 0\u201d: 1 of 1300'], 'in mode 0, too');
  const cells = (await texts('#plain td')).map((text, i) => [text, [String(Math.floor(i / 6) + 1), '-', '-', 'not overridden', '', ''][i % 6]]);
  assert.equal(cells.length, 600);
  for (const [text, expected] of cells) assert.equal(text, expected);
  assert.equal((await texts('#plain p')).at(-1), 'The first 100 of 1300 requests.');
  assert.deepEqual(await texts('#plain li'), ['exception: 2 requests, first 150']);
  assert.deepEqual(await texts('#stray-list li'), ['isPortExist: expected, and nothing came of it']);
});

test('nothing on the console', () => assert.deepEqual(browser.errors, []));
