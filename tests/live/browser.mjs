// Follows a live replay in a browser: node browser.mjs ZOOMREPLAY SECONDS MEDIAN WORST
// Feeds 60 requests a second, and prints how long it took from a request's last line until it was shown; at
// most MEDIAN milliseconds for half of them, and WORST for all, or ten times as long as the slowest of a few that
// come alone, where the machine has other things to do.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';

import { Chromium } from '../report/Chromium.mjs';
import { eventually, pause } from '../report/Patience.mjs';
import { Live, SETUP, requestLines } from './Live.mjs';

const [tool, seconds, mostMedian, mostWorst] = process.argv.slice(2);
const REQUESTS = 60 * seconds;
const JUMP = Math.round(REQUESTS / 2);

// Slowly to and fro, with one leap.
const publishedAt = (no) => Number((2 + Math.sin(no / 200) + (no === JUMP ? 0.5 : 0)).toFixed(3));
const lines = [...SETUP];

const live = await Live.start(tool);
const browser = await Chromium.start();
const until = (expression, what = expression) => eventually(() => browser.evaluate(expression), what);
const title = `document.getElementById('request-title').textContent`;
const pressed = `document.getElementById('follow').getAttribute('aria-pressed')`;
const run = (fed, ...options) => execFileSync(tool, ['-', ...options],
  { input: fed.map((line) => JSON.stringify(line) + '\n').join(''), maxBuffer: 1e9 }).toString();
const replay = (fed) => run(fed, '-o', '-').trim().split('\n').map((line) => JSON.parse(line));
const reportOf = (fed) => run(fed, '-o', '/dev/null', '--report', '-');
const feed = (no) => {
  const own = requestLines(no, publishedAt(no));
  lines.push(...own);
  live.write(...own);
};

