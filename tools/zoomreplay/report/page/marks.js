// The marks that stand for the answers of a stage, and what may be said of a request.

const TEXTS = {
  overridden: 'overridden', refused: 'not overridden', exception: 'exception', fatal: 'stopped the process',
};
const SHAPES = {
  overridden: (x, y, r) => `M${x - r} ${y - r}h${2 * r}v${2 * r}h${-2 * r}z`,
  refused: (x, y, r) => `M${x - r} ${y}a${r} ${r} 0 1 0 ${2 * r} 0a${r} ${r} 0 1 0 ${-2 * r} 0`,
  exception: (x, y, r) => `M${x} ${y - r}l${r} ${2 * r}h${-2 * r}z`,
  fatal: (x, y, r) => `M${x - r} ${y - r}l${2 * r} ${2 * r}m0 ${-2 * r}l${-2 * r} ${2 * r}`,
  cached: (x, y, r) => `M${x - r / 2} ${y}a${r / 2} ${r / 2} 0 1 0 ${r} 0a${r / 2} ${r / 2} 0 1 0 ${-r} 0`,
};
const cachedClass = (state) => state === 'overridden' ? 'mark-cached' : 'mark-cached-refused';
const symbol = (state, cached) => svg('svg', { width: 12, height: 12, 'aria-hidden': 'true' },
  svg('path', { d: SHAPES[state](6, 6, 4.5), class: 'mark-' + state }),
  cached ? svg('path', { d: SHAPES.cached(6, 6, 4.5), class: cachedClass(state) }) : null);

// As zoomreplay sets them; a jump is set here.
const MARKS = {
  overridden: 1, corrected: 2, cached: 4, exception: 8, fatal: 16, outside: 32, stale: 64, undone: 128, jump: 256, differs: 512,
};
// The worst first. What is no fault stands last.
const FINDINGS = [
  { mark: 'fatal', words: 'fatal condition', alarm: true },
  { mark: 'exception', words: 'exception', alarm: true },
  { mark: 'outside', words: 'crop outside of its sensor', alarm: true },
  { mark: 'jump', words: 'jump', alarm: true },
  { mark: 'differs', words: 'differs from expected', alarm: true },
  { mark: 'corrected', words: 'corrected' },
  { mark: 'stale', words: 'kept answer of another sensor mode' },
  { mark: 'undone', words: 'never done' },
];
const hasMark = (index, mark) => (columnOf('marks')[index] & MARKS[mark]) !== 0;
const stateOf = (index, stage) => {
  const value = at(`stages.${stage}`, index) ?? 0;
  return value === 0 ? null : { state: STATES[value % CACHED], cached: value >= CACHED };
};
