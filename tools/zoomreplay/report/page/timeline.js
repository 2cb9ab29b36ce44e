// The timeline: charts, lanes and overview strip over the requests of one window.

let shownWindow = { from: -0.5, to: 0.5 };  // in requests; a request reaches half of one to each side
let isDrawingPlanned = false;
const LEAST_WINDOW = 5;

const gutterWidth = () => $('timeline').clientWidth < 600 ? 72 : 96;
const plotWidth = () => Math.max(1, $('timeline').clientWidth - gutterWidth());
const xOf = (index) => gutterWidth() + (index - shownWindow.from) / (shownWindow.to - shownWindow.from) * plotWidth();
const requestAt = (x) => shownWindow.from + (x - gutterWidth()) / plotWidth() * (shownWindow.to - shownWindow.from);

const drawTimeline = () => {
  if (isDrawingPlanned) return;
  isDrawingPlanned = true;
  requestAnimationFrame(() => {
    isDrawingPlanned = false;
    const gutter = gutterWidth();
    ratioChart.draw(shownWindow, gutter);
    drawLanes(shownWindow, gutter);
    angleChart.draw(shownWindow, gutter);
    drawStrip();
    placeCursor();
  });
};

const setWindow = (from, to) => {
  const length = Math.min(Math.max(to - from, Math.min(LEAST_WINDOW, count)), count);
  const start = Math.min(Math.max(from, -0.5), count - 0.5 - length);
  shownWindow = { from: start, to: start + length };
  drawTimeline();
};

/** Zooms so that what is under x stays there. */
const zoomAt = (x, factor) => {
  const fixed = Math.min(Math.max(requestAt(x), shownWindow.from), shownWindow.to);
  setWindow(fixed - (fixed - shownWindow.from) * factor, fixed + (shownWindow.to - fixed) * factor);
};
const pan = (requests) => {
  setFollowing(false);
  setWindow(shownWindow.from + requests, shownWindow.to + requests);
};

const placeCursor = () => {
  const pitch = plotWidth() / (shownWindow.to - shownWindow.from);
  const width = Math.min(Math.max(pitch, 3), 28);
  $('cursor').hidden = current < shownWindow.from || current > shownWindow.to;
  $('cursor').style.width = `${width}px`;
  $('cursor').style.transform = `translateX(${xOf(current) - width / 2}px)`;
};

/** Moves the window where the request is not in it. */
const reveal = (index) => {
  const length = shownWindow.to - shownWindow.from;
  if (index < shownWindow.from || index > shownWindow.to) setWindow(index - length / 2, index + length / 2);
};

// The whole recording, with the window.
const drawStrip = () => {
  const canvas = $('strip');
  const width = canvas.clientWidth;
  const height = canvas.clientHeight;
  const sharp = devicePixelRatio || 1;
  canvas.width = Math.round(width * sharp);
  canvas.height = Math.round(height * sharp);
  const context = canvas.getContext('2d');
  context.scale(sharp, sharp);
  const toX = (index) => (index + 0.5) / count * width;

  const curve = ratioChart.curves.find(({ path }) => path === 'override') ?? ratioChart.curves[0];
  const range = curve && steps(curve.path).range();
  if (range) {
    const { size, low, high } = steps(curve.path).levels[steps(curve.path).level(count / width)];
    const toY = (value) => height - 4 - (height - 8) * (value - range[0]) / Math.max(range[1] - range[0], 0.01);
    context.fillStyle = colour('--faint');
    low.forEach((value, i) => {
      if (Number.isNaN(value)) return;
      const top = toY(high[i]);
      context.fillRect(toX(i * size - 0.5), top, Math.max(1, size / count * width), Math.max(1.5, toY(value) - top));
    });
  }
  const [left, right] = [toX(shownWindow.from), toX(shownWindow.to)];
  context.fillStyle = colour('--veil');
  context.fillRect(0, 0, left, height);
  context.fillRect(right, 0, width - right, height);
  context.strokeStyle = colour('--accent');
  context.lineWidth = 2;
  context.strokeRect(left + 1, 1, Math.max(right - left - 2, 2), height - 2);
};
