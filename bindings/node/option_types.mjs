// SPDX-License-Identifier: MIT

// Words that have a name of their own in other types, too.
const namedWords = { family: 'Family', format: 'PictureFormat', budget: 'BudgetProfile' };

const union = words => words.map(word => `'${word}'`).join(' | ');

function typeOf({ name, kind, words }) {
  switch (kind) {
    case 'word':
      return namedWords[name] ?? union(words);
    case 'flag':
      return 'boolean';
    case 'number':
    case 'count':
      return 'number';
    case 'size':
      return 'Size';
    case 'moment':
      return 'Date | string';
    case 'timeZone':
    case 'color':
    case 'folder':
      return 'string';
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

const membersOf = options => options.map(option => member(option)).join('');

/** A bound of the budget as a member of the budget itself: `steps` for `budgetSteps`. */
function bound(option) {
  const name = option.name.slice('budget'.length);
  return member(option, name[0].toLowerCase() + name.slice(1));
}

/** The module of types for the options that all doors share. */
export function optionTypes(options) {
  const { family, format, budget } = Object.fromEntries(options.map(option => [option.name, option]));
  const ofBudget = options.filter(({ name }) => name.startsWith('budget') && name !== 'budget');
  const ofPicture = options.filter(option => option.use === 'picture' && option !== format);
  const ofWidget = options.filter(option => option.use === 'widget' && option !== budget && !ofBudget.includes(option));
  return `// SPDX-License-Identifier: MIT
// Written by option_types.mjs.

/** Width and height in points, both positive: \`[338, 158]\` or \`"338x158"\`. */
export type Size = readonly [width: number, height: number] | \`\${number}x\${number}\`;

export type Family = ${union(family.words)};
export type PictureFormat = ${union(format.words)};
export type BudgetProfile = ${union(budget.words)};

/** What a call may cost: a profile, and bounds that hold instead of the profile's. What passes it rejects with a
 * {@link TavrinError} of kind \`"Budget"\`. */
export interface Budget {
${member(budget, 'profile')}${ofBudget.map(bound).join('')}}

/** How a picture is written. */
export interface PictureOptions {
${membersOf(ofPicture)}}

/** How a document becomes a widget, and its picture. */
export interface WidgetOptions extends PictureOptions {
${membersOf([...ofWidget, format])}${member(budget, 'budget', 'BudgetProfile | Budget')}}
`;
}
