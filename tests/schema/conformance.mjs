// SPDX-License-Identifier: MIT

// Whether `tavrin schema` says what `tavrin check` does: conformance.mjs PROGRAM [FOLDER_OF_CASES]
//
// Both judge the examples, the goldens, the reference, cases.json, every key with every kind of value (probes.mjs)
// and, where a folder is given, the documents of its cases. Prints each document on which they differ.
import { execFileSync, spawnSync } from "node:child_process";
import { existsSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join, resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { probes, wrapped } from "./probes.mjs";

const here = dirname(fileURLToPath(import.meta.url));
const top = resolve(here, "../..");
if (!existsSync(join(here, "node_modules/ajv")))
  execFileSync("npm", ["ci", "--silent"], { cwd: here, stdio: "inherit" });
const { default: Ajv } = await import("ajv/dist/2020.js");

const [program, casesFolder] = process.argv.slice(2).map((path) => resolve(path));
const problems = [];

function filesBelow(folder, isWanted) {
  if (!existsSync(folder)) return [];
  return readdirSync(folder, { recursive: true })
    .filter(isWanted)
    .sort()
    .map((file) => join(folder, file));
}

/// Documents as `{ why, text, expected }`; what is expected may be left open: then the two only have to agree.
function ownDocuments() {
  const isDocument = (file) => file.endsWith("document.json");
  const files = [
    ...filesBelow(join(top, "examples"), isDocument),
    ...filesBelow(join(top, "tests/golden/cases"), isDocument),
    ...filesBelow(join(top, "docs/reference/documents"), (file) => file.endsWith(".json")),
  ];
  return files.map((file) => ({ why: file.slice(top.length + 1), text: readFileSync(file, "utf8") }));
}

function tableDocuments(table) {
  const rows = (list, expected) =>
    list.map(({ why, ...row }) => ({ why, text: JSON.stringify(wrapped(row)), expected }));
  return [...rows(table.accepted, true), ...rows(table.refused, false)];
}

function caseDocuments(folder) {
  const documents = filesBelow(folder, (file) => file.endsWith(".json")).map((file) => {
    const { document, documentText } = JSON.parse(readFileSync(file, "utf8"));
    return { why: file.slice(folder.length + 1), text: documentText ?? JSON.stringify(document) };
  });
  return documents.filter(({ why, text }) => isOneJSON(text) || console.log(`left out, no schema can tell: ${why}`));
}

/// Whether a text is JSON that means the same to everyone: no key stands twice in an object.
function isOneJSON(text) {
  const keysOf = (value) => {
    if (typeof value !== "object" || value === null) return 0;
    const own = Array.isArray(value) ? 0 : Object.keys(value).length;
    return Object.values(value).reduce((sum, inner) => sum + keysOf(inner), own);
  };
  try {
    const written = [...text.matchAll(/"(?:[^"\\]|\\.)*"(\s*:)?/g)].filter((string) => string[1]).length;
    return written === keysOf(JSON.parse(text));
  } catch {
    return false;
  }
}

/// What the program says of each document: whether it can be decoded, and has a "main".
function decoderVerdicts(documents) {
  const folder = mkdtempSync(join(tmpdir(), "schema-"));
  try {
    const names = documents.map((document, index) => {
      writeFileSync(join(folder, `${index}.json`), document.text);
      return `${index}.json`;
    });
    const arguments_ = ["check", "--errors", "json", "--offline", ...names];
    const { stderr } = spawnSync(program, arguments_, { cwd: folder, encoding: "utf8", maxBuffer: 1 << 28 });
    const failures = new Map();
    for (const line of stderr.split("\n").filter((line) => line.startsWith('{"error"'))) {
      const { error } = JSON.parse(line);
      failures.set(error.file, error);
    }
    return names.map((name) => failures.get(name));
  } finally {
    rmSync(folder, { recursive: true });
  }
}

/// Failures of drawing are not the schema's; that the document has a "main" is.
function isOfShape(failure) {
  return /^(Decoding|Conversion)Error$/.test(failure.type) || failure.message === "view must have main node";
}

function compare(validate, documents) {
  const failures = decoderVerdicts(documents);
  documents.forEach(({ why, text, expected }, index) => {
    const accepted = validate(JSON.parse(text));
    const decoded = !failures[index] || !isOfShape(failures[index]);
    if (accepted !== decoded || (expected ?? decoded) !== decoded)
      problems.push(
        `${why}: expected ${expected ?? "agreement"}, decoder ${decoded}, schema ${accepted}\n  ${text}\n  ` +
          JSON.stringify(failures[index] ?? validate.errors?.at(-1)),
      );
  });
  const refused = failures.filter((failure) => failure && isOfShape(failure)).length;
  console.log(`${documents.length} documents judged, ${refused} refused`);
}

/// Documents that the program refuses and a schema can not; they fail here when one day it can.
function compareBeyond(validate, rows) {
  const failures = decoderVerdicts(rows.map((row) => ({ text: row.text ?? JSON.stringify(wrapped(row)) })));
  rows.forEach((row, index) => {
    const accepted = validate(row.text ? JSON.parse(row.text) : wrapped(row));
    if (!accepted || !failures[index]) problems.push(`${row.why}: is not beyond the schema`);
  });
}

/// Every default value and example must be what its own key takes.
function checkAnnotations(ajv, schema) {
  const records = { "": schema };
  for (const [name, record] of Object.entries(schema.$defs)) records[`/$defs/${name}`] = record;
  for (const [path, record] of Object.entries(records))
    for (const [key, property] of Object.entries(record.properties ?? {})) {
      if (!property.description && !record.allOf) problems.push(`${path}/${key} is not described`);
      const validate = ajv.getSchema(`schema#${path}/properties/${key}`);
      for (const value of [...(property.examples ?? []), property.default].filter((value) => value !== undefined))
        if (!validate(value)) problems.push(`${path}/${key} does not take its own ${JSON.stringify(value)}`);
    }
}

const schema = JSON.parse(execFileSync(program, ["schema"], { encoding: "utf8" }));
const table = JSON.parse(readFileSync(join(here, "cases.json"), "utf8"));
const ajv = new Ajv({ strict: true, allowUnionTypes: true });
ajv.addSchema(schema, "schema");
const validate = ajv.getSchema("schema");

checkAnnotations(ajv, schema);
compare(validate, ownDocuments());
compare(validate, tableDocuments(table));
compare(validate, probes(schema));
if (casesFolder) compare(validate, caseDocuments(casesFolder));
compareBeyond(validate, table.beyond);

if (problems.length > 0) {
  console.error(problems.slice(0, 20).join("\n"));
  console.error(`${problems.length} differences`);
  process.exit(1);
}
