// What may be typed into the field "go to": a request's number, or words that requests must all meet,
// such as "sensor 2 corrected 1.9-2.1x".

const WORDS = {
  overridden: (i) => hasMark(i, 'overridden'),
  refused: (i) => !hasMark(i, 'overridden'),
  corrected: (i) => hasMark(i, 'corrected'),
  cached: (i) => hasMark(i, 'cached'),
  exception: (i) => hasMark(i, 'exception'),
  fatal: (i) => hasMark(i, 'fatal'),
  outside: (i) => hasMark(i, 'outside'),
  jump: (i) => hasMark(i, 'jump'),
  differs: (i) => hasMark(i, 'differs'),
  kept: (i) => hasMark(i, 'stale'),
  undone: (i) => hasMark(i, 'undone'),
};

// "sensor 2 corrected" is about that sensor's crops.
const sensorTest = (id, text) => {
  const of = (name) => columnOf(`sensors.${id}.${name}`);
  if (/\bcorrected\b/.test(text)) return (i) => of('corrected')[i] === 1;
  if (/\bjump\b/.test(text)) return (i) => jumpsAt.get(i)?.some((jump) => jump.sensor === id);
  if (/\basks\b/.test(text)) return (i) => at('asker', i) === id;
  return (i) => of('mode')[i] >= 0;
};

/** The test of a filter, or { trouble } where a word of it means nothing. */
const parseFilter = (text) => {
  const tests = [];
  let rest = text.toLowerCase();
  const take = (pattern, test) => {
    rest = rest.replace(pattern, (...parts) => {
      tests.push(test(...parts));
      return ' ';
    });
  };
  const whole = rest;
  take(/\bsensor\s*(\d+)(\s+asks)?/g, (_, id) => sensorTest(Number(id), whole));
  take(/\bmode\s*(\d+)/g, (_, mode) => (i) => sensorIds.some((id) => at(`sensors.${id}.mode`, i) === Number(mode)));
  take(/(\d+(?:\.\d+)?)\s*-\s*(\d+(?:\.\d+)?)\s*[x\u00d7]/g, (_, low, high) =>
    (i) => [at('asked', i), at('override', i)].some((v) => v >= Number(low) - 1e-6 && v <= Number(high) + 1e-6));
  take(/(\d+(?:\.\d+)?)\s*[x\u00d7]/g, (_, value) =>
    (i) => [at('asked', i), at('override', i)].some((v) => Math.abs(v - Number(value)) < 0.005));
  for (const word of rest.split(/[\s,]+/).filter(Boolean)) {
    const name = Object.keys(WORDS).find((known) => known === word || `${known}s` === word);
    if (!name) return { trouble: `\u201c${word}\u201d means nothing here; try ${Object.keys(WORDS).slice(0, 4).join(', ')}, sensor 2, mode 1, 1.9-2.1x.` };
    tests.push(WORDS[name]);
  }
  return { test: (i) => tests.every((test) => test(i)) };
};

const goTo = (text) => {
  const wanted = text.trim();
  if (wanted === '') return;
  if (/^\d+(:\d+)?$/.test(wanted)) {
    const index = indexOf(wanted);
    if (index < 0) tell(`There is no request ${wanted} in this report.`);
    else { tell(''); show(index); }
    return;
  }
  const { test, trouble } = parseFilter(wanted);
  if (trouble) return tell(trouble);
  const found = [];
  for (let i = 0; i < count; ++i) if (test(i)) found.push(i);
  choose(`\u201c${wanted}\u201d`, found);
};
