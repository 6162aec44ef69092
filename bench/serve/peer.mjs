// SPDX-License-Identifier: MIT

// node peer.mjs: answers GET /?condition=… with the scene of bench/peers, drawn by Takumi, and prints its port. It keeps
// finished pictures, as a server would that has the same ones to show again and again.
import http from 'node:http';

import { draw } from '../peers/takumi.mjs';

const mostKept = 2000;
const kept = new Map();

async function picture(condition) {
  if (!kept.has(condition)) {
    if (kept.size >= mostKept) kept.delete(kept.keys().next().value);
    kept.set(condition, draw(condition));
  }
  return kept.get(condition);
}

const server = http.createServer(async (request, response) => {
  const { searchParams } = new URL(request.url, 'http://localhost');
  const body = await picture(searchParams.get('condition') ?? undefined);
  response.writeHead(200, { 'Content-Type': 'image/png', 'Content-Length': body.length });
  response.end(body);
});
server.listen(0, '127.0.0.1', () => console.log(server.address().port));
