// Holds the server of a live replay to what it promises its readers and its user:
// node server.mjs ZOOMREPLAY FOLDER
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { randomBytes } from 'node:crypto';
import { chmodSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

import { eventually } from '../report/Patience.mjs';
import { Live, SETUP, requestLines } from './Live.mjs';

const [tool, folder] = process.argv.slice(2);
rmSync(folder, { recursive: true, force: true });
mkdirSync(folder, { recursive: true });
const textOf = (lines) => lines.map((line) => JSON.stringify(line) + '\n').join('');
const isRequests = ({ name }) => name === 'requests';
const isCount = (count) => ({ name, data }) => name === 'requests' && data.count === count;

/** The page that a replay of these lines writes. */
const reportOf = (lines) => {
  const file = join(folder, 'expected.html');
  execFileSync(tool, ['-', '-o', '/dev/null', '--report', file], { input: textOf(lines) });
  return readFileSync(file, 'utf8');
};

const tests = {
  async 'only who knows the address is answered'() {
    const live = await Live.start(tool);
    const { origin, port, pathname } = new URL(live.address);
    assert.match(pathname, /^\/[0-9a-f]{32}\/$/);
    const page = await live.get();
    assert.equal(page.status, 200);
    assert.match(page.headers['content-security-policy'], /^default-src 'none'; script-src 'nonce-/);
    assert.equal(page.headers['access-control-allow-origin'], undefined);

    const wrong = pathname.replace(/[0-9a-f]/, (digit) => digit === '0' ? '1' : '0');
    for (const path of ['/', wrong, `${wrong}events`, `${wrong}report`, '/favicon.ico', pathname.slice(0, -2) + '/', '/etc/passwd']) {
      assert.equal((await live.get(path, { address: origin })).status, 403, path);
    }
    for (const path of ['other', '../../etc/passwd', 'report.html', 'events/']) {
      assert.notEqual((await live.get(path)).status, 200, path);
    }
    for (const host of ['some.name', `some.name:${port}`, '127.0.0.1', `127.0.0.1:${Number(port) + 1}`]) {
      assert.notEqual((await live.get('', { headers: { host } })).status, 200, `Host: ${host}`);
    }
    assert.equal((await live.get('events', { headers: { origin: 'http://some.name' } })).status, 403);
    assert.equal((await live.get('', { method: 'POST' })).status, 405);
    await assert.rejects(live.get('', { address: `http://127.0.0.2:${port}${pathname}` }), /ECONNREFUSED/);

    const other = await Live.start(tool);
    assert.notEqual(new URL(other.address).pathname, pathname, 'a token of its own');
    assert.equal(await other.interrupt(), 0);
    assert.equal(await live.interrupt(), 0);
  },

  async 'who comes late gets all, block by block'() {
    const live = await Live.start(tool);
    live.write(...SETUP, ...requestLines(1, 2));
    const early = await live.follow();
    await early.until(isCount(1));
    for (let no = 2; no <= 1200; ++no) live.write(...requestLines(no, 2));
    await early.until(isCount(1200));
    live.write(...requestLines(1201, 2));
    await early.until(isCount(1201));
    const late = await live.follow();
    await late.until(isCount(1201));
    const told = late.events.filter(isRequests).map(({ data }) => data);
    const folds = told.filter(({ isFold }) => isFold).length;
    assert.ok(folds > 0 && told.slice(0, folds).every(({ isFold }) => isFold), 'small blocks have been folded');
    for (const part of ['overview', 'requests']) {
      told.reduce((known, { [part]: { firstWords, words } }) => {
        assert.equal(firstWords, known, `each message goes on with the words of ${part}`);
        return known + words.length;
      }, 0);
    }
    assert.ok(told[0].rigs.length > 0);
    assert.equal(await live.interrupt(), 0);
    await early.until(({ name }) => name === 'bye');
  },

  async 'eight readers at most, and who has gone makes room'() {
    const live = await Live.start(tool);
    const readers = [];
    for (let i = 0; i < 8; ++i) readers.push(await live.follow());
    assert.deepEqual(readers.map(({ status }) => status), Array(8).fill(200));
    const ninth = await live.follow();
    assert.equal(ninth.status, 503);
    ninth.close();
    readers[0].close();
    await eventually(async () => {
      const next = await live.follow();
      if (next.status !== 200) next.close();
      else readers.push(next);
      return next.status === 200;
    }, 'a place for another');
    for (const reader of readers) reader.close();
    assert.equal(await live.interrupt(), 0);
  },

  async 'a slow reader is dropped, and nobody waits for it'() {
    const live = await Live.start(tool);
    const slow = await live.follow();
    const { id } = await slow.until(({ name }) => name === 'begin');
    slow.response.pause();
    const fast = await live.follow();
    live.write(...SETUP);
    const both = live.holds()[0];
    let no = 0;
    while (live.holds()[0] === both) {  // as long as it takes to fill the connection's buffers, and then to be dropped
      assert.ok(++no < 1000);
      live.write(...requestLines(no, 2), { op: 'observed', requestNo: no, activePhysicalId: randomBytes(200000).toString('base64') });
      await fast.until(isCount(no));  // nobody waits
    }
    slow.response.resume();
    await assert.rejects(slow.until(isCount(no)), /no such event/);
    const again = await live.follow({ 'Last-Event-ID': id });
    assert.equal((await again.until(({ name }) => name === 'begin')).data, true, 'it is told that it was slow');
    const third = await live.follow({ 'Last-Event-ID': id });
    assert.equal((await third.until(({ name }) => name === 'begin')).data, false);
    assert.equal(await live.interrupt(), 0);
  },

  async 'a report is saved in mid-stream and at the end'() {
    const file = join(folder, 'zoom.html');
    const live = await Live.start(tool, ['--report', file]);
    const begin = [...SETUP, ...requestLines(1, 2), ...requestLines(2, 3).slice(0, 3)];
    const reader = await live.follow();
    live.write(...begin);
    await reader.until(isCount(2));
    const early = await live.get('report');
    assert.match(early.headers['content-disposition'], /^attachment; filename="zoom.html"$/);
    assert.equal(early.text, reportOf(begin));
    const rest = [...requestLines(2, 3).slice(3), ...requestLines(3, 9)];
    live.write(...rest);
    live.endInput();
    assert.equal((await reader.until(({ name }) => name === 'end')).data.trouble, '');
    const expected = reportOf([...begin, ...rest]);
    assert.equal((await live.get('report')).text, expected);
    assert.equal(await live.interrupt(), 0);
    assert.equal(readFileSync(file, 'utf8'), expected);
  },

  async 'Ctrl-C in mid-stream writes the report'() {
    const file = join(folder, 'interrupted.html');
    const live = await Live.start(tool, ['--report', file]);
    const reader = await live.follow();
    const lines = [...SETUP, ...requestLines(1, 2)];
    live.write(...lines);
    await reader.until(isCount(1));
    assert.equal(await live.interrupt(), 0);
    assert.equal(readFileSync(file, 'utf8'), reportOf(lines));
    await reader.until(({ name }) => name === 'bye');
    assert.deepEqual(readdirSync(folder).filter((name) => name.endsWith('.part')), []);
  },

  async 'a bad line is told with its place, and the page stays'() {
    const file = join(folder, 'broken.html');
    const live = await Live.start(tool, ['--report', file]);
    const reader = await live.follow();
    live.write(...SETUP, ...requestLines(1, 2), { op: 'publish', enable: 7 }, ...requestLines(2, 2));
    const { trouble } = (await reader.until(({ name }) => name === 'end')).data;
    assert.match(trouble, /^<stdin>:11: publish: enable: /);
    assert.equal((await live.get()).status, 200);
    assert.equal(reader.events.filter(isRequests).at(-1).data.count, 1, 'nothing behind it is replayed');
    assert.equal((await live.get('report')).text, readFileSync(file, 'utf8'));
    assert.equal(await live.interrupt(), 2);
    assert.match(live.errors, /<stdin>:11: publish/);
  },

  async 'a fatal end is told, and the page stays'() {
    const file = join(folder, 'fatal.html');
    const live = await Live.start(tool, ['--report', file]);
    const reader = await live.follow();
    live.write(...SETUP, ...requestLines(1, 2), { op: 'getHistoryCropNeedData', requestNo: 9 });
    const { line, op } = (await reader.until(({ name }) => name === 'fatal')).data;
    assert.deepEqual([line, op], [11, 'getHistoryCropNeedData']);
    await reader.until(({ name }) => name === 'end');
    assert.equal((await live.get('report')).text, readFileSync(file, 'utf8'));
    const late = await live.follow();
    await late.until(({ name }) => name === 'fatal');
    assert.equal(await live.interrupt(), 3);
    assert.match(live.errors, /<stdin>:11: .*the library stopped the process/);
  },

  async '200 connections leave nothing behind'() {
    const live = await Live.start(tool);
    live.write(...SETUP, ...requestLines(1, 2));
    await (await live.follow()).until(isCount(1)).then(() => {});
    const before = String(live.holds());
    for (let i = 0; i < 50; ++i) {
      const four = await Promise.all([live.follow(), live.follow(), live.get(), live.follow()]);
      for (const reader of [four[0], four[1], four[3]]) reader.close();
    }
    await eventually(() => String(live.holds()) === before, `files and threads as before, ${before},`);
    assert.equal(await live.interrupt(), 0);
  },

  async 'the port is what was asked for, and the browser gets the address'() {
    const nowhere = { PATH: '/nowhere', DISPLAY: ':0' };
    let live;
    while (!live) {  // ports that are not lent at random
      const port = String(10000 + Math.floor(Math.random() * 20000));
      live = await Live.start(tool, ['--port', port], nowhere).catch(({ message }) => assert.match(message, /already in use/));
    }
    const { port } = new URL(live.address);
    assert.equal(live.process.spawnargs.at(-1), port);
    await assert.rejects(Live.start(tool, ['--port', port]), /--port \d+: cannot be had: Address already in use/);
    live.write(...SETUP, ...requestLines(1, 2));
    await (await live.follow()).until(isCount(1));  // nobody is at a terminal: what is not there is not run
    assert.equal(await live.interrupt(), 0);
    const refused = await Live.start(tool, ['--open'], nowhere);
    assert.equal(await refused.exit, 2);
    assert.match(refused.errors, /--open: cannot run xdg-open: No such file or directory/);

    const opened = join(folder, 'opened');
    writeFileSync(join(folder, 'xdg-open'), `#!/bin/sh\nprintf %s "$1" > '${opened}'\n`);
    chmodSync(join(folder, 'xdg-open'), 0o755);
    const shown = await Live.start(tool, ['--open'], { PATH: `${folder}:${process.env.PATH}` });
    await eventually(() => existsSync(opened) && readFileSync(opened, 'utf8') === shown.address, 'the browser gets the address');
    assert.equal(await shown.interrupt(), 0);
  },
};

for (const [name, test] of Object.entries(tests)) {
  const start = Date.now();
  try {
    await test();
    console.log(`${name}: ${Date.now() - start} ms`);
  } catch (error) {
    console.log(`${name}: failed`);
    console.log(error);
    process.exit(1);
  }
}
process.exit(0);
