// What a page has to tell of each request, worked out from the scenario and the result lines, and from nothing
// that the report's own code has made of them.

const MINUS = '\u2212';
const CROP_QUERIES = { getP1CropSetting: 'P1', getP2CropSetting: 'P2', get3ACropSetting: '3A' };
const PORT_NAMES = { '0x7001': 'R1', '0x7002': 'R2', '0x7003': 'R3' };
const NOT_STREAMING = 4294967295;

export const rect = ([x, y, w, h]) => `(${x}, ${y})/${w}\u00d7${h}`;
const same = (a, b) => JSON.stringify(a) === JSON.stringify(b);

// Degrees off the axis of an array that sees so many: both edges and the pixel in the middle.
const span = (degrees, place, length, whole) => {
  const at = (x) => Math.atan(Math.tan(degrees * Math.PI / 360) * (2 * x / whole - 1)) * 180 / Math.PI;
  return { extent: at(place + length) - at(place), centre: at(place + length / 2) };
};

/** The part of the active array that a crop in a sensor mode's pixels is. */
export const areaOf = ({ size, window }, [x, y, w, h]) => {
  const [kx, ky] = [window[2] / size[0], window[3] / size[1]];
  return [window[0] + x * kx, window[1] + y * ky, w * kx, h * ky];
};

class Camera {
  modes = {};
  infos = {};
  ids = [];

  copy() {
    return Object.assign(new Camera(), structuredClone({ ...this }));
  }

  /** { across, down, right, down... } of a crop; undefined where a sensor's angles are not known. */
  sight(sensor, mode, crop, isTg) {
    const info = this.infos[sensor];
    if (!info) return undefined;
    const area = isTg ? areaOf(this.modes[sensor][mode], crop) : crop;
    const [left, top, width, height] = info.activeArray;
    const across = span(info.degreeH, area[0] - left, area[2], width);
    const down = span(info.degreeV, area[1] - top, area[3], height);
    return { across: across.extent, down: down.extent, right: across.centre, below: down.centre };
  }
}

// Crops of an answer: ports of one sensor that share a crop and a minimum stand together.
const cropsOf = ({ need, result }, mode, request) => {
  const minimum = (sensor, port) => {
    const stream = `${port}${Number(sensor).toString(16).padStart(2, '0')}00000000`;
    return mode === 'InstantRequest' ? request.deposit.streamSizes?.[stream] : undefined;
  };
  const crops = [];
  if (!result) return crops;
  for (const [sensor, ports] of Object.entries(need.tgCrops ?? {})) {
    for (const [port, crop] of Object.entries(ports)) {
      const min = minimum(sensor, port);
      const alike = crops.find((other) => other.sensor === Number(sensor) && same(other.crop, crop) && same(other.min, min));
      if (alike) alike.ports.push(port);
      else crops.push({ sensor: Number(sensor), ports: [port], crop, min, isTg: true, kind: 'port' });
    }
  }
  for (const [kind, table] of [['crop', need.streamCrops], ['extra', need.extraTgCrops]]) {
    for (const [sensor, crop] of Object.entries(table ?? {})) {
      crops.push({ sensor: Number(sensor), ports: [], crop, isTg: kind === 'extra' || mode !== 'ExternalAPI', kind });
    }
  }
  return crops;
};

const addDifferences = (crops, master) => {
  for (const crop of crops) {
    const rivals = crops.filter((other) => other.sensor === master && other.kind === crop.kind);
    const beside = rivals.find(({ ports }) => ports.some((port) => crop.ports.includes(port))) ?? rivals[0];
    if (!crop.sight || !beside?.sight) continue;
    crop.difference = { across: crop.sight.across - beside.sight.across, down: crop.sight.down - beside.sight.down };
  }
};

/**
 * The requests in the order of their deposits: { no, name, mode, camera, deposit, done, phone, queries }; a query is { line, stage, input, result, state, kept, crops }.
 * @param kept the line of the answer that each line gives again
 */
