// SPDX-License-Identifier: MIT
// What `npm install` does: in the sources it builds the addon, of what `make build` has left, and writes the types of
// its options; in a package it makes sure that there is an addon.
import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const here = path.dirname(fileURLToPath(import.meta.url));
const top = path.resolve(here, '../..');
const build = path.join(top, 'build/release');

function run(command, ...words) {
  const { status, error } = spawnSync(command, words, { cwd: top, stdio: 'inherit' });
  if (status === 0) return;
  const hint = error?.code === 'ENOENT' ? `there is no ${command}; ` : '';
  console.error(`tavrin: the addon is not built: ${hint}\`make addon\` in ${top} installs what is needed`);
  process.exit(1);
}

function isInSources() {
  const project = path.join(top, 'CMakeLists.txt');
  return fs.existsSync(project) && fs.existsSync(path.join(here, 'source/addon.cpp'));
}

if (isInSources()) {
  const isConfigured = fs.existsSync(path.join(build, 'build.ninja')); // then it stays as it is
  const alone = ['--preset', 'release', '-D', 'TAVRIN_TESTS=OFF', '-D', 'TAVRIN_BENCH=OFF'];
  run('cmake', ...(isConfigured ? [build] : alone), '-D', 'TAVRIN_NODE_ADDON=ON');
  const builder = path.join(here, 'node_modules/.bin/cmake-js'); // with headers from npm, since "binary" names Node-API
  run(builder, 'build', '--directory', here, '--out', build, '--target', 'tavrin_node');
}
const { addon } = await import('./lib/addon.js');
if (isInSources()) {
  const { optionTypes } = await import('./option_types.mjs');
  fs.writeFileSync(path.join(here, 'lib/options.d.ts'), optionTypes(JSON.parse(addon.options())));
}
