// Which request is chosen, and how people move to others.

const summary = (index) => {
  const request = requests[index];
  const states = STAGES.map((stage) => [stage, stateOf(request, stage)]).filter(([, found]) => found)
    .map(([stage, found]) => `${stage} ${TEXTS[found.state]}${found.cached ? ' and from the cache' : ''}`);
  return `Request ${names[index]}: ${[...states, isCorrected(request) ? 'crops corrected' : ''].filter(Boolean).join(', ')}`;
};

let current = 0;
const show = (index) => {
  current = Math.max(0, Math.min(requests.length - 1, index));
  const request = requests[current];
  moveCursor(current);
  $('request-title').textContent = `Request ${names[current]}`;
  $('request-mode').textContent = modeName(request.mode);
  $('link').textContent = $('link').href = `#request=${names[current]}`;
  $('ratios').replaceChildren('asked ', html('b', { id: 'asked' }, ratio(askedOf(request) ?? '\u2013')),
    ' override ', html('b', { id: 'override' }, ratio(overrideOf(request) ?? '\u2013')));
  showStages(request);
  showAngles(current);
  showLines(request);
  showSensors(request);
  showNumbers(request);
  showLog(request);
  const slider = $('timeline');
  slider.setAttribute('aria-valuenow', current + 1);
  slider.setAttribute('aria-valuetext', summary(current));
  if (!timer) $('status').textContent = summary(current);
  try {
    history.replaceState(null, '', `#request=${names[current]}`);
  } catch { /* some browsers refuse it for files; the report works without */ }
};

let timer = null;
const stop = () => {
  clearInterval(timer);
  timer = null;
  $('play').textContent = 'Play';
  $('play').setAttribute('aria-pressed', 'false');
};
const play = () => {
  const REQUESTS_PER_SECOND = 10;
  if (timer) return stop();
  if (current === requests.length - 1) show(0);
  $('play').textContent = 'Pause';
  $('play').setAttribute('aria-pressed', 'true');
  timer = setInterval(() => {
    show(current + 1);
    if (current === requests.length - 1) stop();
  }, 1000 / REQUESTS_PER_SECOND);
};

const KEYS = {
  ArrowLeft: () => show(current - 1),
  ArrowRight: () => show(current + 1),
  PageUp: () => show(current - 10),
  PageDown: () => show(current + 10),
  Home: () => show(0),
  End: () => show(requests.length - 1),
  ' ': play,
};
const onKey = (event) => {
  const isOnButton = event.target instanceof Element && event.target.closest('button, a');
  const action = KEYS[event.key];
  if (!action || event.ctrlKey || event.altKey || event.metaKey || (event.key === ' ' && isOnButton)) return;
  event.preventDefault();
  if (event.key !== ' ') stop();
  action();
};

const onDrag = (event) => {
  if (event.buttons !== 1) return;
  const box = $('timeline').getBoundingClientRect();
  stop();
  show(Math.floor(((event.clientX - box.left) * width / box.width - LEFT) / pitch()));
};

const openLink = () => {
  const name = /^#request=(\d+(:\d+)?)$/.exec(location.hash)?.[1];
  const index = names.indexOf(name);
  show(index < 0 ? Math.max(0, data.fatal?.at ?? 0) : index);
};

const copy = async () => {
  const content = tableText(requests[current]);
  try {
    await navigator.clipboard.writeText(content);
    $('copy').textContent = 'Copied';
  } catch {
    getSelection().selectAllChildren($('numbers'));
    $('copy').textContent = 'Selected: copy with Ctrl+C';
  }
  setTimeout(() => { $('copy').textContent = 'Copy the table'; }, 2000);
};