export const requestsOf = (scenario, results, kept) => {
  const answers = new Map(results.map((result) => [result.line, result]));
  const requests = [];
  let camera = new Camera();
  let mode = 'None';
  let open = new Map();
  let deposited = null;
  const begin = (no) => {
    const times = requests.filter((request) => request.no === no).length + 1;
    const request = { no, name: times > 1 ? `${no}:${times}` : String(no), mode, camera, queries: [] };
    requests.push(request);
    open.set(no, request);
    return request;
  };

  scenario.forEach((text, i) => {
    if (!text.startsWith('{')) return;
    const line = i + 1;
    const input = JSON.parse(text);
    const answer = answers.get(line);
    let request = null;
    if (input.op === 'sensor') {
      camera = camera.copy();
      camera.modes[input.id] = input.modes;
    } else if (input.op === 'initialize') {
      [mode, open, deposited] = [input.mode, new Map(), null];
    } else if (input.op === 'configSensorInfo') {
      camera = Object.assign(camera.copy(), { infos: input.sensorInfos, ids: input.sensorIds });
    } else if (input.op === 'setRunTimeCropNeedData') {
      const known = open.get(input.requestNo);
      request = known && !known.done ? known : begin(input.requestNo);
      if (input.notice !== 'repeating') deposited = input;
      request.deposit = deposited;
    } else if (input.op === 'onRequestDone') {
      request = open.get(input.requestNo);
      request.done = line;
    } else if (input.op === 'observed') {
      open.get(input.requestNo).phone = input;
    } else if (CROP_QUERIES[input.op]) {
      request = open.get(input.requestNo);
      request.camera = camera;
      const state = answer.fatal ? 'fatal' : answer.exception ? 'exception' : answer.result ? 'overridden' : 'refused';
      const query = { line, stage: CROP_QUERIES[input.op], input, answer, state, kept: kept[line] };
      const first = request.queries.find((earlier) => earlier.line === query.kept);
      query.crops = first?.crops ?? (state === 'overridden' ? cropsOf(answer, mode, request) : []);
      if (!first) {
        for (const crop of query.crops) {
          crop.mode = request.deposit.sensorModes[crop.sensor];
          crop.sight = camera.sight(crop.sensor, crop.mode, crop.crop, crop.isTg);
        }
        addDifferences(query.crops, camera.ids[0]);
      }
      request.queries.push(query);
    }
  });
  return requests;
};

/** The mode that a sensor streams in; undefined where it does not. */
export const modeOf = (request, sensor) => {
  const mode = request.deposit?.sensorModes?.[sensor];
  return mode === undefined || mode === -1 || mode === NOT_STREAMING ? undefined : mode;
};

const lastOverride = (request, stage) =>
  request.queries.filter((query) => query.stage === stage && query.state === 'overridden').at(-1);

/** The crop that stands for a sensor, with its stage: P2's, or else that of its first P1 port. */
export const leadOf = (request, sensor) => ['P2', 'P1'].map((stage) => ({ stage,
  crop: lastOverride(request, stage)?.crops.find((crop) => crop.sensor === sensor && crop.kind !== 'extra') }))
  .find(({ crop }) => crop);
export const shownCrops = (request, stage, sensor) =>
  (lastOverride(request, stage)?.crops ?? []).filter(({ sensor: own, crop }) => own === sensor && crop[2] > 0 && crop[3] > 0);

export const askedOf = ({ queries }) => queries[0]?.input.zoomRatio;
export const overrideOf = ({ queries }) => {
  const answered = queries.filter(({ answer }) => answer.need);
  return (answered.filter(({ state }) => state === 'overridden').at(-1) ?? answered[0])?.answer.need.zoomRatio;
};

export const nameOfPorts = ({ kind, ports }) =>
  kind === 'port' ? ports.map((port) => PORT_NAMES[port] ?? port).join(' ') : kind === 'extra' ? 'P2 extra' : 'P2';

/** A number as the page writes it; undefined for one that it says it does not know. */
export const numberIn = (text) => /\d/.test(text) ? Number(text.replace(MINUS, '-').replace(/[^-\d.e]/g, '')) : undefined;
export const isNear = (text, value, isSigned = false) => value === undefined ? numberIn(text) === undefined :
  Math.abs(numberIn(text) - value) < 0.0051 && (!isSigned || /^[+\u2212\u00b1]/.test(text));

/** By the line of a query: its reason, and the steps of each crop, as `zoomreplay why` prints them. */
export const explanationsIn = (text) => {
  const queries = new Map();
  let steps = null;
  let query = null;
  for (const line of text.split('\n')) {
    const begin = /^Request \d+, P\d of line (\d+) /.exec(line);
    const crop = /^ {2}sensor (\d+), (?:port (0x\w+)|(crop|second crop)): (.+)$/.exec(line);
    const step = /^ {4}(\(\S+ \S+) +(active|TG) +(.+)$/.exec(line);
    if (begin) queries.set(Number(begin[1]), query = { crops: [] });
    else if (crop) query.crops.push({ sensor: Number(crop[1]), port: crop[2], kind: crop[2] ? 'port' : crop[3], steps: steps = [] });
    else if (step) steps.push({ rect: step[1].replace(/(\d)x/, '$1\u00d7'), isTg: step[2] === 'TG', words: step[3] });
    else if (/^ {44}\S/.test(line)) steps.at(-1).words += ` ${line.trim()}`;
    else if (/^ {2}\S/.test(line)) query.reason = [query.reason, line.trim()].filter(Boolean).join(' ');
  }
  return queries;
};
