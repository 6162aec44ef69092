// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import test from 'node:test';

import { Document } from 'tavrin';

import { addon } from '../lib/addon.js';
import { textDocument } from './examples.mjs';

const described = JSON.parse(addon.options());
const document = new Document(textDocument('Ada'));
const wrongName = { name: 'TypeError', message: /there is no option|this call has no option/ };

// For each kind of option, what it takes, what is no value of it, and what is of a type that it does not take.
const kinds = {
  word: {
    good: ({ name, words }) => words.filter(word => name !== 'family' || word !== 'systemExtraLarge'),
    bad: () => ['', 'nonsense'],
    wrong: [1, true, {}, [1, 2]],
  },
  flag: { good: () => [true, false], bad: () => [], wrong: [1, 'true', {}] },
  number: { good: () => [1, 2.5], bad: () => [0, -1, NaN, Infinity], wrong: ['1', true, {}, [1, 2]] },
  count: {
    good: option => [option.maximum ?? 200_000_000],
    bad: option => [0, -1, 1.5, NaN, Infinity, ...(option.maximum ? [option.maximum + 1] : [])],
    wrong: ['1', true, {}],
  },
  size: {
    good: () => [[390, 844], '390x844'],
    bad: () => [[0, 1], [1, NaN], '', '1x'],
    wrong: [1, [1], [1, 2, 3], ['1', '2'], {}],
  },
  moment: {
    good: () => [new Date(0), '2026-03-01T09:41:00Z'],
    bad: () => [new Date(NaN), '', 'yesterday'],
    wrong: [1, true, {}],
  },
  timeZone: { good: () => ['UTC', 'Europe/Madrid'], bad: () => ['', 'Nowhere'], wrong: [1, {}] },
  color: { good: () => ['auto', 'none', 'FF9500', '#FF9500'], bad: () => ['', 'red'], wrong: [1, {}] },
  folder: { good: () => [], bad: () => [''], wrong: [1, {}] },
};

for (const option of described.filter(({ use }) => use !== 'answer'))
  test(`the option ${option.name}`, async () => {
    const { good, bad, wrong } = kinds[option.kind];
    const { name } = option;
    const isBudget = name === 'budget'; // which may be an object
    for (const value of good(option)) await document.widget(null, { [name]: value });
    for (const value of bad(option))
      await assert.rejects(
        document.widget(null, { [name]: value }),
        { name: 'RangeError', option: name },
        String(value),
      );
    for (const value of [...wrong, null, () => 1, Symbol('x'), 1n].filter(
      value => !isBudget || value?.constructor !== Object,
    ))
      await assert.rejects(
        document.widget(null, { [name]: value }),
        { name: 'TypeError', option: name },
        String(value),
      );
    await document.widget(null, { [name]: undefined });
  });

const failures = [
  ['a name that is none', { familly: 'systemSmall' }, { ...wrongName, option: 'familly' }],
  ['a name spelled in another way', { time_zone: 'UTC' }, { ...wrongName, option: 'time_zone' }],
  ['what Node does not offer', { hashes: true }, { ...wrongName, option: 'hashes' }],
  ['two that exclude each other', { family: 'systemSmall', size: [1, 1] }, { name: 'RangeError', option: 'size' }],
  ['a family that the screen has not', { family: 'systemExtraLarge' }, { name: 'RangeError', option: 'family' }],
  ['a bound that is none', { budget: { step: 1 } }, { name: 'TypeError', message: /a budget has no/, option: 'budget.step' }],
  ['a bound without a name', { budget: { '': 'usual' } }, { name: 'TypeError', message: /a budget has no/ }],
  ['a bound that is out of range', { budget: { steps: 0 } }, { name: 'RangeError', option: 'budgetSteps' }],
  ['a profile that is none', { budget: { profile: 'rich' } }, { name: 'RangeError', option: 'budget' }],
  ['a bound of a wrong type', { budget: { seconds: '1' } }, { name: 'TypeError', option: 'budgetSeconds' }],
  ['no object', 'systemSmall', { name: 'TypeError', message: 'options are an object' }],
  ['a list', [], { name: 'TypeError', message: 'options are an object' }],
  ['nothing', null, { name: 'TypeError', message: 'options are an object' }],
  ['a signal that is none', { signal: 1 }, { name: 'TypeError', message: 'signal takes an AbortSignal' }],
];
for (const [why, options, error] of failures)
  test(`refused: ${why}`, () => assert.rejects(document.widget(null, options), error));

test('calls have only the options that are theirs', async () => {
  const widget = await document.widget();
  await assert.rejects(widget.encode('png', { family: 'systemSmall' }), { ...wrongName, option: 'family' });
  await assert.rejects(widget.encode('gif'), { name: 'RangeError', option: 'format' });
  await assert.rejects(widget.encode(1), { name: 'TypeError', option: 'format' });
  await assert.rejects(widget.encode(null), { name: 'TypeError', option: 'format' });
  assert.throws(() => new Document(textDocument('x'), { scale: 1 }), { ...wrongName, option: 'scale' });
  await assert.rejects(widget.explain(1), TypeError);
});

test('a budget is a name or an object of bounds', async () => {
  const costs = { name: 'TavrinError', kind: 'Budget' };
  await document.widget(null, { budget: 'strangers' });
  await document.widget(null, { budget: { profile: 'strangers', steps: 1_000_000, seconds: 60 } });
  const widget = await document.widget(null, { size: [103, 50], budget: { pixels: 1000 } });
  await assert.rejects(widget.encode(), costs);
  assert.throws(() => new Document(textDocument('x'), { budget: { bytes: 10 } }), costs);
});

test('a picture has the format of its widget where nothing else is said', async () => {
  const widget = await document.widget(null, { format: 'svg' });
  assert.ok((await widget.encode()).equals(await widget.encode('svg')));
  const png = await widget.encode('png');
  assert.deepEqual([...png.subarray(1, 4)], [...Buffer.from('PNG')]);
  assert.ok((await widget.encode('png', { compression: 'small' })).length < png.length);
});
