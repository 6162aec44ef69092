#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Decodes a suite of PNGs and compares each pixel with a decoder written here: png_suite.py PROGRAM FOLDER

PROGRAM is build/release/tests/decode_picture. A file in a folder named "corrupt" must yield no picture, any other .png
the pixels it has.
"""
import pathlib
import struct
import subprocess
import sys
import zlib

PASSES = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]
CHANNELS = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}


def chunks(data):
    at, found = 8, {}
    while at < len(data):
        length, name = struct.unpack_from(">I4s", data, at)
        found[name] = found.get(name, b"") + data[at + 8 : at + 8 + length]
        at += 12 + length
    return found


def paeth(left, up, corner):
    guess = left + up - corner
    return min((abs(guess - left), 0, left), (abs(guess - up), 1, up), (abs(guess - corner), 2, corner))[2]


def unfiltered(kind, row, above, step):
    row = bytearray(row)
    for i in range(len(row)):
        left, corner = (row[i - step], above[i - step]) if i >= step else (0, 0)
        guess = (0, left, above[i], (left + above[i]) // 2, paeth(left, above[i], corner))[kind]
        row[i] = (row[i] + guess) & 0xFF
    return row


def numbers(row, depth):
    if depth == 16:
        return [high << 8 | low for high, low in zip(row[::2], row[1::2])]
    return [byte >> shift & (1 << depth) - 1 for byte in row for shift in range(8 - depth, -1, -depth)]


def straight(samples, kind, depth, found):
    """A pixel's red, green, blue and alpha, each in 0…1."""
    most = (1 << depth) - 1
    if kind == 3:
        index, trns = samples[0], found.get(b"tRNS", b"")
        alpha = trns[index] if index < len(trns) else 255
        return [value / 255 for value in (*found[b"PLTE"][3 * index : 3 * index + 3], alpha)]
    opaque = 1.0
    if b"tRNS" in found:
        key = struct.unpack(f">{len(samples)}H", found[b"tRNS"])
        opaque = 0.0 if list(key) == samples else 1.0
    values = [value / most for value in samples]
    color = values[:3] if kind in (2, 6) else values[:1] * 3
    return [*color, values[-1] if kind in (4, 6) else opaque]


def reference(data):
    """Width, height, the channels R, G, B, A of each pixel, premultiplied and not rounded, and what they may be off."""
    found = chunks(data)
    width, height, depth, kind, _, _, interlaced = struct.unpack(">IIBBBBB", found[b"IHDR"])
    bits = depth * CHANNELS[kind]
    rows, at = zlib.decompress(found[b"IDAT"]), 0
    pixels = {}
    for left, top, right, down in PASSES if interlaced else [(0, 0, 1, 1)]:
        columns = len(range(left, width, right))
        if columns == 0:
            continue
        length = (columns * bits + 7) // 8
        above = bytes(length)
        for y in range(top, height, down):
            above = unfiltered(rows[at], rows[at + 1 : at + 1 + length], above, max(1, bits // 8))
            at += 1 + length
            values = numbers(above, depth)
            for i in range(columns):
                samples = values[i * CHANNELS[kind] : (i + 1) * CHANNELS[kind]]
                pixels[left + i * right, y] = straight(samples, kind, depth, found)
    exact = []
    for y in range(height):
        for x in range(width):
            *color, alpha = pixels[x, y]
            exact += [255 * value * alpha for value in color] + [255 * alpha]
    # Samples of 16 bits are rounded to 8 before they are premultiplied, so twice.
    return width, height, exact, 1.01 if depth == 16 else 0.5001


def fault(path, out):
    """What is wrong with what a decoder made of a file, or None."""
    if path.parent.name == "corrupt":
        return "is corrupt, yet yields a picture" if out else None
    if not out:
        return "yields no picture"
    size, _, pixels = out.partition(b"\n")
    width, height, exact, tolerance = reference(path.read_bytes())
    if size.decode(errors="replace") != f"{width} {height}":
        return f"is {width} x {height}, not {size.decode(errors='replace')}"
    if len(pixels) != len(exact):
        return f"has {len(pixels)} channels instead of {len(exact)}"
    differences = [i for i, (have, want) in enumerate(zip(pixels, exact)) if abs(have - want) > tolerance]
    if differences:
        i = differences[0]
        return f"differs in {len(differences)} channels, first at {i}: {pixels[i]} instead of {exact[i]:.2f}"
    return None


def decoded(program, path):
    run = subprocess.run([program, path], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=20, check=True)
    return run.stdout


def main():
    program, folder = sys.argv[1], pathlib.Path(sys.argv[2])
    paths = sorted(folder.rglob("*.png"))
    faults = {path: message for path in paths if (message := fault(path, decoded(program, path)))}
    for path, message in faults.items():
        print(f"{path.relative_to(folder)} {message}")
    print(f"{len(paths)} files, {len(faults)} wrong")
    sys.exit(1 if faults or not paths else 0)


if __name__ == "__main__":
    main()
