// SPDX-License-Identifier: MIT
// node event_loop.mjs [SECONDS]: draws on all of Node's threads, and prints how late the event loop was meanwhile.
import { monitorEventLoopDelay } from 'node:perf_hooks';

import { Document } from '../index.js';
import { scene } from './scene.mjs';

const end = performance.now() + 1000 * Number(process.argv[2] ?? 10);
const { document: text, modelWith, options } = scene();
const document = new Document(text);
let drawn = 0;

async function draw() {
  while (performance.now() < end) {
    const widget = await document.widget(modelWith(drawn++), options);
    await widget.encode();
  }
}

const delay = monitorEventLoopDelay({ resolution: 1 });
delay.enable();
await Promise.all([draw(), draw(), draw(), draw()]);
delay.disable();
const late = rank => Number((delay.percentile(rank) / 1e6).toFixed(2));
console.log(JSON.stringify({ pictures: drawn, milliseconds: { median: late(50), p99: late(99), most: late(100) } }));
