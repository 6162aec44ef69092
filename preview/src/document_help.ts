// SPDX-License-Identifier: MIT

// Completion and explanations in the document, from the schema and the model.
import type { Completion, CompletionContext, CompletionResult, CompletionSource } from "@codemirror/autocomplete";
import { syntaxTree } from "@codemirror/language";
import type { EditorState } from "@codemirror/state";
import type { HoverTooltipSource } from "@codemirror/view";
import type { SyntaxNode } from "@lezer/common";
import { element } from "./dom";
import { keyOf, stringIn, textOf, valueIn } from "./json_places";
import type { Members, Schema } from "./schema";
import { SchemaReader } from "./schema";

/** The plain members of an object. */
function membersOf(state: EditorState, object: SyntaxNode): Members {
    const members: Members = new Map();
    for (const property of object.getChildren("Property")) {
        const key = keyOf(state, property);
        const value = valueIn(property);
        if (key !== null && value?.name === "String" && !members.has(key))
            members.set(key, stringIn(textOf(state, value)));
    }
    return members;
}

/** The schemas of the value that stands, or is to stand, in a node of the syntax tree. */
function schemasOf(reader: SchemaReader, root: Schema, state: EditorState, node: SyntaxNode): Schema[] {
    const holder = node.parent;
    if (!holder) return [root];
    if (node.name === "Property") {
        const schemas = schemasOf(reader, root, state, holder);
        return reader.inside(schemas, keyOf(state, node), membersOf(state, holder));
    }
    const schemas = schemasOf(reader, root, state, holder);
    return holder.name === "Array" ? reader.inside(schemas, null, new Map()) : schemas;
}

/** What is put in for a key: its name and the beginning of a value. */
function propertyText(reader: SchemaReader, key: string, schema: Schema): string {
    const types = reader.types([schema]);
    const values = reader.values([schema]);
    if (types.has("array")) return `"${key}": []`;
    if (types.has("string") || values.some((value) => typeof value === "string")) return `"${key}": ""`;
    if (types.has("object")) return `"${key}": {}`;
    return `"${key}": `;
}

/** The string or word that is being typed: where it begins, and how much of it stands behind the cursor. */
interface Typed {
    from: number;
    behind: number;
    isQuoted: boolean;
}

