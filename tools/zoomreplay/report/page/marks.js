// The marks that stand for the answers of a stage, and their legend.

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

const showLegend = () => {
  const entries = [['overridden', false, TEXTS.overridden], ['refused', false, TEXTS.refused]];
  if (requests.some((request) => request.queries.some((query) => query.cached))) {
    entries.push(['overridden', true, 'with a dot: also answered from the cache']);
  }
  for (const state of ['exception', 'fatal']) {
    if (requests.some((request) => request.queries.some((query) => query.state === state))) {
      entries.push([state, false, TEXTS[state]]);
    }
  }
  $('legend').append(...entries.map(([state, cached, what]) => html('li', {}, symbol(state, cached), what)));
};
