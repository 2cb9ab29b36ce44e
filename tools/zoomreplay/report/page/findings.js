// What is worth a look: buttons that lead to the requests.

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
