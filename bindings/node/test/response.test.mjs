// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import test from 'node:test';

import { Document, widgetResponse } from 'tavrin';

import { addon } from '../lib/addon.js';
import { textDocument } from './examples.mjs';

const document = new Document(textDocument('{{initServerParam.name}}'));
const model = { name: 'Ada' };
const options = { size: [100, 50], date: '2026-11-21T08:00:00Z' };
const headersOf = response => Object.fromEntries(response.headers);
const bytesOf = async response => Buffer.from(await response.arrayBuffer());

async function tagOf(more = {}) {
  const picture = await (await document.widget(model, { ...options, ...more })).encode();
  return `"${createHash('sha256').update(picture).digest('base64url')}"`;
}

const types = {
  png: 'image/png',
  svg: 'image/svg+xml',
  pdf: 'application/pdf',
  webp: 'image/webp',
  jpeg: 'image/jpeg',
};
for (const format of JSON.parse(addon.options()).find(({ name }) => name === 'format').words)
  test(`a picture as ${format}`, async () => {
    const response = await widgetResponse(document, model, { ...options, format });
    const picture = await (await document.widget(model, { ...options, format })).encode();
    assert.equal(response.status, 200);
    assert.deepEqual(headersOf(response), {
      'cache-control': 'max-age=86400',
      'content-length': String(picture.length),
      'content-type': types[format],
      etag: await tagOf({ format }),
    });
    assert.ok(picture.equals(await bytesOf(response)));
  });

const address = 'https://example.com/widget';
const asked = (method, known) => new Request(address, { method, headers: known ? { 'If-None-Match': known } : {} });
const tag = await tagOf();
const requests = [
  ['a GET', asked('GET'), 200, true],
  ['a HEAD', asked('HEAD'), 200, false],
  ['what is known', asked('GET', tag), 304, false],
  ['what is known, weakly', asked('GET', `W/${tag}`), 304, false],
  ['one of several', asked('GET', `"a,b", ${tag}`), 304, false],
  ['anything', asked('GET', '*'), 304, false],
  ['a HEAD of what is known', asked('HEAD', tag), 304, false],
  ['another picture', asked('GET', '"other"'), 200, true],
  ['a tag without its quotes', asked('GET', tag.slice(1, -1)), 200, true],
  ['a POST', asked('POST', tag), 200, true],
];
for (const [why, request, status, hasBody] of requests)
  test(`asked with ${why}`, async () => {
    const response = await widgetResponse(document, model, { ...options, request });
    assert.equal(response.status, status);
    assert.equal(response.headers.get('etag'), tag);
    assert.equal(response.headers.get('cache-control'), 'max-age=86400');
    assert.equal(response.headers.has('content-type'), status === 200);
    assert.equal((await bytesOf(response)).length > 0, hasBody);
  });

const timer = timestamp =>
  new Document(JSON.stringify({ version: '1.0', nodes: { main: { type: 'timer', ...(timestamp && { timestamp }) } } }));
const moment = Date.parse(options.date) / 1000;
const lifetimes = [
  ['what never changes', document, 'max-age=86400'],
  ['a timer, until its next second', timer(moment - 10), 'max-age=1'],
];
for (const [why, drawn, expected] of lifetimes)
  test(`may be kept: ${why}`, async () => {
    const response = await widgetResponse(drawn, model, options);
    assert.equal(response.headers.get('cache-control'), expected);
  });

test('a picture that lacks one is not kept', async () => {
  const lacking = new Document(
    JSON.stringify({ version: '1.0', nodes: { main: { type: 'webImage', url: 'https://example.com/none.png' } } }),
  );
  for (const more of [{ fetch: 'none' }, { imageCacheDir: '/nonexistent' }]) {
    const response = await widgetResponse(lacking, null, { ...options, ...more });
    assert.equal(response.status, 200);
    assert.equal(response.headers.get('cache-control'), 'no-store');
  }
});

// What is drawn already costs nothing: those that spend a budget have sizes of their own.
const problems = [
  ['a model that is no JSON', '{', {}, 422, { type: 'DecodingError', role: 'model', line: 1, column: 2 }],
  ['a model without the value', {}, {}, 422, { type: 'ModelContextError' }],
  [
    'a budget that is spent',
    model,
    { size: [101, 50], budget: { pixels: 10 } },
    422,
    { type: 'TavrinError', kind: 'Budget' },
  ],
  [
    'one that cannot be laid out',
    model,
    { size: [102, 50], budget: { steps: 20 } },
    422,
    { type: 'TavrinError', kind: 'Budget' },
  ],
  ['an unknown option', model, { familly: 'x' }, 400, { type: 'UsageError' }],
  ['an option of a wrong type', model, { scale: '2' }, 400, { type: 'UsageError' }],
  ['an option out of range', model, { scale: 0 }, 400, { type: 'UsageError' }],
];
for (const [why, data, more, status, members] of problems)
  test(`a problem: ${why}`, async () => {
    const response = await widgetResponse(document, data, { ...options, ...more });
    assert.equal(response.status, status);
    assert.equal(response.headers.get('content-type'), 'application/problem+json');
    assert.equal(response.headers.get('cache-control'), 'no-store');
    assert.equal(response.headers.has('etag'), false);
    const problem = await response.json();
    for (const [name, value] of Object.entries({ status, ...members })) assert.equal(problem[name], value, name);
    assert.equal(typeof problem.message, 'string');
    const head = await widgetResponse(document, data, { ...options, ...more, request: asked('HEAD') });
    assert.deepEqual([head.status, (await bytesOf(head)).length], [status, 0]);
  });

test('what no request can cause is thrown', async () => {
  await assert.rejects(widgetResponse({}, model, options), TypeError);
  await assert.rejects(
    widgetResponse(document, () => 1, options),
    TypeError,
  );
  await assert.rejects(widgetResponse(document, model, { ...options, signal: AbortSignal.abort() }), {
    name: 'AbortError',
  });
});
