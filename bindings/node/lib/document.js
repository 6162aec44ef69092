// SPDX-License-Identifier: MIT
import { readFile } from 'node:fs/promises';

import { addon } from './addon.js';
import { call, modelText, split, textOf } from './calls.js';
import { told } from './errors.js';

/** What the addon holds of a document that was decoded on another thread. */
class Decoded {
  constructor(handle) {
    this.handle = handle;
  }
}

function decode(text, options) {
  try {
    return addon.decode(textOf(text), split(options).others);
  } catch (failure) {
    throw told(failure);
  }
}

/** Binds a document, and listens for pictures that cannot be had where that is asked for. */
export let bind;

export class Document {
  #handle;

  constructor(text, options) {
    this.#handle = text instanceof Decoded ? text.handle : decode(text, options);
  }

  static async open(path, options) {
    const { signal, others } = split(options, 'signal');
    const text = await readFile(path, { signal });
    return new Document(new Decoded(await call(signal, token => addon.decodeLater(text, others, token))));
  }

  widget(model, options) {
    return bind(this, model, options, false);
  }

  static {
    bind = async (document, model, options, listens) => {
      const { signal, others } = split(options, 'signal');
      const handle = document.#handle;
      const text = modelText(model);
      return new Widget(await call(signal, token => addon.bind(handle, text, others, token, listens)));
    };
  }
}

/** Of a widget: the moment that it shows, its picture's media type, whether a picture in it could not be had. */
export let detailsOf;

const farthest = 8.64e15;  // milliseconds from 1970, beyond which there are no dates
const dateOf = seconds => new Date(Math.max(-farthest, Math.min(farthest, Math.floor(seconds * 1000))));

/** One of a widget's texts of JSON. */
const ask = async (question, handle, { signal }) =>
  JSON.parse(await call(signal, token => addon[question](handle, token)));

class Widget {
  #told;

  constructor(told) {
    this.#told = told;
  }

  get validUntil() {
    const { validUntil, failure } = this.#told;
    if (failure !== undefined) throw told(failure);
    return validUntil === undefined ? null : dateOf(validUntil);
  }

  async encode(format, options) {
    const { signal, others } = split(options, 'signal');
    return call(signal, token => addon.encode(this.#told.widget, format, others, token));
  }

  async pixels(options = {}) {
    const { width, height, data } = await call(options.signal, token => addon.pixels(this.#told.widget, token));
    return { width, height, data: new Uint8ClampedArray(data.buffer, data.byteOffset, data.length) };
  }

  async tree(options = {}) {
    return ask('tree', this.#told.widget, options);
  }

  async layout(options = {}) {
    return ask('layout', this.#told.widget, options);
  }

  async targets(options = {}) {
    return ask('targets', this.#told.widget, options);
  }

  async explain(path, options = {}) {
    if (path !== undefined && path !== null && typeof path !== 'string') throw new TypeError('a path is a string');
    return call(options.signal, token => addon.explain(this.#told.widget, path ?? undefined, token));
  }

  static {
    detailsOf = widget => {
      const { widget: handle, date, mediaType } = widget.#told;
      return { date: dateOf(date), mediaType, lacksPictures: addon.lacksPictures(handle) };
    };
  }
}

export async function check(text, model, options) {
  const { families = [], signal, others } = split(options, 'families', 'signal');
  if (!Array.isArray(families) || !families.every(name => typeof name === 'string'))
    throw new TypeError("families takes a list of widget families' names");
  const [documentText, modelsText] = [textOf(text), modelText(model)];
  return JSON.parse(await call(signal, token => addon.check(documentText, modelsText, families, others, token)));
}
