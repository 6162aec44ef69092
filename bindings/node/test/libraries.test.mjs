// SPDX-License-Identifier: MIT
// What the addon links must not call what Node exports under the same names: another zlib makes other bytes, another
// OpenSSL knows nothing of what its namesake has made.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';

const script = `
  import { Document } from 'tavrin';
  const main = { type: 'webImage', url: 'https://127.0.0.1:1/none.png' };
  const document = new Document(JSON.stringify({ version: '1.0', nodes: { main } }));
  await (await document.widget(null, { fetch: 'all' })).encode();`;

test('libraries find each other and not Node', async t => {
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrin-'));
  t.after(() => fs.rmSync(folder, { recursive: true }));
  await promisify(execFile)(process.execPath, ['--input-type=module', '--eval', script], {
    cwd: fileURLToPath(new URL('.', import.meta.url)),
    env: { ...process.env, LD_DEBUG: 'bindings', LD_DEBUG_OUTPUT: path.join(folder, 'bindings') },
  });
  const lines = fs.readdirSync(folder).flatMap(name => fs.readFileSync(path.join(folder, name), 'utf8').split('\n'));
  const bindings = lines
    .map(line => line.match(/binding file (\S+) \[\d+\] to (\S+) \[\d+\]: \w+ symbol `(\w+)'/))
    .filter(Boolean);
  const of = library => bindings.filter(([, from]) => path.basename(from).startsWith(library));
  for (const library of ['libcairo.so', 'libpng16.so', 'libcurl.so', 'libssl.so']) {
    assert.ok(of(library).length > 10, `${library} is loaded`);
    const lent = of(library).filter(([, , to]) => path.basename(to) === path.basename(process.execPath));
    assert.deepEqual(
      lent.map(([, , , symbol]) => symbol),
      [],
      library,
    );
  }
  assert.ok(
    of('tavrin.node').some(([, , , symbol]) => symbol.startsWith('napi_')),
    'the addon itself calls Node',
  );
});
