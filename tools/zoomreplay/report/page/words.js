// How numbers and names are written.

const MINUS = '\u2212';
const ratio = (value) => typeof value === 'number' ? value.toFixed(2) + '\u00d7' : String(value);
const degrees = (value) => typeof value === 'number' ? value.toFixed(2) + '\u00b0' : '\u2013';
const signed = (value) => typeof value !== 'number' ? '\u2013' :
  (value < 0 ? MINUS : value > 0 ? '+' : '\u00b1') + Math.abs(value).toFixed(2) + '\u00b0';
const percent = (value) => typeof value === 'number' ? (100 * value).toFixed(1) + ' %' : '\u2013';
const size = ([w, h]) => `${w}\u00d7${h}`;
const rectText = ([x, y, w, h]) => `(${x}, ${y})/${w}\u00d7${h}`;
const hex = (port) => '0x' + port.toString(16);
const modeName = (mode) => data.modes[mode] ?? `mode ${mode}`;
const PORTS = { 0x7001: 'R1', 0x7002: 'R2', 0x7003: 'R3' };
const portName = (port) => PORTS[port] ?? hex(port);
const whatIs = (crop) => crop.p ? crop.p.map(portName).join(' ') : crop.extra ? 'P2 extra' : 'P2';
const styleOf = (crop) => crop.p ? 's' + ((crop.p[0] & 0xf) + 4) % 5 : crop.extra ? 'extra' : 'p2';
