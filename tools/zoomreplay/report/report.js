'use strict';
// Shows the data of the page's first script element. Nothing here computes geometry: what is drawn
// are the rectangles and angles that zoomreplay found.
//
// data      { scenario, total, logged, rigs, requests, fatal? }
// rig       { master?, sensors: { id: { array?, unconfigured?, degrees?, modes: { mode: { size?, readout? } } } } }
// request   { no, rig, mode, modes: { sensor: mode or null }, deposit?, done?, repeating?,
//             queries, lines: [[line, op, [sink, level, text]...]...] }
// query     { stage, line, asked, sensor, state, manual?, cached?, override?, valid?, from?,
//             trouble?, crops? }
// crop      { s: sensor, c: rectangle, p?: ports, extra?, tg?, asked?, min?, area?, share?, deg?,
//             diff? }
(() => {
  const data = JSON.parse(document.getElementById('data').textContent);
  const requests = data.requests;
  const $ = (id) => document.getElementById(id);

  // ---- small helpers -------------------------------------------------------------------------

  const fill = (node, attributes, children) => {
    for (const [name, value] of Object.entries(attributes)) {
      if (value !== undefined && value !== null) node.setAttribute(name, value);
    }
    node.append(...children.flat().filter((c) => c !== null && c !== undefined));
    return node;
  };
  const html = (tag, attributes = {}, ...children) =>
    fill(document.createElement(tag), attributes, children);
  const svg = (tag, attributes = {}, ...children) =>
    fill(document.createElementNS('http://www.w3.org/2000/svg', tag), attributes, children);
  const rect = ([x, y, width, height], attributes) =>
    svg('rect', { x, y, width: Math.max(width, 0), height: Math.max(height, 0), ...attributes });
  const text = (x, y, content, attributes = {}) => svg('text', { x, y, ...attributes }, content);

  const MINUS = '\u2212';
  const ratio = (value) => typeof value === 'number' ? value.toFixed(2) + '\u00d7' : String(value);
  const degrees = (value) => typeof value === 'number' ? value.toFixed(2) + '\u00b0' : '\u2013';
  const signed = (value) => typeof value !== 'number' ? '\u2013' :
    (value < 0 ? MINUS : value > 0 ? '+' : '\u00b1') + Math.abs(value).toFixed(2) + '\u00b0';
  const percent = (value) => typeof value === 'number' ? (100 * value).toFixed(1) + ' %' : '\u2013';
  const size = ([w, h]) => `${w}\u00d7${h}`;
  const rectText = ([x, y, w, h]) => `(${x}, ${y})/${w}\u00d7${h}`;
  const hex = (port) => '0x' + port.toString(16);
  const MODES = ['none', 'external API', 'by request', 'instant request'];
  const modeName = (mode) => MODES[mode] ?? `mode ${mode}`;
  const PORTS = { 0x7001: 'R1', 0x7002: 'R2', 0x7003: 'R3' };
  const portName = (port) => PORTS[port] ?? hex(port);
  const whatIs = (crop) => crop.p ? crop.p.map(portName).join(' ') : crop.extra ? 'P2 extra' : 'P2';
  const styleOf = (crop) => crop.p ? 's' + ((crop.p[0] & 0xf) + 4) % 5 : crop.extra ? 'extra' : 'p2';

  // ---- what the data says --------------------------------------------------------------------

  const STAGES = ['P1', 'P2', '3A'].filter((stage) =>
    requests.some((request) => request.queries.some((query) => query.stage === stage)));

  // A stage stands where its last answer left it, unless something broke.
  const stateOf = (request, stage) => {
    const queries = request.queries.filter((query) => query.stage === stage);
    const broken = queries.find((query) => query.state === 'fatal') ??
      queries.find((query) => query.state === 'exception');
    const last = broken ?? queries.at(-1);
    return last && { state: last.state, cached: queries.some((query) => query.cached) };
  };

  const lastOverride = (request, stage) =>
    request.queries.filter((query) => query.stage === stage && query.state === 'overridden').at(-1);

  const leadCrops = (request) => {
    const leads = new Map();
    for (const stage of ['P1', 'P2']) {
      const seen = new Set();
      for (const crop of lastOverride(request, stage)?.crops ?? []) {
        if (!crop.extra && !seen.has(crop.s)) {
          seen.add(crop.s);
          leads.set(crop.s, { stage, crop });
        }
      }
    }
    return leads;
  };
  const leads = requests.map(leadCrops);

  const askedOf = (request) => request.queries[0]?.asked;
  const overrideOf = (request) => {
    const told = request.queries.filter((query) => query.override !== undefined);
    return (told.filter((query) => query.state === 'overridden').at(-1) ?? told[0])?.override;
  };
  const isOverridden = (request) => request.queries.some((query) => query.state === 'overridden');
  const isCorrected = (request) =>
    request.queries.some((query) => query.crops?.some((crop) => crop.asked));
  const indices = (test) => requests.flatMap((request, i) => test(request, i) ? [i] : []);

  const rigOf = (request) => data.rigs[request.rig] ?? { sensors: {} };
  const sensorIds = [...new Set(requests.flatMap((request) => [
    ...Object.keys(rigOf(request).sensors).map(Number),
    ...request.queries.flatMap((query) => (query.crops ?? []).map((crop) => crop.s)),
  ]))].sort((a, b) => a - b);
  const masterOf = (request) => rigOf(request).master;
  const hasAngles = leads.some((lead) => [...lead.values()].some(({ crop }) => crop.deg));
  const hasDifferences = leads.some((lead) => [...lead.values()].some(({ crop }) => crop.diff));

  // The second request with a number, after the camera was configured anew, is called "17:2".
  const names = (() => {
    const counts = new Map();
    return requests.map(({ no }) => {
      counts.set(no, (counts.get(no) ?? 0) + 1);
      return counts.get(no) === 1 ? String(no) : `${no}:${counts.get(no)}`;
    });
  })();

  // ---- marks of the stages -------------------------------------------------------------------

  const TEXTS = {
    overridden: 'overridden', refused: 'not overridden', exception: 'exception', fatal: 'stopped the process',
  };
  const SHAPES = {
    overridden: (x, y, r) => `M${x - r} ${y - r}h${2 * r}v${2 * r}h${-2 * r}z`,
    refused: (x, y, r) => `M${x - r} ${y}a${r} ${r} 0 1 0 ${2 * r} 0a${r} ${r} 0 1 0 ${-2 * r} 0`,
    exception: (x, y, r) => `M${x} ${y - r}l${r} ${2 * r}h${-2 * r}z`,
    fatal: (x, y, r) => `M${x - r} ${y - r}l${2 * r} ${2 * r}m0 ${-2 * r}l${-2 * r} ${2 * r}`,
    cached: (x, y, r) => `M${x - r / 2} ${y}a${r / 2} ${r / 2} 0 1 0 ${r} 0a${r / 2} ${r / 2} 0 1 0 ${-r} 0`,
  };
  const cachedClass = (state) => state === 'overridden' ? 'mark-cached' : 'mark-cached-refused';
  const symbol = (state, cached) => svg('svg', { width: 12, height: 12, 'aria-hidden': 'true' },
    svg('path', { d: SHAPES[state](6, 6, 4.5), class: 'mark-' + state }),
    cached ? svg('path', { d: SHAPES.cached(6, 6, 4.5), class: cachedClass(state) }) : null);

  const showLegend = () => {
    const entries = [['overridden', false, TEXTS.overridden], ['refused', false, TEXTS.refused]];
    if (requests.some((request) => request.queries.some((query) => query.cached))) {
      entries.push(['overridden', true, 'with a dot: also answered from the cache']);
    }
    for (const state of ['exception', 'fatal']) {
      if (requests.some((request) => request.queries.some((query) => query.state === state))) {
        entries.push([state, false, TEXTS[state]]);
      }
    }
    $('legend').append(...entries.map(([state, cached, what]) => html('li', {}, symbol(state, cached), what)));
  };

  // ---- timeline ------------------------------------------------------------------------------

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

  // ---- sensors to scale ----------------------------------------------------------------------

  const unite = (a, b) => {
    const left = Math.min(a[0], b[0]);
    const top = Math.min(a[1], b[1]);
    return [left, top, Math.max(a[0] + a[2], b[0] + b[2]) - left, Math.max(a[1] + a[3], b[1] + b[3]) - top];
  };
  // What lies far outside is cut off, so that the sensor stays visible.
  const near = (box, outer) => {
    const x = Math.max(box[0], outer[0] - outer[2] / 2);
    const y = Math.max(box[1], outer[1] - outer[3] / 2);
    return [x, y, Math.min(box[0] + box[2], outer[0] + 1.5 * outer[2]) - x,
      Math.min(box[1] + box[3], outer[1] + 1.5 * outer[3]) - y];
  };

  const outputOf = (request, id) => {
    const mode = request.modes?.[id];
    return mode === null || mode === undefined ? undefined : rigOf(request).sensors[id]?.modes?.[mode]?.size;
  };
  const isEmpty = ([, , w, h]) => !(w > 0 && h > 0);
  const cropsOf = (query, id) => (query?.crops ?? []).filter((crop) => crop.s === id && !isEmpty(crop.c));

  // The frames stay the same over the whole report: a crop that moves is a crop that moved.
  const frames = (() => {
    const active = new Map();
    const output = new Map();
    const grow = (map, id, outer, inner) =>
      map.set(id, unite(unite(map.get(id) ?? outer, outer), near(inner, outer)));
    for (const request of requests) {
      for (const id of sensorIds) {
        const array = rigOf(request).sensors[id]?.array;
        const tg = outputOf(request, id);
        if (array) grow(active, id, array, array);
        if (tg) grow(output, id, [0, 0, ...tg], [0, 0, ...tg]);
        for (const crop of request.queries.flatMap((query) => cropsOf(query, id))) {
          const boxes = [crop.c, crop.asked].filter((box) => box && !isEmpty(box));
          if (crop.tg && tg) boxes.forEach((box) => grow(output, id, [0, 0, ...tg], box));
          if (!crop.tg && array) boxes.forEach((box) => grow(active, id, array, box));
          if (crop.area && array) grow(active, id, array, crop.area);
        }
      }
    }
    return { active, output };
  })();

  const CORNERS = [
    ([x, y]) => ({ x: x + 5, y: y + 13 }),
    ([x, y, w]) => ({ x: x + w - 5, y: y + 13, 'text-anchor': 'end' }),
    ([x, y, , h]) => ({ x: x + 5, y: y + h - 5 }),
    ([x, y, w, h]) => ({ x: x + w - 5, y: y + h - 5, 'text-anchor': 'end' }),
  ];

  // Draws boxes ({ box, style, label }) of one domain at a scale.
  // Its width is a part of the room, so that all shrink alike on paper and stay to scale.
  const drawDomain = (frame, scale, room, boxes, description, empty) => {
    const MARGIN = 3;
    const place = ([x, y, w, h]) => [rounded((x - frame[0]) * scale + MARGIN),
      rounded((y - frame[1]) * scale + MARGIN), rounded(w * scale), rounded(h * scale)];
    const total = [frame[2] * scale + 2 * MARGIN, frame[3] * scale + 2 * MARGIN].map(Math.ceil);
    const picture = svg('svg', {
      viewBox: `0 0 ${total[0]} ${total[1]}`, role: 'img', 'aria-label': description,
    });
    picture.style.width = `${Math.min(100, 100 * total[0] / room)}%`;
    const labels = [];
    let corner = 0;
    for (const { box, style, label } of boxes) {
      const placed = place(box);
      picture.append(rect(placed, { class: style }));
      if (label) {
        const { x, y, ...rest } = CORNERS[corner++ % CORNERS.length](placed);
        labels.push(text(Math.min(Math.max(x, 4), total[0] - 4), Math.min(Math.max(y, 12), total[1] - 4),
          label, { class: 'label', ...rest }));
      }
    }
    picture.append(...labels);
    if (boxes.length === 1) {
      picture.append(text(total[0] / 2, total[1] / 2 + 4, empty, { 'text-anchor': 'middle' }));
    }
    return picture;
  };

  const figure = (title, note, picture) => html('figure', {},
    html('figcaption', {}, html('span', {}, title), html('span', {}, note)), picture);

  const activeFigure = (request, id, scales) => {
    const sensor = rigOf(request).sensors[id];
    const p1 = lastOverride(request, 'P1');
    const p2 = lastOverride(request, 'P2');
    const boxes = [{ box: sensor.array, style: 'pixels' }];
    const told = [];
    const readout = sensor.modes?.[request.modes?.[id]]?.readout;
    if (readout && String(readout) !== String(sensor.array)) boxes.push({ box: readout, style: 'readout' });
    for (const crop of cropsOf(p1, id).filter((crop) => crop.area)) {
      boxes.push({ box: crop.area, style: 'projected ' + styleOf(crop), label: whatIs(crop) });
      told.push(`P1 ${whatIs(crop)} covers ${rectText(crop.area)}`);
    }
    for (const crop of cropsOf(p2, id)) {
      const bound = outputOf(request, id);
      if (!crop.tg && bound) boxes.push({ box: [0, 0, ...bound], style: 'bound', label: 'bound' });
      if (!crop.tg && crop.asked) boxes.push({ box: crop.asked, style: 'ghost', label: 'before' });
      if (!crop.tg || crop.area) {
        boxes.push({ box: crop.tg ? crop.area : crop.c, style: 'crop ' + styleOf(crop), label: whatIs(crop) });
        told.push(`${whatIs(crop)} crop ${rectText(crop.tg ? crop.area : crop.c)}`);
      }
    }
    const description = `Sensor ${id}, active array ${size(sensor.array.slice(2))}: ${told.join('; ') || 'no crop'}`;
    return figure(sensor.unconfigured ? 'Read out by its modes' : 'Active array', size(sensor.array.slice(2)),
      drawDomain(frames.active.get(id), scales.active, scales.room, boxes, description, 'no crop'));
  };

  const outputFigure = (request, id, scales) => {
    const output = outputOf(request, id);
    const crops = ['P1', 'P2'].flatMap((stage) => cropsOf(lastOverride(request, stage), id))
      .filter((crop) => crop.tg);
    const boxes = [{ box: [0, 0, ...output], style: 'pixels' }];
    for (const crop of crops) {
      if (crop.asked) boxes.push({ box: crop.asked, style: 'ghost', label: `${whatIs(crop)} before` });
    }
    for (const crop of crops) {
      boxes.push({ box: crop.c, style: 'crop ' + styleOf(crop), label: whatIs(crop) });
      if (crop.min) {
        const [x, y, w, h] = crop.c;
        boxes.push({ box: [x + (w - crop.min[0]) / 2, y + (h - crop.min[1]) / 2, ...crop.min], style: 'min' });
      }
    }
    const told = crops.map((crop) => `${whatIs(crop)} crop ${rectText(crop.c)}` +
      (crop.asked ? `, before the correction ${rectText(crop.asked)}` : '') +
      (crop.min ? `, at least ${size(crop.min)}` : ''));
    const minima = [...new Set(crops.filter((crop) => crop.min).map((crop) => size(crop.min)))];
    return figure(`Output of mode ${request.modes[id]}`,
      size(output) + (minima.length > 0 ? ` \u00b7 min ${minima.join(', ')}` : ''),
      drawDomain(frames.output.get(id), scales.output, scales.room, boxes,
        `Sensor ${id}, output of mode ${request.modes[id]}, ${size(output)}: ${told.join('; ') || 'no crop'}`, 'no crop in the TG domain'));
  };

  const sensorCard = (request, id, scales) => {
    const sensor = rigOf(request).sensors[id] ?? {};
    const mode = request.modes?.[id];
    const card = html('section', { class: 'card sensor', 'data-sensor': id },
      html('div', { class: 'bar' },
        html('h2', {}, `Sensor ${id}${masterOf(request) === id ? ', master' : ''}`),
        html('span', { class: 'what' }, sensor.degrees ? sensor.degrees.map((d) => d + '\u00b0').join(' \u00d7 ') :
          'no angles configured')));
    if (sensor.array && frames.active.get(id)) card.append(activeFigure(request, id, scales));
    if (outputOf(request, id)) {
      card.append(outputFigure(request, id, scales));
    } else {
      card.append(html('p', { class: 'aside' }, mode === null ? 'Does not stream in this request.' :
        mode === undefined ? 'Has no mode in this request.' : `Mode ${mode} has no output size.`));
    }
    return card;
  };

  const MAX_PICTURE_HEIGHT = 175;
  const scaleFor = (map, room) => {
    const boxes = [...map.values()];
    return Math.min(room / Math.max(...boxes.map((box) => box[2]), 1),
      MAX_PICTURE_HEIGHT / Math.max(...boxes.map((box) => box[3]), 1));
  };

  const showSensors = (request) => {
    const total = $('sensors').clientWidth;
    const columns = Math.max(1, Math.min(sensorIds.length, Math.floor((total + 10) / 260)));
    const card = (total - 10 * (columns - 1)) / columns;
    const isWide = card > 600;
    $('sensors').classList.toggle('beside', isWide);
    const room = isWide ? (card - 30 - 24) / 2 : card - 30;
    const scales = { active: scaleFor(frames.active, room - 6), output: scaleFor(frames.output, room - 6), room };
    $('sensors').replaceChildren(...sensorIds.map((id) => sensorCard(request, id, scales)));
  };

  // ---- the chosen request --------------------------------------------------------------------

  const showStages = (request) => {
    const entries = request.queries.map((query) => html('li', { 'data-state': query.state },
      symbol(query.state, query.cached), html('span', { class: 'stage' }, query.stage),
      html('span', {}, TEXTS[query.state] + (query.cached ? ', from the cache' : '') +
        (query.manual ? ', manual' : '') +
        (query.state === 'refused' && query.valid === false ? ', override off' : ''),
      query.trouble ? html('div', { class: 'trouble' }, query.trouble) : null),
      html('span', { class: 'where' },
        (query.override === undefined ? '' : `${ratio(query.asked)} \u2192 ${ratio(query.override)} \u00b7 `) +
        `line ${query.line}`)));
    $('stages').replaceChildren(...entries);
    if (entries.length === 0) $('stages').append(html('li', {}, 'No crop was asked for.'));
  };

  const beam = (part, style) => {
    const length = Math.max(0, Math.min(1, part)) * 100;
    return html('td', { class: 'beam' }, svg('svg', { viewBox: '0 0 100 10', preserveAspectRatio: 'none', 'aria-hidden': 'true' },
      rect([0, 0, 100, 10], { fill: 'var(--soft)' }),
      rect([50 - length / 2, 1, length, 8], { style: `fill: var(--c${style})` })));
  };

  const showAngles = (index) => {
    const request = requests[index];
    const rows = sensorIds.filter((id) => leads[index].has(id));
    const widest = Math.max(1e-9, ...leads.flatMap((lead) => [...lead.values()].map(({ crop }) => crop.deg?.[0] ?? 0)));
    const head = hasAngles ? ['Sensor', 'Crop', 'H', 'V', 'to master', ''] : ['Sensor', 'Crop', 'Width', ''];
    $('angles').replaceChildren(html('thead', {}, html('tr', {}, head.map((name, i) =>
      html('th', { scope: 'col', class: i > 1 ? 'n' : '' }, name)))),
    html('tbody', {}, rows.map((id) => {
      const { stage, crop } = leads[index].get(id);
      const what = crop.p ? `${stage} ${portName(crop.p[0])}` : stage;
      const start = [html('td', {}, `${id}${masterOf(request) === id ? ' master' : ''}`), html('td', {}, what)];
      return html('tr', { 'data-sensor': id }, start, hasAngles ? [
        html('td', { class: 'n' }, html('b', {}, degrees(crop.deg?.[0]))),
        html('td', { class: 'n' }, degrees(crop.deg?.[1])),
        html('td', { class: 'n' }, html('b', {}, masterOf(request) === id ? '\u2013' : signed(crop.diff?.[0]))),
        beam((crop.deg?.[0] ?? 0) / widest, id % 5),
      ] : [html('td', { class: 'n' }, html('b', {}, percent(crop.share))), beam(crop.share ?? 0, id % 5)]);
    })));
    $('angles-title').textContent = hasAngles ? 'Angle of view that the crops leave' : 'Part of the sensor that the crops leave';
    $('angles-note').textContent = rows.length === 0 ? 'No crop was overridden in this request.' :
      hasAngles ? '' : 'No angles are configured: a configSensorInfo line in the scenario gives them, and the degrees appear.';
  };

  const showLines = (request) => {
    const parts = [];
    if (request.deposit) parts.push(`deposited on line ${request.deposit}${request.repeating ? ' (repeating)' : ''}`);
    for (const [line, op] of request.lines) {
      if (op === 'storeOverrideSetting') parts.push(`override stored on ${line}`);
    }
    parts.push(request.done ? `done on ${request.done}` : 'never reported done');
    const sentence = parts.join(', ') + '.';
    $('lines').textContent = `${data.scenario}: ${sentence}`;
  };

  const COLUMNS = ['Stage', 'Sensor', 'Port', 'Domain', 'x', 'y', 'w', 'h', 'Before correction', 'Minimum',
    ...(hasAngles ? ['H', 'V'] : []), ...(hasDifferences ? ['H to master', 'V to master'] : [])];
  const cropRow = (query, crop) => [query.stage, crop.s,
    crop.p ? crop.p.map(hex).join(' ') : crop.extra ? 'extra' : 'crop', crop.tg ? 'TG' : 'active array', ...crop.c,
    crop.asked ? rectText(crop.asked) : '', crop.min ? size(crop.min) : '',
    ...(hasAngles ? [crop.deg?.[0] ?? '', crop.deg?.[1] ?? ''] : []),
    ...(hasDifferences ? [crop.diff?.[0] ?? '', crop.diff?.[1] ?? ''] : [])];
  const queryTitle = (query) => `${query.stage} asked by sensor ${query.sensor} on line ${query.line}: ` +
    `${query.asked}` + (query.override === undefined ? '' : ` \u2192 ${query.override}`) +
    `, ${TEXTS[query.state]}${query.cached ? ' (from the cache)' : ''}` +
    (query.from === undefined || query.from < 0 ? '' : `, override of request ${query.from}`);

  const showNumbers = (request) => {
    const isNumber = (i) => i === 1 || (i > 3 && i < 8) || i > 9;
    const rows = request.queries.flatMap((query) => [
      html('tr', { class: 'query', 'data-line': query.line, 'data-asked': query.asked, 'data-override': query.override },
        html('th', { colspan: COLUMNS.length, scope: 'rowgroup' }, queryTitle(query))),
      ...(query.crops ?? []).map((crop) => html('tr', { 'data-line': query.line },
        cropRow(query, crop).map((value, i) => html('td', { class: isNumber(i) ? 'n' : '' }, String(value))))),
    ]);
    $('numbers').replaceChildren(
      html('thead', {}, html('tr', {}, COLUMNS.map((name, i) =>
        html('th', { scope: 'col', class: isNumber(i) ? 'n' : '' }, name)))),
      html('tbody', {}, rows));
  };

  const tableText = (request) => [['Request', ...COLUMNS], ...request.queries.flatMap((query) =>
    (query.crops ?? []).map((crop) => [request.no, ...cropRow(query, crop)]))]
    .map((row) => row.join('\t')).join('\n') + '\n';

  const showLog = (request) => {
    $('log-card').hidden = !data.logged;
    const entries = request.lines.filter((line) => line.length > 2);
    $('log').replaceChildren(...entries.flatMap(([line, op, ...log]) => [
      html('h3', {}, `line ${line}  ${op}`),
      html('pre', {}, log.map(([sink, level, content]) => html('div', {},
        html('span', { class: level <= 2 && level > 0 ? 'level high' : 'level' }, `${sink} ${level}  `), content))),
    ]));
    if (entries.length === 0) $('log').append(html('p', { class: 'aside' }, 'Nothing was logged for this request.'));
  };

  const summary = (index) => {
    const request = requests[index];
    const states = STAGES.map((stage) => [stage, stateOf(request, stage)]).filter(([, found]) => found)
      .map(([stage, found]) => `${stage} ${TEXTS[found.state]}${found.cached ? ' and from the cache' : ''}`);
    return `Request ${names[index]}: ${[...states, isCorrected(request) ? 'crops corrected' : ''].filter(Boolean).join(', ')}`;
  };

  let current = 0;
  const show = (index) => {
    current = Math.max(0, Math.min(requests.length - 1, index));
    const request = requests[current];
    moveCursor(current);
    $('request-title').textContent = `Request ${names[current]}`;
    $('request-mode').textContent = modeName(request.mode);
    $('link').textContent = $('link').href = `#request=${names[current]}`;
    $('ratios').replaceChildren('asked ', html('b', { id: 'asked' }, ratio(askedOf(request) ?? '\u2013')),
      ' override ', html('b', { id: 'override' }, ratio(overrideOf(request) ?? '\u2013')));
    showStages(request);
    showAngles(current);
    showLines(request);
    showSensors(request);
    showNumbers(request);
    showLog(request);
    const slider = $('timeline');
    slider.setAttribute('aria-valuenow', current + 1);
    slider.setAttribute('aria-valuetext', summary(current));
    if (!timer) $('status').textContent = summary(current);
    try {
      history.replaceState(null, '', `#request=${names[current]}`);
    } catch { /* some browsers refuse it for files; the report works without */ }
  };

  // ---- findings ------------------------------------------------------------------------------

  const finding = (label, where, style) => {
    const next = () => show(where.find((i) => i > current) ?? where[0]);
    const button = html('button', style ? { class: style } : {}, label);
    button.addEventListener('click', next);
    $('findings').append(html('li', {}, button));
  };

  const showFindings = () => {
    const broken = indices((request) => request.queries.some((query) => query.state === 'exception'));
    if (data.fatal?.at !== undefined) finding('fatal condition', [data.fatal.at], 'alarm');
    if (broken.length > 0) finding(`exceptions: ${broken.length}`, broken, 'alarm');
    const corrected = indices(isCorrected);
    if (corrected.length > 0) finding(`corrected: ${corrected.length} of ${requests.length}`, corrected);
    for (const id of sensorIds) {
      const differences = leads.map((lead) => lead.get(id)?.crop.diff?.[0] ?? 0);
      const largest = Math.max(...differences.map(Math.abs));
      const at = differences.findIndex((value) => Math.abs(value) === largest);
      if (largest > 0) finding(`sensor ${id}: up to ${signed(differences[at])} at ${names[at]}`, [at]);
    }
    const cached = indices((request) => request.queries.some((query) => query.cached));
    if (cached.length > 0) finding(`from the cache: ${cached.length}`, cached);
    const left = indices((request) => !request.done);
    if (left.length > 0) finding(`never done: ${left.length}`, left);
  };

  const showHead = () => {
    const name = data.scenario.split('/').at(-1);
    document.title = `${name} \u2013 zoom report`;
    $('title').textContent = name;
    const modes = [...new Set(requests.map((request) => modeName(request.mode)))].join(', ');
    const total = `${data.total} ${data.total === 1 ? 'request' : 'requests'}`;
    const shown = requests.length === data.total ? total : `${requests.length} of ${total}`;
    $('about').textContent = [modes, shown, `${indices(isOverridden).length} overridden`].filter(Boolean).join(' \u00b7 ');
    if (data.fatal) {
      $('fatal').hidden = false;
      $('fatal').textContent = `The library stopped the process on line ${data.fatal.line}, ${data.fatal.op}: ${data.fatal.text}`;
    }
  };

  // What the timeline shows, in words.
  const describeTimeline = () => {
    const range = (name, values, write) => {
      const known = values.filter((value) => typeof value === 'number');
      return known.length === 0 ? null : `${name} ${write(Math.min(...known))} to ${write(Math.max(...known))}`;
    };
    const count = (stage) => indices((request) => stateOf(request, stage)?.state === 'overridden').length;
    $('timeline-text').textContent = [
      range('Asked ratio', requests.map(askedOf), ratio),
      range('override ratio', requests.map(overrideOf), ratio),
      ...STAGES.map((stage) => `${stage} overridden in ${count(stage)} of ${requests.length} requests`),
      ...sensorIds.map((id) => hasDifferences ?
        range(`sensor ${id} to master`, leads.map((lead) => lead.get(id)?.crop.diff?.[0]), signed) : null),
    ].filter(Boolean).join('; ') + '.';
  };

  // ---- moving --------------------------------------------------------------------------------

  let timer = null;
  const stop = () => {
    clearInterval(timer);
    timer = null;
    $('play').textContent = 'Play';
    $('play').setAttribute('aria-pressed', 'false');
  };
  const play = () => {
    const REQUESTS_PER_SECOND = 10;
    if (timer) return stop();
    if (current === requests.length - 1) show(0);
    $('play').textContent = 'Pause';
    $('play').setAttribute('aria-pressed', 'true');
    timer = setInterval(() => {
      show(current + 1);
      if (current === requests.length - 1) stop();
    }, 1000 / REQUESTS_PER_SECOND);
  };

  const KEYS = {
    ArrowLeft: () => show(current - 1),
    ArrowRight: () => show(current + 1),
    PageUp: () => show(current - 10),
    PageDown: () => show(current + 10),
    Home: () => show(0),
    End: () => show(requests.length - 1),
    ' ': play,
  };
  const onKey = (event) => {
    const isOnButton = event.target instanceof Element && event.target.closest('button, a');
    const action = KEYS[event.key];
    if (!action || event.ctrlKey || event.altKey || event.metaKey || (event.key === ' ' && isOnButton)) return;
    event.preventDefault();
    if (event.key !== ' ') stop();
    action();
  };

  const onDrag = (event) => {
    if (event.buttons !== 1) return;
    const box = $('timeline').getBoundingClientRect();
    stop();
    show(Math.floor(((event.clientX - box.left) * width / box.width - LEFT) / pitch()));
  };

  const openLink = () => {
    const name = /^#request=(\d+(:\d+)?)$/.exec(location.hash)?.[1];
    const index = names.indexOf(name);
    show(index < 0 ? Math.max(0, data.fatal?.at ?? 0) : index);
  };

  const copy = async () => {
    const content = tableText(requests[current]);
    try {
      await navigator.clipboard.writeText(content);
      $('copy').textContent = 'Copied';
    } catch {
      getSelection().selectAllChildren($('numbers'));
      $('copy').textContent = 'Selected: copy with Ctrl+C';
    }
    setTimeout(() => { $('copy').textContent = 'Copy the table'; }, 2000);
  };

  const start = () => {
    showHead();
    if (requests.length === 0) {
      $('timeline').replaceChildren(html('p', { class: 'aside' }, 'There is no request to show.'));
      return;
    }
    $('details').hidden = false;
    showLegend();
    showFindings();
    describeTimeline();
    $('timeline').setAttribute('aria-valuemin', 1);
    $('timeline').setAttribute('aria-valuemax', requests.length);
    drawTimeline();
    openLink();
    $('first').addEventListener('click', KEYS.Home);
    $('back').addEventListener('click', KEYS.ArrowLeft);
    $('play').addEventListener('click', play);
    $('forward').addEventListener('click', KEYS.ArrowRight);
    $('last').addEventListener('click', KEYS.End);
    $('copy').addEventListener('click', copy);
    $('timeline').addEventListener('pointerdown', (event) => {
      $('timeline').setPointerCapture(event.pointerId);
      onDrag(event);
    });
    $('timeline').addEventListener('pointermove', onDrag);
    document.addEventListener('keydown', onKey);
    addEventListener('hashchange', openLink);
    new ResizeObserver(() => {
      drawTimeline();
      show(current);
    }).observe($('timeline'));
  };
  start();
})();
