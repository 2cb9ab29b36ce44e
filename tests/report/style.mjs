// Holds the names that style, scripts and elements of the page have of each other together: node style.mjs
import assert from 'node:assert/strict';
import { readFileSync, readdirSync } from 'node:fs';
import { test } from 'node:test';

const FOLDERS = ['report', 'live'].map((part) => new URL(`../../tools/zoomreplay/${part}/page/`, import.meta.url));
const read = (kind) => FOLDERS.flatMap((folder) => readdirSync(folder).filter((name) => kind.test(name))
  .map((name) => readFileSync(new URL(name, folder), 'utf8'))).join('\n');
const [style, page] = [read(/\.css$/).replace(/\/\*.*?\*\//gs, ''), read(/\.(js|html)$/)];
const found = (text, pattern) => new Set([...text.matchAll(pattern)].flatMap(([, words]) => words.split(' ')));
const missing = (wanted, known) => [...wanted].filter((name) => !known.has(name));
const selectors = [...style.matchAll(/([^{}]+)\{/g)].map(([, selector]) => selector).join();

test('what is named is there', () => {
  const colours = found(style, /(--[\w-]+):/g);
  assert.deepEqual(missing(found(style + page, /(?:var\(|')(--[\w-]+)/g), colours), ['--own']);
  const ids = new Set([...found(page, /\bid="([\w-]+)"/g), ...found(page, /\bid: '([\w-]+)'/g)]);
  assert.deepEqual(missing(new Set([...found(selectors, /#([a-z][\w-]*)/g), ...found(page, /\$\('([\w-]+)'\)/g),
    ...found(page, /\b(?:aria-labelledby|aria-describedby|for)(?:=|': ?)['"]([\w-]+)['"]/g)]), ids), []);
  const classes = found(selectors, /\.([a-z][\w-]*)/g);
  assert.deepEqual(missing(found(page, /\bclass(?:: |=)['"]([a-z]\w*(?: \w+)*)['"]/g), classes), []);
  assert.deepEqual(missing(found(page, /\bstyle: '(\w+)/g), classes), []);
  const words = found(page, /([\w-]+)/g);
  assert.deepEqual(missing(classes, new Set([...words, 'mark-overridden', 'mark-refused', 'mark-exception', 'mark-fatal', 'dygraph-axis-label', 's1', 's2', 's3', 's4'])), []);
});
