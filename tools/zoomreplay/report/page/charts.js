// The curves over the requests: zoom ratios, and angles or positions of the sensors' crops.

const Dygraph = globalThis.Dygraph;

const QUANTITIES = {
  difference: { words: 'Difference to master', path: 'difference', unit: '\u00b0', isSigned: true },
  angle: { words: 'Angle of view', path: 'angle', unit: '\u00b0' },
  right: { words: 'Pointing to the right', path: 'right', unit: '\u00b0', isSigned: true },
  down: { words: 'Pointing down', path: 'down', unit: '\u00b0', isSigned: true },
  share: { words: 'Width of the crop', path: 'share', unit: '' },
};

const colours = new Map();  // of the desktop's scheme, light or dark
const colour = (name) => {
  if (!colours.has(name)) colours.set(name, getComputedStyle(document.documentElement).getPropertyValue(name).trim());
  return colours.get(name);
};
const colourOfSensor = (id) => `--c${sensorIds.indexOf(id) % 6}`;
const DASHES = [[], [8, 3], [2, 2], [10, 3, 2, 3], [5, 5], [1, 3]];

const stepsOf = new Map();
const steps = (path) => {
  if (!stepsOf.has(path)) stepsOf.set(path, new CurveSteps(columnOf(path)));
  return stepsOf.get(path);
};

const TICK = 3;

/** One chart: curves { path, words, colour, dash } drawn from the requests of the window. */
class Chart {
  constructor(node, options) {
    this.node = node;
    this.options = options;
    this.hidden = new Set();
    this.yRange = null;
  }

  draw(window, gutter) {
    const width = Math.max(1, this.node.clientWidth - gutter);
    const isRough = this.level(window, width) > 0;
    const options = {
      ...this.options,
      file: this.rows(window, width),
      dateWindow: [window.from, window.to],
      labels: ['request', ...this.curves.map(({ words }) => words)],
      colors: this.curves.map((curve) => colour(curve.colour)),
      visibility: this.curves.map(({ path }) => !this.hidden.has(path)),
      series: Object.fromEntries(this.curves.map((curve) => [curve.words, { strokePattern: isRough ? [] : curve.dash, strokeWidth: curve.width ?? 1.6 }])),
      valueRange: this.yRange ?? this.wholeRange(),
      axisLineColor: colour('--line'),
      gridLineColor: colour('--line'),
      axes: this.axes(gutter),
    };
    if (this.graph) {
      if (this.width !== this.node.clientWidth) this.graph.resize();
      this.graph.updateOptions(options);
    } else {
      const { file, ...rest } = options;
      this.graph = new Dygraph(this.node, file, { interactionModel: {}, legend: 'never', highlightCircleSize: 0,
        showLabelsOnHighlight: false, axisLabelFontSize: 11, axisTickSize: TICK, rightGap: 0, ...rest });
    }
    this.width = this.node.clientWidth;
  }

  axes(gutter) {
    const { x, y } = this.options.axes;
    return { x, y: { ...y, axisLabelWidth: gutter - 2 * TICK } };
  }

  level({ from, to }, width) {
    return this.curves.length === 0 ? 0 : steps(this.curves[0].path).level((to - from) / width);
  }

  rows({ from, to }, width) {
    const all = this.curves.map(({ path }) => steps(path));
    const number = this.level({ from, to }, width);
    const size = all.length === 0 ? 1 : all[0].levels[number].size;
    const first = Math.max(0, Math.floor(from / size) - 1);
    const last = Math.min(Math.ceil(count / size), Math.ceil(to / size) + 1);
    const rows = [];
    for (let i = first; i < last; ++i) {
      if (size === 1) {
        rows.push([i, ...all.map((curve) => curve.levels[0].low[i])]);
      } else {
        rows.push([(i + 0.25) * size, ...all.map((curve) => curve.levels[number].low[i])],
          [(i + 0.75) * size, ...all.map((curve) => curve.levels[number].high[i])]);
      }
    }
    return rows.length > 0 ? rows : [[0, ...all.map(() => Number.NaN)]];
  }

  // Of all requests, so that a curve does not change its scale while somebody walks along it.
  wholeRange() {
    const ranges = this.curves.filter(({ path }) => !this.hidden.has(path)).map(({ path }) => steps(path).range()).filter(Boolean);
    if (ranges.length === 0) return [0.5, 2];
    const low = Math.min(...ranges.map((range) => range[0]));
    const high = Math.max(...ranges.map((range) => range[1]));
    if (this.options.logscale) return [Math.max(low, 0.01) / 1.12, Math.max(high, 0.01) * 1.12];
    const margin = Math.max((high - low) * 0.08, 0.05);
    return [low - margin, high + margin];
  }
}

const tidy = (value, unit, isSigned) =>
  (value < 0 ? MINUS : isSigned && value > 0 ? '+' : '') + Number(Math.abs(value).toPrecision(4)) + unit;

