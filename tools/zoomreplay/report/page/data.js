// The data of the page, and what it says. Nothing here computes geometry: what is drawn are the rectangles
// and angles that zoomreplay found.
//
// data      { scenario, total, logged, rigs, requests, fatal? }
// rig       { master?, sensors: { id: { array?, unconfigured?, degrees?, modes: { mode: { size?, readout? } } } } }
// request   { no, rig, mode, modes: { sensor: mode or null }, deposit?, done?, repeating?,
//             queries, lines: [[line, op, [sink, level, text]...]...] }
// query     { stage, line, asked, sensor, state, manual?, cached?, override?, valid?, from?,
//             trouble?, crops? }
// crop      { s: sensor, c: rectangle, p?: ports, extra?, tg?, asked?, min?, area?, share?, deg?,
//             diff? }

const data = JSON.parse(document.getElementById('data').textContent);
const requests = data.requests;

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
