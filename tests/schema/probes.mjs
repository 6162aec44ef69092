// SPDX-License-Identifier: MIT

// Documents that vary each key of the language, one at a time: left out, or with every kind of value.

const usual = [
  ...[null, true, 1, 2.5, "", "x", "true", "12", "{{initServerParam.a}}", [], {}, ["all"], [{ type: "spacer" }]],
  ...[[{ type: "clipped" }], { type: "spacer" }, { type: "clipped" }, { value: "#FF0000" }],
  ...[{ main: { type: "spacer" } }, { position: "top", view: { type: "spacer" } }],
];
const unusual = [
  ...[false, 0, -3, 1e300, " ", "false", "#FF0000"],
  ...["+12", "-12", " 12", "12 ", "1.5", ".5", "5.", ".", "-", "1e5", "1e", "1e+5", "1E-5", "e5", "1_0", "١"],
  ...["0x1F", "0x", "0x.8", "0x1.8p3", "0x1p", "inf", "-Infinity", "infinit", "NaN", "nano"],
  ...["{{}}", "{{a", "a}}", "{{{}", "{}}}", " {{a}}", "{{a}}\n", "{{a\nb}}"],
  ...["leading", "Leading", "center", "bold", "fit", "circular", "all", "1.0"],
  ...[["all", "x"], [null], [{}], [{ type: "text" }], { value: [] }, { type: 7, value: true }, { position: "top" }],
];

/// A document around what a row names: a "node", a "modifier", or all of it.
export function wrapped({ node, modifier, document }) {
  if (document !== undefined) return document;
  const main = node !== undefined ? node : { type: "emptyView", modifiers: [modifier] };
  return { version: "1.0", nodes: { main } };
}

const samples = {
  "#/$defs/node": { type: "spacer" },
  "#/$defs/nodes.color": { value: "#FF0000" },
};

/// A record with no more than it needs.
function smallest(record) {
  const required = (record.required ?? []).map((key) => {
    const property = record.properties[key];
    return [key, property.examples?.[0] ?? samples[property.$ref]];
  });
  return Object.fromEntries(required);
}

function documentWith(definition, record) {
  const [kind, type] = definition.split(".");
  if (kind === "nodes") return wrapped({ node: { type, ...record } });
  if (kind === "modifiers") return wrapped({ modifier: { type, ...record } });
  return wrapped({ node: { type: "progressView", style: "linear", value: 0, lineWidth: 1, attachment: record } });
}

const seen = new Set();

/// The values to try for a key: the unusual ones only where no key before was defined alike.
function valuesFor({ description, examples, default: absent, ...definition }) {
  const text = JSON.stringify(definition);
  if (seen.has(text)) return usual;
  seen.add(text);
  return [...usual, ...unusual];
}

/// Documents that vary one key of one record.
function variations(name, record, around) {
  const base = smallest(record);
  const list = [{ why: name, text: JSON.stringify(around(base)) }];
  for (const key of Object.keys(record.properties).filter((key) => key !== "$schema")) {
    const { [key]: dropped, ...without } = base;
    list.push({ why: `${name} without ${key}`, text: JSON.stringify(around(without)) });
    for (const value of valuesFor(record.properties[key]))
      list.push({ why: `${name}, ${key}`, text: JSON.stringify(around({ ...base, [key]: value })) });
  }
  return list;
}

/// The documents as `{ why, text }`.
export function probes(schema) {
  const definitions = Object.entries(schema.$defs).filter(([name, record]) => record.properties && !record.allOf);
  const list = definitions.flatMap(([name, record]) =>
    variations(name, record, (inner) => documentWith(name, inner)),
  );
  list.push(...variations("document", schema, (document) => document));
  const words = [undefined, null, 1, "", "Text", "texts", "animation", "transition", "contentTransition"];
  const tags = [...schema.$defs.node.properties.type.enum, ...schema.$defs.modifier.properties.type.enum];
  for (const type of [...words, ...tags]) {
    list.push({ why: "a node's type", text: JSON.stringify(wrapped({ node: { type } })) });
    list.push({ why: "a modifier's type", text: JSON.stringify(wrapped({ modifier: { type } })) });
  }
  for (const value of [...usual, ...unusual]) {
    list.push({ why: "a node", text: JSON.stringify(wrapped({ node: value })) });
    list.push({ why: "a modifier", text: JSON.stringify(wrapped({ modifier: value })) });
    list.push({ why: "a schema's place", text: JSON.stringify({ $schema: value, ...smallest(schema) }) });
    list.push({ why: "anything at all", text: JSON.stringify(value) });
  }
  return list;
}
