#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Draws the pictures of the examples: make_example_pictures.py [TOP]

Each goes to examples/NAME/pictures, under the name that `tavrin fetch` gives to what it fetches from the address in
the example's model. The same packages give the same bytes.
"""
import functools
import io
import pathlib
import sys

from example_pictures import photo, thumbnails, weather_icons

SITE = "https://example.com/"


def cache_name(address):
    value = 5381
    for byte in address.encode():
        value = (value * 33 + byte) & 0xFFFFFFFF
    return f"{value:x}"


def encoded(image, kind, **options):
    file = io.BytesIO()
    image.save(file, kind, optimize=True, **options)
    return file.getvalue()


def pictures():
    """Example, address and file of each picture."""
    jpeg = functools.partial(encoded, kind="JPEG", quality=88)
    yield "photo", SITE + "photos/2026-11-21.jpg", jpeg(photo.photo(), progressive=True)
    for draw in (thumbnails.comet, thumbnails.tram, thumbnails.guitar, thumbnails.football):
        yield "headlines", f"{SITE}news/{draw.__name__}.jpg", jpeg(draw().convert("RGB"))
    for name, icon in weather_icons.icons().items():
        yield "weather", f"{SITE}weather/{name}.png", encoded(icon, "PNG")


def main():
    top = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    for example, address, data in pictures():
        folder = top / "examples" / example / "pictures"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / cache_name(address)).write_bytes(data)
        print(f"{example}/pictures/{cache_name(address)}  {len(data):7}  {address}")


if __name__ == "__main__":
    main()
