// Measures an hour of a live replay, as fast as it goes: node live-hour.mjs ZOOMREPLAY
// Prints the memory of the tool and of the page, and how long a page takes that comes late.
import { readFileSync } from 'node:fs';
import { once } from 'node:events';

import { Chromium } from '../tests/report/Chromium.mjs';
import { pause } from '../tests/report/Patience.mjs';
import { Live, SETUP, requestLines } from '../tests/live/Live.mjs';

const REQUESTS = 30 * 3600;
const live = await Live.start(process.argv[2]);
const browser = await Chromium.start();
const MB = (bytes) => `${(bytes / 1e6).toFixed(0)} MB`;
const untilAll = () => browser.evaluate(`(async () => {
  const about = () => document.getElementById('about').textContent;
  while (!about().includes('${REQUESTS} requests')) await new Promise((resolve) => setTimeout(resolve, 50));
})()`);

try {
  await browser.open(live.address);
  live.write(...SETUP);
  for (let no = 1; no <= REQUESTS; ++no) {
    live.write(...requestLines(no, Number((2 + Math.sin(no / 200)).toFixed(3))));
    if (live.process.stdin.writableNeedDrain) await once(live.process.stdin, 'drain');
    if (no % 300 === 0) await pause(20);  // so that small blocks are told, too
  }
  await untilAll();
  const resident = Number(/VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${live.process.pid}/status`, 'utf8'))[1]) * 1024;
  console.log(`tool after ${REQUESTS} requests   ${MB(resident)}`);
  await browser.send('HeapProfiler.collectGarbage');
  const { usedSize, backingStorageSize = 0 } = await browser.send('Runtime.getHeapUsage');
  console.log(`heap of the page              ${MB(usedSize + backingStorageSize)}`);
  const start = Date.now();
  await browser.reload();
  await untilAll();
  console.log(`until a late page shows all   ${((Date.now() - start) / 1000).toFixed(1)} s`);
  if (browser.errors.length > 0) throw new Error(browser.errors.join('\n'));
} finally {
  await browser.stop();
  await live.interrupt();
}
