#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Puts pictures below each other: side_by_side.py FOLDER NAME...   reads NAME.png, writes side-by-side.png"""
import pathlib
import sys

from PIL import Image

GAP = 20


def main():
    folder = pathlib.Path(sys.argv[1])
    pictures = [Image.open(folder / f"{name}.png").convert("RGBA") for name in sys.argv[2:]]
    sheet = Image.new("RGBA", (max(picture.width for picture in pictures),
                               sum(picture.height + GAP for picture in pictures) - GAP), "white")
    top = 0
    for picture in pictures:
        sheet.alpha_composite(picture, (0, top))
        top += picture.height + GAP
    sheet.save(folder / "side-by-side.png")
    print(folder / "side-by-side.png")


if __name__ == "__main__":
    main()
