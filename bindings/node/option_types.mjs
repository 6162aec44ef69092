// SPDX-License-Identifier: MIT

// Words that have a name of their own in other types, too.
const namedWords = { family: 'Family', format: 'PictureFormat', budget: 'BudgetProfile' };

const union = words => words.map(word => `'${word}'`).join(' | ');

function typeOf({ name, kind, words }) {
  switch (kind) {
    case 'word': return namedWords[name] ?? union(words);
    case 'flag': return 'boolean';
    case 'number':
    case 'count': return 'number';
    case 'size': return 'Size';
    case 'moment': return 'Date | string';
    case 'timeZone':
    case 'color':
    case 'folder': return 'string';
  }
  throw new Error(`there is no type for options of the kind ${kind}`);
}

function rangeOf({ kind, minimum, maximum }) {
  const what = { count: 'a whole number', number: 'a number' }[kind];
  if (!what) return '';
  const least = kind === 'count' ? `, at least ${minimum}` : ' above 0';
  return `; ${what}${least}${maximum === undefined ? '' : `, at most ${maximum}`}`;
}

/** One member with its comment. */
function member(option, name = option.name, type = typeOf(option)) {
  const usual = option.default === undefined ? '' : ` Default: ${option.default}.`;
  return `  /** ${option.sentence}${rangeOf(option)}.${usual} */\n  ${name}?: ${type};\n`;
}

const bounds = /^budget(?=[A-Z])/;
const lowered = name => name[0].toLowerCase() + name.slice(1);

/** The module of types for the options that all doors share. */
export function optionTypes(options) {
  const called = Object.fromEntries(options.map(option => [option.name, option]));
  const using = use => options.filter(option => option.use === use && !option.name.startsWith('budget'));
  const budget = member(called.budget, 'budget', 'BudgetProfile | Budget');
  const inBudget = options.filter(({ name }) => bounds.test(name));
  return `// SPDX-License-Identifier: MIT
// Written by option_types.mjs.

/** Width and height in points, both positive: \`[338, 158]\` or \`"338x158"\`. */
export type Size = readonly [width: number, height: number] | \`\${number}x\${number}\`;

${Object.entries(namedWords).map(([name, type]) => `export type ${type} = ${union(called[name].words)};\n`).join('')}
/** What a call may cost: a profile, and bounds that hold instead of the profile's. What passes it rejects with a
 * {@link TavrinError} of kind \`"Budget"\`. */
export interface Budget {
${member(called.budget, 'profile')}${inBudget.map(option => member(option, lowered(option.name.replace(bounds, '')))).join('')}}

/** How a picture is written. */
export interface PictureOptions {
${using('picture').filter(({ name }) => name !== 'format').map(option => member(option)).join('')}}

/** How a document becomes a widget, and its picture. */
export interface WidgetOptions extends PictureOptions {
${using('widget').map(option => member(option)).join('')}${member(called.format)}${budget}}
`;
}
