// Opens the report of a scenario of longScenario.mjs and holds what it shows to the result file of the same run:
// node long.mjs REPORT.html RESULTS.jsonl EXPECTED.jsonl OTHER_REQUEST PLANTED_REQUEST
// EXPECTED.jsonl are the results of the scenario without OTHER_REQUEST's fault; the report was compared with them.
import assert from 'node:assert/strict';
import { readFileSync, statSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';
import { KEEP_DRAWINGS } from './Page.mjs';
import { PATIENCE } from './Patience.mjs';

const [report, resultFile, expectedFile, other, planted] = process.argv.slice(2);
const answersOf = (file) => readFileSync(file, 'utf8').trim().split('\n')
  .filter((line) => line.includes('getP1CropSetting')).map((line) => JSON.parse(line).need.tgCrops);
const answers = answersOf(resultFile);
const cropOf = (request, sensor) => answers[request - 1][sensor]['0x7001'];

// The TG domain of the scenario is half of its active array.
const WIDTH = 2016;
const DEGREES = [80, 120, 40];
const angleAt = (sensor, x) => Math.atan(Math.tan(DEGREES[sensor] * Math.PI / 360) * (2 * x / WIDTH - 1)) * 180 / Math.PI;
const angleOf = (sensor, [x, , w]) => angleAt(sensor, x + w) - angleAt(sensor, x);
const pointOf = (sensor, [x, , w]) => angleAt(sensor, x + w / 2);

assert.ok(statSync(report).size < 50 * answers.length, 'a request needs little room');

const browser = await Chromium.start();
try {
  await browser.before(KEEP_DRAWINGS);
  await browser.open(`${pathToFileURL(report).href}#request=${planted}`);
  const shown = async (request) => {
    await browser.evaluate(`(async () => {
      if (location.hash !== '#request=${request}') location.hash = '#request=${request}';
      for (const start = Date.now(); Date.now() - start < ${PATIENCE};) {
        if (document.getElementById('request-title').textContent === 'Request ${request}') return;
        await new Promise((resolve) => setTimeout(resolve, 10));
      }
      throw new Error('request ${request} does not appear');
    })()`);
    return browser.evaluate(`({
      numbers: [...document.querySelectorAll('#numbers tbody tr:not(.query)')].map((row) =>
        [...row.cells].map((cell) => cell.textContent)),
      steps: [...document.querySelectorAll('#why .steps')].map((part) => [part.dataset.sensor,
        part.querySelector('li:last-child .rect').textContent, part.textContent]),
      hover: document.getElementById('hover').textContent,
    })`);
  };

  for (const request of [planted, other, 1, answers.length, 512, 513, 20000].map(Number)) {
    const { numbers, steps } = await shown(request);
    assert.equal(numbers.length, 3, `request ${request} has a crop per sensor`);
    for (const row of numbers) {
      const sensor = Number(row[1]);
      const crop = cropOf(request, sensor);
      assert.deepEqual(row.slice(4, 8).map(Number), crop, `crop of request ${request}, sensor ${sensor}`);
      assert.ok(Math.abs(Number(row[10]) - angleOf(sensor, crop)) < 0.0051, `angle of request ${request}, sensor ${sensor}`);
      assert.ok(Math.abs(Number(row[12]) - pointOf(sensor, crop)) < 0.0051, `direction of request ${request}, sensor ${sensor}`);
      const [x, y, w, h] = crop;
      const own = steps.find(([of]) => Number(of) === sensor);
      assert.equal(own[1], `(${x}, ${y})/${w}\u00d7${h} TG`, `the last step of request ${request}, sensor ${sensor}`);
      assert.match(own[2], new RegExp(`custom crop of stream .+line ${4 * request + 3}`), 'the line that brought the crop');
    }
  }

  assert.match(await browser.evaluate(`document.getElementById('timeline-text').textContent`),
    new RegExp(`P1 overridden in ${answers.length} of ${answers.length} requests`));

  // The strip's bars reach from the lowest to the highest override of their requests.
  const { drawn, width, height } = await browser.evaluate(`(({ drawn, width, height }) => ({ drawn, width, height }))(document.getElementById('strip'))`);
  const overrideOf = (request) => 0.9 * (2.2 + Math.sin(request / 180));
  const bars = drawn.filter(({ name }) => name === 'fillRect').slice(0, -2).map(({ what }) => what);
  const placeOf = (value) => height - 4 - (height - 8) * (value - 0.9 * 1.2) / (0.9 * 2);
  assert.ok(bars.length > width / 2);
  for (const [x, top, w, h] of bars.filter(([x, , w]) => (x + w) <= width)) {
    const first = Math.round(x / width * answers.length);
    const own = Array.from({ length: Math.round(w / width * answers.length) }, (_, i) => placeOf(overrideOf(first + i + 1)));
    assert.ok(Math.abs(top - Math.min(...own)) < 0.1 && Math.abs(top + h - Math.max(...own, Math.min(...own) + 1.5)) < 0.1, `bar at ${x}: ${top} + ${h}`);
  }

  const [worst] = await browser.evaluate(`[...document.querySelectorAll('#jump-list li')].map((item) => item.textContent)`);
  assert.match(worst, new RegExp(`request ${planted}: sensor 2 narrower by 6.* to the right`));

  const finding = await browser.evaluate(`document.querySelector('[data-finding=differs]').textContent`);
  assert.match(finding, /: 1$/, 'one request differs');
  await browser.evaluate(`document.querySelector('[data-finding=differs]').click()`);
  const delta = answersOf(expectedFile)[other - 1][1]['0x7001'].map((value, i) => cropOf(other, 1)[i] - value);
  const { numbers } = await shown(Number(other));
  const told = delta.map((value, i) => value === 0 ? null : `${'xywh'[i]} ${value < 0 ? '\u2212' : '+'}${Math.abs(value)}`);
  assert.equal(numbers[1].at(-1), told.filter(Boolean).join(', '), 'the difference of the other request');
  assert.equal(numbers[0].at(-1), 'as expected');

  // What the timeline reads out under the mouse, of all requests in view.
  const box = await browser.evaluate(`(() => {
    const { left, width, top } = document.getElementById('timeline').getBoundingClientRect();
    return { left, width, top };
  })()`);
  for (const part of [0.2, 0.5, 0.9]) {
    await browser.mouse('mouseMoved', box.left + box.width * part, box.top + 40, 0);
    const text = await browser.evaluate(`document.getElementById('hover').textContent`);
    const request = Number(/request (\d+)/.exec(text)[1]);
    assert.ok(request > 1 && request < answers.length, text);
    const difference = Number(/sensor 2 ([+\u2212][\d.]+)/.exec(text)[1].replace('\u2212', '-'));
    const expected = angleOf(2, cropOf(request, 2)) - angleOf(0, cropOf(request, 0));
    assert.ok(Math.abs(difference - expected) < 0.0051, `${text}, not ${expected}`);
  }

  assert.deepEqual(browser.errors, [], 'nothing on the console');
} finally {
  await browser.stop();
}
