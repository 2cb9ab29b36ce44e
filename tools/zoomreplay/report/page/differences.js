// What differs from an earlier replay of the scenario, where the report was written with --compare.
//
// difference  { line: 0 where nothing came of it, no?, op, expected?: result line,
//               fields: [[path, expected, actual]...] }

const differencesOf = new Map();  // by request
const strayDifferences = [];  // that belong to no request

// Of requests with one number, the last that began before the line.
const requestOfDifference = ({ no, line }) => {
  if (no === undefined) return -1;
  let index = indexOf(String(no));
  for (let times = 2; names.size > 0; ++times) {
    const next = indexOf(`${no}:${times}`);
    if (next < 0 || (line > 0 && at('line', next) > line)) break;
    index = next;
  }
  return index;
};

const unpackDifferences = async () => {
  const table = new Table(data.differences);
  for (let number = 0; number < table.blocks.length; ++number) {
    const block = await table.block(number);
    for (let row = 0; row < block.indices.length; ++row) {
      const difference = table.record(block, row);
      const index = requestOfDifference(difference);
      if (index < 0) {
        strayDifferences.push(difference);
        continue;
      }
      columnOf('marks')[index] |= MARKS.differs;
      differencesOf.set(index, [...(differencesOf.get(index) ?? []), difference]);
    }
  }
};

/** The expected result of a query, where the answer differs from it. */
const expectedOf = (index, query) => {
  const difference = differencesOf.get(index)?.find(({ line }) => line === query.line);
  return difference?.expected && JSON.parse(difference.expected);
};

/** The expected crop beside a crop; undefined where nothing differs, null where none was expected. */
const expectedCrop = (index, query, crop) => {
  const expected = expectedOf(index, query);
  if (!expected) return undefined;
  const need = expected.need ?? {};
  const found = crop.p ? need.tgCrops?.[crop.s]?.[hex(crop.p[0])] : (crop.extra ? need.extraTgCrops : need.streamCrops)?.[crop.s];
  return found && expected.result !== false ? found : null;
};

const deltaText = (crop, expected) => expected === undefined ? '' : expected === null ? 'not expected' :
  crop.map((value, i) => value - expected[i]).map((delta, i) => delta === 0 ? null :
    `${'xywh'[i]} ${delta > 0 ? '+' : MINUS}${Math.abs(delta)}`).filter(Boolean).join(', ') || 'as expected';

const differenceItem = ({ line, op, expected, fields }) => html('li', {},
  line === 0 ? `${op}: expected, and nothing came of it` : !expected ? `line ${line}, ${op}: not expected` :
    html('span', {}, `line ${line}, ${op}`, html('ul', {}, fields.map(([path, before, now]) => html('li', {},
      html('code', {}, path), ` expected ${before}, is ${now}`)))));

const showDifferences = (index) => {
  const list = differencesOf.get(index) ?? [];
  $('differences-card').hidden = list.length === 0;
  $('differences').replaceChildren(...list.map(differenceItem));
};

const showStrayDifferences = () => {
  $('stray').hidden = strayDifferences.length === 0;
  $('stray-title').textContent = `Differences that belong to no request: ${strayDifferences.length}`;
  const SHOWN = 20;
  $('stray-list').replaceChildren(...strayDifferences.slice(0, SHOWN).map(differenceItem));
  if (strayDifferences.length > SHOWN) $('stray-list').append(html('li', { class: 'aside' }, `and ${strayDifferences.length - SHOWN} more`));
};

// Blinking between both sides shows what moved.
let isExpectedShown = false;
const blink = () => {
  isExpectedShown = !isExpectedShown;
  $('blink').setAttribute('aria-pressed', String(isExpectedShown));
  showSensors(shownRequest);
};
