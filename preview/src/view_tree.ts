// SPDX-License-Identifier: MIT

// The laid-out tree with what is known of its views: names them, and finds them by place and by origin.
import type { Explained, LayoutView, Step, ViewExplanation } from "./api";
import { pathFromText } from "./json_places";

export interface Node {
    view: LayoutView;
    id: string;
    depth: number;
    parent: Node | null;
    children: Node[];
    explained: ViewExplanation | null;
    /** The way to the node or modifier of the document that it comes from. */
    origin: Step[] | null;
}

const hidden = new Set(["view", "modifier", "frame"]);

const isView = (value: unknown): value is LayoutView =>
    typeof value === "object" && value !== null && "frame" in value && ("view" in value || "modifier" in value);

/** The views that stand directly inside a value, in document order. */
function viewsIn(value: unknown): LayoutView[] {
    if (isView(value)) return [value];
    if (typeof value !== "object" || value === null) return [];
    return Object.values(value).flatMap(viewsIn);
}

/** The tree of a layout, with what is known of each view. */
export function treeOf({ layout, explanation }: Explained): Node {
    const told = explanation.views[Symbol.iterator]();
    /** Of what a composed view unfolds into there may be more explanations than views. */
    const next = (view: LayoutView): ViewExplanation | null => {
        const name = view.view ?? view.modifier;
        for (const each of told) if (each.view === name) return each;
        return null;
    };
    const nodeOf = (view: LayoutView, parent: Node | null, id: string): Node => {
        const explained = next(view);
        const origin = explained?.origin ? pathFromText(explained.origin) : null;
        const node: Node = { view, id, parent, depth: parent ? parent.depth + 1 : 0, children: [], explained, origin };
        const members = Object.entries(view).filter(([key]) => key !== "frame");
        node.children = members
            .flatMap(([, value]) => viewsIn(value))
            .map((child, i) => nodeOf(child, node, `${id}.${i}`));
        return node;
    };
    return nodeOf(layout, null, "0");
}

export const nameOf = (node: Node): string => node.view.view ?? node.view.modifier ?? "?";

/** What tells a view from others of its kind, in a few words. */
export function summaryOf(node: Node): string {
    const { view } = node;
    if (typeof view["text"] === "string") return `“${view["text"]}”`;
    const told = ["width", "height", "length", "number", "value", "radius", "spacing", "alignment", "url", "minLength"];
    return told
        .filter((key) => view[key] !== undefined && view[key] !== null && typeof view[key] !== "object")
        .map((key) => `${key} ${String(view[key])}`)
        .slice(0, 3)
        .join("  ");
}

/** Members that are no views, as text. */
export function membersOf(node: Node): [string, string][] {
    return Object.entries(node.view)
        .filter(([key, value]) => !hidden.has(key) && viewsIn(value).length === 0)
        .map(([key, value]) => [key, typeof value === "string" ? value : JSON.stringify(value)]);
}

function* all(node: Node): Generator<Node> {
    yield node;
    for (const child of node.children) yield* all(child);
}

/** The view under a point: the smallest, of those of the same size the innermost. */
export function nodeUnder(root: Node, { x, y }: { x: number; y: number }): Node | null {
    let best: Node | null = null;
    let area = Infinity;
    for (const node of all(root)) {
        const frame = node.view.frame;
        if (!frame) continue;
        const [left, top, width, height] = frame;
        const isInside = x >= left && x < left + width && y >= top && y < top + height;
        if (isInside && width * height <= area) {
            best = node;
            area = width * height;
        }
    }
    return best;
}

export function nodeWithId(root: Node, id: string): Node | null {
    for (const node of all(root)) if (node.id === id) return node;
    return null;
}

/** The innermost view that comes from a place of the document, or from what holds it. */
export function nodeFrom(root: Node, path: Step[]): Node | null {
    let best: Node | null = null;
    for (const node of all(root)) {
        const origin = node.origin;
        const holds = origin?.every((next, i) => next === path[i]);
        if (origin && holds && origin.length >= (best?.origin?.length ?? 0)) best = node;
    }
    return best;
}

export function short(length: number): string {
    return String(Math.round(length * 10) / 10);
}
