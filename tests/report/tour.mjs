// Walks through the report of tour.jsonl and holds what it says of each request to looks/tour.txt, and everything that it
// draws to the scenario, the result lines and the printed steps: node tour.mjs REPORT.html RESULTS.jsonl SCENARIO.jsonl STEPS.txt
// With ZOOMREPLAY instead of a report, it is the page of a live replay, which is fed line by line.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test, after, before } from 'node:test';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';
import { areaOf, askedOf, explanationsIn, isNear, leadOf, modeOf, nameOfPorts, overrideOf, rect, requestsOf, shownCrops } from './Expected.mjs';
import { Live } from '../live/Live.mjs';
import { KEEP_DRAWINGS, coloursOf, drawnAt, hold, saidBy, shownRequest } from './Page.mjs';
import { eventually, pause } from './Patience.mjs';

const [report, resultFile, scenarioFile, stepsFile] = process.argv.slice(2);
const isLive = !report.endsWith('.html');
const NAME = isLive ? '<stdin>' : scenarioFile;
const linesOf = (file) => readFileSync(file, 'utf8').trim().split('\n');

// By hand, with the scenario beside it: which lines give an earlier answer again, and what is wrong where.
const KEPT = { 22: 20, 29: 27, 47: 46 };
const FINDINGS = {
  fatal: ['10'], exception: ['5'], outside: ['2:2'], corrected: ['1', '2', '3', '1:2', '2:2', '8', '9'], stale: ['3'],
  undone: ['2', '2:2', '9', '10'],
};
const SENSORS = [0, 1, 4];
const GUTTER = 96;  // pixels, left of the plots

const requests = requestsOf(linesOf(scenarioFile), linesOf(resultFile).map((line) => JSON.parse(line)), KEPT);
const explanations = explanationsIn(readFileSync(stepsFile, 'utf8'));
const isFinding = (request, mark) => FINDINGS[mark].includes(request.name);

// The last step before a crop was made to fit: what was asked for.
const askedFor = (steps) => steps.findLast(({ words }) => /^(converted|mapped|custom|preview|second)/.test(words))?.rect;
const explanationOf = (query, { sensor, kind, ports }) => explanations.get(query.kept ?? query.line)?.crops
  .find((crop) => crop.sensor === sensor && (ports.length > 0 ? crop.port === ports[0] : crop.kind.includes(kind) || (kind === 'extra' && crop.kind === 'second crop')));
const beforeCorrection = (query, crop) => {
  const asked = askedFor(explanationOf(query, crop).steps);
  return asked === rect(crop.crop) || crop.crop[2] === 0 ? '' : asked;
};

// The state of a stage: where its last answer left it, unless something broke.
const stateIn = (request, stage) => {
  const queries = request.queries.filter((query) => query.stage === stage);
  const broken = queries.find(({ state }) => state === 'fatal') ?? queries.find(({ state }) => state === 'exception');
  return { state: (broken ?? queries.at(-1))?.state, isKept: queries.some(({ kept }) => kept) };
};

let live;
const openLive = async () => {
  live = await Live.start(report, ['--log']);
  await browser.before(`{  // unpacking takes any time, and requests change meanwhile
    const { arrayBuffer } = Response.prototype;
    Response.prototype.arrayBuffer = async function () {
      await new Promise((resolve) => setTimeout(resolve, 120 * Math.random()));
      return arrayBuffer.call(this);
    };
  }`);
  await browser.open(live.address);
  for (const line of linesOf(scenarioFile)) {
    live.write(line);
    await pause(50);  // so that most are told alone
  }
  await untilOver();
};
const untilOver = async () => {
  const texts = (selector) => browser.evaluate(`[...document.querySelectorAll('${selector}')].map((node) => node.textContent).join()`);
  await eventually(async () => /^The replay is over/.test(await texts('#live-state')), 'the end');
  await browser.evaluate(`(async () => {  // what is told of all requests follows half a second later, by the page's clock
    for (let i = 0; i < 2; ++i) await new Promise((resolve) => requestAnimationFrame(resolve));
    await new Promise((resolve) => setTimeout(resolve, 600));
  })()`);
  await eventually(async () => (await texts('#log')).includes('line 61'), 'the end of the newest request');
};

