// What if the customer published another ratio: the slider, and what the library answers.
//
// data      { publishing: the modes in which something is published }
// answer    { lines: that were asked, requests: { words, blocks } of one record; or isFatal }

const slider = html('input', { type: 'range', id: 'what-if-ratio', min: -1, max: 4, step: 0.01, value: 0, 'aria-label': 'Published ratio' });
const whatIfTitle = html('h2', {}, 'What if');
const whatIfSaid = html('p', { class: 'aside', id: 'what-if-said' }, 'Move the slider: the library is asked for a copy of the newest request, outside of the session.');
const whatIfSensors = html('div', { id: 'what-if-sensors' });
const whatIfLines = html('pre', { id: 'what-if-lines' });
$('details').before(html('section', { id: 'what-if', class: 'card', hidden: '' },
  html('div', { class: 'bar' }, whatIfTitle, slider), whatIfSaid, whatIfSensors,
  html('details', {}, html('summary', {}, 'As lines of a scenario'), whatIfLines)));

const showWhatIf = () => { $('what-if').hidden = !data.publishing.includes(at('mode', count - 1)); };

const askedRatio = () => Number((2 ** slider.value).toFixed(2));

const showAnswer = async (published, { lines, requests, isFatal }) => {
  whatIfLines.textContent = lines.join('\n');
  if (isFatal) {
    whatIfSaid.textContent = 'The library would stop the process.';
    whatIfSensors.replaceChildren();
    return;
  }
  const table = new Table(requests);
  const request = table.record(await table.block(0), 0);
  whatIfSaid.textContent = request.queries.map((query) => `${query.stage} of ${ratio(query.asked)}: ${TEXTS[query.state]}` +
    (query.override === undefined ? '' : `, ${ratio(query.override)}`)).join(' \u00b7 ');
  const ofShownRequest = [...pictures];
  drawSensors(request, whatIfSensors);
  pictures.clear();
  for (const [name, picture] of ofShownRequest) pictures.set(name, picture);
  $('what-if').dataset.answered = published;
};

// One question at a time; the latest counts.
let isAsking = false;
const ask = async () => {
  whatIfTitle.textContent = `What if ${ratio(askedRatio())} were published`;
  if (isAsking) return;
  isAsking = true;
  let published = null;
  while (published !== askedRatio()) {
    published = askedRatio();
    try {
      const answer = await fetch(`answer?ratio=${published}`);
      if (!answer.ok) throw new Error(await answer.text());
      await showAnswer(published, await answer.json());
    } catch {
      whatIfSaid.textContent = 'There is no answer: no request of this mode can be asked for again.';
    }
  }
  isAsking = false;
};
slider.addEventListener('input', ask);
