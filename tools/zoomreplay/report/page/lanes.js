// The lanes over the requests: what became of each. A pixel stands for many requests and shows every
// state among them; equal neighbours run together.

const LANE_HEIGHT = 16;
const CHANGE = 1 << 31;
const MOST_VALUES = 16;
let allLanes = [];
let lanes = [];  // those that show something

// A lane's states, in the order in which they are drawn: the rarer and worse ones last. Each leaves something
// of the others to be seen. { words, colour, top, height }: a band of the lane.
const STAGE_STATES = [
  { words: 'not overridden', colour: '--refused', top: 12, height: 3 },
  { words: 'overridden', colour: '--overridden', top: 2, height: 8 },
  { words: 'also from the cache', colour: '--cached', top: 10, height: 3 },
  { words: 'exception', colour: '--exception', top: 1, height: 7, least: 2 },
  { words: 'stopped the process', colour: '--fatal', top: 0, height: 5, least: 3 },
];
const bitsOfStage = (value) => {
  const state = STATES[value % CACHED];
  return (state === 'refused' ? 1 : 0) | (state === 'overridden' ? 2 : 0) | (value >= CACHED ? 4 : 0) |
    (state === 'exception' ? 8 : 0) | (state === 'fatal' ? 16 : 0);
};

const laneOf = (name, states, bitOf) => {
  const bits = new Uint32Array(capacity);
  for (let i = 0; i < count; ++i) bits[i] = bitOf(i);
  return { name, states, bitOf, steps: new BitSteps(bits, CHANGE), uses: bits.reduce((all, bit) => all | bit, 0) };
};

// A state for each value that there is, and an edge where it changes.
const changingLane = (name, path, colourOf, wordsOf) => {
  const column = columnOf(path);
  const values = [];
  const states = [];
  const placeOf = (value) => {
    const known = values.indexOf(value);
    if (known >= 0 || !(value >= 0) || values.length === MOST_VALUES) return known;
    const i = values.push(value) - 1;
    states.push({ words: wordsOf(value), text: String(value), colour: colourOf(value), top: i % 2 ? 5 : 2, height: i % 2 ? 8 : 11 });
    return i;
  };
  [...new Set(column)].sort((a, b) => a - b).forEach(placeOf);
  return laneOf(name, states, (i) => {
    const own = placeOf(column[i]);
    const isChange = i > 0 && column[i] !== column[i - 1] && !(Number.isNaN(column[i]) && Number.isNaN(column[i - 1]));
    return (own < 0 ? 0 : 1 << own) | (isChange ? CHANGE : 0);
  });
};

const makeLanes = () => {
  const stages = askedStages().map((stage) => {
    const column = columnOf(`stages.${stage}`);
    return laneOf(stage, STAGE_STATES, (i) => bitsOfStage(column[i]));
  });
  const faults = ['jump', 'stale', 'outside', 'undone'];
  const faultStates = [
    { words: 'jump', colour: '--jump', top: 1, height: 4, least: 2 },
    { words: 'kept answer of another mode', colour: '--stale', top: 5, height: 3, least: 2 },
    { words: 'outside of its sensor', colour: '--outside', top: 8, height: 4, least: 2 },
    { words: 'never done', colour: '--undone', top: 12, height: 3 },
  ];
  allLanes = [
    ...stages,
    laneOf('corrected', [{ words: 'crop corrected', colour: '--corrected', top: 3, height: 10 }], (i) => hasMark(i, 'corrected') ? 1 : 0),
    changingLane('asked by', 'asker', (id) => sensorIds.includes(id) ? colourOfSensor(id) : '--faint', (id) => `sensor ${id}`),
    changingLane('phone', 'phone.lens', (id) => sensorIds.includes(id) ? colourOfSensor(id) : '--faint', (id) => `camera ${id}`),
    ...sensorIds.map((id) => changingLane(`sensor ${id}`, `sensors.${id}.mode`, () => colourOfSensor(id), (mode) => `streams, mode ${mode}`)),
    laneOf('findings', faultStates, (i) => faults.reduce((bits, mark, k) => bits | (hasMark(i, mark) ? 1 << k : 0), 0)),
    laneOf('differs', [{ words: 'differs from the expected result', colour: '--expected', top: 3, height: 10, least: 2 }], (i) => hasMark(i, 'differs') ? 1 : 0),
  ];
  lanes = allLanes.filter(({ uses }) => uses !== 0);
};

const drawRuns = (context, pixels, bit, { top, height, least = 1 }, y) => {
  for (let p = 0; p < pixels.length; ++p) {
    if (!(pixels[p] & bit)) continue;
    const start = p;
    while (p + 1 < pixels.length && pixels[p + 1] & bit) ++p;
    context.fillRect(start, y + top, Math.max(p + 1 - start, least), height);
  }
};

// The value itself, where its run has room for it.
const labelRuns = (context, pixels, bit, label, y) => {
  const ROOM = 26;
  for (let p = 0; p < pixels.length; ++p) {
    if ((pixels[p] & ~CHANGE) !== bit) continue;
    const start = p;
    while (p + 1 < pixels.length && (pixels[p + 1] & ~CHANGE) === bit && !(pixels[p + 1] & CHANGE)) ++p;
    if (p - start > ROOM) context.fillText(label, start + 5, y + 12);
  }
};

const drawLanes = ({ from, to }, gutter) => {
  const canvas = $('lanes');
  const width = canvas.parentElement.clientWidth;
  const height = lanes.length * LANE_HEIGHT;
  const sharp = devicePixelRatio || 1;
  canvas.width = Math.round(width * sharp);
  canvas.height = Math.round(height * sharp);
  canvas.style.height = `${height}px`;
  const context = canvas.getContext('2d');
  context.scale(sharp, sharp);
  context.font = `11px ${getComputedStyle(document.body).fontFamily}`;
  const plot = Math.max(1, Math.round(width - gutter));
  const perPixel = (to - from) / plot;
  lanes.forEach((lane, i) => {
    const y = i * LANE_HEIGHT;
    context.fillStyle = colour('--faint');
    context.textAlign = 'right';
    context.fillText(lane.name, gutter - 6, y + 12);
    context.textAlign = 'left';
    context.save();
    context.translate(gutter, 0);
    const pixels = lane.steps.pixels(from + 0.5, perPixel, plot);
    lane.states.forEach((state, k) => {
      context.fillStyle = colour(state.colour);
      drawRuns(context, pixels, 1 << k, state, y);
    });
    lane.states.forEach((state, k) => {
      if (!state.text) return;
      context.fillStyle = colour('--card');
      labelRuns(context, pixels, 1 << k, state.text, y);
    });
    context.fillStyle = colour('--ink');
    drawRuns(context, pixels, CHANGE, { top: 0, height: LANE_HEIGHT }, y);
    context.restore();
  });
};

const showLaneLegend = () => {
  const told = new Map();
  for (const lane of lanes) {
    lane.states.forEach((state, k) => {
      if (lane.uses & (1 << k) && !state.text) told.set(state.words, state.colour);
    });
  }
  $('legend').replaceChildren(...[...told].map(([words, name]) =>
    html('li', {}, html('span', { class: 'swatch', style: `background: var(${name})` }), words)),
  html('li', {}, html('span', { class: 'swatch edge' }), 'edge: sensor or mode changes'));
};
