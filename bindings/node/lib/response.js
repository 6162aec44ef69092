// SPDX-License-Identifier: MIT
import { createHash } from 'node:crypto';

import { split } from './calls.js';
import { bind, detailsOf } from './document.js';
import { TavrinError } from './errors.js';

const secondsOfDay = 24 * 60 * 60;

/** Until the pixels change, counted from the moment that is drawn; a day at most. */
function lifetime(widget, date) {
  const until = widget.validUntil;
  const seconds = until === null ? secondsOfDay : (until - date) / 1000;
  return Math.max(0, Math.min(secondsOfDay, Math.floor(seconds)));
}

function cacheControl(widget) {
  const { date, lacksPictures } = detailsOf(widget);
  return lacksPictures ? 'no-store' : `max-age=${lifetime(widget, date)}`;
}

/** Whether who asks has this picture already. */
function isKnown(request, tag) {
  const known = request?.headers.get('if-none-match');
  if (!known || !['GET', 'HEAD'].includes(request.method)) return false;
  return known.trim() === '*' || (known.match(/"[^"]*"/g) ?? []).includes(tag);
}

const isHead = request => request?.method === 'HEAD';

function pictureResponse(widget, picture, request) {
  const tag = `"${createHash('sha256').update(picture).digest('base64url')}"`;
  const headers = { ETag: tag, 'Cache-Control': cacheControl(widget) };
  if (isKnown(request, tag)) return new Response(null, { status: 304, headers });
  headers['Content-Type'] = detailsOf(widget).mediaType;
  headers['Content-Length'] = String(picture.length);
  return new Response(isHead(request) ? null : picture, { headers });
}

/** What a failure is as a problem; undefined for what is none of the request's. */
function problemOf(error) {
  if (error?.option !== undefined) return { status: 400, type: 'UsageError', message: error.message };
  if (!(error instanceof TavrinError)) return undefined;
  return { status: error.kind === 'Program' ? 503 : 422, ...error.toJSON() };
}

function problemResponse(problem, request) {
  const text = JSON.stringify(problem);
  const headers = { 'Content-Type': 'application/problem+json', 'Cache-Control': 'no-store' };
  headers['Content-Length'] = String(Buffer.byteLength(text));
  return new Response(isHead(request) ? null : text, { status: problem.status, headers });
}

export async function widgetResponse(document, model, options) {
  const { request, others } = split(options, 'request');
  try {
    const widget = await bind(document, model, others, true);
    return pictureResponse(widget, await widget.encode(undefined, { signal: others.signal }), request);
  } catch (error) {
    const problem = problemOf(error);
    if (!problem) throw error;
    return problemResponse(problem, request);
  }
}
