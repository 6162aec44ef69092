#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""frames_suite.py must notice damaged animations."""
import pathlib
import tempfile

from PIL import Image

import frames_suite


def refused(data):
    try:
        frames_suite.check_chunks(data)
    except AssertionError:
        return True
    return False


def main():
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder) / "a.png"
        frames = [Image.new("RGBA", (4, 3), color) for color in ("red", "lime", "blue")]
        frames[0].save(path, save_all=True, append_images=frames[1:], duration=[100, 200, 300])
        data = path.read_bytes()
        shown = frames_suite.shown(path)
    assert [end for _, end in shown] == [100, 300, 600], shown
    assert [picture[:4] for picture, _ in shown] == [b"\xff\0\0\xff", b"\0\xff\0\xff", b"\0\0\xff\xff"], shown
    assert not refused(data)
    first = data.index(b"fcTL") - 4
    second = data.index(b"fcTL", first + 8) - 4
    control = second - first
    assert refused(data[: second + 9] + b"\xff" + data[second + 10 :]), "a wrong checksum"
    assert refused(data[:first] + data[first + 38 :]), "a missing chunk"
    assert refused(data[:second] + data[first : first + control] + data[second:]), "a frame twice"
    assert frames_suite.pixels(Image.new("RGBA", (1, 1), (9, 9, 9, 0))) == bytes(4)


if __name__ == "__main__":
    main()
