// SPDX-License-Identifier: MIT
// Every example is what the program makes of it, byte for byte.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';

import { check, Document, schema, version } from 'tavrin';

import { addon } from '../lib/addon.js';
import { asWords, examples, modelOf, run, top } from './examples.mjs';

const formats = JSON.parse(addon.options()).find(({ name }) => name === 'format').words;

test('there are examples', () => assert.ok(examples.length >= 10));

for (const example of examples)
  test(`the pictures of ${example.name}`, async () => {
    const document = await Document.open(example.document);
    for (const family of example.families)
      for (const [more, written] of [
        [{}, family === example.families[0] ? formats : ['png']],
        [{ appearance: 'dark', rounded: true, scale: 2, compression: 'small' }, ['png']],
      ]) {
        const options = { ...example.options, family, ...more };
        const widget = await document.widget(modelOf(example), options);
        for (const format of written) {
          const expected = await run('render', ...asWords(example, options), '-o', '-', '--format', format);
          assert.ok((await widget.encode(format)).equals(expected), `${family} ${format}`);
        }
      }
  });

for (const example of examples)
  test(`what is told of ${example.name}`, async () => {
    const { background, ...options } = { ...example.options, family: example.families.at(-1) };
    const widget = await new Document(fs.readFileSync(example.document)).widget(modelOf(example), options);
    for (const verb of ['tree', 'layout', 'targets'])
      assert.deepEqual(await widget[verb](), JSON.parse(await run(verb, ...asWords(example, options))), verb);
    assert.equal(await widget.explain(), String(await run('explain', ...asWords(example, options))));
  });

test('pixels are those of the picture, not premultiplied', async () => {
  const document = new Document(
    JSON.stringify({ version: '1.0', nodes: { main: { type: 'color', value: '#80FF8000' } } }),
  );
  const widget = await document.widget(null, { size: [2, 1], scale: 2, background: 'none' });
  const { width, height, data } = await widget.pixels();
  assert.deepEqual({ width, height, length: data.length }, { width: 4, height: 2, length: 32 });
  assert.ok(data instanceof Uint8ClampedArray);
  for (let at = 0; at < 32; at += 4) assert.deepEqual([...data.subarray(at, at + 4)], [255, 128, 0, 204]);
});

test('models are texts, bytes or values', async () => {
  const text = '{"name": "Ada"}';
  const document = new Document(
    '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}}',
  );
  const expected = await (await document.widget(text)).tree();
  assert.equal(expected.text, 'Ada');
  for (const model of [
    Buffer.from(text),
    new Uint8Array(Buffer.from(text)),
    JSON.parse(text),
    { name: 'Ada', x: undefined },
  ])
    assert.deepEqual(await (await document.widget(model)).tree(), expected);
  for (const model of [undefined, null])
    assert.equal((await (await document.widget(model)).tree()).text, '{{initServerParam.name}}');
});

test('when the pixels change next', async () => {
  const example = examples.find(({ name }) => name === 'countdown');
  const widget = await (await Document.open(example.document)).widget(modelOf(example), example.options);
  assert.ok(widget.validUntil instanceof Date);
  assert.ok(widget.validUntil > new Date(example.options.date), 'a timer changes later');
  const still = await new Document('{"version":"1.0","nodes":{"main":{"type":"text","content":"x"}}}').widget();
  assert.equal(still.validUntil, null);
});

test('checks are those of the program', async t => {
  const text = '{"version":"1.0","nodes":{"main":{"type":"text","content":5,"colour":1}}}';
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrin-'));
  t.after(() => fs.rmSync(folder, { recursive: true }));
  const file = path.join(folder, 'bad.json');
  fs.writeFileSync(file, text);
  const printed = await run('check', file, '--format', 'json').catch(failure => failure.stdout);
  const found = await check(text);
  assert.ok(found.length > 0);
  assert.deepEqual(found, JSON.parse(printed).documents[0].diagnostics);
  assert.deepEqual(await check(text, null, { families: ['systemSmall', 'systemLarge'] }), found);
});

test('the schema and the version', async () => {
  assert.deepEqual(schema(), JSON.parse(await run('schema')));
  assert.equal(`tavrin ${version}`, String(await run('--version')).trim());
  const { version: ofPackage } = JSON.parse(fs.readFileSync(`${top}/bindings/node/package.json`));
  assert.equal(version, ofPackage);
});
