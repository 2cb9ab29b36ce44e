// Reads what a report's page shows, and what it draws on its canvases.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

import { PATIENCE } from './Patience.mjs';

/** Run before the page: each canvas keeps what is drawn on it since it was cleared. */
export const KEEP_DRAWINGS = `(() => {
  const { width } = Object.getOwnPropertyDescriptors(HTMLCanvasElement.prototype);
  Object.defineProperty(HTMLCanvasElement.prototype, 'width', { ...width, set(value) {
    this.drawn = [];
    width.set.call(this, value);
  } });
  for (const name of ['fillRect', 'strokeRect', 'fillText']) {
    const draw = CanvasRenderingContext2D.prototype[name];
    CanvasRenderingContext2D.prototype[name] = function (...what) {
      const { a, e, f } = this.getTransform();
      this.canvas.drawn?.push({ name, what, scale: a, left: e, top: f, colour: name === 'strokeRect' ? this.strokeStyle : this.fillStyle });
      draw.apply(this, what);
    };
  }
})()`;

/** What the page tells of the request in hand. */
const SHOWN = `(() => {
  const id = (name) => document.getElementById(name);
  const texts = (selector, root = document) => [...root.querySelectorAll(selector)].map((node) => node.textContent);
  const rows = (selector) => [...document.querySelectorAll(selector)].map((row) => [...row.cells].map((cell) => cell.textContent));
  const box = (node) => ['x', 'y', 'width', 'height'].map((name) => Number(node.getAttribute(name)));
  return {
    override: id('override').textContent, sentence: id('lines').textContent,
    slider: id('timeline').getAttribute('aria-valuetext'), hover: id('hover').textContent,
    stages: texts('#stages li'),
    angleHeads: [id('angles-title').textContent, ...texts('#angles th'), id('angles-note').textContent], numberHeads: texts('#numbers thead th'),
    cursor: (({ left, width }) => left + width / 2)(id('cursor').getBoundingClientRect()),
    timeline: (({ left, width }) => [left, width])(id('timeline').getBoundingClientRect()),
    angles: rows('#angles tbody tr'), beams: [...document.querySelectorAll('.beam rect:last-child')].map((node) => [box(node)[0], box(node)[2]]),
    numbers: rows('#numbers tbody tr:not(.query)'),
    cards: [...document.querySelectorAll('#sensors .sensor')].map((card) => ({
      heading: card.querySelector('h2').textContent, what: card.querySelector('.what').textContent,
      note: card.querySelector('p.aside')?.textContent,
      figures: [...card.querySelectorAll('figure')].map((figure) => ({ zoom: figure.querySelector('svg').getScreenCTM().a, caption: figure.querySelector('figcaption').textContent,
        label: figure.querySelector('svg').getAttribute('aria-label'), labels: texts('text.label', figure),
        empty: texts('text:not(.label)', figure), cut: [...figure.querySelectorAll('text')].filter((node) => {
          const [{ x, y, width, height }, { width: whole, height: high }] = [node.getBBox(), node.ownerSVGElement.viewBox.baseVal];
          return x < -1 || y < -1 || x + width > whole + 1 || y + height > high + 4;
        }).map(({ textContent }) => textContent),
        labelled: [...figure.querySelectorAll('text.label')].map((node) => [Number(node.getAttribute('x')), Number(node.getAttribute('y')), node.getComputedTextLength()]),
        picture: (({ width, height }) => [width, height])(figure.querySelector('svg').viewBox.baseVal),
        boxes: [...figure.querySelectorAll('rect')].map((node) => [node.getAttribute('class').split(' ')[0], box(node)]) })),
    })),
  };
})()`;

/** Opens the link to a request, or none, waits until it is shown; returns what the page tells of it. */
export const shownRequest = async (browser, name, isChosen = true) => {
  await browser.evaluate(`(async () => {
    for (const start = Date.now(); Date.now() - start < ${PATIENCE};) {
      const isReady = document.documentElement.dataset.ready;
      if (isReady && ${isChosen} && location.hash !== '#request=${name}') location.hash = '#request=${name}';
      if (isReady && document.getElementById('request-title').textContent === 'Request ${name}' && document.getElementById('message').hidden) return;
      await new Promise((resolve) => setTimeout(resolve, 10));
    }
    throw new Error('request ${name} does not appear');
  })()`);
  return browser.evaluate(SHOWN);
};

