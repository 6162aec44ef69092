// SPDX-License-Identifier: MIT
// What comes of many calls, of bad ones, and of those that nobody waits for any longer.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import test from 'node:test';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';
import { Worker } from 'node:worker_threads';

import { check, Document, TavrinError, widgetResponse } from 'tavrin';

import { addon } from '../lib/addon.js';
import { examples, modelOf, textDocument } from './examples.mjs';

const example = examples.find(({ name }) => name === 'weather');
const open = () => Document.open(example.document);

test('a signal that comes after a refused option rejects nothing', async () => {
  const document = new Document(textDocument('a'));
  const controller = new AbortController();
  await assert.rejects(document.widget(null, { family: 'nope', signal: controller.signal }), RangeError);
  const seen = [];
  const note = reason => seen.push(reason);
  process.on('unhandledRejection', note);
  controller.abort();
  await new Promise(done => setTimeout(done, 20));
  process.off('unhandledRejection', note);
  assert.deepEqual(seen, []);
});

test('two hundred at once', async () => {
  const document = new Document(textDocument('{{initServerParam.n}}'));
  const draw = async n => (await document.widget({ n: String(n % 20) }, { date: new Date(0) })).encode();
  const pictures = await Promise.all(Array.from({ length: 200 }, (_, n) => draw(n)));
  for (const [n, picture] of pictures.entries()) assert.ok(picture.equals(pictures[n % 20]), String(n));
  assert.equal(new Set(pictures.map(picture => picture.toString('base64'))).size, 20);
});

test('one widget answers many questions at once', async () => {
  const widget = await (await open()).widget(modelOf(example), example.options);
  const [expected, tree] = [await widget.encode(), await widget.tree()];
  const answers = await Promise.all(Array.from({ length: 40 }, (_, n) => (n % 2 ? widget.encode() : widget.tree())));
  for (const [n, answer] of answers.entries())
    n % 2 ? assert.ok(answer.equals(expected)) : assert.deepEqual(answer, tree);
});

test('the event loop turns while a picture is drawn', async () => {
  const widget = await (await open()).widget(modelOf(example), { ...example.options, scale: 10, compression: 'small' });
  let turns = 0;
  let isDrawn = false;
  const turn = () => (turns++, isDrawn || setImmediate(turn));
  setImmediate(turn);
  await widget.encode();
  isDrawn = true;
  assert.ok(turns > 10, `${turns} turns`);
});

test('a signal ends a call', async () => {
  const document = await open();
  const widget = await document.widget(modelOf(example), { ...example.options, scale: 20, compression: 'small' });
  const reason = new Error('the visitor has gone');
  const calls = {
    encode: signal => widget.encode('png', { signal }),
    pixels: signal => widget.pixels({ signal }),
    tree: signal => widget.tree({ signal }),
    layout: signal => widget.layout({ signal }),
    targets: signal => widget.targets({ signal }),
    explain: signal => widget.explain(null, { signal }),
    widget: signal => document.widget(modelOf(example), { ...example.options, signal }),
    open: signal => Document.open(example.document, { signal }),
    check: signal => check(textDocument('x'), null, { signal }),
    widgetResponse: signal => widgetResponse(document, modelOf(example), { ...example.options, signal }),
  };
  for (const [name, call] of Object.entries(calls)) {
    await assert.rejects(call(AbortSignal.abort()), { name: 'AbortError' }, name);
    const controller = new AbortController();
    const ended = call(controller.signal);
    controller.abort(reason);
    const failure = await ended.then(
      () => assert.fail(name),
      error => error,
    );
    assert.ok(failure === reason || failure.cause === reason, name); // Node's own calls wrap it
    await call(new AbortController().signal).catch(error => name === 'encode' || Promise.reject(error));
  }
});

test('a call that was cancelled leaves its thread', async () => {
  const text = addon.decode(textDocument('x'), {});
  const { widget } = await addon.bind(text, undefined, { scale: 20 }, undefined, false);
  const token = addon.cancelToken();
  const work = addon.encode(widget, 'png', { compression: 'small' }, token);
  addon.cancel(token);
  const failure = JSON.parse(
    await work.then(
      () => assert.fail('it is drawn'),
      error => error,
    ),
  );
  assert.deepEqual([failure.type, failure.kind], ['TavrinError', 'Budget']);
});

test('many calls on one signal are heard once', async () => {
  const warnings = [];
  const listen = warning => warnings.push(warning);
  process.on('warning', listen);
  const document = new Document(textDocument('x'));
  const controller = new AbortController();
  const calls = Array.from({ length: 50 }, () => document.widget(null, { signal: controller.signal }));
  controller.abort();
  const settled = await Promise.allSettled(calls);
  assert.ok(settled.every(({ reason }) => reason === controller.signal.reason));
  await new Promise(setImmediate);
  process.off('warning', listen);
  assert.deepEqual(warnings, []);
});

