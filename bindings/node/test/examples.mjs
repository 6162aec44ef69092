// SPDX-License-Identifier: MIT
// The examples, and what the program makes of documents.
import { execFile } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { promisify } from 'node:util';

export const top = fileURLToPath(new URL('../../..', import.meta.url));
export const program = path.join(top, 'build/release/tavrin');

/** What the program prints, or the failure that it describes. */
export async function run(...words) {
  const options = { encoding: 'buffer', maxBuffer: 64 << 20, env: { ...process.env, TZ: 'UTC' } };
  try {
    return (await promisify(execFile)(program, words, options)).stdout;
  } catch (failure) {
    if (failure.stderr === undefined) throw failure;
    throw Object.assign(new Error(failure.stderr.toString()), { stdout: failure.stdout });
  }
}

const camel = option => option.replace(/-./g, ([, letter]) => letter.toUpperCase());
/** The lines `key = value` of settings; of a list the words in it. */
const settingsIn = file =>
  Object.fromEntries(
    [...fs.readFileSync(file, 'utf8').matchAll(/^(\S+) = (.*)$/gm)].map(([, key, value]) => [
      key,
      value.startsWith('[') ? [...value.matchAll(/"(.*?)"/g)].map(([, word]) => word) : value.replaceAll('"', ''),
    ]),
  );

function example(name) {
  const folder = path.join(top, 'examples', name);
  const { families, ...settings } = settingsIn(path.join(folder, 'widget.toml'));
  const options = Object.fromEntries(Object.entries(settings).map(([name, value]) => [camel(name), value]));
  const pictures = path.join(folder, 'pictures');
  if (fs.existsSync(pictures)) options.imageCacheDir = pictures;
  const model = path.join(folder, 'model.json');
  return {
    name,
    options,
    document: path.join(folder, 'document.json'),
    model: fs.existsSync(model) ? model : undefined,
    families,
  };
}

export const examples = fs
  .readdirSync(path.join(top, 'examples'))
  .filter(name => fs.existsSync(path.join(top, 'examples', name, 'document.json')))
  .map(example);

export const modelOf = ({ model }) => (model ? fs.readFileSync(model, 'utf8') : null);

/** The same options as the program takes them. */
export function asWords({ document, model }, options) {
  const kebab = name => '--' + name.replace(/[A-Z]/g, letter => '-' + letter.toLowerCase());
  const given = Object.entries(options).flatMap(([name, value]) =>
    value === true ? [kebab(name)] : [kebab(name), String(value)],
  );
  return [document, ...(model ? ['--model', model] : []), ...given];
}

/** A document that shows a text. */
export const textDocument = (content, more = {}) =>
  JSON.stringify({ version: '1.0', nodes: { main: { type: 'text', content, ...more } } });
