// Holds the coarser resolutions of curves and lanes to what they stand for: node resolutions.mjs
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';

const SOURCE = new URL('../../tools/zoomreplay/report/page/resolutions.js', import.meta.url);
const { CurveSteps, BitSteps } = new Function(`${readFileSync(SOURCE, 'utf8')}; return { CurveSteps, BitSteps };`)();

let seed = 43;
const random = (below) => {
  seed = (seed * 48271) % 2147483647;
  return seed % below;
};
const LENGTHS = [1, 16, 17, 64, 65, 1000, 1037];
const value = () => random(5) === 0 ? Number.NaN : random(2000) / 10 - 100;
const range = (values) => {
  const known = [...values].filter((each) => !Number.isNaN(each));
  return known.length === 0 ? [Number.NaN, Number.NaN] : [Math.min(...known), Math.max(...known)];
};

test('curves keep the lowest and highest value of each step', () => {
  for (const length of LENGTHS) {
    const values = Float64Array.from({ length }, value);
    const curve = new CurveSteps(values);
    for (let change = 0; change < 20; ++change) {
      for (const { size, low, high } of curve.levels) {
        low.forEach((_, i) => assert.deepEqual([low[i], high[i]], range(values.slice(i * size, (i + 1) * size)), `${length}, step ${i} of ${size}`));
      }
      const known = range(values);
      assert.deepEqual(curve.range(), Number.isNaN(known[0]) ? null : known);
      const changed = random(length);
      values[changed] = value();
      curve.update(changed);
    }
    assert.deepEqual(curve.levels.map(({ size, low }) => [size, low.length]),
      [1, 4, 16, 64, 256].filter((size) => size === 1 || Math.ceil(length / size * 4) > 16).map((size) => [size, Math.ceil(length / size)]));
  }
  const long = new CurveSteps(new Float64Array(100000));
  assert.deepEqual([0.01, 1.9, 2, 7.9, 8, 33, 400, 1e6].map((perPixel) => long.levels[long.level(perPixel)].size),
    [1, 1, 4, 4, 16, 64, 256, 16384]);
});

test('a pixel of a lane has the bits of its requests, and an edge once', () => {
  const EDGE = 1 << 31 >>> 0;
  for (const length of LENGTHS) {
    const bits = Uint32Array.from({ length }, () => (random(7) === 0 ? 1 << random(4) : 0) + (random(9) === 0 ? EDGE : 0));
    const lane = new BitSteps(bits, EDGE);
    for (let change = 0; change < 20; ++change) {
      const width = 1 + random(200);
      const from = random(length) * 0.77;
      const perPixel = (random(400) + 1) * length / 200 / width;
      const step = lane.levels.map(({ size }) => size).filter((size) => size === 1 || 4 * size <= perPixel).at(-1);
      const expected = Array.from({ length: width }, (_, p) => {
        const [begin, end] = [from + p * perPixel, from + (p + 1) * perPixel];
        if (perPixel < 1) {
          const own = Math.floor(begin);
          const isFirst = Math.floor(from + (p - 1) * perPixel) !== own;
          return ((bits[own] ?? 0) & (isFirst ? -1 : ~EDGE)) >>> 0;
        }
        const first = Math.floor(begin / step) * step;
        return bits.slice(first, Math.max(first + step, Math.ceil(end / step) * step)).reduce((all, each) => (all | each) >>> 0, 0);
      });
      assert.deepEqual([...lane.pixels(from, perPixel, width)], expected, `${length} requests, ${perPixel} a pixel from ${from}`);
      const changed = random(length);
      bits[changed] = 1 << random(4);
      lane.update(changed, bits[changed]);
    }
  }
});
