// Holds the server of a live replay to what it promises its readers and its user:
// node server.mjs ZOOMREPLAY FOLDER
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { randomBytes } from 'node:crypto';
import { chmodSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

import { Live, SETUP, pause, requestLines } from './Live.mjs';

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
    assert.ok(late.events.some(({ data }) => data.isFold), 'small blocks have been folded');
    assert.ok(late.events.filter(isRequests).length <= 5 + early.events.filter(isRequests).length);
    assert.equal(late.events.find(isRequests).data.requests.firstWords, 0);
    assert.ok(late.events.find(isRequests).data.rigs.length > 0);
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
    let status = 0;
    for (let i = 0; i < 100 && status !== 200; ++i, await pause(50)) {
      const next = await live.follow();
      ({ status } = next);
      if (status === 200) readers.push(next);
      else next.close();
    }
    assert.equal(status, 200);
    for (const reader of readers) reader.close();
    assert.equal(await live.interrupt(), 0);
  },

  async 'a slow reader is dropped, and nobody waits for it'() {
    const live = await Live.start(tool);
    const slow = await live.follow();
    const fast = await live.follow();
    live.write(...SETUP, ...requestLines(1, 2));
    await fast.until(isCount(1));
    for (let i = 0; i < 40; ++i) {
      live.write({ op: 'observed', requestNo: 1, activePhysicalId: randomBytes(500000).toString('base64') });
      await pause(60);
    }
    live.write(...requestLines(2, 2));
    const start = Date.now();
    await fast.until(isCount(2));
    assert.ok(Date.now() - start < 2000, 'the replay goes on');
    await pause(2500);
    const { id } = await slow.until(({ name }) => name === 'begin');
    await assert.rejects(slow.until(isCount(2)), 'dropped');
    const again = await live.follow({ 'Last-Event-ID': id });
    assert.equal((await again.until(({ name }) => name === 'begin')).data, true, 'it is told that it was slow');
    await again.until(isCount(2));
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
    const open = () => readdirSync(`/proc/${live.process.pid}/fd`).length;
    const threads = () => readdirSync(`/proc/${live.process.pid}/task`).length;
    const before = [open(), threads()];
    for (let i = 0; i < 50; ++i) {
      const four = await Promise.all([live.follow(), live.follow(), live.get(), live.follow()]);
      for (const reader of [four[0], four[1], four[3]]) reader.close();
    }
    for (let i = 0; i < 100 && String([open(), threads()]) !== String(before); ++i) await pause(100);
    assert.deepEqual([open(), threads()], before);
    assert.equal(await live.interrupt(), 0);
  },

  async 'the port is what was asked for, and the browser gets the address'() {
    const live = await Live.start(tool);
    const { port } = new URL(live.address);
    await assert.rejects(Live.start(tool, ['--port', port]), /--port \d+: cannot be had: Address already in use/);
    await live.interrupt();
    const opened = join(folder, 'opened');
    writeFileSync(join(folder, 'xdg-open'), `#!/bin/sh\nprintf %s "$1" > '${opened}'\n`);
    chmodSync(join(folder, 'xdg-open'), 0o755);
    const path = { PATH: `${folder}:${process.env.PATH}`, DISPLAY: ':0' };
    const silent = await Live.start(tool, ['--port', port], path);
    assert.equal(new URL(silent.address).port, port);
    await pause(200);
    assert.ok(!existsSync(opened), 'nobody is at a terminal');
    await silent.interrupt();
    const shown = await Live.start(tool, ['--open'], path);
    for (let i = 0; i < 100 && !(existsSync(opened) && readFileSync(opened, 'utf8') === shown.address); ++i) await pause(50);
    assert.equal(readFileSync(opened, 'utf8'), shown.address);
    await shown.interrupt();
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
