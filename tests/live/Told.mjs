// What a page knows of a replay, out of a report or out of the events of a live replay.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';

const UNPACK = new URL('../../tools/zoomreplay/report/page/unpack.js', import.meta.url);
const Table = new Function(`${readFileSync(UNPACK, 'utf8')}; return Table;`)();
const byIndex = (a, b) => a.index - b.index || a.sensor - b.sensor;
const plainJumps = (jumps) => jumps.map(({ index, sensor, words }) => ({ index, sensor, words })).sort(byIndex);
const inOrder = (jumps) => jumps.map(({ index, words }) => index + words.replace(/sensor \d+/, ''));  // of sensors that are alike

/** @return the indices of the records that a table's blocks hold, which are put into their places */
const unpack = async (table, blocks, records) => {
  table.blocks = blocks;
  const taken = [];
  for (let i = 0; i < blocks.length; ++i) {
    const block = await table.block(i);
    block.indices.forEach((index, row) => { records[index] = table.record(block, row); });
    taken.push(...block.indices);
  }
  return taken;
};

/** What a report's page is made of; of its tables the records, in the order in which they were packed. */
export const dataIn = async (html) => {
  const data = JSON.parse(/<script id="data"[^>]*>(.*?)<\/script>/s.exec(html)[1]);
  for (const part of ['overview', 'requests', 'differences']) {
    const records = [];
    const places = await unpack(new Table(data[part]), data[part].blocks, records);
    data[part] = places.map((index) => ({ index, ...records[index] }));
  }
  return data;
};

export const toldInReport = async (html) => {
  const { total, rigs, fatal, jumps, overview, requests } = await dataIn(html);
  const inPlace = (records) => [...records].sort(byIndex).map(({ index, ...record }) => record);
  return { count: total, rigs, fatal, jumps: plainJumps(jumps), worst: inOrder(jumps), overview: inPlace(overview), requests: inPlace(requests) };
};

/** The one record of a table. */
export const recordIn = async (data) => {
  const records = [];
  await unpack(new Table(data), data.blocks, records);
  return records[0];
};

export const toldInEvents = async (events) => {
  const fatal = events.find(({ name }) => name === 'fatal')?.data;
  const told = { count: 0, rigs: [], fatal, jumps: [], overview: [], requests: [] };
  const tables = { overview: new Table({ words: [], blocks: [] }), requests: new Table({ words: [], blocks: [] }) };
  let sinceFold = new Set();
  for (const { data } of events.filter(({ name }) => name === 'requests')) {
    for (const part of ['overview', 'requests']) {
      const { firstWords, words, block } = data[part];
      assert.ok(firstWords <= tables[part].words.length, 'no words are left out');
      tables[part].learn(firstWords, words);
      const taken = await unpack(tables[part], [block], told[part]);
      if (data.isFold) assert.deepEqual([...sinceFold].filter((index) => !taken.includes(index)), [], 'a fold says all again');
      else if (part === 'overview') taken.forEach((index) => sinceFold.add(index));
    }
    if (data.isFold) sinceFold = new Set();
    data.rigs?.forEach((rig, i) => { told.rigs[data.firstRig + i] = rig; });
    if (data.jumpsFrom !== undefined) told.jumps = [...told.jumps.filter(({ index }) => index < data.jumpsFrom), ...data.jumps];
    assert.ok(data.count >= told.count, 'requests do not get fewer');
    told.count = data.count;
  }
  const worst = inOrder([...told.jumps].sort((a, b) => b.size - a.size || a.index - b.index));
  return { ...told, jumps: plainJumps(told.jumps), worst };
};
