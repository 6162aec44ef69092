// SPDX-License-Identifier: MIT

// One HTML file that shows the widget without this program: pictures, texts and the tree.
import type { Node } from "./view_tree";
import { nameOf, short, summaryOf } from "./view_tree";
import type { State } from "./state";
import type { Tile } from "./tile";
import { clockSeconds, clockText } from "./zones";

const escapes: Record<string, string> = { "&": "&amp;", "<": "&lt;", ">": "&gt;", '"': "&quot;" };
const escaped = (text: string): string => text.replace(/[&<>"]/g, (character) => escapes[character] ?? character);

function base64(bytes: Uint8Array): string {
    let text = "";
    for (let at = 0; at < bytes.length; at += 0x8000) text += String.fromCharCode(...bytes.subarray(at, at + 0x8000));
    return btoa(text);
}

function figure(tile: Tile): string {
    if (!tile.picture || !tile.isMeant) return "";
    const { name, width, height } = tile.family;
    return `<figure class="${tile.appearance}"><img alt="${name}, ${tile.appearance}" width="${width}" height="${height}"
src="data:image/png;base64,${base64(tile.picture)}"><figcaption>${name}, ${tile.appearance}</figcaption></figure>`;
}

function branch(node: Node): string {
    const { frame } = node.view;
    const size = frame
        ? `${short(frame[2])} × ${short(frame[3])} at ${short(frame[0])}, ${short(frame[1])}`
        : "no view";
    const label = `<b>${escaped(nameOf(node))}</b> ${escaped(summaryOf(node))} <small>${size}</small>`;
    if (node.children.length === 0) return `<li>${label}</li>`;
    return `<li><details open><summary>${label}</summary><ul>${node.children.map(branch).join("")}</ul></details></li>`;
}

const style = `
:root { color-scheme: light dark; font: 15px/1.5 system-ui, sans-serif; }
body { max-width: 62rem; margin: 3rem auto; padding: 0 1.5rem; background: light-dark(#f6f7f9, #16181d); }
h1 { font-weight: 650; letter-spacing: -0.02em; margin-bottom: 0; }
p, small, figcaption { color: light-dark(#5f6672, #9aa1ad); }
.pictures { display: flex; flex-wrap: wrap; gap: 1.5rem; margin: 2rem 0; }
figure { margin: 0; padding: 1.5rem; border-radius: 20px; text-align: center; }
figure.light { background: #e3e8ef; } figure.light figcaption { color: #4f5661; }
figure.dark { background: #262b36; } figure.dark figcaption { color: #9aa1ad; }
img { display: block; border-radius: 21px; box-shadow: 0 8px 24px rgb(20 28 45 / .16);
  margin: 0 auto .6rem; max-width: 100%; height: auto; }
details.text > summary { cursor: pointer; font-weight: 600; margin-top: 1rem; }
pre { overflow: auto; padding: 1rem; border-radius: 10px; background: light-dark(#fff, #1f2229);
  font: 13px/1.5 ui-monospace, monospace; }
ul { list-style: none; padding-left: 1.1rem; }`;

/** The models that families of the screen have instead of the widget's own, by their paths. */
function ownModels({ screen, models }: State): [string, { families: string[]; text: string }][] {
    const found = new Map<string, { families: string[]; text: string }>();
    for (const { name } of screen.families) {
        const own = models.get(name);
        if (!own) continue;
        const { families } = found.get(own.path) ?? { families: [] };
        found.set(own.path, { families: [...families, name], text: own.text });
    }
    return [...found];
}

/** Pictures are those that could be drawn; the tree is the selected one's. */
export function sharedPage(
    name: string,
    state: State,
    tiles: Tile[],
    texts: { document: string; model: string },
    tree: Node | null,
): string {
    const moment = clockText(clockSeconds(state.moment, state.timeZone)).replace("T", " ");
    const text = (title: string, content: string) =>
        content
            ? `<details class="text"><summary>${escaped(title)}</summary><pre>${escaped(content)}</pre></details>`
            : "";
    return `<!doctype html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; img-src data:; style-src 'unsafe-inline'">
<title>${escaped(name)}</title>
<style>${style}</style>
<h1>${escaped(name)}</h1>
<p>Drawn by Tavrin ${escaped(state.project.version)} as of ${moment}, ${escaped(state.timeZone)},
for a screen of ${state.screen.name} points</p>
<div class="pictures">${tiles.map(figure).join("\n")}</div>
${text("Document", texts.document)}
${text("Model", texts.model)}
${ownModels(state)
    .map(([path, own]) => text(`Model of ${own.families.join(", ")}: ${path}`, own.text))
    .join("\n")}
${tree ? `<details class="text"><summary>View tree</summary><ul>${branch(tree)}</ul></details>` : ""}
</html>
`;
}

export function download(name: string, content: string, type: string): void {
    const link = document.createElement("a");
    link.href = URL.createObjectURL(new Blob([content], { type }));
    link.download = name;
    link.click();
    setTimeout(() => URL.revokeObjectURL(link.href), 10_000);
}
