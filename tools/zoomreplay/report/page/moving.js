// Which request is chosen, how people move to others, and the browser's history of it.

let current = 0;
let isPassingBy = false;  // on the way to another request, as while dragging
let detailsTimer = null;
const DETAILS_PAUSE = 80;  // milliseconds

const tell = (message) => {
  $('message').textContent = message;
  $('message').hidden = message === '';
};

const summary = (index) => {
  const states = stages.map((stage) => [stage, stateOf(index, stage)]).filter(([, found]) => found)
    .map(([stage, found]) => `${stage} ${TEXTS[found.state]}${found.cached ? ' and from the cache' : ''}`);
  const faults = FINDINGS.filter(({ mark }) => hasMark(index, mark) && mark !== 'exception' && mark !== 'fatal')
    .map(({ words }) => words);
  return `Request ${nameOf(index)}: ${[...states, ...faults].join(', ')}`;
};

/** The values of a request in one line. */
const readOut = (index) => {
  const { path, unit, isSigned, words } = QUANTITIES[quantity];
  const values = sensorIds.map((id) => [id, at(`sensors.${id}.${path}`, index)]).filter(([, value]) => value !== undefined)
    .map(([id, value]) => `sensor ${id} ${(value < 0 ? MINUS : isSigned ? '+' : '') + Math.abs(value).toFixed(2)}${unit}`);
  return [`request ${nameOf(index)}`,
    at('asked', index) === undefined ? null : `asked ${ratio(at('asked', index))}`,
    at('override', index) === undefined ? null : `override ${ratio(at('override', index))}`,
    values.length > 0 ? `${words.toLowerCase()}: ${values.join(', ')}` : null].filter(Boolean).join(' \u00b7 ');
};

// A replay that goes on is followed until somebody moves elsewhere.
let isFollowing = data.live === true;
const setFollowing = (isOn) => {
  isFollowing = isOn && data.live === true;
  $('follow')?.setAttribute('aria-pressed', String(isFollowing));
};

const show = (index, { isPassing = false, isFromHistory = false, isNewest = false } = {}) => {
  setFollowing(isNewest);
  current = Math.max(0, Math.min(count - 1, index));
  isPassingBy = isPassing;
  reveal(current);
  placeCursor();
  $('hover').textContent = readOut(current);
  $('timeline').setAttribute('aria-valuenow', current + 1);
  $('timeline').setAttribute('aria-valuetext', summary(current));
  if (isPassing) {
    detailsTimer ??= setTimeout(showDetails, DETAILS_PAUSE);
    return;
  }
  if (!timer && !isNewest) $('status').textContent = summary(current);
  if (!isFromHistory && !isNewest) remember();
  showWalk();
  showDetails();
};
/** The end of a drag or of playing: this is where somebody wanted to go. */
const settle = () => show(current);

// Of a request that changes while it is unpacked, the later one stays.
let detailsWanted = 0;
let detailsShown = 0;
const showDetails = async () => {
  clearTimeout(detailsTimer);
  detailsTimer = null;
  const index = current;
  const number = ++detailsWanted;
  const request = await detailsOf(index);
  if (number < detailsShown || (index !== current && !isPassingBy)) return;  // somebody has gone on
  detailsShown = number;
  $('details').hidden = false;
  $('request-title').textContent = `Request ${nameOf(index)}`;
  $('request-mode').textContent = modeName(request.mode);
  $('link').textContent = $('link').href = `#request=${nameOf(index)}`;
  $('ratios').replaceChildren('asked ', html('b', { id: 'asked' }, ratio(at('asked', index) ?? request.queries[0]?.asked ?? '\u2013')),
    ' override ', html('b', { id: 'override' }, ratio(at('override', index) ?? '\u2013')));
  showStages(request);
  request.index = index;
  showAngles(request);
  showLines(request);
  showSensors(request);
  showNumbers(request);
  showWhy(request);
  showDifferences(index);
  showLog(request);
  shownRequest = request;
};
let shownRequest = null;

// Steps in quick succession are one move.
let lastMove = 0;
const ONE_MOVE = 400;  // milliseconds
const remember = () => {
  const address = `#request=${nameOf(current)}`;
  if (location.hash === address) return;
  const now = performance.now();
  try {
    if (now - lastMove < ONE_MOVE) history.replaceState(null, '', address);
    else history.pushState(null, '', address);
  } catch { /* some browsers refuse it for files; the report works without */ }
  lastMove = now;
};

let timer = null;
const stop = () => {
  if (!timer) return;
  clearInterval(timer);
  timer = null;
  $('play').textContent = 'Play';
  $('play').setAttribute('aria-pressed', 'false');
  settle();
};
const play = () => {
  const REQUESTS_PER_SECOND = 10;
  if (timer) return stop();
  if (current === count - 1) show(0);
  $('play').textContent = 'Pause';
  $('play').setAttribute('aria-pressed', 'true');
  timer = setInterval(() => {
    show(current + 1, { isPassing: true });
    if (current === count - 1) stop();
  }, 1000 / REQUESTS_PER_SECOND);
};

const MOVES = {
  ArrowLeft: () => show(current - 1),
  ArrowRight: () => show(current + 1),
  PageUp: () => show(current - 10),
  PageDown: () => show(current + 10),
  Home: () => show(0),
  End: () => show(count - 1, { isNewest: data.live }),
  ' ': play,
  '+': () => zoomAt(xOf(current), 0.5),
  '-': () => zoomAt(xOf(current), 2),
  b: () => differencesOf.has(current) && blink(),
  f: () => data.live && show(count - 1, { isNewest: true }),
};
// Keys that scroll belong to the page unless the timeline has the focus.
const onKey = (event) => {
  const isOnTimeline = event.target === $('timeline');
  const isOnControl = event.target instanceof Element && event.target.closest('a, input, select, textarea');
  const isFree = ['ArrowLeft', 'ArrowRight', 'b', 'f'].includes(event.key);
  const move = MOVES[event.key];
  if (!move || event.ctrlKey || event.altKey || event.metaKey) return;
  if (!isOnTimeline && (isOnControl || !isFree)) return;
  event.preventDefault();
  if (event.key !== ' ') stop();
  move();
};

const openLink = () => {
  const name = /^#request=(\d+(:\d+)?)$/.exec(location.hash)?.[1];
  const index = name === undefined ? -1 : indexOf(name);
  const isUnknown = location.hash.length > 1 && index < 0;
  tell(isUnknown ? `There is no ${decodeURIComponent(location.hash.slice(1)).replace('request=', 'request ')} in this report.` : '');
  show(index < 0 ? Math.max(0, data.fatal?.at ?? 0) : index, { isFromHistory: true });
};

const copy = async () => {
  const content = tableText(shownRequest);
  try {
    await navigator.clipboard.writeText(content);
    $('copy').textContent = 'Copied';
  } catch {
    getSelection().selectAllChildren($('numbers'));
    $('copy').textContent = 'Selected: copy with Ctrl+C';
  }
  setTimeout(() => { $('copy').textContent = 'Copy the table'; }, 2000);
};
