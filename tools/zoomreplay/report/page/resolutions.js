// Curves and lanes in several resolutions, so that drawing takes as long for many requests as for few.

const STEP = 4;  // requests of a step; steps of the next one

/** Lowest and highest value of each step. */
class CurveSteps {
  constructor(values) {
    this.levels = [{ size: 1, low: values, high: values }];
    while (this.levels.at(-1).low.length > STEP * STEP) this.levels.push(this.coarser(this.levels.at(-1)));
  }

  coarser({ size, low, high }) {
    const length = Math.ceil(low.length / STEP);
    const next = { size: size * STEP, low: new Float64Array(length), high: new Float64Array(length) };
    for (let i = 0; i < length; ++i) this.setStep({ low, high }, next, i);
    return next;
  }

  setStep({ low, high }, next, i) {
    let least = Number.NaN;
    let most = Number.NaN;
    for (let k = i * STEP; k < Math.min((i + 1) * STEP, low.length); ++k) {
      if (!(least <= low[k])) least = Number.isNaN(low[k]) ? least : low[k];
      if (!(most >= high[k])) most = Number.isNaN(high[k]) ? most : high[k];
    }
    next.low[i] = least;
    next.high[i] = most;
  }

  /** The value of a request has changed. */
  update(request) {
    let i = request;
    for (let level = 1; level < this.levels.length; ++level) {
      i = Math.floor(i / STEP);
      this.setStep(this.levels[level - 1], this.levels[level], i);
    }
  }

  /** The coarsest level whose steps are at most two pixels wide. */
  level(requestsPerPixel) {
    return Math.max(0, this.levels.findLastIndex(({ size }) => size <= 2 * requestsPerPixel));
  }

  /** The range of all values; empty where there are none. */
  range() {
    const { low, high } = this.levels.at(-1);
    const known = low.filter((value) => !Number.isNaN(value));
    return known.length === 0 ? null : [Math.min(...known), Math.max(...high.filter((value) => !Number.isNaN(value)))];
  }
}

/** Which bits are set anywhere in a step. Those of edges are about the beginning of a request. */
class BitSteps {
  constructor(bits, edges) {
    this.edges = edges;
    this.levels = [{ size: 1, bits }];
    while (this.levels.at(-1).bits.length > STEP * STEP) {
      const { size, bits: fine } = this.levels.at(-1);
      const next = new Uint32Array(Math.ceil(fine.length / STEP));
      for (let i = 0; i < fine.length; ++i) next[Math.floor(i / STEP)] |= fine[i];
      this.levels.push({ size: size * STEP, bits: next });
    }
  }

  /** The bits of a request are others. */
  update(request, bits) {
    this.levels[0].bits[request] = bits;
    let i = request;
    for (let level = 1; level < this.levels.length; ++level) {
      i = Math.floor(i / STEP);
      this.levels[level].bits[i] = this.levels[level - 1].bits.subarray(i * STEP, (i + 1) * STEP).reduce((all, bit) => all | bit, 0);
    }
  }

  /** The bits of each pixel, whose requests are from + p * requestsPerPixel to the next one's. */
  pixels(from, requestsPerPixel, width) {
    const { size, bits } = this.levels.findLast((level) => level.size * STEP <= requestsPerPixel) ?? this.levels[0];
    const pixels = new Uint32Array(width);
    const firstOf = (p) => Math.floor((from + p * requestsPerPixel) / size);
    for (let p = 0; p < width; ++p) {
      const first = Math.max(0, firstOf(p));
      const last = Math.min(bits.length, Math.max(first + 1, Math.ceil((from + (p + 1) * requestsPerPixel) / size)));
      const end = requestsPerPixel < 1 ? Math.min(first + 1, bits.length) : last;
      if (from + (p + 1) * requestsPerPixel <= 0) continue;
      for (let i = first; i < end; ++i) pixels[p] |= bits[i];
      if (requestsPerPixel < 1 && firstOf(p - 1) === first) pixels[p] &= ~this.edges;
    }
    return pixels;
  }
}
