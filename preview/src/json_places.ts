// SPDX-License-Identifier: MIT

// Ways through a JSON text: from a path of keys and indices to its place, and back.
import { ensureSyntaxTree, syntaxTree } from "@codemirror/language";
import type { EditorState } from "@codemirror/state";
import type { SyntaxNode } from "@lezer/common";
import type { Step } from "./api";

const valueNames = new Set(["Object", "Array", "String", "Number", "True", "False", "Null"]);
const parseMilliseconds = 50;

export const isValue = (node: SyntaxNode): boolean => valueNames.has(node.name);

export function textOf(state: EditorState, node: SyntaxNode): string {
    return state.sliceDoc(node.from, node.to);
}

/** The text of a JSON string, also of one that is not closed yet. */
export function stringIn(literal: string): string {
    try {
        return JSON.parse(literal) as string;
    } catch {
        return literal.replace(/^"|"$/g, "");
    }
}

/** The value of a property, or of what else holds one. */
export function valueIn(node: SyntaxNode): SyntaxNode | null {
    for (let child = node.lastChild; child; child = child.prevSibling) if (isValue(child)) return child;
    return null;
}

export function keyOf(state: EditorState, property: SyntaxNode): string | null {
    const name = property.getChild("PropertyName");
    return name ? stringIn(textOf(state, name)) : null;
}

/** The property of an object with that key; the first counts. */
export function propertyOf(state: EditorState, object: SyntaxNode, key: string): SyntaxNode | null {
    return object.getChildren("Property").find((property) => keyOf(state, property) === key) ?? null;
}

function step(state: EditorState, from: SyntaxNode, to: Step): SyntaxNode | null {
    if (typeof to === "number") {
        let index = 0;
        for (let child = from.firstChild; child; child = child.nextSibling)
            if (isValue(child) && index++ === to) return child;
        return null;
    }
    const property = from.name === "Object" ? propertyOf(state, from, to) : null;
    return property ? valueIn(property) : null;
}

export function rootOf(state: EditorState): SyntaxNode | null {
    const tree = ensureSyntaxTree(state, state.doc.length, parseMilliseconds) ?? syntaxTree(state);
    return valueIn(tree.topNode);
}

/** The value that a path leads to. */
export function nodeAt(state: EditorState, path: Step[]): SyntaxNode | null {
    let node = rootOf(state);
    for (const next of path) node = node && step(state, node, next);
    return node;
}

/** The way from the root to a value. */
export function pathOf(state: EditorState, node: SyntaxNode): Step[] {
    const path: Step[] = [];
    for (let at: SyntaxNode | null = node; at; at = at.parent) {
        const parent: SyntaxNode | null = at.parent;
        if (at.name === "Property") {
            path.unshift(keyOf(state, at) ?? "");
        } else if (parent?.name === "Array" && isValue(at)) {
            let index = 0;
            for (let before = at.prevSibling; before; before = before.prevSibling) if (isValue(before)) index++;
            path.unshift(index);
        }
    }
    return path;
}

/** What a text editor calls a place, such as `nodes.main.children[0]`. */
export function pathText(path: Step[]): string {
    return path.map((next, i) => (typeof next === "number" ? `[${next}]` : (i > 0 ? "." : "") + next)).join("");
}

/** The path that such a text names; unusual keys stand in brackets and quotation marks. */
export function pathFromText(text: string): Step[] {
    const steps = text.matchAll(/\[(\d+)\]|\[("(?:[^"\\]|\\.)*")\]|[\w-]+/g);
    return [...steps].map(([name, index, quoted]) =>
        index !== undefined ? Number(index) : quoted !== undefined ? stringIn(quoted) : name,
    );
}
