// The chosen request in words and numbers.

const showStages = (request) => {
  const entries = request.queries.map((query) => html('li', { 'data-state': query.state },
    symbol(query.state, query.cached), html('span', { class: 'stage' }, query.stage),
    html('span', {}, TEXTS[query.state] + (query.cached ? ', from the cache' : '') +
      (query.manual ? ', manual' : '') +
      (query.state === 'refused' && query.invalid ? ', override off' : ''),
    query.trouble ? html('div', { class: 'trouble' }, query.trouble) : null),
    html('span', { class: 'where' },
      (query.override === undefined ? '' : `${ratio(query.asked)} \u2192 ${ratio(query.override)} \u00b7 `) +
      `line ${query.line}`)));
  $('stages').replaceChildren(...entries);
  if (entries.length === 0) $('stages').append(html('li', {}, 'No crop was asked for.'));
};

const beam = (part, name) => {
  const length = Math.max(0, Math.min(1, part)) * 100;
  return html('td', { class: 'beam' }, svg('svg', { viewBox: '0 0 100 10', preserveAspectRatio: 'none', 'aria-hidden': 'true' },
    rect([0, 0, 100, 10], { fill: 'var(--soft)' }),
    rect([50 - length / 2, 1, length, 8], { style: `fill: var(${name})` })));
};

const aside = ([right, down]) => `${signed(right)}, ${signed(down)}`;

const showAngles = (request) => {
  const leads = leadCrops(request);
  const rows = sensorIds.filter((id) => leads.has(id));
  const hasAngles = hasColumn('angle');
  const head = hasAngles ? ['Sensor', 'Crop', 'Across', 'Down', 'Right, down', 'To master'] : ['Sensor', 'Crop', 'Width', ''];
  $('angles').replaceChildren(html('thead', {}, html('tr', {}, head.map((name, i) =>
    html('th', { scope: 'col', class: i > 1 ? 'n' : '' }, name)))),
  html('tbody', {}, rows.map((id) => {
    const { stage, crop } = leads.get(id);
    const what = crop.p ? `${stage} ${portName(crop.p[0])}` : stage;
    const begin = [html('td', {}, `${id}${masterOf(request) === id ? ' master' : ''}`), html('td', {}, what)];
    return html('tr', { 'data-sensor': id }, begin, hasAngles ? [
      html('td', { class: 'n' }, html('b', {}, degrees(crop.deg?.[0]))),
      html('td', { class: 'n' }, degrees(crop.deg?.[1])),
      html('td', { class: 'n' }, crop.centre ? aside(crop.centre) : '\u2013'),
      html('td', { class: 'n' }, html('b', {}, masterOf(request) === id ? '\u2013' : signed(crop.diff?.[0]))),
    ] : [html('td', { class: 'n' }, html('b', {}, percent(crop.share))), beam(crop.share ?? 0, colourOfSensor(id))]);
  })));
  $('angles-title').textContent = hasAngles ? 'What the crops see' : 'Part of the sensor that the crops leave';
  $('angles-note').textContent = rows.length === 0 ? 'No crop was overridden in this request.' :
    hasAngles ? '' : 'No angles are configured: a configSensorInfo line in the scenario gives them, and the degrees appear.';
};

const phoneWords = ({ zoom, lens, region }) => 'the phone itself ' + [
  lens === undefined ? '' : `used camera ${lens}`,
  zoom === undefined ? '' : `zoomed to ${ratio(zoom)}`,
  region === undefined ? '' : `cropped to ${rectText(region)}`,
].filter(Boolean).join(', ');

const showLines = (request) => {
  const parts = [];
  if (request.deposit) parts.push(`deposited on line ${request.deposit}${request.repeating ? ' (repeating)' : ''}`);
  for (const [line, op] of request.lines) {
    if (op === 'storeOverrideSetting') parts.push(`override stored on ${line}`);
  }
  if (request.phone) parts.push(phoneWords(request.phone));
  parts.push(request.done ? `done on ${request.done}` : hasMark(request.index, 'undone') ? 'never reported done' : 'not yet reported done');
  const sentence = parts.join(', ') + '.';
  $('lines').textContent = `${data.scenario}: ${sentence}`;
};

// [ heading, value of a crop, whether it is a number ]
const COLUMNS = [
  ['Stage', (crop, query) => query.stage],
  ['Sensor', (crop) => crop.s, true],
  ['Port', (crop) => crop.p ? crop.p.map(hex).join(' ') : crop.extra ? 'extra' : 'crop'],
  ['Domain', (crop) => crop.tg ? 'TG' : 'active array'],
  ...['x', 'y', 'w', 'h'].map((name, i) => [name, (crop) => crop.c[i], true]),
  ['Before correction', (crop) => crop.asked ? rectText(crop.asked) : ''],
  ['Minimum', (crop) => crop.min ? size(crop.min) : ''],
];
const ANGLE_COLUMNS = [
  ['Across', (crop) => plainAngle(crop.deg?.[0]), true],
  ['Down', (crop) => plainAngle(crop.deg?.[1]), true],
  ['Pointing right', (crop) => plainAngle(crop.centre?.[0]), true],
  ['Pointing down', (crop) => plainAngle(crop.centre?.[1]), true],
];
const DIFFERENCE_COLUMNS = [
  ['Across to master', (crop) => plainAngle(crop.diff?.[0]), true],
  ['Down to master', (crop) => plainAngle(crop.diff?.[1]), true],
];
const DELTA_COLUMN = ['Against expected', (crop, query, index) => deltaText(crop.c, expectedCrop(index, query, crop))];
const plainAngle = (value) => value === undefined || value === null ? '' : value.toFixed(2);
const shownColumns = () => [...COLUMNS, ...(hasColumn('angle') ? ANGLE_COLUMNS : []),
  ...(hasColumn('difference') ? DIFFERENCE_COLUMNS : []), ...(differencesOf.size > 0 ? [DELTA_COLUMN] : [])];

const queryTitle = (query) => `${query.stage} asked by sensor ${query.sensor} on line ${query.line}: ` +
  `${query.asked}` + (query.override === undefined ? '' : ` \u2192 ${query.override}`) +
  `, ${TEXTS[query.state]}${query.cached ? ' (from the cache)' : ''}` +
  (query.from === undefined || query.from < 0 ? '' : `, override of request ${query.from}`);

const showNumbers = (request) => {
  const shown = shownColumns();
  const rows = request.queries.flatMap((query) => [
    html('tr', { class: 'query', 'data-line': query.line, 'data-asked': query.asked, 'data-override': query.override },
      html('th', { colspan: shown.length, scope: 'rowgroup' }, queryTitle(query))),
    ...query.crops.map((crop) => html('tr', { 'data-line': query.line },
      shown.map(([, value, isNumber]) => html('td', { class: isNumber ? 'n' : '' }, String(value(crop, query, request.index)))))),
  ]);
  $('numbers').replaceChildren(
    html('thead', {}, html('tr', {}, shown.map(([name, , isNumber]) =>
      html('th', { scope: 'col', class: isNumber ? 'n' : '' }, name)))),
    html('tbody', {}, rows));
};

const tableText = (request) => [['Request', ...shownColumns().map(([name]) => name)], ...request.queries.flatMap((query) =>
  query.crops.map((crop) => [request.no, ...shownColumns().map(([, value]) => value(crop, query, request.index))]))]
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
