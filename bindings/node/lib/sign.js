// SPDX-License-Identifier: MIT
import { createHmac } from 'node:crypto';

const latest = 1e15;

function secondsOf(expires) {
  if (expires instanceof Date) expires = Math.ceil(expires.getTime() / 1000);
  if (typeof expires !== 'number') throw new TypeError('expires takes seconds since 1970 or a Date');
  if (!Number.isInteger(expires) || expires < 0 || expires >= latest)
    throw new RangeError('expires takes whole seconds since 1970 of at most 15 digits');
  return expires;
}

/** Refuses what no request can have as it is, and what is signed already. */
function check(path, expires) {
  if (!/^\/[!-~]*$/.test(path) || path.includes('#'))
    throw new RangeError("path begins with '/', and all but printable ASCII, and '#', is percent-encoded in it");
  const query = path.indexOf('?');
  for (const member of query < 0 ? [] : path.slice(query + 1).split('&')) {
    const [name] = member.split('=', 1);
    if (name.includes('%')) throw new RangeError("names of a query's members are not percent-encoded in path");
    if (name === 's') throw new RangeError('path has an s already');
    if (name === 'expires' && (expires !== undefined || !/^expires=[0-9]{1,15}$/.test(member)))
      throw new RangeError('path has an expires already, or one of another form than seconds since 1970');
  }
}

const separator = path => (path.includes('?') ? '&' : '?');

export function sign(path, key, { expires } = {}) {
  if (typeof path !== 'string') throw new TypeError('path takes a string');
  if (typeof key !== 'string' && !(key instanceof Uint8Array)) throw new TypeError('key takes a string or its bytes');
  if (key.length === 0) throw new RangeError('key is empty');
  check(path, expires);
  const text = expires === undefined ? path : `${path}${separator(path)}expires=${secondsOf(expires)}`;
  return `${text}${separator(text)}s=${createHmac('sha256', key).update(text).digest('base64url')}`;
}