let browser;
let jumps;  // the requests that the list of jumps names
let opened;  // what it tells when nothing is chosen
let shown;  // what the page tells of each request
const said = [];
const say = () => saidBy(browser, '#timeline, #hover, main');
before(async () => {
  browser = await Chromium.start();
  await browser.resize(1280, 1000);
  await browser.before(KEEP_DRAWINGS);
  if (isLive) await openLive();
  else await browser.open(pathToFileURL(report).href);
  shown = [];
  await shownRequest(browser, '10', false);
  opened = await say();
  await shownRequest(browser, requests[0].name);
  jumps = new Set(await browser.evaluate(`[...document.querySelectorAll('#jump-list a')].map((a) => a.hash.replace('#request=', ''))`));
  for (const { name } of requests) {
    shown.push(await shownRequest(browser, name));
    said.push(await say());
  }
});
after(async () => {
  await live?.interrupt();
  await browser.stop();
});

const forEach = (check) => requests.forEach((request, i) => check(request, shown[i], `request ${request.name}`));

test('all that it says', async () => {
  const page = await saidBy(browser, '#page > header, #fatal, #requests, footer');
  hold('tour.txt', [await browser.evaluate('document.title'), ...page, ...said.flat()].map((line) => line.replaceAll(NAME, 'tour.jsonl')));
});

test('it opens where the process was stopped', () => assert.deepEqual(opened, said.at(-1)));

// Where no active array is configured, what the one mode of the sensor reads out stands for it.
const arrayOf = ({ camera }, sensor) => camera.infos[sensor]?.activeArray ?? camera.modes[sensor][1].window;

// What must stand in each picture: [class, box in its own pixels, label].
const activeBoxes = (request, sensor) => {
  const activeArray = arrayOf(request, sensor);
  const mode = request.camera.modes[sensor][modeOf(request, sensor)];
  const isWhole = !mode || String(mode.window) === String(activeArray);
  const boxes = [['pixels', activeArray], ...(isWhole ? [] : [['readout', mode.window]])];
  for (const crop of shownCrops(request, 'P1', sensor)) {
    boxes.push(['projected', areaOf(request.camera.modes[sensor][crop.mode], crop.crop), nameOfPorts(crop)]);
  }
  for (const crop of shownCrops(request, 'P2', sensor)) {
    const query = request.queries.findLast(({ crops }) => crops.includes(crop));
    const asked = beforeCorrection(query, crop);
    if (!crop.isTg) boxes.push(['bound', [0, 0, ...mode.size], 'bound']);
    if (!crop.isTg && asked) boxes.push(['ghost', asked.match(/-?\d+/g).map(Number), 'before']);
    boxes.push(['crop', crop.isTg ? areaOf(mode, crop.crop) : crop.crop, nameOfPorts(crop)]);
  }
  return boxes;
};
const outputBoxes = (request, sensor) => {
  const { size } = request.camera.modes[sensor][modeOf(request, sensor)];
  const boxes = [['pixels', [0, 0, ...size]]];
  for (const crop of ['P1', 'P2'].flatMap((stage) => shownCrops(request, stage, sensor)).filter(({ isTg }) => isTg)) {
    const query = request.queries.findLast(({ crops }) => crops.includes(crop));
    const asked = beforeCorrection(query, crop);
    if (asked) boxes.push(['ghost', asked.match(/-?\d+/g).map(Number), `${nameOfPorts(crop)} before`]);
    boxes.push(['crop', crop.crop, nameOfPorts(crop)]);
    const [x, y, w, h] = crop.crop;
    if (crop.min) boxes.push(['min', [x + (w - crop.min[0]) / 2, y + (h - crop.min[1]) / 2, ...crop.min]]);
  }
  return boxes;
};

