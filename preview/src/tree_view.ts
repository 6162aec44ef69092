// SPDX-License-Identifier: MIT

// The tree of views as rows.
import type { Explained } from "./api";
import { element } from "./dom";
import type { Node } from "./view_tree";
import { nameOf, nodeWithId, short, summaryOf, treeOf } from "./view_tree";

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

    show(explained: Explained): void {
        const id = this.selected?.id;
        this.root = treeOf(explained);
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
                role: "treeitem",
                tabindex: -1,
                "aria-level": node.depth + 1,
                "aria-selected": String(node === this.selected),
                class: node.view.modifier ? "row modifier" : "row",
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
