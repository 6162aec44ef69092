// SPDX-License-Identifier: MIT

/** What is wrong with a document or its model, or kept it from being drawn. */
export class TavrinError extends Error {
  constructor({ message, ...members }) {
    super(message);
    Object.assign(this, members);
  }

  toJSON() {
    return { ...this, message: this.message };
  }
}
Object.defineProperty(TavrinError.prototype, 'name', { value: 'TavrinError', configurable: true, writable: true });

/** The error that the addon means: it hands out what went wrong in a document as a JSON text. */
export const told = failure => (typeof failure === 'string' ? new TavrinError(JSON.parse(failure)) : failure);