// Drawn rectangles have a tenth of a pixel; the first is the whole that gives the scale. What lies further out
// than half of the sensor is cut off.
const isPlaced = (drawn, whole, pixels, box) => {
  const scale = whole[2] / pixels[2];
  const expected = [whole[0] + (box[0] - pixels[0]) * scale, whole[1] + (box[1] - pixels[1]) * scale, box[2] * scale, box[3] * scale];
  return drawn.every((value, i) => Math.abs(value - expected[i]) < 0.3);
};
const holdPicture = (figure, boxes, where, empty) => {
  assert.deepEqual([figure.cut, figure.empty], [[], boxes.length === 1 ? [empty] : []], where);
  for (const [, box] of boxes.filter(([name, box]) => name === 'crop' && box.every(Number.isInteger))) assert.ok(figure.label.includes(rect(box)), where);
  const byText = (a, b) => String(a) < String(b) ? -1 : 1;
  assert.deepEqual(figure.boxes.map(([name]) => name).sort(), boxes.map(([name]) => name).sort(), where);
  assert.deepEqual([...figure.labels].sort(byText), boxes.map(([, , label]) => label).filter(Boolean).sort(byText), where);
  figure.labelled.forEach(([x, y, length], i) => {
    assert.ok(figure.labelled.slice(i + 1).every(([a, b, other]) => Math.abs(y - b) >= 12 || x + length <= a || a + other <= x), `${where}: label ${i} stands alone`);
  });
  const [, whole] = figure.boxes[0];
  for (const [name, box] of figure.boxes) {  // none is cut off nearer than half of the sensor
    [0, 1].forEach((i) => assert.ok(Math.max(box[i], whole[i] - whole[i + 2] / 2) >= -1 &&
      Math.min(box[i] + box[i + 2], whole[i] + 1.5 * whole[i + 2]) <= figure.picture[i] + 1, `${where}: ${name} ${box} is inside of ${figure.picture}`));
  }
  for (const [name, box] of boxes) {
    assert.ok(figure.boxes.some(([drawnName, drawn]) => drawnName === name && isPlaced(drawn, whole, boxes[0][1], box)),
      `${where}: ${name} ${box} is not among ${JSON.stringify(figure.boxes)}`);
  }
};

test('the pictures', () => forEach((request, page, where) => {
  assert.deepEqual(page.cards.map(({ heading }) => heading), SENSORS.map((sensor) =>
    `Sensor ${sensor}${sensor === request.camera.ids[0] ? ', master' : ''}`), where);
  SENSORS.forEach((sensor, i) => {
    const card = page.cards[i];
    const info = request.camera.infos[sensor];
    const mode = modeOf(request, sensor);
    const place = `${where}, sensor ${sensor}`;
    assert.equal(card.what, info ? `${info.degreeH}\u00b0 \u00d7 ${info.degreeV}\u00b0` : 'no angles configured', place);
    const figures = [...card.figures];
    for (const { zoom } of figures) assert.ok(Math.abs(zoom - 1) < 0.05, `${place}: ${zoom} times as large as it is drawn`);
    const array = figures.shift();
    assert.equal(array.caption, `${info ? 'Active array' : 'Read out by its modes'}${arrayOf(request, sensor).slice(2).join('\u00d7')}`, place);
    holdPicture(array, activeBoxes(request, sensor), `${place}, active array`, 'no crop');
    if (mode === undefined) {
      assert.match(card.note, sensor in request.deposit.sensorModes ? /^Does not stream/ : /^Has no mode/, place);
    } else {
      const figure = figures.shift();
      const minima = [...new Set(shownCrops(request, 'P1', sensor).filter(({ min }) => min).map(({ min }) => min.join('\u00d7')))];
      assert.equal(figure.caption, `Output of mode ${mode}${request.camera.modes[sensor][mode].size.join('\u00d7')}` +
        (minima.length > 0 ? ` \u00b7 min ${minima.join(', ')}` : ''), place);
      holdPicture(figure, outputBoxes(request, sensor), `${place}, output`, 'no crop in the TG domain');
    }
    assert.deepEqual(figures, [], place);
  });
}));

test('P2 stays in the pictures when a port is singled out', async () => {
  await shownRequest(browser, '1');
  const inPictures = (index) => browser.evaluate(`{ const list = document.getElementById('port');
    list.selectedIndex = ${index}; list.dispatchEvent(new Event('change'));
    [...document.querySelectorAll('#sensors text.label')].map(({ textContent }) => textContent).filter((label) => label.startsWith('P2')); }`);
  const all = await inPictures(0);
  assert.notEqual(all.length, 0);
  assert.deepEqual(await inPictures(1), all);
  await inPictures(0);
});

