// The sensors of the chosen request and their crops, to scale.

const rounded = (value) => Math.round(value * 10) / 10;  // enough for a picture

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
let chosenPort = null;  // null: all
const cropsOf = (query, id) => (query?.crops ?? []).filter((crop) => crop.s === id && !isEmpty(crop.c) &&
  (chosenPort === null || !crop.p || crop.p.includes(chosenPort)));

// The frames of a rig's sensors stay the same: a crop that moves is a crop that moved. Only what reaches
// beyond its sensor widens them.
const framesOf = (request) => {
  const active = new Map();
  const output = new Map();
  const grow = (map, id, outer, inner) =>
    map.set(id, unite(unite(map.get(id) ?? outer, outer), near(inner, outer)));
  for (const id of sensorIds) {
    const sensor = rigOf(request).sensors[id];
    const outputs = Object.values(sensor?.modes ?? {}).map((mode) => mode.size).filter(Boolean);
    for (const box of outputs) grow(output, id, [0, 0, ...box], [0, 0, ...box]);
    if (sensor?.array) grow(active, id, sensor.array, sensor.array);
    const tg = outputOf(request, id);
    for (const crop of request.queries.flatMap((query) => cropsOf(query, id))) {
      const boxes = [crop.c, crop.asked].filter((box) => box && !isEmpty(box));
      if (crop.tg && tg) boxes.forEach((box) => grow(output, id, [0, 0, ...tg], box));
      if (!crop.tg && sensor?.array) boxes.forEach((box) => grow(active, id, sensor.array, box));
      if (crop.area && sensor?.array) grow(active, id, sensor.array, crop.area);
    }
  }
  return { active, output };
};

// Labels stand in a corner of their boxes, or below where others stand there.
const LINE = 13;
const CORNERS = [
  ([x, y], length) => [x + 5, y + LINE, length],
  ([x, y, w], length) => [x + w - 5 - length, y + LINE, length],
  ([x, y, , h], length) => [x + 5, y + h - 5, length],
  ([x, y, w, h], length) => [x + w - 5 - length, y + h - 5, length],
];
const covers = ([x, y, length], [ox, oy, other]) => Math.abs(y - oy) < LINE && x < ox + other && ox < x + length;
const placeLabel = (placed, label, taken, [width, height]) => {
  const length = 6.4 * label.length + 4;
  const inside = ([x, y]) => [Math.min(Math.max(x, 4), Math.max(width - length, 4)), Math.min(Math.max(y, LINE), height - 4), length];
  const spots = CORNERS.map((corner) => inside(corner(placed, length)));
  const below = Array.from({ length: 8 }, (_, i) => inside([spots[0][0], spots[0][1] + LINE * (i + 1)]));
  const spot = [...spots, ...below].find((candidate) => !taken.some((other) => covers(candidate, other))) ?? spots[0];
  taken.push(spot);
  return text(spot[0], spot[1], label, { class: 'label' });
};

// The pictures in hand, by sensor and domain, to point at a rectangle in one of them.
const pictures = new Map();
const pointAt = (id, isTg, box) => {
  pointAway();
  const picture = pictures.get(`${id} ${isTg}`);
  if (picture) picture.node.append(rect(picture.place(box), { class: 'pointed' }));
};
const pointAway = () => document.querySelectorAll('.pointed').forEach((node) => node.remove());

