// SPDX-License-Identifier: MIT

// node in_process.mjs ROUNDS: everybody draws the scene by turns in this one Node process, Tavrin with its addon: from
// the texts of document and model, and from a document that is kept. Prints the milliseconds of a picture on the clock
// in each round, a median of some, as JSON: {name: [[...]]}.
import fs from 'node:fs';
import { fileURLToPath } from 'node:url';

import { Document } from '../../bindings/node/index.js';
import * as satori from './satori.mjs';
import * as takumi from './takumi.mjs';

const text = fs.readFileSync(new URL('document.json', import.meta.url), 'utf8');
const model = fs.readFileSync(new URL('model.json', import.meta.url), 'utf8');
const { condition } = JSON.parse(model);
const options = {
  imageCacheDir: fileURLToPath(new URL('../../examples/weather/pictures', import.meta.url)),
  background: 'none',
};

const kept = new Document(text);
const drawWith = async (document, changed) =>
  (await document.widget(model.replace(condition, changed), options)).encode();

const drawers = {
  tavrin: changed => drawWith(new Document(text), changed),
  next: changed => drawWith(kept, changed),
  takumi: takumi.draw,
  satori: satori.draw,
};
const picturesInTurn = { tavrin: 10, next: 10, takumi: 10, satori: 3 };
const warmUpRounds = 5;

let drawn = 0;

async function turn(name) {
  const times = [];
  for (let left = picturesInTurn[name]; left > 0; --left) {
    const start = performance.now();
    await drawers[name](`Partly Cloudy, wind ${drawn++} km/h`);
    times.push(performance.now() - start);
  }
  return times.sort((one, other) => one - other)[times.length >> 1];
}

const rounds = Number(process.argv[2]);
const measured = Object.fromEntries(Object.keys(drawers).map(name => [name, [[]]]));
for (let round = -warmUpRounds; round < rounds; ++round)
  for (const name of Object.keys(drawers)) {
    const time = await turn(name);
    if (round >= 0) measured[name][0].push(time);
  }
console.log(JSON.stringify(measured));