const STATE_COLOURS = { refused: '--refused', overridden: '--overridden', exception: '--exception', fatal: '--fatal' };
const ofStage = (stage) => (request) => {
  const { state, isKept } = stateIn(request, stage);
  return [STATE_COLOURS[state], isKept && '--cached'].filter(Boolean);
};
const colourOf = (sensor) => sensor === undefined ? [] : [`--c${SENSORS.indexOf(sensor)}`];
const lensOf = ({ phone }) => /^\d+$/.test(phone?.activePhysicalId) ? Number(phone.activePhysicalId) : undefined;
const LANES = [
  ['P1', ofStage('P1')], ['P2', ofStage('P2')], ['3A', ofStage('3A')],
  ['corrected', (request) => isFinding(request, 'corrected') ? ['--corrected'] : []],
  ['asked by', (request) => colourOf(request.queries[0].input.sensorId), (request) => request.queries[0].input.sensorId],
  ['phone', (request) => colourOf(lensOf(request)), lensOf],
  ...SENSORS.map((sensor) => [`sensor ${sensor}`, (request) => colourOf(modeOf(request, sensor) === undefined ? undefined : sensor),
    (request) => modeOf(request, sensor)]),
  ['findings', (request) => [jumps.has(request.name) && '--jump', isFinding(request, 'stale') && '--stale',
    isFinding(request, 'outside') && '--outside', isFinding(request, 'undone') && '--undone'].filter(Boolean)],
];

test('lanes: states, names and edges', async () => {
  const drawn = await drawnAt(browser, 'lanes', requests.length);
  assert.deepEqual(drawn.names, LANES.map(([name]) => name));
  const { '--faint': faint, '--card': card } = await coloursOf(browser);
  assert.deepEqual(drawn.inks.sort(), [`name ${faint}`, `value ${card}`]);
  LANES.forEach(([name, statesOf, valueOf], lane) => requests.forEach((request, i) => {
    assert.deepEqual(drawn.colours(lane, i), statesOf(request).sort(), `lane ${name}, request ${request.name}`);
    if (!valueOf) assert.deepEqual(drawn.covered(lane), [], `lane ${name}: each state leaves something of the others`);
    const isEdge = valueOf !== undefined && i > 0 && valueOf(request) !== valueOf(requests[i - 1]);
    assert.equal(drawn.hasEdge(lane, i), isEdge, `lane ${name}, edge before request ${request.name}`);
  }));
  LANES.forEach(([name, , valueOf], lane) => {
    const values = requests.map((request) => valueOf?.(request));
    const runs = values.map((value, i) => [String(value), i]).filter(([value, i]) => value !== 'undefined' && values[i] !== values[i - 1]);
    assert.deepEqual(drawn.labels(lane).sort((a, b) => a[1] - b[1]), runs, `labels of lane ${name}`);
  });
});

test('curves', async () => {
  const charts = async () => browser.evaluate(`(async () => {
    const { updateOptions } = Dygraph.prototype;
    const graphs = [];
    Dygraph.prototype.updateOptions = function (...options) { graphs.push(this); return updateOptions.apply(this, options); };
    document.getElementById('zoom-all').click();
    await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
    Dygraph.prototype.updateOptions = updateOptions;
    return graphs.map((graph) => ({ widths: graph.getLabels().slice(1).map((label) => graph.getOption('strokeWidth', label)), dashes: graph.getLabels().slice(1).map((label) => graph.getOption('strokePattern', label)), labels: graph.getLabels().slice(1), x: graph.xAxisRange(), y: graph.yAxisRange(), colours: graph.getColors(),
      rows: Array.from({ length: graph.numRows() }, (_, row) => graph.getLabels().map((_, column) => graph.getValue(row, column))) }));
  })()`);
  const colours = await coloursOf(browser);
  const DASHES = { '--ink': [], '--override': [6, 3], '--phone': [2, 2], '--c0': [], '--c1': [8, 3], '--c2': [2, 2] };
  const hold = ({ labels, rows, x, y, colours: drawn, dashes }, curves, names) => {
    assert.deepEqual(dashes, names.map((name) => DASHES[name]));
    assert.deepEqual(labels, Object.keys(curves));
    assert.deepEqual(drawn, names.map((name) => colours[name]));
    const values = rows.flatMap((row) => row.slice(1)).filter((value) => typeof value === 'number');
    assert.ok(y[0] < Math.min(...values) && y[1] > Math.max(...values), `${y} has room for all`);
    assert.deepEqual(x, [-0.5, requests.length - 0.5]);
    requests.forEach((request, i) => assert.ok(Object.values(curves).every((value, k) =>
      isNear(String(rows[i][k + 1] ?? '-'), value(request)) && rows[i][0] === i), `request ${request.name}: ${rows[i]}`));
  };
  const [ratios, lower] = await charts();
  assert.deepEqual([ratios.widths, lower.widths], [[1.6, 2.2, 2], [1.6, 1.6, 1.6]]);
  hold(ratios, { asked: askedOf, override: overrideOf, phone: ({ phone }) => phone?.zoomRatio }, ['--ink', '--override', '--phone']);
  const bySensor = (value) => Object.fromEntries(SENSORS.map((sensor) => [`sensor ${sensor}`, (request) => {
    const crop = leadOf(request, sensor)?.crop;
    return crop && value(crop);
  }]));
  const names = ['--c0', '--c1', '--c2'];
  hold(lower, bySensor(({ difference }) => difference?.across), names);
  const ticks = () => browser.evaluate(`[...document.querySelectorAll('#angle-chart .dygraph-axis-label-y')].map((label) => label.textContent)`);
  for (const [quantity, value, ...axis] of [['angle', 'across', '50\u00b0'], ['right', 'right', '\u221220\u00b0', '0\u00b0'], ['down', 'below', '\u221210\u00b0', '0\u00b0']]) {
    await browser.evaluate(`{ const list = document.getElementById('quantity');
      list.value = '${quantity}'; list.dispatchEvent(new Event('change')); }`);
    hold((await charts())[1], bySensor(({ sight }) => sight[value]), names);
    assert.deepEqual(await ticks(), axis);
  }
});

