// All that is known of one request, unpacked when somebody looks at it.
//
// request   { no, rig, mode, modes: { sensor: mode or null }, deposit?, done?, repeating?,
//             phone?: { zoom?, lens?, region? }, queries, lines: [[line, op, [sink, level, text]...]...] }
// query     { stage, line, asked, sensor, state, manual?, cached?, override?, valid? or invalid?, from?,
//             kept?: line, reason?: saying, trouble?, crops }
// crop      { s: sensor, c: rectangle, p?: ports, extra?, tg?, asked?, min?, area?, share?, deg?,
//             centre?, diff?, steps?: [{ say: saying, tg?, rect }...], unexplained? }
// saying    [words, numbers...]

const requestTable = new Table(data.requests);
const KEPT_BLOCKS = 8;
const keptBlocks = new Map();
const EMPTY_REQUEST = { rig: 0, mode: 0, queries: [], lines: [] };

const keptBlock = (number) => {
  const block = keptBlocks.get(number) ?? requestTable.block(number);
  keptBlocks.delete(number);
  keptBlocks.set(number, block);  // the latest stands last
  if (keptBlocks.size > KEPT_BLOCKS) keptBlocks.delete(keptBlocks.keys().next().value);
  return block;
};

/** Requests stand in the order in which they ended, near the place of their index, unless it is known. */
const findRequest = async (index) => {
  const blocks = data.requests.blocks.length;
  const start = at('block', index) ?? Math.min(Math.floor(index / data.requestsPerBlock), blocks - 1);
  for (let distance = 0; distance < blocks; ++distance) {
    for (const number of distance === 0 ? [start] : [start - distance, start + distance]) {
      if (number < 0 || number >= blocks) continue;
      const block = await keptBlock(number);
      const row = block.indices.indexOf(index);
      if (row >= 0) return requestTable.record(block, row);
    }
  }
  return EMPTY_REQUEST;
};

let detailsLast = null;
const detailsOf = (index) => {
  if (detailsLast?.index !== index) detailsLast = { index, request: findRequest(index) };
  return detailsLast.request;
};

// A stage stands where its last answer left it, unless something broke.
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
const masterOf = (request) => rigOf(request).master;
