// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import test from 'node:test';
import { fileURLToPath } from 'node:url';

import { addon } from '../lib/addon.js';
import { optionTypes } from '../option_types.mjs';

const folder = fileURLToPath(new URL('..', import.meta.url));

test('users are told of mistakes, and of nothing else', () => {
  const tsc = ['node_modules/typescript/bin/tsc', '--project', 'test/types'];
  const { status, stdout } = spawnSync(process.execPath, tsc, { cwd: folder, encoding: 'utf8' });
  assert.equal(stdout, '');
  assert.equal(status, 0);
});

test('the types of the options are those of the addon', () => {
  const options = JSON.parse(addon.options());
  const types = fs.readFileSync(`${folder}/lib/options.d.ts`, 'utf8');
  assert.equal(types, optionTypes(options));
  for (const { name, use } of options)
    assert.equal(types.includes(` ${name}?:`), use !== 'answer' && !/^budget./.test(name), name);
});
