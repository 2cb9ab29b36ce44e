// Measures how a report's page behaves in a browser without a graphics card: node report.mjs REPORT.html
import { pathToFileURL } from 'node:url';

import { Chromium } from '../tests/report/Chromium.mjs';

const SECONDS = 3;
const browser = await Chromium.start();

const frames = () => browser.evaluate(`(() => {
  globalThis.drawn = 0;
  const count = () => { ++globalThis.drawn; requestAnimationFrame(count); };
  requestAnimationFrame(count);
})()`);

// Frames a second while the mouse moves to and fro over the timeline.
const drag = async (modifiers) => {
  const box = await browser.evaluate(`(() => {
    const { left, width, top } = document.getElementById('timeline').getBoundingClientRect();
    return { left: left + 120, width: width - 140, top };
  })()`);
  const at = (type, x, buttons) => browser.send('Input.dispatchMouseEvent',
    { type, x: box.left + x, y: box.top + 30, button: 'left', buttons, clickCount: type === 'mouseMoved' ? 0 : 1, modifiers });
  await at('mousePressed', 10, 1);
  const start = Date.now();
  const before = await browser.evaluate('globalThis.drawn');
  for (let i = 0; Date.now() - start < 1000 * SECONDS; ++i) {
    await at('mouseMoved', (0.5 + 0.45 * Math.sin(i / 25)) * box.width, 1);
  }
  const rate = (await browser.evaluate('globalThis.drawn') - before) / ((Date.now() - start) / 1000);
  await at('mouseReleased', box.width / 2, 0);
  return rate;
};

try {
  await browser.send('Emulation.setDeviceMetricsOverride', { width: 1280, height: 900, deviceScaleFactor: 1, mobile: false });
  const start = Date.now();
  await browser.open(pathToFileURL(process.argv[2]).href);
  await browser.evaluate(`(async () => {
    while (!document.documentElement.dataset.ready) await new Promise((resolve) => setTimeout(resolve, 10));
    await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
  })()`);
  console.log(`until the timeline can be used   ${((Date.now() - start) / 1000).toFixed(2)} s`);
  await frames();
  const SHIFT = 8;
  console.log(`walking, all requests in view    ${(await drag(0)).toFixed(0)} frames/s`);
  await browser.evaluate(`(() => { for (let i = 0; i < 8; ++i) document.getElementById('zoom-in').click(); })()`);
  console.log(`walking, zoomed in               ${(await drag(0)).toFixed(0)} frames/s`);
  await browser.evaluate(`(() => { for (let i = 0; i < 5; ++i) document.getElementById('zoom-out').click(); })()`);
  console.log(`moving the window                ${(await drag(SHIFT)).toFixed(0)} frames/s`);
  await browser.send('HeapProfiler.collectGarbage');
  const { usedSize, backingStorageSize = 0 } = await browser.send('Runtime.getHeapUsage');
  console.log(`heap of the page                 ${((usedSize + backingStorageSize) / 1e6).toFixed(0)} MB`);
  if (browser.errors.length > 0) throw new Error(browser.errors.join('\n'));
} finally {
  await browser.stop();
}
