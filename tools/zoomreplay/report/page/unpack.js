// Unpacks the tables of the page's data: compressed blocks of records, which share their words.

const inflate = async (base64) => {
  const packed = Uint8Array.from(atob(base64), (c) => c.charCodeAt(0));
  const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream('deflate'));
  return new Uint8Array(await new Response(stream).arrayBuffer());
};

// Reads the numbers of a block, lowest seven bits first.
class Bytes {
  constructor(bytes) {
    this.bytes = bytes;
    this.at = 0;
  }

  unsigned() {
    let byte = this.bytes[this.at++];
    if (byte < 128) return byte;
    let value = byte & 127;
    for (let factor = 128; byte > 127; factor *= 128) {
      byte = this.bytes[this.at++];
      value += (byte & 127) * factor;
    }
    return value;
  }

  column(length) {
    const values = new Float64Array(length);
    const scale = 10 ** this.unsigned();
    let digits = 0;
    for (let i = 0; i < length; ++i) {
      const difference = this.unsigned();
      digits += difference % 2 ? -(difference + 1) / 2 : difference / 2;
      values[i] = digits / scale;
    }
    return values;
  }

  text() {
    const length = this.unsigned();
    this.at += length;
    return new TextDecoder().decode(this.bytes.subarray(this.at - length, this.at));
  }
}

class Table {
  constructor({ words, blocks }) {
    this.words = [];
    this.widths = [];
    this.blocks = blocks;
    this.learn(0, words);
  }

  /** Words by their places, from the first one on. */
  learn(first, words) {
    words.forEach((text, i) => {
      let width = 0;
      JSON.parse(text, (_, value) => {
        if (typeof value === 'number' || (typeof value === 'string' && value[0] === '$')) ++width;
        return value;
      });
      this.words[first + i] = text;
      this.widths[first + i] = width;
    });
  }

  /** { words, indices, groups: the columns and records of each words, texts } of a block. */
  async block(number) {
    const bytes = new Bytes(await inflate(this.blocks[number]));
    const count = bytes.unsigned();
    const words = bytes.column(count);
    const indices = bytes.column(count);
    const groups = new Map();
    words.forEach((which, i) => {
      if (!groups.has(which)) groups.set(which, { rows: [] });
      groups.get(which).rows.push(i);
    });
    for (const [which, group] of groups) {
      group.columns = Array.from({ length: this.widths[which] }, () => bytes.column(group.rows.length));
    }
    const texts = Array.from({ length: bytes.unsigned() }, () => bytes.text());
    return { words, indices, groups, texts };
  }

  /** A record of a block, as it was before it was packed. */
  record(block, row) {
    const which = block.words[row];
    const { rows, columns } = block.groups.get(which);
    const place = rows.indexOf(row);
    return JSON.parse(this.words[which], (_, value) =>
      typeof value === 'number' ? columns[value][place] :
      typeof value === 'string' && value[0] === '$' ? block.texts[columns[value.slice(1)][place]] : value);
  }
}
