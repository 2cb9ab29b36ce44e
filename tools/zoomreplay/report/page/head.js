// The head of the page, and its timeline in words.

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
