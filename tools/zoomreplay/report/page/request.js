// The chosen request in words and numbers.

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
