#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The C interface from outside: c_test.py PROGRAM HOST LIBRARY [KNOWS-HANDLES]

HOST, a program in C, draws every example to the bytes that PROGRAM writes, and passes its own tests. LIBRARY shows no
names but tavrin_*, each that the header declares, and carries the name of its interface's version.
"""
import pathlib
import re
import subprocess
import sys
import tempfile
import tomllib
import unittest

TOP = pathlib.Path(__file__).resolve().parents[3]
PROGRAM, HOST, LIBRARY = map(pathlib.Path, sys.argv[1:4])
MOMENT = "2026-03-01T09:41:00Z"
FORMATS = ["png", "svg", "pdf", "webp", "jpeg"]


def run(*command, **more):
    return subprocess.run(command, capture_output=True, encoding="utf-8", **more)


class Drawing(unittest.TestCase):
    def pictures(self, folder, out, file_format, options):
        model = folder / "model.json"
        settings = tomllib.loads((folder / "widget.toml").read_text())
        pairs = {**options, "family": settings["families"][0]}
        if "date" in settings:
            pairs["date"] = settings["date"].isoformat()
        if "background" in settings:
            pairs["background"] = settings["background"]
        if (folder / "pictures").exists():
            pairs["image_cache_dir"] = "pictures"
        theirs, ours = out / f"program.{file_format}", out / f"host.{file_format}"
        words = [word for name, value in pairs.items() for word in ("--" + name.replace("_", "-"), value)]
        done = run(PROGRAM, "render", "document.json", *(["--model", model] if model.exists() else []), "-o", theirs,
                   *words, cwd=folder)
        self.assertEqual(done.returncode, 0, done.stderr)
        done = run(HOST, "draw", "document.json", model if model.exists() else "-", file_format, ours,
                   *[word for pair in pairs.items() for word in pair], cwd=folder)
        self.assertEqual(done.returncode, 0, done.stderr)
        return theirs.read_bytes(), ours.read_bytes()

    def test_every_example_has_the_bytes_of_the_program(self):
        folders = sorted(path.parent for path in (TOP / "examples").glob("*/document.json"))
        self.assertGreater(len(folders), 10)
        with tempfile.TemporaryDirectory() as out:
            for number, folder in enumerate(folders):
                options = {"date": MOMENT, "time_zone": "UTC", "fetch": "all",
                           "appearance": "dark" if number % 2 else "light"}
                for file_format in ("png", FORMATS[number % len(FORMATS)]):
                    with self.subTest(example=folder.name, format=file_format):
                        theirs, ours = self.pictures(folder, pathlib.Path(out), file_format, options)
                        self.assertEqual(theirs, ours)

    def test_what_goes_wrong(self):
        with tempfile.TemporaryDirectory() as folder:
            document = pathlib.Path(folder) / "document.json"
            document.write_text('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
            done = run(HOST, "test", document)
        self.assertEqual((done.returncode, done.stderr), (0, ""))


    @unittest.skipUnless("knows-handles" in sys.argv, "a build that does not know its handles")
    def test_freed_handles_are_refused(self):
        done = run(HOST, "freed")
        self.assertEqual((done.returncode, done.stderr), (0, ""))


class Library(unittest.TestCase):
    def test_it_shows_the_names_of_the_header_and_no_others(self):
        header = (TOP / "bindings" / "c" / "tavrin" / "tavrin_c.h").read_text()
        declared = set(re.findall(r"TAVRIN_API [^;(]*?\b(tavrin_\w+)\(", header))
        shown = {line.split()[-1].split("@")[0] for line in run("nm", "-D", "--defined-only", LIBRARY).stdout.splitlines()}
        self.assertGreater(len(declared), 15)
        self.assertEqual(shown - {"TAVRIN_0"}, declared)

    def test_its_name_says_the_version_of_its_interface(self):
        self.assertIn("[libtavrin_c.so.0]", run("readelf", "-d", LIBRARY).stdout)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
