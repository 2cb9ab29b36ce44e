// Follows a replay that goes on: takes what the tool tells, and shows it.
//
// requests  { count, isFold, overview and requests: { block, firstWords, words }, firstRig?, rigs?, jumpsFrom?,
//             jumps?: [{ index, sensor, size, words }...] }; a request that came before is as it is told now
// fatal     as a report has it
// end       { trouble }: empty where the input has ended
// bye       the tool is about to end

const FOLLOWED = 300;  // requests in the window of a page that follows
const LEAST_ROOM = 1024;
const TELL_PAUSE = 500;  // milliseconds
const MOST_JUMPS = 1000;
const RATIOS = ['asked', 'override', 'phone.zoom'];

const source = new EventSource('events');
const overviewTable = new Table(data.overview);
const overviewPaths = [];
let folds = 0;  // the blocks that stay
let lastFollowed = 0;
let shape = '';
let wantedLink = location.hash;
const touched = new Set();

const button = html('button', { id: 'follow', title: 'Show each new request (f, End)', 'aria-pressed': 'true' }, 'Follow');
const state = html('span', { id: 'live-state', role: 'status', class: 'aside' }, 'Waiting for the first request.');
$('fatal').before(html('div', { id: 'live', class: 'bar' }, button,
  html('a', { id: 'save', href: 'report', download: '' }, 'Save as report'), state));

// Columns grow rarely, and what is made of them is made anew then.
const makeRoom = (wanted) => {
  if (wanted <= capacity) return;
  capacity = Math.max(LEAST_ROOM, capacity);
  while (capacity < wanted) capacity *= STEP;
  for (const [path, values] of columns) {
    columns.set(path, new Float64Array(capacity).fill(NO_VALUE));
    columns.get(path).set(values);
  }
  stepsOf.clear();
};

const setJumps = (from, jumps) => {
  const changed = data.jumps.filter(({ index }) => index >= from);
  for (const { index } of changed) {
    jumpsAt.delete(index);
    columnOf('marks')[index] &= ~MARKS.jump;
  }
  for (const jump of jumps) {
    jumpsAt.set(jump.index, [...(jumpsAt.get(jump.index) ?? []), jump]);
    columnOf('marks')[jump.index] |= MARKS.jump;
  }
  for (const { index } of [...changed, ...jumps]) touched.add(index);
  const all = [...data.jumps.filter(({ index }) => index < from), ...jumps];
  data.jumps = all.sort((a, b) => b.size - a.size).slice(0, MOST_JUMPS);
  data.allJumps = data.jumps.length;
};

const learnWords = ({ overview, requests }) => {
  overviewTable.learn(overview.firstWords, overview.words);
  overview.words.forEach((words, i) => { overviewPaths[overview.firstWords + i] = pathsOf(words); });
  requestTable.learn(requests.firstWords, requests.words);
};

const takeRequests = (message, block) => {
  message.rigs?.forEach((rig, i) => { data.rigs[message.firstRig + i] = rig; });
  makeRoom(message.count);
  if (message.isFold) {
    requestTable.blocks.length = folds;
    keptBlocks.clear();
    ++folds;
  }
  const number = requestTable.blocks.push(message.requests.block) - 1;
  for (const index of block.indices) {
    for (const column of columns.values()) column[index] = NO_VALUE;
    columnOf('block')[index] = number;
    touched.add(index);
    if (detailsLast?.index === index) detailsLast = null;
  }
  putIntoColumns(block, overviewPaths);
  for (const index of block.indices) {
    for (const path of RATIOS) if (columns.has(path)) dropNoRatio(path, index);
    if (jumpsAt.has(index)) columnOf('marks')[index] |= MARKS.jump;
  }
  if (message.jumpsFrom !== undefined) setJumps(message.jumpsFrom, message.jumps);
  count = Math.max(count, message.count);
  data.total = count;
  planRefresh();
};

let isRefreshPlanned = false;
const planRefresh = () => {
  if (isRefreshPlanned || count === 0) return;
  isRefreshPlanned = true;
  requestAnimationFrame(() => {
    isRefreshPlanned = false;
    refresh();
  });
};

const refresh = () => {
  knowNames();
  renew();
  const isShownTouched = touched.has(current);
  touched.clear();
  if (document.documentElement.dataset.ready !== 'yes') begin();
  followLink();
  if (isFollowing) {
    slide();
    show(count - 1, { isNewest: true });
  } else {
    drawTimeline();
    if (isShownTouched) showDetails();
  }
  showWhatIf();
  planTelling();
};

