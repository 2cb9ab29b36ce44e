// A headless Chromium, driven through its debugging pipe.
import { spawn } from 'node:child_process';
import { mkdtempSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

const SWITCHES = ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--disable-dev-shm-usage',
  '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync',
  '--remote-debugging-pipe', '--window-size=1280,800'];

const KEY_CODES = { ArrowLeft: 37, ArrowRight: 39, Home: 36, End: 35, PageUp: 33, PageDown: 34, ' ': 32 };

export class Chromium {
  /** What went wrong in the page, and every address that it asked for. */
  errors = [];
  addresses = [];

  static async start() {
    const browser = new Chromium();
    browser.profile = mkdtempSync(join(tmpdir(), 'report-browser-'));
    browser.process = spawn('chromium', [...SWITCHES, `--user-data-dir=${browser.profile}`, 'about:blank'],
      { stdio: ['ignore', 'ignore', 'ignore', 'pipe', 'pipe'] });
    await new Promise((resolve, reject) => {
      browser.process.once('spawn', resolve);
      browser.process.once('error', (error) => reject(new Error(`cannot start chromium: ${error.message}`)));
    });
    browser.listen();
    const { targetId } = await browser.send('Target.createTarget', { url: 'about:blank' });
    browser.session = (await browser.send('Target.attachToTarget', { targetId, flatten: true })).sessionId;
    for (const domain of ['Page', 'Runtime', 'Log', 'Network']) await browser.send(`${domain}.enable`);
    return browser;
  }

  listen() {
    this.calls = new Map();
    this.waiting = new Map();
    let rest = '';
    this.process.stdio[4].setEncoding('utf8').on('data', (chunk) => {
      const messages = (rest + chunk).split('\0');
      rest = messages.pop();
      for (const message of messages) this.take(JSON.parse(message));
    });
    this.process.stdio[3].on('error', () => {});
    this.process.once('exit', () => {
      for (const { reject } of this.calls.values()) reject(new Error('chromium went away'));
    });
  }

  take({ id, result, error, method, params }) {
    if (id !== undefined) {
      const call = this.calls.get(id);
      this.calls.delete(id);
      return error ? call.reject(new Error(error.message)) : call.resolve(result);
    }
    if (method === 'Runtime.exceptionThrown') this.errors.push(JSON.stringify(params.exceptionDetails));
    if (method === 'Runtime.consoleAPICalled') this.errors.push(JSON.stringify(params.args));
    if (method === 'Log.entryAdded' && params.entry.level !== 'verbose') this.errors.push(params.entry.text);
    if (method === 'Network.requestWillBeSent') this.addresses.push(params.request.url);
    this.waiting.get(method)?.();
  }

  send(method, params = {}) {
    const id = (this.lastId ?? 0) + 1;
    this.lastId = id;
    this.process.stdio[3].write(JSON.stringify({ id, method, params, sessionId: this.session }) + '\0');
    return new Promise((resolve, reject) => this.calls.set(id, { resolve, reject }));
  }

  async open(url) {
    const loaded = new Promise((resolve) => this.waiting.set('Page.loadEventFired', resolve));
    await this.send('Page.navigate', { url });
    await loaded;
  }

  /** Runs a script in each page that is opened from now on, before the page's own. */
  async before(source) {
    await this.send('Page.addScriptToEvaluateOnNewDocument', { source });
  }

  async resize(width, height, { mobile = false, sharp = 1 } = {}) {
    await this.send('Emulation.setDeviceMetricsOverride', { width, height, deviceScaleFactor: sharp, mobile });
  }

  async reload() {
    const loaded = new Promise((resolve) => this.waiting.set('Page.loadEventFired', resolve));
    await this.send('Page.reload');
    await loaded;
  }

  async press(key) {
    const event = { key, code: key === ' ' ? 'Space' : key, windowsVirtualKeyCode: KEY_CODES[key] };
    await this.send('Input.dispatchKeyEvent', { type: 'rawKeyDown', ...event });
    await this.send('Input.dispatchKeyEvent', { type: 'keyUp', ...event });
  }

  async mouse(type, x, y, buttons, modifiers = 0) {
    await this.send('Input.dispatchMouseEvent',
      { type, x, y, button: buttons === 0 && type === 'mouseMoved' ? 'none' : 'left', buttons, modifiers, clickCount: type === 'mouseMoved' ? 0 : 1 });
  }

  async wheel(x, y, deltaY, modifiers = 0) {
    await this.send('Input.dispatchMouseEvent', { type: 'mouseWheel', x, y, deltaX: 0, deltaY, modifiers });
  }

  /** @param type touchStart, touchMove or touchEnd; points [[x, y]...] are the fingers that are down */
  async touch(type, points) {
    await this.send('Input.dispatchTouchEvent', { type, touchPoints: points.map(([x, y], id) => ({ x, y, id })) });
  }

  /** The value of a JavaScript expression in the page. */
  async evaluate(expression) {
    const { result, exceptionDetails } = await this.send('Runtime.evaluate',
      { expression, returnByValue: true, awaitPromise: true });
    if (exceptionDetails) throw new Error(JSON.stringify(exceptionDetails));
    return result.value;
  }

  async stop() {
    if (this.process.exitCode === null) {
      const gone = new Promise((resolve) => this.process.once('exit', resolve));
      this.send('Browser.close').catch(() => {});
      await gone;
    }
    rmSync(this.profile, { recursive: true, force: true });
  }
}
