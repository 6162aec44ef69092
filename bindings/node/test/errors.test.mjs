// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';

import { Document, TavrinError } from 'tavrin';

import { run, textDocument } from './examples.mjs';

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrin-'));
test.after(() => fs.rmSync(folder, { recursive: true }));

const rows = [
  ['no JSON', '{"version": "1.0",\n nodes: {}}'],
  ['nothing', ''],
  ['a key is missing', '{"version": "1.0"}'],
  ['a wrong type', '{"version": "1.0", "nodes": {"main": {"type": "hstack", "children": 5}}}'],
  ['no such node', '{"version": "1.0", "nodes": {"main": {"type": "nonsense"}}}'],
  ['no main', '{"version": "1.0", "nodes": {}}'],
  ['a value that cannot be converted', textDocument('x', { modifiers: [{ type: 'padding', length: ' 1' }] })],
  ['a colour that is none', '{"version": "1.0", "nodes": {"main": {"type": "color", "value": "red"}}}'],
  ['a model that is no JSON', textDocument('{{initServerParam.a}}'), '{"a": }'],
  ['a model without a value', textDocument('{{initServerParam.a.b}}'), '{"a": 1}'],
  ['brackets the wrong way round', textDocument('{{initServerParam.a]0[}}'), '{"a": 1}'],
];

/** What the program says of the same texts. */
async function failureOf(text, model) {
  const document = path.join(folder, 'document.json');
  const modelFile = path.join(folder, 'model.json');
  fs.writeFileSync(document, text);
  if (model) fs.writeFileSync(modelFile, model);
  const words = ['render', document, ...(model ? ['--model', modelFile] : []), '-o', '-', '--errors', 'json'];
  const failure = await run(...words).then(
    () => assert.fail('the program draws it'),
    error => error,
  );
  const { file, codingPath, ...others } = JSON.parse(failure.message).error;
  return { ...others, ...(codingPath && { path: codingPath }) };
}

for (const [why, text, model] of rows)
  test(`the error for ${why}`, async () => {
    const draw = async () => (await new Document(text).widget(model)).encode();
    const error = await draw().then(
      () => assert.fail('it is drawn'),
      failure => failure,
    );
    assert.ok(error instanceof TavrinError && error instanceof Error);
    assert.equal(error.name, 'TavrinError');
    const { role, ...members } = error.toJSON();
    assert.deepEqual(members, await failureOf(text, model));
    if (error.line !== undefined)
      assert.equal(role, error.path && why.startsWith('a model that') ? 'model' : 'document');
    for (const [name, value] of Object.entries(members)) assert.deepEqual(error[name], value);
    assert.match(error.stack, /errors\.test\.mjs/, 'a stack says who called');
  });

test('one that cannot be laid out still has a tree', async () => {
  const views = Array.from({ length: 200 }, (_, i) => ({ type: 'text', content: `text ${i}` }));
  const document = new Document(
    JSON.stringify({ version: '1.0', nodes: { main: { type: 'vstack', children: views } } }),
  );
  let widget;
  for (let steps = 1000; !widget; steps *= 1.25)
    widget = await document.widget(null, { budget: { steps: Math.round(steps) } }).catch(() => undefined);
  assert.throws(() => widget.validUntil, { name: 'TavrinError', kind: 'Budget' });
  await assert.rejects(widget.encode(), { kind: 'Budget' });
  assert.equal((await widget.tree()).view, 'VStack');
});

test('a file that cannot be read is the error of Node', async () => {
  await assert.rejects(Document.open(path.join(folder, 'none.json')), { code: 'ENOENT' });
  fs.writeFileSync(path.join(folder, 'bad.json'), '{');
  await assert.rejects(Document.open(path.join(folder, 'bad.json')), { name: 'TavrinError', kind: 'dataCorrupted' });
});

test('what is no text or model', async () => {
  for (const text of [undefined, null, 5, {}, [], new Uint16Array(2), new ArrayBuffer(2)])
    assert.throws(() => new Document(text), TypeError);
  const document = new Document(textDocument('x'));
  const circle = {};
  circle.inside = circle;
  for (const model of [() => 1, Symbol('x'), 1n, circle]) await assert.rejects(document.widget(model), TypeError);
});
