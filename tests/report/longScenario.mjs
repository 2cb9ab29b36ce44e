// Writes a scenario as long as a recording: node longScenario.mjs REQUESTS OTHER_REQUEST PLANTED_REQUEST
// Three sensors zoom in and out, each crop in step with the asked ratio. At PLANTED_REQUEST the crop of sensor 2
// is 6 % too narrow and 70 pixels to the right; at OTHER_REQUEST sensor 1's is 4 pixels narrower than it should be.
import { once } from 'node:events';

const [requests, other, planted] = process.argv.slice(2).map(Number);
const SENSORS = [0, 1, 2];
const DEGREES = [80, 120, 40];
const [WIDTH, HEIGHT] = [4032, 3024];
const streamOf = (sensor) => `0x7001${sensor.toString(16).padStart(2, '0')}00000000`;

const write = async (line) => {
  if (!process.stdout.write(JSON.stringify(line) + '\n')) await once(process.stdout, 'drain');
};
const bySensor = (value) => Object.fromEntries(SENSORS.map((sensor) => [sensor, value(sensor)]));

// The crop that shows what the ratio asks for, in the middle of the active array.
const cropOf = (sensor, ratio, request) => {
  let [w, h] = [WIDTH, HEIGHT].map((side) => Math.round(side / ratio));
  if (request === other && sensor === 1) w -= 4;
  const isPlanted = request === planted && sensor === 2;
  if (isPlanted) [w, h] = [w, h].map((side) => Math.round(side * 0.94));
  return [Math.round((WIDTH - w) / 2) + (isPlanted ? 70 : 0), Math.round((HEIGHT - h) / 2), w, h];
};

for (const id of SENSORS) await write({ op: 'sensor', id, modes: { 1: { size: [WIDTH / 2, HEIGHT / 2], window: [0, 0, WIDTH, HEIGHT] } } });
await write({ op: 'initialize', mode: 'InstantRequest' });
await write({ op: 'configSensorInfo', sensorIds: SENSORS, sensorInfos: bySensor((sensor) => ({
  degreeH: DEGREES[sensor], degreeV: DEGREES[sensor] * 0.78, activeArray: [0, 0, WIDTH, HEIGHT] })) });
const streamSizes = Object.fromEntries(SENSORS.map((sensor) => [streamOf(sensor), [320, 240]]));
const streamIdMap = bySensor(streamOf);
for (let request = 1; request <= requests; ++request) {
  const ratio = Number((2.2 + Math.sin(request / 180)).toFixed(4));
  await write({ op: 'setRunTimeCropNeedData', requestNo: request, sensorModes: bySensor(() => 1), streamSizes });
  await write({ op: 'storeOverrideSetting', metadata: { zoomRatio: Number((ratio * 0.9).toFixed(4)),
    customStreamCrops: SENSORS.flatMap((sensor) => [sensor, ...cropOf(sensor, ratio, request)]) }, streamIdMap });
  await write({ op: 'getP1CropSetting', requestNo: request, zoomRatio: ratio, sensorId: 2 });
  await write({ op: 'onRequestDone', requestNo: request });
}
