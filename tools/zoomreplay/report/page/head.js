// The head of the page, and its timeline in words.

const showHead = () => {
  const name = data.scenario.split('/').at(-1);
  document.title = `${name} \u2013 zoom report`;
  $('title').textContent = name;
  const modes = [...new Set(columnOf('mode'))].filter((mode) => mode >= 0).map(modeName).join(', ');
  const total = `${data.total} ${data.total === 1 ? 'request' : 'requests'}`;
  const shown = count === data.total ? total : `${count} of ${total}`;
  const isAsExpected = data.compared && differencesOf.size + strayDifferences.length === 0;
  $('about').textContent = [modes, shown, `${requestsWith('overridden').length} overridden`,
    isAsExpected && 'as expected'].filter(Boolean).join(' \u00b7 ');
  if (data.fatal) {
    $('fatal').hidden = false;
    $('fatal').textContent = `The library stopped the process on line ${data.fatal.line}, ${data.fatal.op}: ${data.fatal.text}`;
  }
};

// What the timeline shows, in words.
const describeTimeline = () => {
  const range = (name, path, write) => {
    const known = columns.has(path) ? steps(path).range() : null;
    return known && `${name} ${write(known[0])} to ${write(known[1])}`;
  };
  const overridden = (stage) => columnOf(`stages.${stage}`).filter((state) => STATES[state % CACHED] === 'overridden').length;
  $('timeline-text').textContent = [
    range('Asked ratio', 'asked', ratio),
    range('override ratio', 'override', ratio),
    ...stages.map((stage) => `${stage} overridden in ${overridden(stage)} of ${count} requests`),
    ...sensorIds.map((id) => range(`sensor ${id} to master`, `sensors.${id}.difference`, signed)),
  ].filter(Boolean).join('; ') + '.';
};
