// SPDX-License-Identifier: MIT
// What users are told before they run it: each line has the error that it says it has.
import { check, Document, TavrinError, version, widgetResponse } from 'tavrin';

// @ts-expect-error a document is a text
const document = new Document(5);
// @ts-expect-error decoding has no family
new Document('{}', { family: 'systemSmall' });
// @ts-expect-error no such option
await document.widget(null, { familly: 'systemSmall' });
// @ts-expect-error no such family
await document.widget(null, { family: 'systemTiny' });
// @ts-expect-error a number
await document.widget(null, { scale: '2' });
// @ts-expect-error two numbers
await document.widget(null, { size: [1] });
// @ts-expect-error a width and a height
await document.widget(null, { size: 'large' });
// @ts-expect-error no such bound
await document.widget(null, { budget: { step: 1 } });
// @ts-expect-error not offered here
await document.widget(null, { hashes: true });
const widget = await document.widget();
// @ts-expect-error no such format
await widget.encode('gif');
// @ts-expect-error a picture has no scale
await widget.encode('png', { scale: 1 });
// @ts-expect-error a promise
widget.tree().view;
// @ts-expect-error it may never change
widget.validUntil.getTime();
// @ts-expect-error it cannot be set
widget.validUntil = null;
// @ts-expect-error no such family
await check('{}', null, { families: ['systemTiny'] });
// @ts-expect-error the document comes first
await widgetResponse('{}');
// @ts-expect-error not made by users
new TavrinError();
// @ts-expect-error a constant
version = '1';
