// SPDX-License-Identifier: MIT

// Bundles the page into a folder: node build.mjs FOLDER
import { build } from "esbuild";
import { copyFile, mkdir, readFile, writeFile } from "node:fs/promises";
import { join } from "node:path";

const folder = process.argv[2] ?? "dist";
await mkdir(folder, { recursive: true });
const { metafile } = await build({
    entryPoints: { preview: "src/main.ts" },
    metafile: true,
    outdir: folder,
    bundle: true,
    minify: true,
    format: "esm",
    target: "es2022",
    legalComments: "none",
    logLevel: "warning",
});
await build({
    entryPoints: ["style/preview.css"], bundle: true,
    outdir: folder,
    minify: true,
    target: "es2022",
    logLevel: "warning",
});
await copyFile("index.html", join(folder, "index.html"));

// The licence of every package that is in the bundle.
const packages = new Set(
    Object.keys(metafile.inputs).map((path) => /^(node_modules\/(?:@[^/]+\/)?[^/]+)\//.exec(path)?.[1]),
);
packages.delete(undefined);
let notices = "";
for (const path of [...packages].sort()) {
    const { name, version } = JSON.parse(await readFile(join(path, "package.json"), "utf8"));
    notices += `\n---- ${name} ${version}\n\n${await readFile(join(path, "LICENSE"), "utf8")}`;
}
await writeFile(join(folder, "licenses.txt"), notices);
