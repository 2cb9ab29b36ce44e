// Fills the page.

const stages = [];

const start = async () => {
  $('plain').hidden = true;
  $('page').hidden = false;
  await unpackOverview();
  if (count === 0) {
    showHead();
    $('requests').replaceChildren(html('p', { class: 'aside' }, 'There is no request to show.'));
    return;
  }
  knowNames();
  knowSensors();
  knowJumps();
  await unpackDifferences();
  stages.push(...askedStages());
  build();
  showFindings();
  showStrayDifferences();
  describe();
  setWindow(-0.5, count - 0.5);
  openLink();
  listen();
  document.documentElement.dataset.ready = 'yes';
};

// Curves and lanes, for the sensors and stages that are known.
const build = () => {
  makeCharts();
  makeLanes();
  showLaneLegend();
  showCurveLegend();
};

// What is said about all requests.
const describe = () => {
  showHead();
  describeTimeline();
  $('timeline').setAttribute('aria-valuemin', 1);
  $('timeline').setAttribute('aria-valuemax', count);
};

const listen = () => {
  const buttons = { first: 'Home', back: 'ArrowLeft', forward: 'ArrowRight', last: 'End' };
  for (const [id, key] of Object.entries(buttons)) $(id).addEventListener('click', MOVES[key]);
  $('play').addEventListener('click', play);
  $('copy').addEventListener('click', copy);
  $('go').addEventListener('submit', (event) => {
    event.preventDefault();
    goTo($('go-to').value);
  });
  $('quantity').addEventListener('change', () => {
    chooseQuantity($('quantity').value);
    showCurveLegend();
    drawTimeline();
  });
  $('range').addEventListener('change', () => {
    tell(chooseRange($('range').value) ? '' : 'The range of the axis is written as -5..5.');
    drawTimeline();
  });
  $('port').addEventListener('change', () => {
    chosenPort = $('port').value === '' ? null : Number($('port').value);
    showSensors(shownRequest);
  });
  $('walk-back').addEventListener('click', () => step(-1));
  $('walk-on').addEventListener('click', () => step(1));
  $('blink').addEventListener('click', blink);
  watchPointer();
  document.addEventListener('keydown', onKey);
  addEventListener('popstate', openLink);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => {
    colours.clear();
    drawTimeline();
  });
  new ResizeObserver(() => {
    drawTimeline();
    showDetails();
  }).observe($('timeline'));
};

if (!data.live) start();
