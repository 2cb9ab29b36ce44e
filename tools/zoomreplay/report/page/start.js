// Fills the page.

const start = () => {
  showHead();
  if (requests.length === 0) {
    $('timeline').replaceChildren(html('p', { class: 'aside' }, 'There is no request to show.'));
    return;
  }
  $('details').hidden = false;
  showLegend();
  showFindings();
  describeTimeline();
  $('timeline').setAttribute('aria-valuemin', 1);
  $('timeline').setAttribute('aria-valuemax', requests.length);
  drawTimeline();
  openLink();
  $('first').addEventListener('click', KEYS.Home);
  $('back').addEventListener('click', KEYS.ArrowLeft);
  $('play').addEventListener('click', play);
  $('forward').addEventListener('click', KEYS.ArrowRight);
  $('last').addEventListener('click', KEYS.End);
  $('copy').addEventListener('click', copy);
  $('timeline').addEventListener('pointerdown', (event) => {
    $('timeline').setPointerCapture(event.pointerId);
    onDrag(event);
  });
  $('timeline').addEventListener('pointermove', onDrag);
  document.addEventListener('keydown', onKey);
  addEventListener('hashchange', openLink);
  new ResizeObserver(() => {
    drawTimeline();
    show(current);
  }).observe($('timeline'));
};
start();
