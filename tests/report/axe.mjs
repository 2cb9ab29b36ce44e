// Has axe look at reports, by day and by night, wide and narrow: node axe.mjs REPORT.html...
// Ends with 77 where axe-core is not installed; scripts/install-axe.sh does that.
import assert from 'node:assert/strict';
import { existsSync, readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';

import { Chromium } from './Chromium.mjs';

const SKIPPED = 77;
const axe = new URL('node_modules/axe-core/axe.min.js', import.meta.url);
if (!existsSync(axe)) {
  console.log('axe-core is not installed: see scripts/install-axe.sh');
  process.exit(SKIPPED);
}

const browser = await Chromium.start();
try {
  for (const report of process.argv.slice(2)) {
    await browser.open(pathToFileURL(report).href);
    await browser.evaluate(readFileSync(axe, 'utf8'));
    for (const [width, scheme] of [[1280, 'light'], [1280, 'dark'], [390, 'light']]) {
      await browser.resize(width, 900);
      await browser.send('Emulation.setEmulatedMedia', { features: [{ name: 'prefers-color-scheme', value: scheme }] });
      const violations = await browser.evaluate(`(async () => {
        while (!document.documentElement.dataset.ready) await new Promise((resolve) => setTimeout(resolve, 10));
        await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
        document.getElementById('jumps').open = true;
        document.querySelector('#findings button').click();
        while (document.getElementById('details').hidden) await new Promise((resolve) => setTimeout(resolve, 10));
        const { violations, passes } = await axe.run();
        if (passes.length < 20) throw new Error('axe looked at nothing');
        return violations.map(({ id, impact, nodes }) => [impact, id, ...nodes.slice(0, 3).map(({ html, any }) => html.slice(0, 150) + ' ' + (any[0]?.message ?? ''))]);
      })()`);
      assert.deepEqual(violations, [], `${report}, ${width} pixels wide, ${scheme}`);
    }
  }
} finally {
  await browser.stop();
}
