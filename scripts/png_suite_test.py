#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""png_suite.py tells right pixels from wrong ones."""
import pathlib
import unittest

from png_suite import fault

FOLDER = pathlib.Path(__file__).resolve().parent.parent / "tests/images/pictures"
PICTURE = FOLDER / "rgba8.png"
COLORS = [b"\xFF\0\0\xFF", b"\0\xFF\0\xFF", b"\0\0\x55\x55", b"\0\0\0\0"]
PIXELS = b"".join(COLORS[(x + 3 * y) % 4] for y in range(9) for x in range(13))

WRONG = [
    ("nothing", b""),
    ("another size", b"9 13\n" + PIXELS),
    ("a pixel too few", b"13 9\n" + PIXELS[4:]),
    ("a message in front", b"warning\n13 9\n" + PIXELS),
    ("a channel that is one off", b"13 9\n\xFE" + PIXELS[1:]),
    ("the last alpha", b"13 9\n" + PIXELS[:-1] + b"\1"),
]


class PngSuite(unittest.TestCase):
    def test_right(self):
        self.assertIsNone(fault(PICTURE, b"13 9\n" + PIXELS))
        self.assertIsNone(fault(pathlib.Path("corrupt/a.png"), b""))

    def test_wrong(self):
        for why, out in WRONG:
            with self.subTest(why):
                self.assertIsNotNone(fault(PICTURE, out))
        self.assertIsNotNone(fault(pathlib.Path("corrupt/a.png"), b"1 1\n\0\0\0\0"))


if __name__ == "__main__":
    unittest.main()
