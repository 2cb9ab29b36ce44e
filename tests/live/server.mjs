// Holds the server of a live replay to what it promises its readers and its user:
// node server.mjs ZOOMREPLAY FOLDER
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { randomBytes } from 'node:crypto';
import { chmodSync, existsSync, mkdirSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

import { eventually } from '../report/Patience.mjs';
import { Live, SETUP, requestLines } from './Live.mjs';
import { recordIn, toldInEvents, toldInReport } from './Told.mjs';

const [tool, folder] = process.argv.slice(2);
rmSync(folder, { recursive: true, force: true });
mkdirSync(folder, { recursive: true });
const textOf = (lines) => lines.map((line) => JSON.stringify(line) + '\n').join('');
const isRequests = ({ name }) => name === 'requests';
const isEnd = ({ name }) => name === 'end';
const isCount = (count) => ({ name, data }) => name === 'requests' && data.count === count;

/** The page that a replay of these lines writes. */
const reportOf = (lines, ...options) => {
  const file = join(folder, 'expected.html');
  execFileSync(tool, ['-', '-o', '/dev/null', '--report', file, ...options], { input: textOf(lines) });
  return readFileSync(file, 'utf8');
};

const tests = {
  async 'only who knows the address is answered'() {
    const live = await Live.start(tool);
    const { origin, port, pathname } = new URL(live.address);
    assert.match(pathname, /^\/[0-9a-f]{32}\/$/);
    const page = await live.get();
    const nonce = /nonce="([0-9a-f]{32})"/.exec(page.text)[1];
    assert.equal(page.text.match(/<script/g).length, page.text.match(new RegExp(`<script nonce="${nonce}"`, 'g')).length);
    const { 'content-length': length, ...headers } = page.headers;
    assert.equal(Number(length), Buffer.byteLength(page.text));
    assert.deepEqual(headers, {
      'content-security-policy': `default-src 'none'; script-src 'nonce-${nonce}'; style-src 'unsafe-inline'; img-src data:; ` +
        `connect-src 'self'; base-uri 'none'; form-action 'none'; frame-ancestors 'none'`,
      'cross-origin-opener-policy': 'same-origin', 'cross-origin-resource-policy': 'same-origin', 'referrer-policy': 'no-referrer',
      'x-content-type-options': 'nosniff', 'cache-control': 'no-store', 'content-type': 'text/html; charset=utf-8', connection: 'close' });
    const events = await live.follow({ origin });
    assert.deepEqual([events.status, events.response.headers['content-type']], [200, 'text/event-stream']);
    events.close();

    const wrong = pathname.replace(/[0-9a-f]/, (digit) => digit === '0' ? '1' : '0');
    const isOther = 'Only the address that zoomreplay printed leads to its page.\n';
    for (const path of ['/', wrong, `${wrong}events`, `${wrong}report`, '/favicon.ico', pathname.slice(0, -2) + '/', '/etc/passwd', '/../etc/passwd']) {
      const { status, text } = await live.get(path, { address: origin });
      assert.deepEqual([status, text], [403, isOther], path);
    }
    for (const [path, method, status, text] of [['other', 'GET', 404, 'There is no such page.'], ['report.html', 'GET', 404, 'There is no such page.'],
      ['events/', 'GET', 404, 'There is no such page.'], ['', 'POST', 405, 'There is nothing to change here.'], ['answer', 'GET', 400, 'ratio: must be a number'],
      ['answer?ratio=x', 'GET', 400, 'ratio: must be a number'], ['answer?ratio=2x', 'GET', 400, 'ratio: must be a number']]) {
      const refused = await live.get(path, { method });
      assert.deepEqual([refused.status, refused.headers['content-type'], refused.text], [status, 'text/plain', `${text}\n`], path);
    }
    for (const host of ['some.name', `some.name:${port}`, '127.0.0.1', `127.0.0.1:${Number(port) + 1}`]) {
      assert.equal((await live.get('', { headers: { host } })).status, 403, `Host: ${host}`);
    }
    for (const other of ['http://some.name', `https://127.0.0.1:${port}`, 'null']) assert.equal((await live.get('events', { headers: { origin: other } })).status, 403, other);
    await assert.rejects(live.get('', { address: `http://127.0.0.2:${port}${pathname}` }), /ECONNREFUSED/);

    const other = await Live.start(tool);
    assert.notEqual(new URL(other.address).pathname, pathname, 'a token of its own');
    assert.equal(await other.interrupt(), 0);
    assert.equal(await live.interrupt(), 0);
  },

  async 'who comes late gets all, block by block'() {
    const live = await Live.start(tool);
    const early = await live.follow();
    const lines = [];
    const feed = (...own) => {
      lines.push(...own);
      live.write(...own);
    };
    // It leaps now and then, and back in the next request, which may be told later, and once 96 behind;
    // the rig changes on the way, and what a phone has to say comes late.
    const request = (no) => requestLines(no, 2 + (no % 40 === 0 || no === 1105 ? -0.3 : no / 2000));
    feed(...SETUP, ...request(1));
    await early.until(isCount(1));
    for (let no = 2; no <= 1200; ++no) {
      if (no === 700) feed({ ...SETUP[0], modes: { 1: { size: [2304, 1296], window: [0, 0, 4608, 2590] } } });
      feed(...request(no));
      if (no === 600) await early.until(isCount(600));
      if (no > 9) feed({ op: 'observed', requestNo: no - 5, activePhysicalId: String(no >> 7) });  // a new word now and then
    }
    await early.until(({ data }) => data?.jumps?.some(({ index }) => index === 1199));
    feed(...request(1201).slice(0, 4));  // is never done
    await early.until(isCount(1201));
    const { length } = early.events;
    feed({ op: 'observed', requestNo: 1199, activePhysicalId: '0' });
    await early.until(() => early.events.length > length);
    live.endInput();
    await early.until(isEnd);
    const late = await live.follow();
    await late.until(isEnd);
    const folds = late.events.filter(isRequests).map(({ data }) => data.isFold);
    assert.ok(folds.filter(Boolean).length > 1 && folds.lastIndexOf(true) === folds.indexOf(false) - 1, 'small blocks have been folded');
    const expected = await toldInReport(reportOf(lines));
    assert.ok(expected.jumps.length > 50 && expected.rigs.length === 2);
    assert.deepEqual(await toldInEvents(late.events), expected);
    assert.deepEqual(await toldInEvents(early.events), expected);
    assert.equal(await live.interrupt(), 0);
    await early.until(({ name }) => name === 'bye');
  },

  async 'eight readers at most, and who has gone makes room'() {
    const live = await Live.start(tool);
    live.write(...SETUP, ...requestLines(1, 2));
    const readers = [await live.follow()];
    await readers[0].until(isCount(1));
    const { pid } = live.process;
    const used = () => readFileSync(`/proc/${pid}/task/${pid}/stat`, 'utf8').split(' ').slice(13, 15).reduce((a, b) => a + Number(b), 0);
    const before = used();  // hundredths of a second
    for (let i = 1; i < 8; ++i) readers.push(await live.follow());
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
    assert.ok(used() - before < 5, 'the replay waits');
    for (const reader of readers) reader.close();
    assert.equal(await live.interrupt(), 0);
  },

  async 'a slow reader is dropped, and nobody waits for it'() {
    const live = await Live.start(tool);
    const slow = await live.follow();
    const { id } = await slow.until(({ name }) => name === 'begin');
    slow.response.pause();
    const fast = await live.follow();
    assert.notEqual((await fast.until(({ name }) => name === 'begin')).id, id);
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
    const live = await Live.start(tool, ['--report', file, '--log']);
    const dataOf = (html) => JSON.parse(/<script[^>]* id="data"[^>]*>(.*?)<\/script>/s.exec(html)[1]);
    const empty = dataOf(reportOf([], '--log'));
    assert.deepEqual(dataOf((await live.get()).text), { ...empty, live: true, publishing: [empty.modes.indexOf('ExternalAPI')] });
    const begin = [...SETUP, ...requestLines(1, 2), ...requestLines(2, 3).slice(0, 3)];
    const reader = await live.follow();
    live.write(...begin);
    await reader.until(isCount(2));
    const expectedEarly = reportOf(begin, '--log');
    for (const early of await Promise.all(Array.from({ length: 8 }, () => live.get('report')))) {  // which are written one by one
      assert.match(early.headers['content-disposition'], /^attachment; filename="zoom.html"$/);
      assert.equal(early.text, expectedEarly);
    }
    const undone = ({ overview }) => overview.map(({ marks }) => (marks >> 7) & 1);
    assert.deepEqual([undone(await toldInEvents(reader.events)), undone(await toldInReport(expectedEarly))], [[0, 0], [0, 1]], 'it goes on, and may be done');
    const rest = [...requestLines(2, 3).slice(3), ...requestLines(3, 9)];
    live.write(...rest);
    live.endInput();
    assert.equal((await reader.until(isEnd)).data.trouble, '');
    const expected = reportOf([...begin, ...rest], '--log');
    assert.equal((await live.get('report')).text, expected);
    assert.equal(await live.interrupt(), 0);
    assert.equal(readFileSync(file, 'utf8'), expected);
    await assert.rejects(Live.start(tool, ['--report', file], {}, file), /zoom.html: is also read from; results need a file of their own/);
    assert.equal(readFileSync(file, 'utf8'), expected);
  },

  async 'Ctrl-C and the like in mid-stream write the report'() {
    for (const signal of ['SIGINT', 'SIGTERM', 'SIGHUP']) {
      const file = join(folder, `${signal}.html`);
      const live = await Live.start(tool, ['--report', file]);
      const reader = await live.follow();
      const lines = [...SETUP, ...requestLines(1, 2)];
      live.write(...lines);
      await reader.until(isCount(1));
      live.process.kill(signal);
      assert.equal(await live.exit, 0);
      assert.equal(readFileSync(file, 'utf8'), reportOf(lines));
      await assert.rejects(reader.until(() => false));
      assert.deepEqual([reader.events.at(-1).name, reader.response.complete], ['bye', true], 'the end is told as one');
      assert.equal(live.errors, '');
    }
    assert.deepEqual(readdirSync(folder).filter((name) => name.endsWith('.part')), []);
  },

  async 'a question is asked of a copy, like the newest request that can be asked'() {
    const live = await Live.start(tool);
    const deposit = { op: 'setRunTimeCropNeedData', requestNo: 7, sensorModes: { 0: 1, 1: 4294967295 } };
    const queries = [
      { op: 'getP2CropSetting', requestNo: 7, zoomRatio: 2.5, sensorId: 1, manual: true },
      { op: 'getP1CropSetting', requestNo: 7, zoomRatio: 2.25, sensorId: 0 }];
    const lines = [...SETUP, ...requestLines(1, 2), { op: 'publish', enable: true, zoomRatio: 4 }, deposit, ...queries, { ...deposit, requestNo: 8 },
      { op: 'getP2CropSetting', requestNo: 6, zoomRatio: 9 }];  // one without a query, and one without a deposit
    live.write(...lines);
    const reader = await live.follow();
    await reader.until(isCount(4));
    const early = await toldInEvents(reader.events);
    for (const ratio of [1.25, 3]) {
      const { headers, text } = await live.get(`answer?ratio=${ratio}`);
      assert.equal(headers['content-type'], 'application/json');
      const answer = JSON.parse(text);
      const asked = answer.lines.map((line) => JSON.parse(line));
      assert.deepEqual(asked.map(({ trailingInfo, ...line }) => line), [{ op: 'publish', zoomRatio: ratio, enable: true },
        ...[deposit, ...queries].map((line) => ({ ...line, requestNo: 9 }))]);
      const plain = ({ queries: own, modes }) => JSON.parse(JSON.stringify({ own, modes }, (key, value) => ['line', 'say', 'reason'].includes(key) ? undefined : value));
      const { requests } = await toldInReport(reportOf([...lines, ...asked]));
      assert.deepEqual(plain(await recordIn(answer.requests)), plain(requests.at(-1)));
    }
    assert.deepEqual(await toldInEvents(reader.events), early);
    assert.equal((await live.get('report')).text, reportOf(lines), 'none of it is a part of the session');
    for (let requestNo = 100; requestNo < 130; ++requestNo) {  // asked before they are told
      live.write(...[deposit, ...queries].map((line) => ({ ...line, requestNo })));
      const answer = JSON.parse((await live.get('answer?ratio=2')).text);
      assert.equal((await recordIn(answer.requests)).queries.length, answer.lines.length - 2, 'a request of its own');
    }

    // A mode that has no P2 query came since: what stops the copy is told here alone.
    live.write({ op: 'initialize', mode: 'InstantRequest' });
    const fatal = () => live.get('answer?ratio=2').then(({ text }) => JSON.parse(text));
    await eventually(async () => (await fatal()).isFatal, 'a copy that is stopped');
    assert.deepEqual((await fatal()).lines.map((line) => JSON.parse(line).op), ['publish', 'setRunTimeCropNeedData', 'getP2CropSetting', 'getP1CropSetting']);
    assert.equal(await live.interrupt(), 0);
    assert.equal(live.errors, '');
  },

  async 'why there is no copy is told'() {
    const user = ['setpriv', ...(process.getuid() === 0 ? ['--reuid=65534', '--clear-groups', '--inh-caps=+dac_override', '--ambient-caps=+dac_override'] : [])];  // root may always fork
    const live = await Live.run([...user, tool, 'live', '-'], {});
    const limit = (what) => execFileSync(user[0], [...user.slice(1), 'prlimit', `--pid=${live.process.pid}`, what]);
    const why = () => live.get('report').then(({ status, text }) => [status, text]);
    const [files] = live.holds();
    await live.get();  // once it answers, all its threads run
    limit('--nproc=1:');
    assert.deepEqual(await why(), [500, 'cannot copy the process: Resource temporarily unavailable\n']);
    await eventually(() => live.holds()[0] === files, 'the pipe is closed');
    limit(`--nofile=${live.holds()[0] + 1}:`);  // which the connection takes
    assert.deepEqual(await why(), [500, 'cannot make a pipe: Too many open files\n']);
    limit('--nproc=1024:');
    limit('--nofile=1024:');
    const reader = await live.follow();
    live.endInput();
    await reader.until(isEnd);
    assert.equal(await live.interrupt(), 0);
    await assert.rejects(reader.until(() => false));
    assert.deepEqual(reader.events.map(({ name }) => name), ['begin', 'end', 'bye'], 'of nothing, nothing is told');

    // Standard error takes no more, and the replay waits.
    const pipe = join(folder, 'errors');
    const stuck = await Live.run(['/bin/sh', '-c', 'mkfifo "$1"; exec 3<>"$1"; dd if=/dev/zero of="$1" bs=4096 oflag=nonblock 2>/dev/null; exec "$0" live - 2>&3', tool, pipe], {});
    stuck.write(...SETUP, ...requestLines(1, 2), 'x');
    let refused;
    const cut = { status: 200 };  // by a copy that has seen no request yet
    await eventually(async () => (refused = await stuck.get('answer?ratio=2').catch(() => cut)).status !== 200, 'a replay that waits');
    assert.deepEqual([refused.status, refused.text], [503, 'The replay is too busy.\n']);
    stuck.process.kill('SIGKILL');
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
    const [file, scenario] = ['fatal.html', 'rec 1,2.v3.jsonl'].map((name) => join(folder, name));
    writeFileSync(scenario, textOf([...SETUP, ...requestLines(1, 2), ...requestLines(2, 3).slice(0, 4), { op: 'getHistoryCropNeedData', requestNo: 9 }]));
    const live = await Live.start(tool, ['--report', file], {}, scenario);
    const reader = await live.follow();
    assert.equal((await reader.until(({ name }) => name === 'end')).data.trouble, '');
    const saved = await live.get('report');
    assert.equal(saved.headers['content-disposition'], 'attachment; filename="rec-1-2.v3.html"');
    assert.equal(saved.headers['content-type'], 'text/html; charset=utf-8');
    assert.equal(saved.text, readFileSync(file, 'utf8'));
    const told = await toldInEvents(reader.events);
    assert.deepEqual([told.fatal.line, told.fatal.op], [15, 'getHistoryCropNeedData']);
    assert.deepEqual(told, await toldInReport(saved.text));
    await assert.rejects(live.get('answer?ratio=2'), 'nobody is there to answer');
    const late = await live.follow();
    await late.until(({ name }) => name === 'fatal');
    assert.equal(await live.interrupt(), 3);
    assert.match(live.errors, /rec 1,2\.v3\.jsonl:15: .*the library stopped the process/);
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
    for (const path of ['report', 'answer?ratio=1.5', 'report']) assert.equal((await live.get(path)).status, 200);
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
    writeFileSync(join(folder, 'xdg-open'), `#!/bin/sh\ncat; echo noise >&2
printf '%s %s %s' "$1" "$(sed -n 's/SigBlk:.//p' /proc/self/status)" $(($(cut -d' ' -f6 /proc/$$/stat) == $$)) > '${opened}'\n`);
    chmodSync(join(folder, 'xdg-open'), 0o755);
    const shown = await Live.start(tool, ['--open'], { PATH: `${folder}:${process.env.PATH}` });
    const isOpened = () => existsSync(opened) && readFileSync(opened, 'utf8') === `${shown.address} 0000000000000000 1`;
    await eventually(isOpened, 'the browser gets the address, all signals, and a session of its own');
    assert.equal(await shown.interrupt(), 0);
    assert.equal(shown.errors, '');
  },

  async 'on the terminal of a desktop it opens a browser'() {
    const scenario = join(folder, 'one.jsonl');
    writeFileSync(scenario, textOf([...SETUP, ...requestLines(1, 2)]));
    for (const [display, options, isTried] of [['DISPLAY', [], true], ['WAYLAND_DISPLAY', [], true], ['DISPLAY', ['--no-browser'], false], ['NONE', [], false]]) {
      const environment = { PATH: '/nowhere', DISPLAY: '', WAYLAND_DISPLAY: '', [display]: ':0' };
      const live = await Live.startOnTerminal(tool, options, environment, scenario);
      if (isTried) {
        assert.equal(await live.exit, 2, `${display}: there is no xdg-open`);
      } else {
        await (await live.follow()).until(isCount(1));
        live.process.kill();
        await live.exit;
      }
    }
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