const ratioTicks = (low, high) => {
  const candidates = [[0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50, 100], [0.5, 0.7, 1, 1.5, 2, 3, 4, 5, 7, 10]]
    .map((list) => list.filter((v) => v > low && v < high));
  const ticks = candidates.find((list) => list.length > 2);
  return ticks ?? [1, 2, 3].map((i) => Number((low + (high - low) * i / 4).toPrecision(3)));
};
const requestTicks = (low, high, pixels) => {
  const room = Math.max(1, Math.floor(pixels / 80));
  const wanted = (high - low) / room;
  const base = 10 ** Math.max(0, Math.floor(Math.log10(Math.max(wanted, 1))));
  const step = [1, 2, 5, 10].map((factor) => factor * base).find((candidate) => candidate >= wanted);
  const ticks = [];
  for (let i = Math.max(0, Math.ceil(low / step) * step); i <= Math.min(high, count - 1); i += step) {
    ticks.push({ v: i, label: nameOf(i) });
  }
  return ticks;
};

// What is no ratio has no place on the axis.
const dropNoRatio = (path, i) => { if (!(columns.get(path)[i] > 0)) columns.get(path)[i] = NO_VALUE; };

let ratioChart = null;
let angleChart = null;
let quantity = null;

const makeCharts = () => {
  for (const chart of [ratioChart, angleChart]) chart?.graph?.destroy();
  ratioChart = new Chart($('ratio-chart'), { logscale: true, axes: {
    x: { drawAxis: false, drawGrid: false },
    y: { ticker: (low, high) => ratioTicks(low, high).map((v) => ({ v, label: `${v}\u00d7` })) },
  } });
  ratioChart.curves = [
    { path: 'asked', words: 'asked', colour: '--ink', dash: [] },
    { path: 'override', words: 'override', colour: '--override', dash: [6, 3], width: 2.2 },
    { path: 'phone.zoom', words: 'phone', colour: '--phone', dash: [2, 2], width: 2 },
  ].filter(({ path }) => columns.has(path));
  for (const { path } of ratioChart.curves) columnOf(path).forEach((_, i) => dropNoRatio(path, i));
  angleChart = new Chart($('angle-chart'), { axes: {
    x: { ticker: requestTicks, axisLabelFormatter: (v) => nameOf(v) },
    y: { axisLabelFormatter: (v) => tidy(v, QUANTITIES[quantity].unit, QUANTITIES[quantity].isSigned), pixelsPerLabel: 24 },
  } });
  const known = Object.keys(QUANTITIES).filter((name) => hasColumn(QUANTITIES[name].path));
  $('quantity').replaceChildren(...known.map((name) => html('option', { value: name }, QUANTITIES[name].words)));
  chooseQuantity(known.includes(quantity) ? quantity : known[0] ?? 'share');
  $('quantity').value = quantity;
};

const chooseQuantity = (name) => {
  quantity = name;
  const { path } = QUANTITIES[name];
  angleChart.yRange = null;
  angleChart.hidden.clear();
  angleChart.curves = sensorIds.filter((id) => columns.has(`sensors.${id}.${path}`)).map((id) => ({
    path: `sensors.${id}.${path}`, words: `sensor ${id}`, colour: colourOfSensor(id), dash: DASHES[sensorIds.indexOf(id) % DASHES.length],
  }));
};

const showCurveLegend = () => {
  const entry = (chart, curve) => {
    const box = html('input', { type: 'checkbox', checked: chart.hidden.has(curve.path) ? null : '' });
    box.addEventListener('change', () => {
      if (box.checked) chart.hidden.delete(curve.path);
      else chart.hidden.add(curve.path);
      drawTimeline();
    });
    return html('li', {}, html('label', {}, box, swatch(curve.colour, curve.dash), curve.words));
  };
  $('ratio-legend').replaceChildren(...ratioChart.curves.map((curve) => entry(ratioChart, curve)));
  $('angle-legend').replaceChildren(...angleChart.curves.map((curve) => entry(angleChart, curve)));
};
const swatch = (name, dash) => svg('svg', { width: 26, height: 10, 'aria-hidden': 'true', class: 'swatch' },
  svg('path', { d: 'M0 5H26', style: `stroke: var(${name}); stroke-width: 2.5; stroke-dasharray: ${dash.join(' ') || 'none'}` }));

// "-5..5", or nothing for the range of all values.
const chooseRange = (text) => {
  const parts = /^\s*(-?\d+(?:\.\d+)?)\s*(?:\.\.|to|\s)\s*(-?\d+(?:\.\d+)?)\s*$/.exec(text);
  angleChart.yRange = parts && Number(parts[1]) < Number(parts[2]) ? [Number(parts[1]), Number(parts[2])] : null;
  return angleChart.yRange !== null || text.trim() === '';
};
