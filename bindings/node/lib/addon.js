// SPDX-License-Identifier: MIT
import fs from 'node:fs';
import os from 'node:os';
import { fileURLToPath } from 'node:url';

const platform = `${process.platform}-${process.arch}`;
const places = [`../prebuilt/${platform}/tavrin.node`, '../build/Release/tavrin.node'];

/** Where the addon is; undefined where it is nowhere. */
export const file = places
  .map(place => fileURLToPath(new URL(place, import.meta.url)))
  .find(place => fs.existsSync(place));

/** The addon of a file. */
export function load(file) {
  const { RTLD_NOW, RTLD_DEEPBIND = 0 } = os.constants.dlopen;
  const module = { exports: {} };
  // Node has compressors and TLS of its own. What the addon links must not meet those: pictures would be other bytes.
  process.dlopen(module, file, RTLD_NOW | RTLD_DEEPBIND);
  return module.exports;
}

function found() {
  const folder = fileURLToPath(new URL('..', import.meta.url));
  if (!file)
    throw new Error(`tavrin: there is no addon for ${platform} in ${folder}; \`npm install\` in its sources builds it`);
  try {
    return load(file);
  } catch (cause) {
    throw new Error(`tavrin: the addon cannot be loaded: ${cause.message}`, { cause });
  }
}

export const addon = found();
