// Writes the scenario of moves.mjs: node movesScenario.mjs [now]
// Forty requests zoom in over two sensors. What is special of each is listed here; "now" adds one difference, and a line more.

export const COUNT = 40;
export const askedOf = (request) => 1 + request / 10;
export const overrideOf = (request) => Number((request === SPECIAL.refused ? 9 : askedOf(request) * 0.9).toFixed(3));
export const askerOf = (request) => request > 25 ? 2 : 0;
export const modesOf = (request) => ({ 0: request >= 10 && request <= 12 ? 2 : 1, 2: request > 15 ? 1 : -1 });
export const SPECIAL = { corrected: { 0: 8, 2: 18 }, aside: 9, cached: 6, refused: 13, exception: 33, shifted: 22, undone: [20, 30, 40], different: 7 };
export const DIFFERENT_BY = 4;

const [WIDTH, HEIGHT] = [4032, 3024];
const STREAMS = { '0x70010000000000': 0, '0x70030000000000': 0, '0x70010200000000': 2 };

const cropOf = (request, stream, isNow) => {
  const sensor = STREAMS[stream];
  const isCorrected = SPECIAL.corrected[sensor] === request || (SPECIAL.aside === request && stream === '0x70030000000000');
  const [w, h] = isCorrected ? [400, 300] : [WIDTH, HEIGHT].map((side) => Math.round(side / askedOf(request) / 2) * 2);
  const shift = sensor === 2 && request === SPECIAL.shifted ? 200 : 0;
  const isDifferent = isNow && request === SPECIAL.different && stream === '0x70010000000000';
  return [(WIDTH - w) / 2 + shift, (HEIGHT - h) / 2, w - (isDifferent ? 2 * DIFFERENT_BY : 0), h];
};

export const linesOf = (isNow) => {
  const modes = { 1: { size: [2016, 1512], window: [0, 0, WIDTH, HEIGHT] }, 2: { size: [WIDTH, HEIGHT], window: [0, 0, WIDTH, HEIGHT] } };
  const lines = [0, 2].map((id) => ({ op: 'sensor', id, modes }));
  lines.push({ op: 'initialize', mode: 'InstantRequest' }, { op: 'configSensorInfo', sensorIds: [0, 2], sensorInfos: {
    0: { degreeH: 80, degreeV: 64, activeArray: [0, 0, WIDTH, HEIGHT] }, 2: { degreeH: 40, degreeV: 31, activeArray: [0, 0, WIDTH, HEIGHT] } } });
  for (let requestNo = 1; requestNo <= COUNT; ++requestNo) {
    const streams = Object.keys(STREAMS).filter((stream) => requestNo > 15 || STREAMS[stream] === 0);
    const sized = requestNo === SPECIAL.exception ? [] : streams;
    const query = { op: 'getP1CropSetting', requestNo, zoomRatio: askedOf(requestNo), sensorId: askerOf(requestNo) };
    lines.push({ op: 'setRunTimeCropNeedData', requestNo, sensorModes: modesOf(requestNo), streamSizes: Object.fromEntries(sized.map((stream) => [stream, [320, 240]])) });
    lines.push({ op: 'storeOverrideSetting', metadata: { zoomRatio: overrideOf(requestNo),
      customStreamCrops: streams.flatMap((stream, i) => [i, ...cropOf(requestNo, stream, isNow)]) }, streamIdMap: { ...streams } });
    lines.push(query);
    if (requestNo === SPECIAL.cached) lines.push(query);
    if (!SPECIAL.undone.includes(requestNo)) lines.push({ op: 'onRequestDone', requestNo });
  }
  if (isNow) lines.push({ op: 'isPortExist', sensorId: 0, port: 1 });
  return lines;
};

if (process.argv[1]?.endsWith('movesScenario.mjs')) {
  for (const line of linesOf(process.argv[2] === 'now')) console.log(JSON.stringify(line));
}