test('the strip shows the override of all requests', async () => {
  const [lanes, { drawn, size, shown: [width, height] }] = await browser.evaluate(`['lanes', 'strip'].map((id) => document.getElementById(id)).map(
    ({ drawn, width, height, clientWidth, clientHeight }) => ({ drawn, size: [width, height], shown: [clientWidth, clientHeight] }))`);
  assert.deepEqual([size, lanes.size], [[width, height], lanes.shown], 'a pixel is a pixel');
  const values = requests.map(overrideOf);
  const known = values.filter((value) => value !== undefined);
  const bars = drawn.filter(({ name }) => name === 'fillRect').slice(0, -2).map(({ what }) => what);  // what is outside of the window is veiled
  const expected = values.map((value, i) => [i / values.length * width,
    height - 4 - (height - 8) * (value - Math.min(...known)) / (Math.max(...known) - Math.min(...known)), width / values.length, 1.5]);
  const near = (a, b) => a.every((value, i) => Math.abs(value - b[i]) < 0.1);
  assert.deepEqual(drawn.filter(({ name }) => name === 'fillRect').slice(-2).map(({ what }) => what), [[0, 0, 0, height], [width, 0, 0, height]], 'all is in view');
  assert.equal(bars.length, known.length);
  const { '--faint': faint } = await coloursOf(browser);
  assert.ok(drawn.slice(0, known.length).every(({ colour }) => colour === faint));
  assert.ok(expected.filter(([, y]) => !Number.isNaN(y)).every((bar, i) => near(bars[i], bar)), JSON.stringify(bars));
});

test('the cursor stands at its request', () => requests.forEach(({ name }, i) => {
  const { cursor, timeline: [left, width] } = shown[i];
  const x = left + GUTTER + (i + 0.5) / requests.length * (width - GUTTER);
  assert.ok(Math.abs(cursor - x) < 1, `request ${name}: ${cursor}, not ${x}`);
}));

const PLAIN_WORDS = { fatal: 'stopped the process', exception: 'exception', outside: 'crop outside of its sensor',
  corrected: 'crop corrected', stale: 'kept answer of another sensor mode', undone: 'never done' };

test('the plain table for browsers without scripts', { skip: isLive }, async () => {
  const { alarm, rows, findings, paragraphs } = await browser.evaluate(`({
    alarm: document.querySelector('#plain .alarm').textContent,
    rows: [...document.querySelectorAll('#plain tbody tr')].map((row) => [...row.cells].map((cell) => cell.textContent)),
    findings: [...document.querySelectorAll('#plain li')].map((item) => item.textContent),
    paragraphs: [...document.querySelectorAll('#plain p')].map((paragraph) => paragraph.textContent) })`);
  assert.ok(!paragraphs.some((words) => words.startsWith('The first')), 'no request is left out');
  assert.match(alarm, /^The library stopped the process on line 61, get3ACropSetting: .*still not support 3A/);
  assert.deepEqual(rows, requests.map((request) => [request.no, askedOf(request), Number(overrideOf(request).toPrecision(4)),
    request.queries.some(({ state }) => state === 'overridden') ? 'overridden' : 'not overridden',
    request.queries.flatMap(({ stage, crops }) => crops.map(({ sensor, crop: [x, y, w, h] }) =>
      `${stage} sensor ${sensor} (${x}, ${y})/${w}x${h}`)).join('; '),
    Object.entries(PLAIN_WORDS).filter(([mark]) => isFinding(request, mark)).map(([, words]) => words).join(', ')].map(String)));
  assert.deepEqual(findings, Object.entries(PLAIN_WORDS).map(([mark, words]) => {
    const found = requests.filter((request) => isFinding(request, mark));
    return `${words}: ${found.length} request${found.length === 1 ? '' : 's'}, first ${found[0].no}`;
  }));
});

