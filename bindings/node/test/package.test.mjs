// SPDX-License-Identifier: MIT
// The package as users get it.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';

const here = fileURLToPath(new URL('..', import.meta.url));
const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrin-'));
test.after(() => fs.rmSync(folder, { recursive: true }));

const run = (command, words, cwd) => promisify(execFile)(command, words, { cwd, encoding: 'utf8' });
const script = `
  import { Document, version } from 'tavrin';
  const document = new Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}');
  console.log(version, (await (await document.widget()).encode('svg')).length > 1000);`;
const use = () => run(process.execPath, ['--input-type=module', '--eval', script], folder);

test('a package is installed and used', async () => {
  const [{ filename, files }] = JSON.parse(
    (await run('npm', ['pack', '--json', '--pack-destination', folder], here)).stdout,
  );
  assert.deepEqual(files.map(file => file.path).sort(), [
    'LICENSE',
    'README.md',
    'build/Release/LICENSES.txt',
    'build/Release/tavrin.node',
    'index.d.ts',
    'index.js',
    'install.mjs',
    'lib/addon.js',
    'lib/calls.js',
    'lib/document.js',
    'lib/errors.js',
    'lib/options.d.ts',
    'lib/response.js',
    'lib/sign.js',
    'package.json',
  ]);
  fs.writeFileSync(path.join(folder, 'package.json'), '{"private": true}');
  await run('npm', ['install', '--offline', '--no-audit', '--no-fund', path.join(folder, filename)], folder);
  assert.equal((await use()).stdout, '0.1.0 true\n');
});

test('an addon for this platform comes first, and without any there is one clear error', async () => {
  const installed = path.join(folder, 'node_modules/tavrin');
  const built = path.join(installed, 'build/Release/tavrin.node');
  const prebuilt = path.join(installed, `prebuilt/${process.platform}-${process.arch}/tavrin.node`);
  fs.mkdirSync(path.dirname(prebuilt), { recursive: true });
  fs.copyFileSync(built, prebuilt);
  fs.writeFileSync(built, 'no addon');
  assert.equal((await use()).stdout, '0.1.0 true\n');
  fs.rmSync(prebuilt);
  await assert.rejects(use(), /tavrin: the addon cannot be loaded: .*tavrin\.node/);
  fs.rmSync(built);
  await assert.rejects(use(), /tavrin: there is no addon for \w+-\w+ in .*; `npm install` in its sources builds it/);
});
