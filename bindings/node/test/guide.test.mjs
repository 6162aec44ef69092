// SPDX-License-Identifier: MIT
// The guide's chapter about Node does what it says.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';
import { promisify } from 'node:util';

import { run, top } from './examples.mjs';

const guide = fs.readFileSync(path.join(top, 'docs/guide.md'), 'utf8');
const blocks = [...guide.matchAll(/^```(\w+) (\S+)\n(.*?)^```$/gms)].map(([, language, name, text]) => ({
  language,
  name,
  text,
}));

const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrin-'));
test.after(() => fs.rmSync(folder, { recursive: true }));
for (const { name, text } of blocks) fs.writeFileSync(path.join(folder, name), text);
fs.mkdirSync(path.join(folder, 'node_modules'));
fs.symlinkSync(path.join(top, 'bindings/node'), path.join(folder, 'node_modules/tavrin'));

const scripts = blocks.filter(({ language }) => language === 'js').map(({ name }) => name);

test('there are scripts', () => assert.ok(scripts.length >= 3));

for (const name of scripts)
  test(`${name} prints what stands below it`, async () => {
    const { stdout } = await promisify(execFile)(process.execPath, [name], { cwd: folder });
    assert.equal(stdout, fs.readFileSync(path.join(folder, name.replace('.mjs', '.txt')), 'utf8'));
  });

test('what a script draws is what the program draws', async () => {
  fs.writeFileSync(
    path.join(folder, 'monday.json'),
    '{"day": "Monday", "events": [{"title": "Stand-up"}], "done": 0.25}',
  );
  const words = ['render', path.join(folder, 'agenda.json'), '--model', path.join(folder, 'monday.json')];
  const look = ['--family', 'systemSmall', '--date', '2026-11-23T09:00:00Z', '-o', '-'];
  for (const [format, more] of [
    ['png', ['--compression', 'small']],
    ['svg', []],
  ]) {
    const picture = await run(...words, ...look, '--format', format, ...more);
    assert.ok(picture.equals(fs.readFileSync(path.join(folder, `monday.${format}`))), format);
  }
});