test('a request that there is not', async () => {
  await browser.evaluate(`location.hash = '#request=2:3'`);
  await eventually(() => browser.evaluate(`document.getElementById('message').textContent === 'There is no request 2:3 in this report.'`), 'the message');
});

test('each finding lists its requests', async () => {
  for (const [mark, names] of Object.entries(FINDINGS)) {
    const listed = await browser.evaluate(`(() => {
      document.querySelector('[data-finding=${mark}]').click();
      return [...document.querySelectorAll('#walk-list a')].map((link) => link.textContent);
    })()`);
    const typed = await browser.evaluate(`(() => {
      document.getElementById('go-to').value = '${mark === 'stale' ? 'kept' : mark}';
      document.getElementById('go').requestSubmit();
      return [...document.querySelectorAll('#walk-list a')].map((link) => link.textContent);
    })()`);
    assert.deepEqual(typed, listed, mark);
    assert.deepEqual(listed, requests.map(({ name }) => name).filter((name) => names.includes(name)), mark);
  }
});

test('copying takes the table as it is', async () => {
  const page = await shownRequest(browser, '1:2');
  await browser.evaluate(`Object.defineProperty(navigator, 'clipboard', { value: { writeText: async (text) => { globalThis.copied = text; } } })`);
  const label = () => browser.evaluate(`document.getElementById('copy').textContent`);
  await browser.evaluate(`document.getElementById('copy').click()`);
  await eventually(async () => await label() === 'Copied', 'the word for it');
  const rows = (await browser.evaluate('globalThis.copied')).trimEnd().split('\n').map((row) => row.split('\t'));
  assert.deepEqual(rows[0], ['Request', ...page.numberHeads]);
  assert.deepEqual(rows.slice(1), page.numbers.map((row) => ['1', ...row]));
  await eventually(async () => await label() === 'Copy the table', 'the button as it was');
  await browser.evaluate(`navigator.clipboard.writeText = async () => { throw new Error(); }; document.getElementById('copy').click()`);
  await eventually(async () => await label() === 'Selected: copy with Ctrl+C', 'where the browser refuses');
  assert.match(await browser.evaluate('getSelection().toString()'), /P1\t0\t0x7001/);
});

test('who comes late sees the same', { skip: !isLive }, async () => {
  await shownRequest(browser, requests.at(-1).name);
  await browser.reload();  // with its link, which shows all up to it
  await untilOver();
  for (const [i, { name }] of requests.entries()) {
    await shownRequest(browser, name);
    assert.deepEqual(await say(), said[i]);
  }
});

test('nothing on the console', () => assert.deepEqual(browser.errors, []));

test('a live page says why it cannot follow', { skip: !isLive }, async () => {
  const told = (words) => eventually(() => browser.evaluate(`document.getElementById('live-state').textContent.startsWith('${words}')`), words);
  assert.equal(await browser.evaluate(`getComputedStyle(document.getElementById('what-if-lines')).whiteSpace`), 'pre-wrap', 'it has the style of live pages');
  await browser.open('about:blank');
  const others = [];
  await eventually(async () => {  // its place becomes free
    const reader = await live.follow();
    return others.push(reader) && reader.status === 200 && others.filter(({ status }) => status === 200).length === 8;
  }, 'eight readers');
  await browser.open(live.address);
  await told('This page cannot follow: ');
  others.forEach((reader) => reader.close());
  await eventually(async () => {
    await browser.reload();
    await told('Th');
    return browser.evaluate(`document.getElementById('live-state').textContent.startsWith('The replay is over')`);
  }, 'a place for the page');
  live.process.kill('SIGKILL');
  await told('The connection broke; trying again.');
});
