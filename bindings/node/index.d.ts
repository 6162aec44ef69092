// SPDX-License-Identifier: MIT

/**
 * Renders home-screen widgets from small JSON documents.
 *
 * The work is done on the threads that Node keeps for such (`UV_THREADPOOL_SIZE`), never on the event loop, but for
 * decoding in `new Document`. Every promise may reject with a {@link TavrinError} for what is wrong with a document or
 * its model, a `TypeError` for an option that there is not or of a wrong type, and a `RangeError` for an option's value
 * that is none of those allowed; both of these have the option's name as `option`.
 *
 * @packageDocumentation
 */

import type { Budget, BudgetProfile, Family, PictureFormat, PictureOptions, WidgetOptions } from './lib/options.js';

export * from './lib/options.js';

/** May end a call. */
export interface Cancellable {
  /** Once it is aborted, the call rejects with its reason, and its work ends soon. */
  signal?: AbortSignal;
}

/** How a document is decoded. */
export interface DocumentOptions {
  /** What decoding may cost. Default: `"usual"`. */
  budget?: BudgetProfile | Budget;
}

/** A model: its JSON text or the bytes of it, or any other value that `JSON.stringify` takes; `null` for none. */
export type Model = unknown;

/** The way to a value in a document or a model: keys and indices from the root. */
export type Path = readonly (string | number)[];

/** The object of a view, as `tavrin tree` prints it: `view` or `modifier` names its type. */
export interface View {
  view?: string;
  modifier?: string;
  /** Only in {@link Widget.layout}: `[x, y, width, height]` in points from the widget's top leading corner. */
  frame?: readonly [x: number, y: number, width: number, height: number] | null;
  [key: string]: unknown;
}

/** Where a widget can be tapped, and what opens. */
export interface Target {
  kind: string;
  destination: string;
  /** In points, from the widget's top leading corner. */
  frame: readonly [x: number, y: number, width: number, height: number];
}

/** Straight, not premultiplied, RGBA, row by row; what `ImageData` is made of. */
export interface Pixels {
  width: number;
  height: number;
  data: Uint8ClampedArray;
}

/** A document that is decoded once and drawn as often as needed, with many models, at once. */
export class Document {
  /**
   * Decodes a text, on the event loop: some microseconds for each kilobyte.
   *
   * @throws {TavrinError} where it is no document.
   */
  constructor(text: string | Uint8Array, options?: DocumentOptions);

  /** Reads and decodes a file; rejects with Node's own error where it cannot be read. */
  static open(path: string | URL, options?: DocumentOptions & Cancellable): Promise<Document>;

  /** Binds it to a model. */
  widget(model?: Model, options?: WidgetOptions & Cancellable): Promise<Widget>;
}

/** A bound document and how it is drawn. It never changes, and answers any number of calls at once. */
export interface Widget {
  /**
   * When its pixels change next, never later than they do; `null` where they never do. Of a clock whose hands turn all
   * the time, the moment that is drawn.
   *
   * @throws {TavrinError} where the widget cannot be laid out.
   */
  readonly validUntil: Date | null;

  /** Draws its picture and writes it: the bytes that `tavrin render` writes. */
  encode(format?: PictureFormat, options?: PictureOptions & Cancellable): Promise<Buffer>;

  /** Draws it. */
  pixels(options?: Cancellable): Promise<Pixels>;

  /** Its view tree, as `tavrin tree` prints it. */
  tree(options?: Cancellable): Promise<View>;

  /** The same with every view's frame, as `tavrin layout` prints it. */
  layout(options?: Cancellable): Promise<View>;

  /** Where it can be tapped, as `tavrin targets` prints it. */
  targets(options?: Cancellable): Promise<{ targets: Target[] }>;

  /** Why each view has its size and place, or those views that come from a path of the document such as
   * `"nodes.main.children[0]"`. */
  explain(path?: string | null, options?: Cancellable): Promise<string>;
}

/** What is wrong with a document or its model, or kept it from being drawn. */
export class TavrinError extends Error {
  private constructor();
  /** Which of the errors of the document language it is. */
  readonly type: 'TavrinError' | 'ModelContextError' | 'DecodingError' | 'ConversionError';
  /** What kind of that type; a `ConversionError` has none. */
  readonly kind?: string;
  /** The way to the value at fault, where one is known. */
  readonly path?: Path;
  /** The key that the object at `path` lacks. */
  readonly key?: string;
  /** Which of the two texts `path`, `line` and `column` are about. */
  readonly role?: 'document' | 'model';
  /** The line in that text, from 1, where it is known. */
  readonly line?: number;
  /** The column in that line, from 1. */
  readonly column?: number;
  /** Only of a `ConversionError`. */
  readonly domain?: string;
  readonly code?: number;
  /** All of these and the message. */
  toJSON(): Record<string, unknown>;
}

/** A place in a text. Lines and columns count from 1, offsets are bytes from 0; the ends are behind the last one. */
export interface TextRange {
  line: number;
  column: number;
  endLine: number;
  endColumn: number;
  offset: number;
  endOffset: number;
}

/** Something wrong or doubtful in a document, as `tavrin check --format json` prints it. */
export interface Diagnostic {
  severity: 'error' | 'warning' | 'note';
  code: string;
  message: string;
  role: 'document' | 'model';
  path: Path;
  range?: TextRange;
  /** Edits of its text that mend it. */
  fix?: (TextRange & { text: string })[];
}

/**
 * Everything wrong or doubtful in a document, in the order of its text. It is looked at in each of the `families`, or
 * in the options' room where none are given.
 */
export function check(
  text: string | Uint8Array,
  model?: Model,
  options?: WidgetOptions & Cancellable & { families?: readonly Family[] },
): Promise<Diagnostic[]>;

/** What a widget's response is made of. */
export interface ResponseOptions extends WidgetOptions, Cancellable {
  /** What is answered: its `If-None-Match` may be answered with 304, and `HEAD` gets no body. */
  request?: Request;
}

/**
 * A picture as a response of the web: with its type, a strong `ETag`, and a `Cache-Control` that lasts until the pixels
 * change, a day at most; `no-store` where a picture that the widget shows could not be had in time.
 *
 * What is wrong with the document or the model is a response, too: `application/problem+json` with the members of a
 * {@link TavrinError} and a `status`: 422, or 503 where there is not enough memory. So is an option that cannot be
 * followed, 400. Rejects only with a signal's reason, or with what no request can cause.
 */
export function widgetResponse(document: Document, model?: Model, options?: ResponseOptions): Promise<Response>;

/** How an address is signed. */
export interface SignOptions {
  /** When it ceases to hold: in whole seconds since 1970, or as a date. Default: never. */
  expires?: number | Date;
}

/**
 * The path and query of a request, with the signature that `tavrin serve --key-file` wants, as `tavrin sign` makes it.
 *
 * @param path as the server gets it, percent-encoded, such as `/v1/widgets/agenda.png?family=systemSmall`
 * @param key a line of the server's file of keys
 * @throws RangeError for what cannot be signed
 */
export function sign(path: string, key: string | Uint8Array, options?: SignOptions): string;

/** The JSON Schema of documents. */
export function schema(): Record<string, unknown>;

/** This version, such as `"0.1.0"`. */
export const version: string;