// Draws boxes ({ box, style, label }) of one domain at a scale.
// Its width is a part of the room, so that all shrink alike on paper and stay to scale.
const drawDomain = (frame, scale, room, boxes, description, empty, name) => {
  const MARGIN = 3;
  const place = ([x, y, w, h]) => [rounded((x - frame[0]) * scale + MARGIN),
    rounded((y - frame[1]) * scale + MARGIN), rounded(w * scale), rounded(h * scale)];
  const total = [frame[2] * scale + 2 * MARGIN, frame[3] * scale + 2 * MARGIN].map(Math.ceil);
  const picture = svg('svg', {
    viewBox: `0 0 ${total[0]} ${total[1]}`, role: 'img', 'aria-label': description,
  });
  picture.style.width = `${Math.min(100, 100 * total[0] / room)}%`;
  pictures.set(name, { node: picture, place });
  const labels = [];
  const taken = [];
  for (const { box, style, label } of boxes) {
    const placed = place(box);
    picture.append(rect(placed, { class: style }));
    if (label) {
      labels.push(placeLabel(placed, label, taken, total));
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
    const expected = expectedCrop(request.index, p2, crop);
    if (!crop.tg && expected) boxes.push({ box: expected, style: 'expected', label: isExpectedShown ? 'expected' : null });
    if (expected && isExpectedShown) continue;
    if (!crop.tg || crop.area) {
      boxes.push({ box: crop.tg ? crop.area : crop.c, style: 'crop ' + styleOf(crop), label: whatIs(crop) });
      told.push(`${whatIs(crop)} crop ${rectText(crop.tg ? crop.area : crop.c)}`);
    }
  }
  const description = `Sensor ${id}, active array ${size(sensor.array.slice(2))}: ${told.join('; ') || 'no crop'}`;
  return figure(sensor.unconfigured ? 'Read out by its modes' : 'Active array', size(sensor.array.slice(2)),
    drawDomain(scales.frames.active.get(id), scales.active, scales.room, boxes, description, 'no crop', `${id} false`));
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
    const query = ['P1', 'P2'].map((stage) => lastOverride(request, stage)).find((found) => found?.crops.includes(crop));
    const expected = expectedCrop(request.index, query, crop);
    if (expected) boxes.push({ box: expected, style: 'expected', label: isExpectedShown ? `${whatIs(crop)} expected` : null });
    if (expected && isExpectedShown) continue;
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
    drawDomain(scales.frames.output.get(id), scales.output, scales.room, boxes,
      `Sensor ${id}, output of mode ${request.modes[id]}, ${size(output)}: ${told.join('; ') || 'no crop'}`, 'no crop in the TG domain', `${id} true`));
};

const sensorCard = (request, id, scales) => {
  const sensor = rigOf(request).sensors[id] ?? {};
  const mode = request.modes?.[id];
  const card = html('section', { class: 'card sensor', 'data-sensor': id, style: `--own: var(${colourOfSensor(id)})` },
    html('div', { class: 'bar' },
      html('h2', {}, `Sensor ${id}${masterOf(request) === id ? ', master' : ''}`),
      html('span', { class: 'what' }, sensor.degrees ? sensor.degrees.map((d) => d + '\u00b0').join(' \u00d7 ') :
        'no angles configured')));
  if (sensor.array && scales.frames.active.get(id)) card.append(activeFigure(request, id, scales));
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

// One port can be singled out where several lie above one another.
const showPorts = (request) => {
  const ports = [...new Set(request.queries.flatMap((query) => query.crops.flatMap((crop) => crop.p ?? [])))].sort((a, b) => a - b);
  if (!ports.includes(chosenPort)) chosenPort = null;
  $('ports').hidden = ports.length < 2;
  $('port').replaceChildren(html('option', { value: '' }, 'all ports'), ...ports.map((port) =>
    html('option', { value: port, selected: port === chosenPort ? '' : null }, portName(port))));
};

const drawSensors = (request, node) => {
  const total = node.clientWidth;
  const columns = Math.max(1, Math.min(sensorIds.length, Math.floor((total + 10) / 260)));
  const card = (total - 10 * (columns - 1)) / columns;
  const isWide = card > 600;
  node.classList.toggle('beside', isWide);
  const room = isWide ? (card - 30 - 24) / 2 : card - 30;
  const frames = framesOf(request);
  const scales = { frames, active: scaleFor(frames.active, room - 6), output: scaleFor(frames.output, room - 6), room };
  node.replaceChildren(...sensorIds.map((id) => sensorCard(request, id, scales)));
};

const showSensors = (request) => {
  showPorts(request);
  pictures.clear();
  drawSensors(request, $('sensors'));
};
