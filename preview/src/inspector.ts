// The laid-out tree: finds views under the pointer, shows their frames and what they are.
import type { LayoutView, Step } from "./api";
import { element } from "./dom";

export interface Node {
    view: LayoutView;
    id: string;
    depth: number;
    parent: Node | null;
    children: Node[];
    origin: Step[] | null;
    explanation: string[];
}

const hidden = new Set(["view", "modifier", "frame", "origin", "explanation"]);

const isView = (value: unknown): value is LayoutView =>
    typeof value === "object" && value !== null && "frame" in value && ("view" in value || "modifier" in value);

/** The views that stand directly inside a value, in document order. */
function viewsIn(value: unknown): LayoutView[] {
    if (isView(value)) return [value];
    if (typeof value !== "object" || value === null) return [];
    return Object.values(value).flatMap(viewsIn);
}

export function treeOf(view: LayoutView, parent: Node | null = null, id = "0"): Node {
    const node: Node = {
        view, id, parent,
        depth: parent ? parent.depth + 1 : 0,
        children: [],
        origin: (view["origin"] as Step[] | undefined) ?? null,
        explanation: (view["explanation"] as string[] | undefined) ?? [],
    };
    const members = Object.entries(view).filter(([key]) => key !== "frame");
    node.children = members.flatMap(([, value]) => viewsIn(value)).map((child, i) => treeOf(child, node, `${id}.${i}`));
    return node;
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

export interface TreeEvents {
    looked: (node: Node | null) => void;
    selected: (node: Node) => void;
    opened: (node: Node) => void;
}

const openDepth = 8;
const openRows = 300;

/** The tree as rows that can be walked with the keyboard, as ARIA describes trees. */
export class TreeView {
    root: Node | null = null;
    selected: Node | null = null;
    private readonly closed = new Map<string, boolean>();
    private rows = new Map<Node, HTMLElement>();
    private nodes = new Map<Element, Node>();

    constructor(
        private readonly parent: HTMLElement,
        private readonly events: TreeEvents,
    ) {
        parent.addEventListener("keydown", (event) => this.key(event));
        parent.addEventListener("click", (event) => this.click(event));
        parent.addEventListener("dblclick", (event) => this.open(event));
        parent.addEventListener("pointerover", (event) => this.events.looked(this.nodeOf(event.target)));
        parent.addEventListener("pointerleave", () => this.events.looked(null));
    }

    show(layout: LayoutView): void {
        const id = this.selected?.id;
        this.root = treeOf(layout);
        this.selected = id ? nodeWithId(this.root, id) : null;
        this.render();
    }

    select(node: Node, focus = false): void {
        for (let at = node.parent; at; at = at.parent) this.closed.set(at.id, false);
        this.selected = node;
        this.render();
        const row = this.rows.get(node);
        row?.scrollIntoView({ block: "nearest" });
        if (focus) row?.focus();
        this.events.selected(node);
    }

    private isClosed(node: Node): boolean {
        return this.closed.get(node.id) ?? (node.depth >= openDepth || this.rows.size > openRows);
    }

    private render(): void {
        if (!this.root) return;
        const hadFocus = this.parent.contains(document.activeElement);
        this.rows = new Map();
        this.nodes = new Map();
        this.addRows(this.root);
        this.parent.replaceChildren(...this.rows.values());
        const stop = this.selected ?? this.root;
        const row = this.rows.get(stop);
        row?.setAttribute("tabindex", "0");
        if (hadFocus) row?.focus({ preventScroll: true });
    }

    private addRows(node: Node): void {
        const isClosed = node.children.length > 0 && this.isClosed(node);
        const row = this.row(node, isClosed);
        this.rows.set(node, row);
        this.nodes.set(row, node);
        if (!isClosed) for (const child of node.children) this.addRows(child);
    }

    private row(node: Node, isClosed: boolean): HTMLElement {
        const frame = node.view.frame;
        const row = element(
            "div",
            {
                role: "treeitem", tabindex: -1, "aria-level": node.depth + 1,
                "aria-selected": String(node === this.selected), class: node.view.modifier ? "row modifier" : "row",
            },
            element("span", { class: "twist", "aria-hidden": "true" }, node.children.length === 0 ? "" : "›"),
            element("span", { class: "name" }, nameOf(node)),
            element("span", { class: "summary" }, summaryOf(node)),
            element("span", { class: "size" }, frame ? `${short(frame[2])} × ${short(frame[3])}` : "no view"),
        );
        if (node.children.length > 0) row.setAttribute("aria-expanded", String(!isClosed));
        row.style.setProperty("--depth", String(node.depth));
        return row;
    }

    private nodeOf(target: EventTarget | null): Node | null {
        const row = target instanceof Element ? target.closest("[role=treeitem]") : null;
        return (row && this.nodes.get(row)) ?? null;
    }

    private click(event: MouseEvent): void {
        const node = this.nodeOf(event.target);
        if (!node) return;
        if (event.target instanceof Element && event.target.matches(".twist")) this.toggle(node);
        this.select(node, true);
    }

    private open(event: MouseEvent): void {
        const node = this.nodeOf(event.target);
        if (node) this.events.opened(node);
    }

    private toggle(node: Node, closes = !this.isClosed(node)): void {
        this.closed.set(node.id, closes);
        this.render();
    }

    private key(event: KeyboardEvent): void {
        const node = this.nodeOf(event.target);
        if (!node) return;
        const shown = [...this.rows.keys()];
        const at = shown.indexOf(node);
        const goTo = (next: Node | null | undefined) => next && this.select(next, true);
        const isOpen = node.children.length > 0 && !this.isClosed(node);
        const actions: Record<string, () => void> = {
            ArrowDown: () => goTo(shown[at + 1]),
            ArrowUp: () => goTo(shown[at - 1]),
            Home: () => goTo(shown[0]),
            End: () => goTo(shown.at(-1)),
            ArrowRight: () => (isOpen ? goTo(node.children[0]) : this.toggle(node, false)),
            ArrowLeft: () => (isOpen ? this.toggle(node, true) : goTo(node.parent)),
            Enter: () => this.events.opened(node),
        };
        const action = actions[event.key];
        if (!action || event.ctrlKey || event.altKey || event.metaKey) return;
        event.preventDefault();
        action();
    }
}

export function short(length: number): string {
    return String(Math.round(length * 10) / 10);
}
