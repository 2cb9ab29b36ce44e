// Opens a trace in speedscope, a viewer that has its own reader, and looks at each track.
//
//     node viewer.mjs <folder with speedscope's index.html> <trace>
import { readFileSync, writeFileSync } from 'node:fs';
import { Chromium } from '../report/Chromium.mjs';

const [, , folder, trace] = process.argv;
const profile = `${folder}/profile.js`;
const content = readFileSync(trace).toString('base64');
writeFileSync(profile, `speedscope.loadFileFromBase64('trace.json', ${JSON.stringify(content)})`);

const browser = await Chromium.start();

async function press(key) {
  for (const type of ['keyDown', 'keyUp']) await browser.send('Input.dispatchKeyEvent', { type, key, text: key });
}

/** The text of the page, once it has what is wanted. */
async function textWith(pattern) {
  for (let tries = 0; tries < 100; ++tries) {
    const text = await browser.evaluate('document.body.innerText');
    if (pattern.test(text)) return text;
    await new Promise((resolve) => setTimeout(resolve, 100));
  }
  throw new Error(`the viewer does not show ${pattern}`);
}

try {
  await browser.open(`file://${folder}/index.html#localProfilePath=${profile}`);
  const first = await textWith(/zoom override .*\(1\/\d+\)/);
  const tracks = Number(/\(1\/(\d+)\)/.exec(first)[1]);
  const names = [];
  await press('3'); // what a track consists of, with times
  for (let track = 1; track <= tracks; ++track) {
    const text = await textWith(new RegExp(`, .* \\(${track}/${tracks}\\)[^]*Symbol Name\\s+\\S`));
    const name = new RegExp(`, (.*) \\(tid.*${track}/${tracks}`).exec(text)[1];
    if (!/[1-9][\d.]*[mnµ]?s \(/.test(text)) throw new Error(`${name}: is empty`);
    names.push(name);
    await press('n');
  }
  for (const name of ['P1 queries', 'P2 queries', 'sensor 0']) {
    if (!names.includes(name)) throw new Error(`no track "${name}" among ${names.join(', ')}`);
  }
  console.log(`${tracks} tracks: ${names.join(', ')}`);
} finally {
  await browser.stop();
}
