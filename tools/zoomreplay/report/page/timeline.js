// The timeline: zoom ratios, answers of the stages and angles of view over the requests.

const LEFT = 124;
const RIGHT = 76;
const RATIO_HEIGHT = 78;
const LANE_HEIGHT = 18;
const CURVE_HEIGHT = 82;
let width = 0;
let cursor = null;
const pitch = () => (width - LEFT - RIGHT) / Math.max(requests.length, 1);
const xOf = (i) => LEFT + (i + 0.5) * pitch();
const rounded = (value) => Math.round(value * 10) / 10;

// A line through the points that are there, broken where one is missing.
const pathOf = (values, yOf) => {
  let path = '';
  let isDown = false;
  values.forEach((value, i) => {
    if (typeof value === 'number' && Number.isFinite(value)) {
      const isAlone = typeof values[i - 1] !== 'number' && typeof values[i + 1] !== 'number';
      const point = `${rounded(xOf(i) - (isAlone ? 4 : 0))} ${rounded(yOf(value))}`;
      path += (isDown ? 'L' : 'M') + point + (isAlone ? 'h8' : '');
      isDown = true;
    } else {
      isDown = false;
    }
  });
  return path;
};

const drawRatios = (picture, top) => {
  const asked = requests.map(askedOf);
  const override = requests.map(overrideOf);
  const values = [...asked, ...override].filter((v) => typeof v === 'number' && v > 0);
  if (values.length === 0) return;
  const low = Math.min(...values) / 1.12;
  const high = Math.max(...values) * 1.12;
  const yOf = (v) => v > 0 ?
    top + RATIO_HEIGHT * (1 - Math.log(v / low) / Math.log(high / low)) : top + RATIO_HEIGHT;
  const ticks = [[0.1, 0.2, 0.5, 1, 2, 5, 10, 20, 50, 100], [0.5, 0.7, 1, 1.5, 2, 3, 4, 5, 7, 10], [values[0]]]
    .map((candidates) => candidates.filter((v) => v > low && v < high));
  for (const tick of ticks.find((found) => found.length > 2) ?? ticks.find((found) => found.length > 0)) {
    const y = Math.round(yOf(tick)) + 0.5;
    picture.append(svg('path', { d: `M${LEFT} ${y}H${width - RIGHT}`, class: 'grid' }),
      text(LEFT - 6, y + 4, `${tick}\u00d7`, { 'text-anchor': 'end' }));
  }
  picture.append(
    text(0, top + 12, 'Zoom ratio', { class: 'strong' }),
    svg('path', { d: pathOf(asked, yOf), class: 'asked' }),
    svg('path', { d: pathOf(override, yOf), class: 'override' }));
  const ends = [['asked', asked], ['override', override]]
    .map(([name, line]) => ({ name, value: line.findLast((v) => typeof v === 'number') }))
    .filter(({ value }) => value !== undefined);
  placeLabels(picture, ends.map(({ name, value }) => ({ name, y: yOf(value) })), top, RATIO_HEIGHT);
};

// Labels at the right end of their lines, moved apart.
const placeLabels = (picture, labels, top, height) => {
  const STEP = 13;
  labels.sort((a, b) => a.y - b.y);
  labels.forEach((label, i) => {
    label.y = Math.max(label.y, top + 6, i > 0 ? labels[i - 1].y + STEP : -Infinity);
  });
  let bottom = top + height;
  for (const label of labels.toReversed()) {
    label.y = Math.min(label.y, bottom);
    bottom = label.y - STEP;
    picture.append(text(width - RIGHT + 8, label.y + 4, label.name));
  }
};

const drawLane = (picture, stage, top) => {
  const middle = top + LANE_HEIGHT / 2;
  const isDense = pitch() < 7;
  const radius = Math.min(4.5, pitch() / 2 - 1);
  const paths = {};
  const add = (name, path) => { paths[name] = (paths[name] ?? '') + path; };
  requests.forEach((request, i) => {
    const found = stateOf(request, stage);
    if (!found) return;
    const x = rounded(xOf(i));
    if (isDense && found.state === 'overridden') {
      add('mark-overridden', `M${x - pitch() / 2} ${top + 3}h${pitch()}v${LANE_HEIGHT - 6}h${-pitch()}z`);
    } else if (isDense && found.state === 'refused') {
      add('mark-refused-dense', `M${x - pitch() / 2} ${middle - 1}h${pitch()}v2h${-pitch()}z`);
    } else {
      add('mark-' + found.state, SHAPES[found.state](x, middle, Math.max(radius, 4)));
    }
    if (found.cached && !isDense) add(cachedClass(found.state), SHAPES.cached(x, middle, radius));
  });
  picture.append(text(LEFT - 6, middle + 4, stage, { 'text-anchor': 'end', class: 'strong' }));
  for (const [name, path] of Object.entries(paths)) {
    picture.append(svg('path', { d: path, class: name, 'shape-rendering': isDense ? 'crispEdges' : null }));
  }
};

