#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws every example in each of its families, light and dark, and a page that shows them: demo.py PROGRAM [OUT]

A folder examples/NAME holds document.json, perhaps model.json, and widget.toml with the widget families that the
document is meant for. The pictures become OUT/NAME/FAMILY.png and FAMILY-dark.png, the page OUT/index.html.
"""
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys
import tomllib

from gallery_page import page

TOP = pathlib.Path(__file__).resolve().parent.parent
FAMILIES = ["systemSmall", "systemMedium", "systemLarge", "systemExtraLarge"]
ACCESSORIES = ["accessoryCircular", "accessoryRectangular", "accessoryInline"]
SCALE = 3


def families(folder):
    """The families that widget.toml lists, in its order; the program judges them."""
    return tomllib.loads((folder / "widget.toml").read_text())["families"]


class Example:
    def __init__(self, program, folder):
        self.program, self.folder, self.name = program, folder, folder.name
        self.families = families(folder)

    def run(self, verb, *options):
        command = [self.program, verb, "document.json", *options]
        return subprocess.run(command, cwd=self.folder, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout

    def render(self, family, appearance, picture):
        # The home screen rounds its widgets' corners, the lock screen leaves them alone.
        corners = [] if family in ACCESSORIES else ["--rounded"]
        self.run("render", *corners, "--family", family, "--appearance", appearance,
                 "--scale", str(SCALE), "-o", str(picture))

    def draw(self, out):
        """Draws the pictures and gives what the page shows."""
        (out / self.name).mkdir(parents=True, exist_ok=True)
        pictures = []
        for family in self.families:
            files = {"light": f"{self.name}/{family}.png", "dark": f"{self.name}/{family}-dark.png"}
            for appearance, file in files.items():
                self.render(family, appearance, out / file)
            pictures.append({"family": family, **files, "size": size_in_points(out / files["light"])})
        largest = self.families[-1]
        model = self.folder / "model.json"
        return {
            "name": self.name,
            "settings": (self.folder / "widget.toml").read_text(),
            "pictures": pictures,
            "document": (self.folder / "document.json").read_text(),
            "model": model.read_text() if model.exists() else None,
            "tree": json.loads(self.run("tree")),
            "targets": json.loads(self.run("targets", "--family", largest))["targets"],
            "targets_family": largest,
        }


def size_in_points(png):
    header = png.read_bytes()[16:24]
    return tuple(int.from_bytes(side, "big") / SCALE for side in (header[:4], header[4:]))


def main():
    program, *rest = sys.argv[1:]
    out = pathlib.Path(rest[0] if rest else TOP / "out").resolve()
    folders = sorted(document.parent for document in TOP.glob("examples/*/document.json"))
    examples = [Example(str(pathlib.Path(program).resolve()), folder) for folder in folders]
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        shown = list(pool.map(lambda example: example.draw(out), examples))
    for example in shown:
        print(f"{out / example['name']}: {', '.join(picture['family'] for picture in example['pictures'])}")
    (out / "index.html").write_text(page(shown), encoding="utf-8")
    print(out / "index.html")


if __name__ == "__main__":
    try:
        main()
    except (ValueError, OSError, subprocess.CalledProcessError) as error:
        sys.exit(f"demo.py: {error}")