// What is said: an element a line: what it is, its attributes, its own words. What is hidden has a dash, and nothing of it is told.
const SAID = `((roots) => {
  const lines = [];
  const visit = (node, indent) => {
    const isSeen = node.checkVisibility() || node.localName === 'option';
    const isMeasured = node.closest('svg[role=img], canvas, #cursor');  // which the width of the page decides
    const attributes = [...node.attributes].filter(({ name }) => !/^(class|checked|selected|hidden|open)$/.test(name) &&
      !(isMeasured && /^(x|y|width|height|viewBox|style)$/.test(name))).map(({ name, value }) => name + '="' + value + '"').sort();
    const states = ['checked', 'selected', 'open'].filter((name) => node[name]);
    const labels = [...node.labels ?? []].map(({ textContent }) => 'labelled "' + textContent.trim() + '"');
    let words = [...node.childNodes].map(({ nodeType, textContent }) => nodeType === 3 ? textContent.replace(/\\s+/g, ' ') : '*').join('').trim();
    const name = (isSeen ? '' : '- ') + node.localName + [...node.classList].map((each) => '.' + each).join('');
    if (node.matches('.chart')) words += [...node.querySelectorAll('.dygraph-axis-label')].map(({ textContent }) => textContent).join(' ');
    lines.push(indent + [name, ...attributes, ...states, ...labels].join(' ') + (isSeen && /[^* ]/.test(words) ? ': ' + words : ''));
    if (isSeen && !node.matches('.chart')) for (const child of node.children) visit(child, indent + ' ');
  };
  for (const node of document.querySelectorAll(roots)) visit(node, '');
  return lines;
})`;

/** What the elements say that a selector finds. */
export const saidBy = (browser, roots) => browser.evaluate(`${SAID}('${roots}')`);

/** Holds lines to a file of looks/; with UPDATE_LOOKS=1 it becomes them, for you to check. */
export const hold = (name, lines) => {
  const expected = fileURLToPath(new URL(`looks/${name}`, import.meta.url));
  // Log lines have addresses and places in the library's sources.
  const text = lines.map((line) => line.replace(/0x[0-9a-f]{8,12}\b/g, '0x').replace(/(\{#|\.cpp:)\d+/g, '$1N') + '\n').join('');
  if (process.env.UPDATE_LOOKS) return writeFileSync(expected, text);
  const { status, stdout, stderr } = spawnSync('diff', ['-u', expected, '-'], { input: text });
  assert.ok(status === 0, `${stdout}${stderr}`);
};

const COLOURS = `Object.fromEntries(['--refused', '--overridden', '--cached', '--exception', '--fatal', '--corrected',
  '--jump', '--stale', '--outside', '--undone', '--expected', '--override', '--phone', '--ink', '--c0', '--c1', '--c2', '--faint', '--card', '--accent'].map((name) => {
  const context = document.createElement('canvas').getContext('2d');
  context.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(name).trim();
  return [name, context.fillStyle];
}))`;

export const coloursOf = (browser) => browser.evaluate(COLOURS);

/** The lanes as they are drawn with all requests in view: names, and by lane and request the colours and edges. */
export const drawnAt = async (browser, canvas, count) => {
  const LANE = 16;
  const { drawn, width } = await browser.evaluate(`({ drawn: document.getElementById('${canvas}').drawn, width: document.getElementById('${canvas}').clientWidth })`);
  const colours = await coloursOf(browser);
  const gutter = drawn.find(({ name }) => name === 'fillRect').left;
  const pitch = (width - gutter) / count;
  const bands = drawn.filter(({ name }) => name === 'fillRect');
  const inLane = (lane) => bands.filter(({ what: [, y, , height] }) => Math.floor((y + height / 2) / LANE) === lane);
  const covers = ({ what: [x, , w] }, from, to) => x < to && x + w > from;
  const isHidden = ({ what: [, top, , height] }, i, list) => list.slice(i + 1).some(({ what: [, above, , over] }) => above <= top && above + over >= top + height);
  return {
    names: drawn.filter(({ name, left }) => name === 'fillText' && left === 0).map(({ what }) => what[0]),
    colours: (lane, i) => [...new Set(inLane(lane).filter((band) => band.colour !== colours['--ink'])
      .filter((band) => covers(band, (i + 0.5) * pitch - 1, (i + 0.5) * pitch + 1))
      .filter((band, k, list) => !isHidden(band, k, list))
      .map(({ colour }) => Object.keys(colours).find((name) => colours[name] === colour) ?? colour))].sort(),
    inks: [...new Set(drawn.filter(({ name }) => name === 'fillText').map(({ left, colour }) => `${left > 0 ? 'value' : 'name'} ${colour}`))],
    labels: (lane) => drawn.filter(({ name, left, what: [, , y] }) => name === 'fillText' && left > 0 && Math.floor(y / LANE) === lane)
      .map(({ what: [text, x] }) => [text, Math.round((x - 5) / pitch)]),
    covered: (lane) => inLane(lane).filter((band, k, list) => isHidden(band, k, list.filter(({ colour }, i) => i <= k || ![band.colour, colours['--ink']].includes(colour)))),
    hasEdge: (lane, i) => inLane(lane).some((band) => band.colour === colours['--ink'] && covers(band, i * pitch - 1, i * pitch + 2)),
  };
};
