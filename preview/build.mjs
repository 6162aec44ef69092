// Bundles the page into a folder: node build.mjs FOLDER
import { build } from "esbuild";
import { copyFile, mkdir } from "node:fs/promises";
import { join } from "node:path";

const folder = process.argv[2] ?? "dist";
await mkdir(folder, { recursive: true });
await build({
    entryPoints: { preview: "src/main.ts" },
    outdir: folder,
    bundle: true,
    minify: true,
    format: "esm",
    target: "es2022",
    legalComments: "eof",
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