const curveValue = (lead) => lead && (hasDifferences ? lead.crop.diff?.[0] :
  hasAngles ? lead.crop.deg?.[0] : lead.crop.share === undefined ? undefined : 100 * lead.crop.share);

const niceStep = (span) => {
  const base = 10 ** Math.floor(Math.log10(span / 3));
  return [1, 2, 5, 10].map((factor) => factor * base).find((step) => span / step <= 4);
};

const drawCurves = (picture, top) => {
  const curves = sensorIds.map((id) => ({ id, values: leads.map((lead) => curveValue(lead.get(id))) }))
    .filter(({ values }) => values.some((value) => value !== undefined));
  const values = curves.flatMap((curve) => curve.values).filter((value) => value !== undefined);
  const title = hasDifferences ? ['Difference', 'to master'] : hasAngles ? ['Angle of', 'view'] : ['Width of the', 'crop, %'];
  title.forEach((line, i) => picture.append(text(0, top + 12 + 13 * i, line, { class: 'strong' })));
  if (values.length === 0) {
    picture.append(text(LEFT, top + 12, 'No crop was overridden.'));
    return;
  }
  let low = Math.min(0, ...values);
  let high = Math.max(0, ...values);
  if (high - low < 0.1) [low, high] = [low - 0.5, high + 0.5];
  const yOf = (v) => top + 5 + (CURVE_HEIGHT - 10) * (1 - (v - low) / (high - low));
  const step = niceStep(high - low);
  for (let tick = Math.ceil(low / step) * step; tick <= high + 1e-9; tick += step) {
    const y = Math.round(yOf(tick)) + 0.5;
    const isZero = Math.abs(tick) < step / 1000;
    const label = Number(Math.abs(tick).toFixed(2)) + (hasAngles ? '\u00b0' : '');
    picture.append(
      svg('path', { d: `M${LEFT} ${y}H${width - RIGHT}`, class: isZero ? 'zero' : 'grid' }),
      text(LEFT - 6, y + 4, (isZero ? '' : tick < 0 ? MINUS : hasDifferences ? '+' : '') + label,
        { 'text-anchor': 'end' }));
  }
  for (const { id, values: line } of curves) {
    picture.append(svg('path', { d: pathOf(line, yOf), class: `curve s${id % 5}` }));
  }
  placeLabels(picture, curves.map(({ id, values: line }) => ({
    name: `sensor ${id}`, y: yOf(line.findLast((value) => value !== undefined)),
  })), top, CURVE_HEIGHT);
};

const drawAxis = (picture, top) => {
  const every = niceStep(Math.max(requests.length, 3) / Math.max((width - LEFT) / 260, 1));
  const step = Math.max(1, Math.round(every));
  requests.forEach((request, i) => {
    if (request.no % step === 0 || (step === 1 && requests.length < 40)) {
      picture.append(text(rounded(xOf(i)), top + 11, names[i], { 'text-anchor': 'middle' }));
    }
  });
};

const drawTimeline = () => {
  width = Math.max($('timeline').clientWidth, 480);
  const lanes = STAGES.length * LANE_HEIGHT;
  const curves = RATIO_HEIGHT + lanes + 12;
  const axis = curves + CURVE_HEIGHT + 2;
  const height = axis + 14;
  const picture = svg('svg', { viewBox: `0 0 ${width} ${height}`, 'aria-hidden': 'true' });
  drawRatios(picture, 0);
  STAGES.forEach((stage, i) => drawLane(picture, stage, RATIO_HEIGHT + 5 + i * LANE_HEIGHT));
  drawCurves(picture, curves);
  drawAxis(picture, axis);
  if (data.fatal?.at !== undefined) {
    const x = xOf(data.fatal.at);
    picture.append(svg('path', { d: `M${x} 0V${axis}`, class: 'fatal-line' }),
      text(x < width / 2 ? x + 18 : x - 18, RATIO_HEIGHT - 4, `fatal, line ${data.fatal.line}`,
        { class: 'label', 'text-anchor': x < width / 2 ? 'start' : 'end' }));
  }
  cursor = svg('g', {}, rect([0, 0, cursorWidth(), axis], { class: 'cursor' }),
    svg('path', { d: `M0 0V${axis}`, class: 'cursor-line' }));
  picture.append(cursor);
  $('timeline').replaceChildren(picture);
};

const cursorWidth = () => Math.min(Math.max(pitch(), 3), 28);
const moveCursor = (i) => {
  cursor.firstChild.setAttribute('x', xOf(i) - cursorWidth() / 2);
  cursor.lastChild.setAttribute('transform', `translate(${rounded(xOf(i))} 0)`);
};
