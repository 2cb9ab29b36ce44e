// A running `zoomreplay live`: its input, its address and its end.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { once } from 'node:events';
import { readdirSync } from 'node:fs';
import http from 'node:http';

import { PATIENCE } from '../report/Patience.mjs';

const running = new Set();
process.on('exit', () => running.forEach((tool) => tool.kill('SIGKILL')));

export class Live {
  static start(tool, options = [], environment = {}, scenario = '-') {
    return Live.run([tool, 'live', scenario, ...options], environment);
  }

  /** Its standard output is a terminal's. */
  static startOnTerminal(tool, options, environment, scenario) {
    return Live.run(['/usr/bin/script', '-qec', [tool, 'live', scenario, ...options].join(' '), '/dev/null'], environment);
  }

  static async run([program, ...rest], environment) {
    const live = new Live();
    live.process = spawn(program, rest, { env: { ...process.env, ...environment } });
    running.add(live.process);
    live.errors = '';
    live.process.stderr.setEncoding('utf8').on('data', (text) => { live.errors += text; });
    live.process.stdin.on('error', () => {});
    live.exit = once(live.process, 'close').then(([status]) => {
      running.delete(live.process);
      return status;
    });
    let printed = '';
    live.process.stdout.setEncoding('utf8');
    while (!printed.includes('\n')) {
      const [text] = await Promise.race([once(live.process.stdout, 'data'), live.exit.then(() => [null])]);
      if (text === null) throw new Error(`no address: ${live.errors}`);
      printed += text;
    }
    live.address = printed.trim();
    return live;
  }

  write(...lines) {
    this.process.stdin.write(lines.map((line) => (typeof line === 'string' ? line : JSON.stringify(line)) + '\n').join(''));
  }

  endInput() {
    this.process.stdin.end();
  }

  /** Ends it as Ctrl-C does. @return its exit status */
  async interrupt() {
    this.process.kill('SIGINT');
    return this.exit;
  }

  /** How many files and threads it has. */
  holds() {
    return ['fd', 'task'].map((kind) => readdirSync(`/proc/${this.process.pid}/${kind}`).length);
  }

  /** { status, headers, text } of an answer; path belongs behind the address. */
  async get(path = '', { headers = {}, method = 'GET', address = this.address } = {}) {
    const request = http.request(address + path, { headers, method, agent: false });
    request.end();
    const [response] = await once(request, 'response');
    assert.equal(response.rawHeaders.length, 2 * Object.keys(response.headers).length, 'each header once');
    let text = '';
    for await (const chunk of response.setEncoding('utf8')) text += chunk;
    return { status: response.statusCode, headers: response.headers, text };
  }

  follow(headers = {}) {
    return Reader.open(`${this.address}events`, headers);
  }
}

/** Reads the events of a live replay. */
export class Reader {
  events = [];  // { name, id, data }
  changed = () => {};

  static async open(url, headers) {
    const reader = new Reader();
    const request = http.request(url, { headers, agent: false });
    request.on('error', () => {});
    request.end();
    const [response] = await once(request, 'response');
    reader.request = request;
    reader.response = response;
    reader.status = response.statusCode;
    reader.isOver = false;
    response.on('error', () => {});
    response.on('close', () => {
      reader.isOver = true;
      reader.changed();
    });
    return reader;
  }

  /** Until an event meets a test, or none has come for long; all so far are in events. */
  async until(test) {
    if (!this.isListening) this.listen();
    while (true) {
      const found = this.events.find(test);
      if (found) return found;
      if (this.isOver) break;
      const patience = setTimeout(() => this.close(), PATIENCE);
      await new Promise((resolve) => { this.changed = resolve; });
      clearTimeout(patience);
    }
    throw new Error(`no such event among ${this.events.map(({ name }) => name)}`);
  }

  listen() {
    this.isListening = true;
    let rest = '';
    this.response.setEncoding('utf8').on('data', (text) => {
      const parts = (rest + text).split('\n\n');
      rest = parts.pop();
      const told = parts.filter((each) => each.includes('event:'));  // the others are signs of life
      for (const part of told) {
        const fields = Object.fromEntries(part.split('\n').map((line) => line.match(/^(\w+): (.*)$/).slice(1)));
        this.events.push({ name: fields.event, id: fields.id, data: JSON.parse(fields.data) });
      }
      if (told.length > 0) this.changed();
    });
  }

  close() {
    this.request.destroy();
  }
}

// A sensor twice, whose mode reads the whole array at half its scale.
const SENSORS = [0, 1];
const bySensor = (value) => Object.fromEntries(SENSORS.map((id) => [id, value]));
export const SETUP = [
  ...SENSORS.map((id) => ({ op: 'sensor', id, modes: { 1: { size: [2304, 1296], window: [0, 0, 4608, 2592] } } })),
  { op: 'initialize', mode: 'ExternalAPI' },
  { op: 'configSensorInfo', sensorIds: SENSORS, sensorInfos: bySensor({ degreeH: 90, degreeV: 60, activeArray: [0, 0, 4608, 2592] }) },
  { op: 'configSensorBehaviorInfo', portSizes: bySensor({ 1: [2304, 1296] }) },
];

/** The lines of a request whose customer publishes a ratio. */
export const requestLines = (requestNo, published, asked = 1) => [
  { op: 'setRunTimeCropNeedData', requestNo, sensorModes: bySensor(1) },
  { op: 'publish', enable: true, zoomRatio: published },
  { op: 'getP1CropSetting', requestNo, zoomRatio: asked },
  { op: 'getP2CropSetting', requestNo, zoomRatio: asked },
  { op: 'onRequestDone', requestNo },
];
