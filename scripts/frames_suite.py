#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Draws moments of examples as animations and compares each frame with the picture of its moment alone:
frames_suite.py PROGRAM EXAMPLES

Pillow decodes the animations. The compressed bytes must be the same on each run.
"""
import pathlib
import struct
import subprocess
import sys
import tempfile
import zlib

from PIL import Image, ImageSequence

# Example, first moment, last moment, seconds between them, milliseconds that each frame is shown, options.
CASES = [
    ("clock", "2026-11-21T09:09:58Z", "2026-11-21T09:10:04Z", 2, 2000, []),
    ("clock", "2026-11-21T09:09:37Z", "2026-11-21T09:09:39Z", 0.25, 100, ["--rounded", "--fps", "10"]),
    ("countdown", "2026-11-21T11:15:59Z", "2026-11-21T11:16:03Z", 1, 1000, ["--rounded", "--background", "none"]),
    ("countdown", "2026-11-21T12:15:58.5Z", "2026-11-21T12:16:01Z", 0.5, 500, ["--appearance", "dark"]),
]


def run(program, folder, options):
    words = [program, "render", "document.json", "--model", "model.json", "--family", "systemSmall"]
    words += ["--time-zone", "UTC", "--scale", "2", *options]
    subprocess.run(words, cwd=folder, check=True)


def pixels(image):
    """RGBA bytes; where nothing is seen, no colour counts."""
    bare = bytearray(image.convert("RGBA").tobytes())
    for i in range(3, len(bare), 4):
        if bare[i] == 0:
            bare[i - 3 : i] = b"\0\0\0"
    return bytes(bare)


def shown(path):
    """The pixels of each frame, and when it ends, in milliseconds."""
    frames, end = [], 0
    with Image.open(path) as image:
        for frame in ImageSequence.Iterator(image):
            picture = pixels(frame)  # which also reads how long it is shown
            end += frame.info["duration"]
            frames.append((picture, end))
    return frames


def check_chunks(data):
    """The checksums, order and numbering of an animated PNG's chunks."""
    at, names, numbers = 8, [], []
    while at < len(data):
        length, name = struct.unpack_from(">I4s", data, at)
        body = data[at + 8 : at + 8 + length]
        assert struct.unpack_from(">I", data, at + 8 + length)[0] == zlib.crc32(name + body), f"checksum of {name}"
        names.append(name)
        if name in (b"fcTL", b"fdAT"):
            numbers.append(struct.unpack_from(">I", body)[0])
        if name == b"acTL":
            declared = struct.unpack_from(">I", body)[0]
        at += 12 + length
    assert names[:4] == [b"IHDR", b"acTL", b"fcTL", b"IDAT"] and names[-1] == b"IEND", names
    assert names[4:-1] == [b"fcTL", b"fdAT"] * ((len(names) - 5) // 2), names
    assert numbers == list(range(len(numbers))), numbers
    assert declared == names.count(b"fcTL"), declared


def compare(program, examples, scratch, case):
    name, first, last, step, milliseconds, options = case
    folder = examples / name
    span = [*options, "--frames", f"{first}..{last}", "--every", str(step)]
    without_rate = [word for word in span if word not in ("--fps", "10")]
    run(program, folder, [*without_rate, "-o", f"{scratch}/single-%d.png"])
    singles = []
    for number in range(1, 1 + len(list(scratch.glob("single-*.png")))):
        with Image.open(scratch / f"single-{number}.png") as image:
            singles.append(pixels(image))
    moment = [word for word in options if word not in ("--fps", "10")]
    run(program, folder, [*moment, "--date", first, "-o", f"{scratch}/first.png"])
    run(program, folder, [*moment, "--date", last, "-o", f"{scratch}/last.png"])
    for alone, number in (("first", 1), ("last", len(singles))):
        same = (scratch / f"{alone}.png").read_bytes() == (scratch / f"single-{number}.png").read_bytes()
        assert same, f"the {alone} of the numbered frames is not the picture of its moment"
    for suffix in ("webp", "apng"):
        for compression in ("fast", "balanced", "small"):
            path = scratch / f"{compression}.{suffix}"
            run(program, folder, [*span, "--compression", compression, "-o", str(path)])
            data = path.read_bytes()
            run(program, folder, [*span, "--compression", compression, "-o", str(path)])
            assert path.read_bytes() == data, "other bytes on the second run"
            if suffix == "apng":
                check_chunks(data)
            frames = shown(path)
            assert round(frames[-1][1]) == milliseconds * len(singles), f"{path.name}: {frames[-1][1]} ms"
            for number, single in enumerate(singles):
                middle = (number + 0.5) * milliseconds
                seen = next(picture for picture, end in frames if end > middle)
                assert seen == single, f"frame {number + 1} of {path.name} is not the picture of its moment"
            print(f"{name}: {len(singles)} moments, {len(frames)} frames, {len(data)} bytes of {compression} {suffix}")


def main(program, examples):
    for case in CASES:
        with tempfile.TemporaryDirectory() as scratch:
            compare(str(pathlib.Path(program).resolve()), pathlib.Path(examples), pathlib.Path(scratch), case)


if __name__ == "__main__":
    main(*sys.argv[1:])
