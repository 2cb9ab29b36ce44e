// What is known of every request from the start, a typed array for each thing.
//
// data      { scenario, total, shown, logged, compared, requestsPerBlock, modes: names, rigs, fatal?, overview,
//             requests, differences, jumps: [{ index, sensor, words }...], allJumps }
// rig       { master?, sensors: { id: { array?, unconfigured?, degrees?, modes: { mode: { size?, readout? } } } } }
// overview  { no, marks, mode, asked?, asker?, override?, phone?: { zoom?, lens? }, stages: { P1, P2, 3A: state },
//             sensors: { id: { mode, corrected, angle?, right?, down?, share?, difference? } } }

const data = JSON.parse(document.getElementById('data').textContent);
let count = data.shown;
let capacity = count;  // of the columns

const STATES = ['none', 'overridden', 'refused', 'exception', 'fatal'];
const CACHED = 8;
const NO_VALUE = Number.NaN;

const columns = new Map();
const columnOf = (path) => {
  if (!columns.has(path)) columns.set(path, new Float64Array(capacity).fill(NO_VALUE));
  return columns.get(path);
};
/** The value of a column for a request; undefined where there is none. */
const at = (path, index) => {
  const value = columns.get(path)?.[index];
  return Number.isNaN(value) ? undefined : value;
};

const pathsOf = (words) => {
  const paths = [];
  const visit = (value, path) => {
    if (typeof value === 'number') paths[value] = path;
    else if (typeof value === 'string' && value[0] === '$') paths[value.slice(1)] = null;
    else if (typeof value === 'object' && value) for (const key of Object.keys(value)) visit(value[key], path ? `${path}.${key}` : key);
  };
  visit(JSON.parse(words), '');
  return paths;
};

const putIntoColumns = ({ groups, indices }, paths) => {
  for (const [which, group] of groups) {
    paths[which].forEach((path, i) => {
      if (path === null) return;
      const whole = columnOf(path);
      const part = group.columns[i];
      group.rows.forEach((row, k) => { whole[indices[row]] = part[k]; });
    });
  }
};

const unpackOverview = async () => {
  const table = new Table(data.overview);
  const paths = data.overview.words.map(pathsOf);
  for (let number = 0; number < table.blocks.length; ++number) {
    putIntoColumns(await table.block(number), paths);
  }
  data.overview.blocks = [];
};

const sensorIds = [];
const names = new Map();  // of requests whose number came before: "17:2"
const numbers = new Map();  // the requests of each name, where numbers come again
const timesOf = new Map();  // how often each number has come
let rising = 1;  // so many requests have rising numbers

/** Requests that came since the last time count as well. */
const knowNames = () => {
  const no = columnOf('no');
  while (rising < count && no[rising] > no[rising - 1]) ++rising;
  if (rising >= count) return;
  for (let i = numbers.size; i < count; ++i) {
    const times = (timesOf.get(no[i]) ?? 0) + 1;
    timesOf.set(no[i], times);
    if (times > 1) names.set(i, `${no[i]}:${times}`);
    numbers.set(nameOf(i), i);
  }
};
const nameOf = (index) => names.get(index) ?? String(at('no', index));
/** The request of a name, -1 where there is none. */
const indexOf = (name) => {
  if (numbers.size > 0) return numbers.get(name) ?? -1;
  const wanted = Number(name);
  const no = columnOf('no');
  let low = 0;
  let high = count;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (no[middle] < wanted) low = middle + 1;
    else high = middle;
  }
  return no[low] === wanted ? low : -1;
};

const knowSensors = () => {
  const ids = new Set(data.rigs.flatMap((rig) => Object.keys(rig.sensors).map(Number)));
  for (const path of columns.keys()) {
    const id = /^sensors\.(\d+)\./.exec(path)?.[1];
    if (id !== undefined) ids.add(Number(id));
  }
  sensorIds.splice(0, sensorIds.length, ...[...ids].sort((a, b) => a - b));
};

const askedStages = () => ['P1', 'P2', '3A'].filter((stage) =>
  columnOf(`stages.${stage}`).some((state) => state > 0));
const hasColumn = (name) => sensorIds.some((id) => columns.has(`sensors.${id}.${name}`));
const rigOf = (request) => data.rigs[request.rig] ?? { sensors: {} };
