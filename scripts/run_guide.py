#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Does what docs/guide.md says: run_guide.py PROGRAM [--check]

A block that names a file is that file; in a console block each line behind "$ " is run where the files are, and what
it prints stands below it. A lake.jpg lies there, too. Rewrites what is printed, and the pictures of the guide that the
commands drew. --check writes nothing and fails where something else comes out.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from png_suite import reference as pixels

TOP = pathlib.Path(__file__).resolve().parent.parent
GUIDE = TOP / "docs/guide.md"
BLOCK = re.compile(r"^```(\w+)(?: (\S+))?\n(.*?)^```$", re.M | re.S)


def session(text, folder, environment):
    """A console block with what its commands print."""
    lines = []
    for command in (line for line in text.splitlines() if line.startswith("$ ")):
        run = subprocess.run(["bash", "-c", command[2:]], cwd=folder, env=environment, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, stdin=subprocess.DEVNULL, timeout=60, check=False)
        lines += [command, *run.stdout.decode().splitlines()]
    return "\n".join(lines) + "\n"


def carried_out(guide, folder, program):
    """The guide with what its commands print; the files that it is about are in the folder then."""
    environment = {**os.environ, "PATH": f"{program.parent}:{os.environ['PATH']}", "TZ": "UTC"}

    def block(match):
        language, name, body = match.groups()
        if name:
            (folder / name).write_text(body, encoding="utf-8")
        if language != "console":
            return match[0]
        return f"```console\n{session(body, folder, environment)}```"

    return BLOCK.sub(block, guide)


def same(wanted, path):
    return path.exists() and (path.read_bytes() == wanted or pixels(path.read_bytes()) == pixels(wanted))


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    guide = GUIDE.read_text(encoding="utf-8")
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        shutil.copy(TOP / "examples/photo/pictures/4270d7c", folder / "lake.jpg")
        result = carried_out(guide, folder, program)
        shown = sorted(set(re.findall(r'"guide/([^"]+\.png)"', guide)))
        pictures = {GUIDE.parent / "guide" / picture: (folder / picture).read_bytes() for picture in shown}
    if "--check" not in sys.argv[2:]:
        GUIDE.write_text(result, encoding="utf-8")
        for path, content in pictures.items():
            path.write_bytes(content)
        return
    if result != guide:
        print("docs/guide.md shows something else than its commands print; `make docs` rewrites it")
    changed = [path.name for path, content in pictures.items() if not same(content, path)]
    for picture in changed:
        print(f"docs/guide/{picture} is not what is drawn; `make docs` rewrites it")
    sys.exit(1 if changed or result != guide or not pictures else 0)


if __name__ == "__main__":
    main()
