// Mouse, wheel and fingers on the timeline and on its overview strip.

const fingers = new Map();
let pinch = null;

const place = (event) => event.clientX - $('timeline').getBoundingClientRect().left;

const onPointerDown = (event) => {
  if (event.button !== 0) return;
  $('timeline').setPointerCapture(event.pointerId);
  fingers.set(event.pointerId, place(event));
  if (fingers.size === 2) {
    pinch = { window: { ...shownWindow }, start: [...fingers.values()] };
    return;
  }
  stop();
  $('timeline').focus({ preventScroll: true });
  scrub(place(event));
};

const onPointerMove = (event) => {
  if (!fingers.has(event.pointerId)) {
    showHover(place(event));
    return;
  }
  const before = fingers.get(event.pointerId);
  fingers.set(event.pointerId, place(event));
  if (pinch && fingers.size === 2) onPinch();
  else if (event.shiftKey) pan((before - place(event)) / plotWidth() * (shownWindow.to - shownWindow.from));
  else if (!pinch) scrub(place(event));
};

// What was under both fingers stays under them.
const onPinch = () => {
  const [a, b] = [...fingers.values()];
  const { window, start } = pinch;
  const length = window.to - window.from;
  const requestUnder = (x) => window.from + (x - gutterWidth()) / plotWidth() * length;
  const [first, second] = start.map(requestUnder);
  const spread = Math.sign(b - a || 1) * Math.max(Math.abs(b - a), 10);
  const next = Math.abs((second - first) / spread * plotWidth());
  const middle = (first + second) / 2;
  const share = ((a + b) / 2 - gutterWidth()) / plotWidth();
  setWindow(middle - share * next, middle + (1 - share) * next);
};

const onPointerUp = (event) => {
  if (!fingers.delete(event.pointerId)) return;
  if (fingers.size === 0) {
    if (!pinch) settle();
    pinch = null;
  }
};

const scrub = (x) => show(Math.round(requestAt(x)), { isPassing: true });

const onWheel = (event) => {
  event.preventDefault();
  const perPixel = (shownWindow.to - shownWindow.from) / plotWidth();
  if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
    pan((event.deltaX || event.deltaY) * perPixel);
  } else {
    zoomAt(place(event), 1.0015 ** event.deltaY);
  }
};

const onStrip = (event) => {
  if (event.type === 'pointerdown') $('strip').setPointerCapture(event.pointerId);
  if (event.buttons !== 1) return;
  setFollowing(false);
  const { left, width } = $('strip').getBoundingClientRect();
  const middle = (event.clientX - left) / width * count - 0.5;
  const length = shownWindow.to - shownWindow.from;
  const half = (length < count ? length : count / 10) / 2;
  setWindow(middle - half, middle + half);
};

const showHover = (x) => {
  const index = Math.min(count - 1, Math.max(0, Math.round(requestAt(x))));
  $('hover').textContent = x < gutterWidth() ? '' : readOut(index);
};

const watchPointer = () => {
  const timeline = $('timeline');
  timeline.addEventListener('pointerdown', onPointerDown);
  timeline.addEventListener('pointermove', onPointerMove);
  for (const end of ['pointerup', 'pointercancel']) timeline.addEventListener(end, onPointerUp);
  timeline.addEventListener('pointerleave', () => { $('hover').textContent = readOut(current); });
  timeline.addEventListener('wheel', onWheel, { passive: false });
  $('strip').addEventListener('pointerdown', onStrip);
  $('strip').addEventListener('pointermove', onStrip);
  $('zoom-in').addEventListener('click', () => zoomAt(xOf(current), 0.5));
  $('zoom-out').addEventListener('click', () => zoomAt(xOf(current), 2));
  $('zoom-all').addEventListener('click', () => setWindow(-0.5, count - 0.5));
};
