// SPDX-License-Identifier: MIT
// The scripts of pages do what they say, with what they take for granted before them.
import assert from 'node:assert/strict';
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';
import test from 'node:test';
import { promisify } from 'node:util';

import { top } from './examples.mjs';

const read = name => fs.readFileSync(path.join(top, name), 'utf8');
const agendaOfGuide = /^```json agenda\.json\n(.*?)^```$/ms.exec(read('docs/guide.md'))[1];

const rows = [
  {
    page: 'README.md',
    files: {
      'agenda.json': read('examples/agenda/document.json'),
      'model.json': read('examples/agenda/model.json'),
    },
    before: `
      import fs from 'node:fs/promises';
      const model = JSON.parse(await fs.readFile('model.json'));
      const modelOf = async () => model;
      const routes = {};
      const server = { get: (path, answer) => { routes[path] = answer; } };`,
    after: `
      console.log((await fs.stat('agenda.png')).size > 0);
      const response = await routes['/agenda.png'](new Request('https://example.com/agenda.png'));
      console.log(response.status, response.headers.get('Content-Type'));`,
    said: /^true\n200 image\/png\n$/,
  },
  {
    page: 'bindings/node/README.md',
    files: { 'agenda.json': agendaOfGuide },
    before: '',
    after: 'console.log(widget.validUntil);',
    said: /^null\n$/,
  },
  {
    page: 'docs/serving.md',
    files: {},
    before: `
      import { sign } from 'tavrin';
      const key = 'secret';
      const signed =`,
    after: 'console.log(signed);',
    said: /^\/v1\/widgets\/agenda\.png\?family=systemSmall&expires=1796083200&s=[\w-]{43}\n$/,
  },
];

for (const { page, files, before, after, said } of rows)
  test(`the scripts of ${page} run`, async t => {
    const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'tavrin-'));
    t.after(() => fs.rmSync(folder, { recursive: true }));
    fs.mkdirSync(path.join(folder, 'node_modules'));
    fs.symlinkSync(path.join(top, 'bindings/node'), path.join(folder, 'node_modules/tavrin'));
    for (const [name, text] of Object.entries(files)) fs.writeFileSync(path.join(folder, name), text);

    const blocks = [...read(page).matchAll(/^```js\n(.*?)^```$/gms)].map(([, text]) => text);
    assert.ok(blocks.length > 0);
    fs.writeFileSync(path.join(folder, 'page.mjs'), [before, ...blocks, after].join('\n'));
    const { stdout } = await promisify(execFile)(process.execPath, ['page.mjs'], { cwd: folder });
    assert.match(stdout, said);
  });
