// node draw.mjs PEER FILE    draws the scene once, into FILE
// node draw.mjs PEER         for every number on a line of standard input draws as many pictures, one text changed each
//                            time, and answers with the milliseconds of each and the bytes of the last, as JSON
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
  const milliseconds = [];
  let bytes = 0;
  for (let left = Number(line); left > 0; --left) {
    const start = performance.now();
    const png = await draw(`Partly Cloudy, wind ${drawn++} km/h`);
    milliseconds.push(performance.now() - start);
    bytes = png.length;
  }
  console.log(JSON.stringify({ milliseconds, bytes }));
}
