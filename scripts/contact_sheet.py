#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Puts the pictures that demo.py drew on one sheet, light and dark: contact_sheet.py OUT SHEETS

OUT is where demo.py drew; SHEETS gets gallery.jpg and gallery-dark.jpg. Large and medium pictures fill three columns,
the others stand in a fourth. Columns are as high as each other, the space between pictures evens them out.
"""
import pathlib
import sys

from PIL import Image

from demo import SCALE, TOP, families

SIZE = 1.25  # pixels of the sheet for a point
WIDE, NARROW, GAP, MARGIN = (round(points * SIZE) for points in (338, 234, 20, 28))
WALLPAPERS = {"": ((207, 220, 242), (246, 227, 218)), "-dark": ((27, 36, 64), (74, 44, 67))}


def picture(file):
    image = Image.open(file).convert("RGBA")
    return image.resize([round(side / SCALE * SIZE) for side in image.size], Image.LANCZOS)


def columns(pictures):
    """Wide pictures, the highest first, each go to the shortest column; the others to the last."""
    wide, narrow = [[], [], []], []
    for image in sorted(pictures, key=lambda image: -image.height):
        if image.width <= NARROW:
            narrow.append(image)
        else:
            min(wide, key=lambda column: sum(other.height + GAP for other in column)).append(image)
    return [*wide, narrow]


def height(column):
    return sum(image.height for image in column) + GAP * (len(column) - 1)


def wallpaper(size, first, last):
    corners = Image.new("RGB", (2, 2))
    middle = tuple((a + b) // 2 for a, b in zip(first, last))
    corners.putdata([first, middle, middle, last])
    return corners.resize(size, Image.BICUBIC)


def sheet(pictures, colors):
    filled = columns(pictures)
    inner = max(map(height, filled))
    image = wallpaper((2 * MARGIN + 3 * (WIDE + GAP) + NARROW, inner + 2 * MARGIN), *colors)
    for index, column in enumerate(filled):
        left, width = MARGIN + index * (WIDE + GAP), NARROW if index == 3 else WIDE
        gap = GAP + (inner - height(column)) / max(len(column) - 1, 1)
        top = MARGIN
        for one in column:
            image.paste(one, (left + (width - one.width) // 2, round(top)), one)
            top += one.height + gap
    return image


def main():
    out, sheets = map(pathlib.Path, sys.argv[1:])
    folders = sorted(file.parent for file in TOP.glob("examples/*/widget.toml"))
    for suffix, colors in WALLPAPERS.items():
        files = [out / folder.name / f"{family}{suffix}.png" for folder in folders for family in families(folder)]
        sheet(list(map(picture, files)), colors).save(sheets / f"gallery{suffix}.jpg", quality=88, optimize=True)


if __name__ == "__main__":
    main()