function typedAt(context: CompletionContext, node: SyntaxNode): Typed {
    const quoted = context.matchBefore(/"[\w.-]*$/);
    const isString = node.name === "String" || node.name === "PropertyName";
    if (quoted) return { from: quoted.from + 1, behind: isString ? node.to - context.pos : 0, isQuoted: true };
    return { from: context.matchBefore(/[\w.-]*$/)?.from ?? context.pos, behind: 0, isQuoted: false };
}

/** Puts in a JSON text, whose first quotation mark may stand there already; the cursor goes inside what is empty. */
function inserting(text: string, { isQuoted, behind }: Typed): Exclude<Completion["apply"], string | undefined> {
    const inserted = isQuoted ? text.slice(1) : text;
    const back = /: (""|\[\]|\{\})$/.test(text) ? 1 : 0;
    return (view, _completion, from, to) =>
        view.dispatch({
            changes: { from, to: to + behind, insert: inserted },
            selection: { anchor: from + inserted.length - back },
            userEvent: "input.complete",
        });
}

function keyCompletions(
    reader: SchemaReader,
    schemas: Schema[],
    members: Members,
    hasValue: boolean,
    typed: Typed,
): Completion[] {
    return [...reader.keys(schemas, members)]
        .filter(([key]) => !members.has(key))
        .map(([key, { schema, isRequired }]) => ({
            label: key,
            type: "property",
            detail: isRequired ? "required" : "",
            info: reader.description([schema], new Map()),
            boost: key === "type" ? 2 : isRequired ? 1 : 0,
            apply: inserting(hasValue ? `"${key}"` : propertyText(reader, key, schema), typed),
        }));
}

function valueCompletions(reader: SchemaReader, schemas: Schema[], typed: Typed): Completion[] {
    return reader
        .values(schemas)
        .filter((value) => !typed.isQuoted || typeof value === "string")
        .map((value) => ({
            label: typeof value === "string" ? value : JSON.stringify(value),
            type: typeof value === "string" ? "enum" : "constant",
            apply: inserting(JSON.stringify(value), typed),
        }));
}

/** The names that stand in the model behind "initServerParam.title." */
function modelCompletions(context: CompletionContext, model: () => string): CompletionResult | null {
    const typed = context.matchBefore(/\{\{\s*[\w.[\]]*/);
    if (!typed) return null;
    const way = typed.text.replace(/^\{\{\s*/, "");
    const last = Math.max(way.lastIndexOf("."), -1);
    const from = context.pos - (way.length - last - 1);
    if (last < 0) return { from, options: [{ label: "initServerParam", type: "variable" }] };
    const options = Object.entries(memberAt(model(), way.slice(0, last)) ?? {}).map(([name, value]) => ({
        label: Array.isArray(value) ? `${name}[0]` : name,
        detail: Array.isArray(value) ? `${value.length} elements` : preview(value),
        type: "variable",
    }));
    return { from, options, validFor: /^[\w[\]]*$/ };
}

function preview(value: unknown): string {
    const text = typeof value === "object" && value !== null ? "{…}" : String(value);
    return text.length > 30 ? `${text.slice(0, 30)}…` : text;
}

function memberAt(model: string, way: string): object | null {
    try {
        let value: unknown = { initServerParam: JSON.parse(model) as unknown };
        for (const name of way.split(/[.[\]]+/).filter(Boolean)) value = (value as Record<string, unknown>)[name];
        return typeof value === "object" ? value : null;
    } catch {
        return null;
    }
}

export function documentCompletion(schema: () => Schema | null, model: () => string): CompletionSource {
    return (context) => {
        const inModel = modelCompletions(context, model);
        const root = schema();
        if (inModel || !root) return inModel;
        const reader = new SchemaReader(root);
        const node = syntaxTree(context.state).resolveInner(context.pos, -1);
        const typed = typedAt(context, node);
        if (!context.explicit && !typed.isQuoted) return null;
        const object = objectOfKey(node);
        const options = object
            ? keysAt(context.state, reader, root, object, node, typed)
            : valueCompletions(reader, schemasOf(reader, root, context.state, node), typed);
        return options.length > 0 ? { from: typed.from, options, validFor: /^[\w.-]*$/ } : null;
    };
}

/** The object in which a key is being written; null where a value is. */
function objectOfKey(node: SyntaxNode): SyntaxNode | null {
    if (node.name === "PropertyName") return node.parent?.parent ?? null;
    if (node.name === "⚠") return node.parent?.name === "Object" ? node.parent : null;
    if (node.name === "Object" || node.name === "{") return node.name === "Object" ? node : node.parent;
    return null;
}

function keysAt(
    state: EditorState,
    reader: SchemaReader,
    root: Schema,
    object: SyntaxNode,
    node: SyntaxNode,
    typed: Typed,
): Completion[] {
    const members = membersOf(state, object);
    const property = node.name === "PropertyName" ? node.parent : null;
    if (property) members.delete(keyOf(state, property) ?? "");
    const hasValue = property !== null && /^\s*:/.test(state.sliceDoc(node.to));
    return keyCompletions(reader, schemasOf(reader, root, state, object), members, hasValue, typed);
}

export function documentHover(schema: () => Schema | null): HoverTooltipSource {
    return (view, pos) => {
        const root = schema();
        const node = syntaxTree(view.state).resolveInner(pos, 1);
        if (!root || (node.name !== "PropertyName" && node.name !== "String")) return null;
        const text = explanation(root, view.state, node);
        if (!text) return null;
        return {
            pos: node.from,
            end: node.to,
            create: () => ({ dom: element("div", { class: "explanation" }, text) }),
        };
    };
}

function explanation(root: Schema, state: EditorState, node: SyntaxNode): string {
    const reader = new SchemaReader(root);
    const property = node.parent;
    const object = property?.parent;
    if (property?.name !== "Property" || !object) return "";
    const members = membersOf(state, object);
    if (node.name === "String" && keyOf(state, property) === "type")
        return reader.typeDescription(schemasOf(reader, root, state, object), members);
    return reader.description(schemasOf(reader, root, state, property), new Map());
}
