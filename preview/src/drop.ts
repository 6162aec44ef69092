// SPDX-License-Identifier: MIT

// A document or a model that is dragged onto the page.
import { announce, byId } from "./dom";
import type { Role } from "./source";

const largest = 8 << 20;

/** A document has nodes; everything else is a model. */
function roleOf(text: string): Role {
    try {
        const value: unknown = JSON.parse(text);
        return typeof value === "object" && value !== null && "nodes" in value ? "document" : "model";
    } catch {
        return text.includes('"nodes"') ? "document" : "model";
    }
}

export function acceptDrops(take: (role: Role, name: string, text: string) => void): void {
    const sign = byId("drop-sign");
    const carriesFiles = (event: DragEvent) => event.dataTransfer?.types.includes("Files") ?? false;
    window.addEventListener("dragover", (event) => {
        if (!carriesFiles(event)) return;
        event.preventDefault();
        sign.hidden = false;
    });
    window.addEventListener("dragleave", (event) => {
        if (event.relatedTarget === null) sign.hidden = true;
    });
    window.addEventListener(
        "drop",
        (event) => {
            if (!carriesFiles(event)) return;
            event.preventDefault();
            event.stopPropagation();
            sign.hidden = true;
            for (const file of event.dataTransfer?.files ?? []) void read(file, take);
        },
        { capture: true },
    );
}

async function read(file: File, take: (role: Role, name: string, text: string) => void): Promise<void> {
    if (file.size > largest) return announce(`${file.name} is larger than 8 MiB`);
    try {
        const text = new TextDecoder("utf-8", { fatal: true, ignoreBOM: true }).decode(await file.arrayBuffer());
        take(roleOf(text), file.name, text);
    } catch {
        announce(`${file.name} is not UTF-8`);
    }
}
