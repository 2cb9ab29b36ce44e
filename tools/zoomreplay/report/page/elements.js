// Makes the elements of the page.

const $ = (id) => document.getElementById(id);

const fill = (node, attributes, children) => {
  for (const [name, value] of Object.entries(attributes)) {
    if (value !== undefined && value !== null) node.setAttribute(name, value);
  }
  node.append(...children.flat().filter((c) => c !== null && c !== undefined));
  return node;
};
const html = (tag, attributes = {}, ...children) =>
  fill(document.createElement(tag), attributes, children);
const svg = (tag, attributes = {}, ...children) =>
  fill(document.createElementNS('http://www.w3.org/2000/svg', tag), attributes, children);
const rect = ([x, y, width, height], attributes) =>
  svg('rect', { x, y, width: Math.max(width, 0), height: Math.max(height, 0), ...attributes });
const text = (x, y, content, attributes = {}) => svg('text', { x, y, ...attributes }, content);
