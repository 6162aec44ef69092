// SPDX-License-Identifier: MIT
import fs from 'node:fs';
import { fileURLToPath } from 'node:url';

const example = new URL('../../../examples/weather/', import.meta.url);

/** The weather, with another city each time. */
export function scene() {
  const model = JSON.parse(fs.readFileSync(new URL('model.json', example), 'utf8'));
  return {
    document: fs.readFileSync(new URL('document.json', example), 'utf8'),
    modelWith: number => ({ ...model, city: `Town ${number}` }),
    options: {
      date: '2026-11-21T08:40:00Z',
      timeZone: 'UTC',
      imageCacheDir: fileURLToPath(new URL('pictures', example)),
    },
  };
}
