// SPDX-License-Identifier: MIT
// `sign` makes what the program's `sign` makes, and another program made for the table that both are tested with.
import assert from 'node:assert/strict';
import fs from 'node:fs';
import test from 'node:test';

import { sign } from 'tavrin';

const table = JSON.parse(fs.readFileSync(new URL('../../../tests/serve/signatures.json', import.meta.url)));

for (const { why, path, key, signed, expires } of table.signed)
  test(`signs ${why}`, () => {
    assert.equal(sign(path, key, { expires }), signed);
    assert.equal(sign(path, Buffer.from(key), { expires }), signed);
    if (expires !== undefined) assert.equal(sign(path, key, { expires: new Date(expires * 1000) }), signed);
  });

for (const { why, path, expires } of table.refused)
  test(`refuses ${why}`, () => assert.throws(() => sign(path, 'secret', { expires }), RangeError));

const refused = [
  ['a path that is none', [1, 'secret'], TypeError],
  ['no key', ['/a'], TypeError],
  ['an empty key', ['/a', ''], RangeError],
  ['a moment as text', ['/a', 'secret', { expires: '2026-12-01' }], TypeError],
  ['parts of a second', ['/a', 'secret', { expires: 1.5 }], RangeError],
  ['a moment before 1970', ['/a', 'secret', { expires: -1 }], RangeError],
  ['a date that is none', ['/a', 'secret', { expires: new Date(NaN) }], RangeError],
];
for (const [why, words, kind] of refused) test(`refuses ${why}`, () => assert.throws(() => sign(...words), kind));

test('a moment within a second is rounded up', () =>
  assert.equal(sign('/a', 'k', { expires: new Date(999_001) }), sign('/a', 'k', { expires: 1000 })));
