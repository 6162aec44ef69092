// SPDX-License-Identifier: MIT

// What is known of the selected view.
import { element } from "./dom";
import type { Node } from "./view_tree";
import { membersOf, nameOf, short } from "./view_tree";
import { pathText } from "./json_places";

function term(name: string, value: string | Node | HTMLElement): HTMLElement[] {
    return [element("dt", {}, name), element("dd", {}, value as string | HTMLElement)];
}

/** A block of what can be told; `jump` leads to the text the view comes from. */
export function detailsOf(node: Node, jump: () => void): HTMLElement[] {
    const list = element("dl");
    const frame = node.view.frame;
    if (frame) {
        const [x, y, width, height] = frame.map(short);
        list.append(...term("place", `${x}, ${y}`), ...term("size", `${width} × ${height}`));
    } else {
        list.append(...term("place", "no view: takes no room"));
    }
    for (const [key, value] of membersOf(node)) if (value !== "null") list.append(...term(key, value));
    if (node.origin) {
        const button = element("button", { type: "button", class: "link" }, pathText(node.origin));
        button.addEventListener("click", jump);
        list.append(...term("text", button));
    }
    const told = node.explained?.because?.map((sentence) => element("p", {}, sentence)) ?? [];
    return [element("h3", {}, nameOf(node)), ...told, list];
}
