// SPDX-License-Identifier: MIT

// The two editors' tabs, as ARIA describes them.
import { byId, neighbour } from "./dom";
import type { Role } from "./source";

const roles: Role[] = ["document", "model"];

export function showTab(role: Role): void {
    for (const each of roles) {
        const tab = byId(`${each}-tab`);
        tab.setAttribute("aria-selected", String(each === role));
        tab.tabIndex = each === role ? 0 : -1;
        byId(`${each}-panel`).hidden = each !== role;
    }
}

export function setUpTabs(): void {
    const tabs = roles.map((role) => byId(`${role}-tab`));
    for (const role of roles) byId(`${role}-tab`).addEventListener("click", () => showTab(role));
    byId("tabs").addEventListener("keydown", (event) => {
        const next = neighbour(tabs, document.activeElement, event.key);
        if (!next) return;
        event.preventDefault();
        next.click();
        next.focus();
    });
}
