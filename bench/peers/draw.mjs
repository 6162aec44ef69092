// SPDX-License-Identifier: MIT

// node draw.mjs PEER FILE    draws the scene once, into FILE
// node draw.mjs PEER         for every number on a line of standard input draws as many pictures, one text changed
//                            each time, and answers with their milliseconds, on the clock and of the processor
import fs from 'node:fs';
import readline from 'node:readline';

const [, , peer, file] = process.argv;
const { draw } = await import(`./${peer}.mjs`);

if (file) {
  fs.writeFileSync(file, await draw());
  process.exit();
}

let drawn = 0;
for await (const line of readline.createInterface({ input: process.stdin })) {
  const clock = [];
  const processor = [];
  for (let left = Number(line); left > 0; --left) {
    const start = performance.now();
    const used = process.cpuUsage();
    await draw(`Partly Cloudy, wind ${drawn++} km/h`);
    const { user, system } = process.cpuUsage(used);
    clock.push(performance.now() - start);
    processor.push((user + system) / 1000);
  }
  console.log(JSON.stringify({ clock, processor }));
}
