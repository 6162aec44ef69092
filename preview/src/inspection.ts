// SPDX-License-Identifier: MIT

// The tree, the picture and the text look at the same view: what one points at, the others show.
import { syntaxTree } from "@codemirror/language";
import type { Drawing } from "./api";
import { explain } from "./api";
import { detailsOf } from "./details";
import { byId } from "./dom";
import type { Editor } from "./editor";
import type { Node } from "./view_tree";
import { TreeView } from "./tree_view";
import { nodeFrom, nodeUnder } from "./view_tree";
import { nodeAt, pathOf } from "./json_places";
import type { Stage } from "./stage";
import { showTab } from "./tabs";

const quietMilliseconds = 40;

type Point = { x: number; y: number };

export class Inspection {
    readonly tree: TreeView;
    private pending = 0;
    private asking = new AbortController();

    constructor(
        private readonly stage: () => Stage,
        private readonly editor: Editor,
    ) {
        this.tree = new TreeView(byId("tree"), {
            looked: (node) => this.look(node),
            selected: (node) => {
                this.look(node);
                this.editor.mark(node.origin, true);
                this.showDetails();
            },
            opened: (node) => this.goToText(node),
        });
    }

    /** The selected picture has changed: asks for its tree, once nothing newer is drawn for a moment. */
    update(drawing: Drawing): void {
        clearTimeout(this.pending);
        this.asking.abort();
        const { signal } = (this.asking = new AbortController());
        this.pending = window.setTimeout(async () => {
            const explained = await explain(drawing, signal).catch(() => null);
            if (!explained || signal.aborted) return;
            this.tree.show(explained);
            this.showDetails();
            this.look(null);
        }, quietMilliseconds);
    }

    get root(): Node | null {
        return this.tree.root;
    }

    /** What the pointer is over in the picture. */
    hover(point: Point | null): void {
        const node = point && this.root ? nodeUnder(this.root, point) : null;
        this.look(node);
    }

    pick(point: Point): void {
        const node = this.root && nodeUnder(this.root, point);
        if (node) this.tree.select(node);
    }

    /** The cursor stands elsewhere in the document. */
    follow(): void {
        const { state, hasFocus } = this.editor.view;
        if (!hasFocus || !this.root) return;
        const at = syntaxTree(state).resolveInner(state.selection.main.head, -1);
        const node = nodeFrom(this.root, pathOf(state, at));
        if (node) this.stage().selected?.outline(node.view.frame ?? null);
    }

    private look(node: Node | null): void {
        const shown = node ?? this.tree.selected;
        this.stage().selected?.outline(shown?.view.frame ?? null);
    }

    private goToText(node: Node): void {
        const place = node.origin && nodeAt(this.editor.view.state, node.origin);
        if (!place) return;
        showTab("document");
        this.editor.goTo(place.from);
    }

    private showDetails(): void {
        const node = this.tree.selected;
        byId("details").replaceChildren(
            ...(node ? detailsOf(node, () => this.goToText(node)) : ["Choose a view to see what it is."]),
        );
    }
}
