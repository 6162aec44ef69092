// SPDX-License-Identifier: MIT
// node --expose-gc memory.mjs [PICTURES]: draws so many, four at a time, each with a model of its own, and prints what
// the process takes up in between, in MiB; at last how much that grew in the second half, when what is kept for the
// next pictures has its size.
import { Document } from '../index.js';
import { scene } from './scene.mjs';

const pictures = Number(process.argv[2] ?? 100_000);
const { document: text, modelWith, options } = scene();
const document = new Document(text);
let drawn = 0;

async function draw(until) {
  while (drawn < until) {
    const widget = await document.widget(modelWith(drawn++), options);
    await widget.encode();
    new Document(text);
  }
}

const used = () => {
  globalThis.gc?.();
  return Math.round(process.memoryUsage.rss() / 2 ** 20);
};

const parts = [];
for (let part = 1; part <= 10; ++part) {
  const until = Math.round((pictures * part) / 10);
  await Promise.all([draw(until), draw(until), draw(until), draw(until)]);
  await new Promise(setImmediate);
  parts.push(used());
  console.log(JSON.stringify({ drawn, mebibytes: parts.at(-1) }));
}
console.log(JSON.stringify({ growth: parts[9] - parts[4] }));
