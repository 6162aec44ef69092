// SPDX-License-Identifier: MIT
import { addon } from './lib/addon.js';

export { check, Document } from './lib/document.js';
export { TavrinError } from './lib/errors.js';
export { widgetResponse } from './lib/response.js';
export { sign } from './lib/sign.js';

export const version = addon.version;
export const schema = () => JSON.parse(addon.schema());