try {
  await browser.before(`addEventListener('DOMContentLoaded', () => {
    const { updateOptions } = Dygraph.prototype;
    Dygraph.prototype.updateOptions = function (options) {
      globalThis.drawnWindow = options.dateWindow;
      return updateOptions.call(this, options);
    };
  })`);
  await browser.open(live.address);
  live.write(...SETUP);
  feed(1);
  await until(`${title} === 'Request 1'`);

  // When each request's picture appeared, by the clock of this machine.
  await browser.evaluate(`(() => {
    globalThis.shownAt = {};
    new MutationObserver(() => requestAnimationFrame(() => {
      shownAt[/\\d+/.exec(${title})] ??= Date.now();
    })).observe(document.getElementById('sensors'), { childList: true });
  })()`);
  const ALONE = 6;  // the last of those that come alone
  const written = [];
  const start = Date.now();
  for (let no = 2; no <= REQUESTS; ++no) {
    feed(no);
    written[no] = Date.now();
    if (no <= ALONE) await until(`shownAt[${no}]`);
    else await pause(Math.max(0, start + no * 1000 / 60 - Date.now()));
  }
  await until(`shownAt[${REQUESTS}]`, 'the last request');
  const shownAt = Object.entries(await browser.evaluate('shownAt')).map(([no, time]) => [Number(no), time]).sort((a, b) => a[0] - b[0]);
  const delays = [];
  for (let no = 2, k = 0; no <= REQUESTS; ++no) {
    while (shownAt[k][0] < no) ++k;  // that one, or one after it in its place
    delays.push(shownAt[k][1] - written[no]);
  }
  const most = 10 * Math.max(...delays.splice(0, ALONE - 1));
  delays.sort((a, b) => a - b);
  const [median, worst] = [delays[delays.length >> 1], delays.at(-1)];
  console.log(`from line to picture: median ${median} ms, worst ${worst} ms, ${shownAt.length} pictures of ${REQUESTS} requests; alone at most ${most / 10} ms`);
  assert.ok(median <= Math.max(mostMedian, most), `half of the requests appear within ${mostMedian} ms`);
  assert.ok(worst <= Math.max(mostWorst, most), `all appear within ${mostWorst} ms`);

  // The newest 300 are in view.
  await until(`String(drawnWindow) === '${[Math.max(0, REQUESTS - 300) - 0.5, REQUESTS - 0.5]}'`);

  // The page shows what a plain replay answers.
  const results = replay(lines);
  const expectedCrops = (no) => results.filter(({ op }) => op === 'getP2CropSetting')[no - 1].need.streamCrops[0];
  const crop = () => browser.evaluate(`[...document.querySelectorAll('#numbers tbody tr:not(.query)')]
    .map((row) => [...row.cells].map((cell) => cell.textContent)).find(([stage, sensor]) => stage === 'P2' && sensor === '0').slice(4, 8).map(Number)`);
  assert.deepEqual(await crop(), expectedCrops(REQUESTS));

  await until(`document.querySelector('[data-finding=jump]')?.textContent.endsWith(': 1')`, 'one jump');
  assert.match(await browser.evaluate(`document.querySelector('#jump-list a').textContent`), new RegExp(`^request ${JUMP}: .*and back`));

  // The slider's answers are those of a scenario with the same lines, and are no part of the session.
  for (const published of [2.3, 0.6]) {
    await browser.evaluate(`for (const ratio of [1.5, ${published}]) {  // while the first is asked the slider goes on
      const slider = document.getElementById('what-if-ratio');
      slider.value = Math.log2(ratio);
      slider.dispatchEvent(new Event('input'));
    }`);
    assert.equal(await browser.evaluate(`document.querySelector('#what-if h2').textContent`), `What if ${published.toFixed(2)}\u00d7 were published`);
    await until(`document.getElementById('what-if').dataset.answered === '${published}'`, `an answer for ${published}`);
    const asked = await browser.evaluate(`document.getElementById('what-if-lines').textContent.split('\\n')`);
    assert.deepEqual(JSON.parse(asked[0]), { op: 'publish', zoomRatio: published, enable: true });
    const told = await browser.evaluate(`[...document.querySelectorAll('#what-if-sensors [data-sensor="0"] svg')].map((svg) => svg.getAttribute('aria-label')).join()`);
    const [p1, p2] = replay([...lines, ...asked.map((line) => JSON.parse(line))]).slice(-2);
    for (const [x, y, w, h] of [p1.result && p1.need.tgCrops[0]['0x7001'], p2.result && p2.need.streamCrops[0]].filter(Boolean)) {
      assert.ok(told.includes(`(${x}, ${y})/${w}\u00d7${h}`), `${told} tells (${x}, ${y})/${w}x${h}`);
    }
    await browser.evaluate(`document.querySelector('#why li').dispatchEvent(new Event('pointerenter'))`);
    assert.equal(await browser.evaluate(`document.querySelectorAll('#sensors .pointed').length`), 1, 'steps are drawn in the pictures of the request');
    assert.notEqual(p1.result, p2.result, 'one of the two is overridden');
  }
  const saved = await live.get('report');
  assert.equal(saved.text, reportOf(lines), 'what was asked is not in the report');

  // Going back stops the following, a key takes it up.
  assert.equal(await browser.evaluate(pressed), 'true');
  await browser.press('ArrowLeft');
  await until(`${title} === 'Request ${REQUESTS - 1}'`);
  assert.equal(await browser.evaluate(pressed), 'false');
  feed(REQUESTS + 1);
  await until(`document.getElementById('about').textContent.includes('${REQUESTS + 1} requests')`);
  assert.equal(await browser.evaluate(title), `Request ${REQUESTS - 1}`);
  await browser.press('f');
  await until(`${title} === 'Request ${REQUESTS + 1}'`);
  await browser.press('ArrowLeft');
  await until(`${title} === 'Request ${REQUESTS}'`);
  await browser.evaluate(`document.getElementById('follow').click()`);
  await until(`${title} === 'Request ${REQUESTS + 1}'`);
  feed(REQUESTS + 2);
  await until(`${title} === 'Request ${REQUESTS + 2}'`);

  // A link to an earlier request survives a reload, and so does all else.
  await browser.evaluate(`location.hash = '#request=${JUMP}'`);
  await browser.reload();
  await until(`document.documentElement.dataset.ready === 'yes' && ${title} === 'Request ${JUMP}'`);
  assert.deepEqual(await crop(), expectedCrops(JUMP));
  await until(`document.getElementById('about').textContent.includes('${REQUESTS + 2} requests')`);
  await until(`document.querySelector('[data-finding=jump]')?.textContent.endsWith(': 1')`, 'the jump is known after the reload');

  // Columns grow, and keep what they hold.
  for (let no = REQUESTS + 3; no <= 1100; ++no) feed(no);
  await until(`document.getElementById('about').textContent.includes('1100 requests')`);
  await browser.evaluate(`location.hash = '#request=3'`);
  await until(`document.getElementById('hover').textContent.startsWith('request 3 \u00b7 asked 1.00\u00d7 \u00b7 ')`);

  // What looks like a jump until the request goes on is none any more.
  const jumps = (count) => until(`document.querySelector('[data-finding=jump]').textContent.endsWith(': ${count}')`, `${count} jumps`);
  const tell = (...own) => {
    lines.push(...own);
    live.write(...own);
  };
  const publish = (zoomRatio) => ({ op: 'publish', enable: true, zoomRatio });
  const deposit = (requestNo) => ({ op: 'setRunTimeCropNeedData', requestNo, sensorModes: { 0: 1, 1: 1 } });
  const inP1 = (requestNo) => [publish(3), { op: 'getP1CropSetting', requestNo, zoomRatio: 9 }, { op: 'onRequestDone', requestNo }];
  tell(deposit(1101), ...inP1(1101));
  await jumps(2);
  tell(deposit(1102), publish(4), { op: 'getP2CropSetting', requestNo: 1102, zoomRatio: 1 });
  await jumps(3);
  tell(...inP1(1102));
  await jumps(2);

  // A finding of another request may be told in other words only.
  const listed = (words) => until(`/request 1104: sensor 0 narrower by 33.3 %[^%]+ down${words}request/.test(document.getElementById('jump-list').textContent)`);
  tell(...requestLines(1103, 3), ...requestLines(1104, 4.5));
  await listed('');
  tell(...requestLines(1105, 3));
  await listed(', and back in the next request');
  assert.match(await browser.evaluate(`document.getElementById('jump-list').textContent`), new RegExp(`^request 1104:.*request 1103:.*request ${JUMP}:.*request 1101:`), 'the worst first');

  // A mode came since that cannot be asked so.
  const ask = `document.getElementById('what-if-ratio').dispatchEvent(new Event('input'))`;
  const answer = (words) => until(`document.getElementById('what-if-said').textContent.startsWith('${words}')`);
  tell({ op: 'initialize', mode: 'InstantRequest' });
  await eventually(async () => JSON.parse((await live.get('answer?ratio=2')).text).isFatal, 'a copy that is stopped');
  await browser.evaluate(ask);
  await answer('The library would stop the process.');
  assert.equal(await browser.evaluate(`document.getElementById('what-if-sensors').children.length`), 0);
  tell(deposit(1106));
  await until(`document.getElementById('what-if').hidden`, 'nothing is published in this mode');

  assert.deepEqual(browser.errors, [], 'nothing on the console');
  const { origin } = new URL(live.address);
  assert.deepEqual(browser.addresses.filter((url) => !url.startsWith('data:') && !url.startsWith(origin)), [], 'nothing is loaded from elsewhere');

  live.write({ op: 'publish', enable: 7 });
  await until(`/<stdin>:${lines.length + 1}: publish: enable/.test(document.getElementById('fatal').textContent)`, 'the bad line is told');
  assert.equal(await live.interrupt(), 2);
  await until(`document.getElementById('live-state').textContent.startsWith('zoomreplay has been ended')`);
  assert.equal(await browser.evaluate(title), 'Request 3', 'the page stays');
  await browser.evaluate(ask);
  await answer('There is no answer: ');
} finally {
  await browser.stop();
  live.process.kill();
}
