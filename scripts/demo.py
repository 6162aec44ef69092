#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws every example in each of its families, light and dark, and a page that shows them: demo.py PROGRAM [OUT]

A folder examples/NAME holds document.json and families.txt, the widget families that the document is meant for, and
perhaps model.json and options.txt, the program's options as they are given in that folder. The pictures become
OUT/NAME/FAMILY.png and FAMILY-dark.png, the page OUT/index.html.
"""
import concurrent.futures
import json
import os
import pathlib
import subprocess
import sys

from gallery_page import page

TOP = pathlib.Path(__file__).resolve().parent.parent
FAMILIES = ["systemSmall", "systemMedium", "systemLarge", "systemExtraLarge"]
ACCESSORIES = ["accessoryCircular", "accessoryRectangular", "accessoryInline"]
SCALE = 3


def words(file):
    return file.read_text().split() if file.exists() else []


def families(folder):
    """The families that families.txt lists, in its order."""
    listed = words(folder / "families.txt")
    if not listed:
        raise ValueError(f"{folder / 'families.txt'} lists no family")
    for family in listed:
        if family not in FAMILIES + ACCESSORIES:
            raise ValueError(f"{folder / 'families.txt'}: {family} is no widget family")
    if len(set(listed)) < len(listed):
        raise ValueError(f"{folder / 'families.txt'} lists a family twice")
    return listed


def without_background(options):
    """The options without what only a drawing has; each option has a value."""
    pairs = zip(options[::2], options[1::2])
    return [word for pair in pairs if pair[0] != "--background" for word in pair]


class Example:
    def __init__(self, program, folder):
        self.program, self.folder, self.name = program, folder, folder.name
        self.families, self.options = families(folder), words(folder / "options.txt")
        self.model = ["--model", "model.json"] if (folder / "model.json").exists() else []

    def run(self, verb, *options):
        command = [self.program, verb, "document.json", *self.model, *options]
        return subprocess.run(command, cwd=self.folder, check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout

    def render(self, family, appearance, picture):
        # The home screen rounds its widgets' corners, the lock screen leaves them alone.
        corners = [] if family in ACCESSORIES else ["--rounded"]
        self.run("render", *self.options, *corners, "--family", family, "--appearance", appearance,
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
        options = without_background(self.options)
        largest = self.families[-1]
        return {
            "name": self.name,
            "options": self.options,
            "pictures": pictures,
            "document": (self.folder / "document.json").read_text(),
            "model": (self.folder / "model.json").read_text() if self.model else None,
            "tree": json.loads(self.run("tree", *options)),
            "targets": json.loads(self.run("targets", *options, "--family", largest))["targets"],
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
