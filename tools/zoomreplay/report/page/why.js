// Why the crops of the chosen request are what they are: the steps that made them.

const PLACEHOLDER = /\{(x|line|stream)?\}/g;
/** A saying's words with its numbers filled in. */
const say = ([words, ...numbers]) => words.replace(PLACEHOLDER, (_, kind) => {
  const value = numbers.shift();
  if (kind === 'x') return hex(value);
  if (kind === 'stream') return '0x' + (BigInt(value) << 32n | BigInt(numbers.shift())).toString(16);
  return String(value);
});

const isWhole = (values) => values.every(Number.isInteger);
const exactRect = (values) => isWhole(values) ? rectText(values) : rectText(values.map((v) => Number(v.toFixed(2))));

// The rectangle after the step is drawn while the step is pointed at or has the focus.
const stepItem = (crop, step) => {
  const item = html('li', { tabindex: 0 }, html('span', {}, say(step.say)),
    html('span', { class: 'rect' }, `${exactRect(step.rect)} ${step.tg ? 'TG' : 'active array'}`));
  const on = () => pointAt(crop.s, step.tg === true, step.rect);
  for (const event of ['pointerenter', 'focus']) item.addEventListener(event, on);
  for (const event of ['pointerleave', 'blur']) item.addEventListener(event, pointAway);
  return item;
};

const cropSteps = (query, crop) => html('section', { class: 'steps', 'data-line': query.line, 'data-sensor': crop.s },
  html('h4', {}, `${query.stage} sensor ${crop.s} ${whatIs(crop)}`),
  html('ol', {}, crop.steps.map((step) => stepItem(crop, step))),
  crop.unexplained ? html('p', { class: 'alarm' }, `The library answered ${rectText(crop.c)}: the steps do not lead there.`) : null);

const showWhy = (request) => {
  const parts = request.queries.filter((query) => query.reason || query.crops.some((crop) => crop.steps)).flatMap((query) => [
    html('h3', {}, `${query.stage} on line ${query.line}: `, html('span', { class: 'reason' }, query.reason ? say(query.reason) : TEXTS[query.state])),
    query.kept ? html('p', { class: 'aside' }, `The answer of line ${query.kept} was kept and given again.`) : null,
    html('div', { class: 'all-steps' }, query.crops.filter((crop) => crop.steps).map((crop) => cropSteps(query, crop))),
  ]);
  $('why-card').hidden = parts.length === 0;
  $('why').replaceChildren(...parts.filter(Boolean));
};
