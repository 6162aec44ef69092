// SPDX-License-Identifier: MIT
import { addon } from './addon.js';
import { told } from './errors.js';

/** The calls that each signal ends: however many there are, a signal is listened to once. */
const endsOfSignals = new WeakMap();

function endsOf(signal) {
  let ends = endsOfSignals.get(signal);
  if (!ends) {
    ends = new Set();
    endsOfSignals.set(signal, ends);
    signal.addEventListener('abort', () => ends.forEach(end => end()), { once: true });
  }
  return ends;
}

/** Starts work that ends, and is given up, when the signal says so. */
function startUntil(signal, start) {
  const token = addon.cancelToken();
  const ends = endsOf(signal);
  let end;
  const ended = new Promise((_, reject) => {
    end = () => {
      addon.cancel(token);
      reject(signal.reason);
    };
  });
  const work = start(token);  // which may refuse at once, and then there is nothing to end
  ends.add(end);
  return Promise.race([work, ended]).finally(() => ends.delete(end));
}

/** What comes of the work that `start` gives to another thread, with a token to cancel it or undefined. */
export async function call(signal, start) {
  if (signal !== undefined && typeof signal?.throwIfAborted !== 'function')
    throw new TypeError('signal takes an AbortSignal');
  signal?.throwIfAborted();
  try {
    return await (signal ? startUntil(signal, start) : start());
  } catch (failure) {
    throw told(failure);
  }
}

/** The members of a call's options, those of `ours` taken out. */
export function split(options = {}, ...ours) {
  if (typeof options !== 'object' || options === null || Array.isArray(options))
    throw new TypeError('options are an object');
  const others = { ...options };
  const taken = {};
  for (const name of ours) {
    taken[name] = others[name];
    delete others[name];
  }
  return { ...taken, others };
}

const isText = value => typeof value === 'string' || value instanceof Uint8Array;

export function textOf(value) {
  if (!isText(value)) throw new TypeError('a document is a text: a string or a Uint8Array');
  return value;
}

/** The text of a model; undefined for none. */
export function modelText(model) {
  if (model === undefined || model === null) return undefined;
  const text = isText(model) ? model : JSON.stringify(model);
  if (text === undefined) throw new TypeError('a model is a text, its bytes, or a value that JSON can hold');
  return text;
}