test('an abort that comes too late changes nothing', async () => {
  const controller = new AbortController();
  const widget = await new Document(textDocument('x')).widget(null, { signal: controller.signal });
  controller.abort();
  await widget.tree();
  await widget.encode();
});

const inWorker = `
  import { parentPort, workerData } from 'node:worker_threads';
  const { Document } = await import(workerData.module);
  const document = await Document.open(workerData.document);
  const draw = async () => (await document.widget(workerData.model, workerData.options)).encode();
  parentPort.postMessage('ready');
  parentPort.postMessage(await Promise.all(Array.from({ length: workerData.count }, draw)));`;

function worker(count) {
  const module = new URL('../index.js', import.meta.url).href;
  const { document, options } = example;
  const workerData = { module, document, model: modelOf(example), options, count };
  return new Worker(new URL(`data:text/javascript,${encodeURIComponent(inWorker)}`), { workerData });
}

const message = (from, wanted) =>
  new Promise((resolve, reject) => {
    from.on('message', value => (value === 'ready') === (wanted === 'ready') && resolve(value));
    from.on('error', reject);
  });

test('threads of scripts draw at once', async () => {
  const expected = await (await (await open()).widget(modelOf(example), example.options)).encode();
  const pictures = (await Promise.all([worker(20), worker(20)].map(thread => message(thread, 'pictures')))).flat();
  assert.equal(pictures.length, 40);
  for (const picture of pictures) assert.ok(expected.equals(picture));
});

test('a thread may end while it draws', async () => {
  for (let i = 0; i < 5; ++i) {
    const thread = worker(100);
    await message(thread, 'ready');
    await thread.terminate();
  }
  await (await open()).widget(modelOf(example), example.options);
});

/** Numbers that look random and are the same in every run. */
function* numbers(seed) {
  for (;;) {
    seed = (Math.imul(seed, 1664525) + 1013904223) >>> 0;
    yield seed / 2 ** 32;
  }
}

test('a thousand bad calls end in errors', async () => {
  const source = numbers(7);
  const pick = list => list[Math.floor(source.next().value * list.length)];
  const own = new Error('own');
  const throwing = new Proxy(
    {},
    {
      ownKeys: () => {
        throw own;
      },
      get: () => {
        throw own;
      },
    },
  );
  const getter = {
    get scale() {
      throw own;
    },
  };
  const values = () =>
    pick([
      undefined,
      null,
      NaN,
      -1,
      0,
      1e308,
      1n,
      '',
      'x',
      '\ud800',
      '\0',
      'x'.repeat(70000),
      true,
      Symbol('x'),
      {},
      [],
      [1, 2],
      [[]],
      [NaN, 1],
      new Date(NaN),
      new Date(1e15),
      Buffer.alloc(10),
      new Uint8Array(0),
      new Map(),
      () => 1,
      throwing,
      getter,
      AbortSignal.abort(),
      Object.create(null),
      new Float64Array(3),
      '{"version":"1.0"}',
      '[[[[[',
      '{"a":1e999}',
      { budget: {} },
      { budget: throwing },
      { signal: {} },
      { families: ['x'] },
      { families: 5 },
    ]);
  const names = JSON.parse(addon.options()).map(({ name }) => name);
  const options = () => (source.next().value < 0.3 ? values() : { [pick([...names, 'x', '', '__proto__'])]: values() });
  const document = new Document(textDocument('{{initServerParam.a}}'));
  const widget = await document.widget({ a: 'x' }, { scale: 1 });
  const calls = [
    () => new Document(values(), options()),
    () => Document.open(pick(['/nonexistent', '/', 5, null, '\0']), options()),
    () => document.widget(values(), options()),
    () => document.widget({ a: 'x' }, options()),
    () => widget.encode(values(), options()),
    () => widget.encode('png', options()),
    () => widget.pixels(pick([undefined, { signal: values() }])),
    () => widget.explain(values(), {}),
    () => check(values(), values(), options()),
    () => widgetResponse(document, values(), options()),
    () => widgetResponse(pick([null, {}, widget]), values(), options()),
    () => Document.prototype.widget.call(values(), null),
    () => Object.getPrototypeOf(widget).encode.call(values()),
    () => new TavrinError(pick([{ message: 'x' }, {}])),
  ];
  let failed = 0;
  for (let i = 0; i < 1000; ++i) {
    const call = pick(calls);
    try {
      await call();
    } catch (error) {
      assert.ok(error === own || error instanceof Error, `${call}: ${String(error)}`);
      ++failed;
    }
  }
  assert.ok(failed > 500, `${failed} failed`);
  assert.ok((await widget.encode()).length > 0, 'and what was there still works');
});

test('memory does not grow with the pictures', async () => {
  const script = fileURLToPath(new URL('../measure/memory.mjs', import.meta.url));
  const { stdout } = await promisify(execFile)(process.execPath, ['--expose-gc', script, '2000']);
  const { growth } = JSON.parse(stdout.trim().split('\n').at(-1));
  assert.ok(growth < 16, `${growth} MiB for 1000 pictures`);
});
