// What is worth a look: lists of requests that one can walk along both ways.

const jumpsAt = new Map();  // by request
let walk = null;  // { words, found }: the list in hand

const knowJumps = () => {
  for (const jump of data.jumps) {
    columnOf('marks')[jump.index] |= MARKS.jump;
    jumpsAt.set(jump.index, [...(jumpsAt.get(jump.index) ?? []), jump]);
  }
};

const requestsWith = (mark) => {
  const found = [];
  for (let i = 0; i < count; ++i) if (hasMark(i, mark)) found.push(i);
  return found;
};

const choose = (words, found) => {
  walk = { words, found };
  if (found.length === 0) {
    tell(`No request is ${words}.`);
    showWalk();
    return;
  }
  tell('');
  show(found.find((i) => i >= current) ?? found[0]);
  showWalk();
};

const step = (direction) => {
  const { found } = walk;
  const next = direction > 0 ? found.find((i) => i > current) : found.findLast((i) => i < current);
  show(next ?? (direction > 0 ? found[0] : found.at(-1)));
};

// Of long lists, the part around the request in hand.
const NEAR = 40;
const showWalk = () => {
  $('walk').hidden = !walk || walk.found.length === 0;
  if ($('walk').hidden) return;
  const { words, found } = walk;
  const here = Math.max(0, found.findIndex((i) => i >= current));
  const place = found.indexOf(current);
  $('walk-title').textContent = `${words}: ${place < 0 ? '' : `${place + 1} of `}${found.length}`;
  const first = Math.max(0, Math.min(here - NEAR / 2, found.length - NEAR));
  const links = found.slice(first, first + NEAR).map((i) => html('li', {},
    html('a', { href: `#request=${nameOf(i)}`, 'aria-current': i === current ? 'true' : null }, nameOf(i))));
  $('walk-list').replaceChildren(...(first > 0 ? [html('li', {}, '\u2026')] : []), ...links,
    ...(first + NEAR < found.length ? [html('li', {}, '\u2026')] : []));
};

const showJumps = () => {
  const { jumps, allJumps } = data;
  $('jumps').hidden = jumps.length === 0;
  const SHOWN = 20;
  $('jump-list').replaceChildren(...jumps.slice(0, SHOWN).map((jump) => html('li', {},
    html('a', { href: `#request=${nameOf(jump.index)}` }, `request ${nameOf(jump.index)}: ${jump.words}`))));
  if (allJumps > SHOWN) $('jump-list').append(html('li', { class: 'aside' }, `and ${allJumps - SHOWN} smaller ones`));
};

const showFindings = () => {
  $('findings').replaceChildren();
  for (const { mark, words, alarm } of FINDINGS) {
    const found = requestsWith(mark);
    if (found.length === 0) continue;
    const button = html('button', { class: alarm ? 'alarm' : null, 'data-finding': mark }, `${words}: ${found.length}`);
    button.addEventListener('click', () => walk?.words === words ? step(1) : choose(words, found));
    $('findings').append(html('li', {}, button));
  }
  showJumps();
};