// Curves and lanes are made anew for a new sensor, stage or curve; otherwise single requests change.
const renew = () => {
  knowSensors();
  stages.splice(0, stages.length, ...askedStages());
  const now = [capacity, sensorIds, stages, columns.size].join(';');
  if (shape !== now) {
    shape = now;
    stepsOf.clear();
    build();
    return;
  }
  let isLaneNew = false;
  for (const index of touched) {
    for (const curve of stepsOf.values()) curve.update(index);
    for (const lane of allLanes) {
      for (const i of [index, index + 1]) {  // the next one's edge is a change from this one
        const bits = i < count ? lane.bitOf(i) : 0;
        lane.steps.update(i, bits);
        isLaneNew ||= (bits & ~lane.uses) !== 0;
        lane.uses |= bits;
      }
    }
  }
  if (!isLaneNew) return;
  lanes = allLanes.filter(({ uses }) => uses !== 0);
  showLaneLegend();
};

const begin = () => {
  state.textContent = '';
  setWindow(-0.5, count - 0.5);
  listen();
  document.documentElement.dataset.ready = 'yes';
};

// A link to a request that has not come yet is opened when it comes.
const followLink = () => {
  const name = /^#request=(\d+(:\d+)?)$/.exec(wantedLink)?.[1];
  if (name === undefined) return;
  setFollowing(false);
  if (indexOf(name) < 0) return;
  wantedLink = '';
  setWindow(-0.5, count - 0.5);  // more than when it began
  show(indexOf(name), { isFromHistory: true });
};

/** Moves the window to the newest request. */
const slide = () => {
  const length = shownWindow.to - shownWindow.from;
  const isWhole = length >= Math.min(lastFollowed, FOLLOWED);
  const next = isWhole && length <= FOLLOWED ? Math.min(count, FOLLOWED) : length;
  lastFollowed = count;
  setWindow(count - 0.5 - next, count - 0.5);
};

let lastTold = '';
let isTellingPlanned = false;
const planTelling = () => {
  if (isTellingPlanned) return;
  isTellingPlanned = true;
  setTimeout(() => {
    isTellingPlanned = false;
    const told = FINDINGS.map(({ mark }) => requestsWith(mark).length).join() + data.jumps.map(({ words }) => words).join();
    if (told !== lastTold) showFindings();
    lastTold = told;
    describe();
  }, TELL_PAUSE);
};

const alarm = (words) => {
  $('fatal').textContent = words;
  $('fatal').hidden = false;
};

const HANDLERS = {
  begin: (wasSlow) => {  // all from the beginning, also after a connection broke
    folds = 0;
    requestTable.blocks.length = 0;
    keptBlocks.clear();
    state.textContent = count === 0 ? 'Waiting for the first request.' : '';
    tell(wasSlow ? 'This page was too slow and was left out for a while; it shows all again.' : '');
  },
  requests: takeRequests,
  fatal: (fatal) => {
    data.fatal = fatal;
    showHead();
  },
  end: ({ trouble }) => {
    if (trouble) alarm(`The replay stopped: ${trouble}`);
    state.textContent = 'The replay is over. The page can be saved until zoomreplay is ended.';
  },
  bye: () => {
    source.close();
    $('save').setAttribute('aria-disabled', 'true');
    $('save').removeAttribute('href');
    $('what-if').hidden = true;
    state.textContent = 'zoomreplay has been ended. What it told is here until the page is closed.';
  },
};

// Unpacking takes its time, so all that has come is unpacked at once, and then taken in its order.
const come = [];
let isTaking = false;
const takeAll = async () => {
  if (isTaking) return;
  isTaking = true;
  while (come.length > 0) {
    const events = come.splice(0);
    const packed = events.filter(({ name }) => name === 'requests').map(({ message }) => message);
    packed.forEach(learnWords);
    overviewTable.blocks = packed.map(({ overview }) => overview.block);
    const blocks = await Promise.all(packed.map((_, i) => overviewTable.block(i)));
    for (const { name, message } of events) HANDLERS[name](message, blocks[packed.indexOf(message)]);
  }
  isTaking = false;
};
for (const name of Object.keys(HANDLERS)) {
  source.addEventListener(name, ({ data: text }) => {
    come.push({ name, message: JSON.parse(text) });
    takeAll();
  });
}
source.onerror = () => {
  state.textContent = source.readyState === EventSource.CLOSED ?
    'This page cannot follow: zoomreplay is gone, or eight pages follow already.' : 'The connection broke; trying again.';
};
button.addEventListener('click', () => isFollowing ? setFollowing(false) : show(count - 1, { isNewest: true }));

$('plain').hidden = true;
$('page').hidden = false;
showHead();
