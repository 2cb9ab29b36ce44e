// Prints what the page of a report is made of, unpacked, and the plain table: node data.mjs ZOOMREPLAY ARGUMENTS...
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

import { dataIn } from '../live/Told.mjs';

const WIDTH = 140;
const inLine = (value) => Array.isArray(value) ? `[${value.map(inLine).join(', ')}]` :
  value instanceof Object ? `{${Object.entries(value).map(([key, each]) => `${key}: ${inLine(each)}`).join(', ')}}` :
  Object.is(value, -0) ? '-0' : JSON.stringify(value);
const print = (value, key, indent) => {
  const text = `${indent}${key}: ${inLine(value)}`;
  if (text.length <= WIDTH || !Object.values(value).some((each) => each instanceof Object)) return console.log(text);
  console.log(`${indent}${key}:`);
  for (const [name, each] of Object.entries(value)) print(each, name, indent + '  ');
};

const [tool, ...options] = process.argv.slice(2);
const folder = mkdtempSync(join(tmpdir(), 'report-'));
const { status } = spawnSync(tool, [...options, '-o', '/dev/null', '--report', join(folder, 'r.html')], { stdio: 'inherit' });
const html = readFileSync(join(folder, 'r.html'), 'utf8');
rmSync(folder, { recursive: true });
for (const [key, value] of Object.entries(await dataIn(html))) print(value, key, '');
console.log(/<div id="plain"[^]*?<\/div>/.exec(html)?.[0] ?? '-');
process.exitCode = status;
