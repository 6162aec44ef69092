#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Run clang-tidy over the sources of a compile database: tidy.py BUILD_DIR

A source is looked at again only when it, a project header it includes, its command or .clang-tidy has changed.
"""
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
INCLUDE = re.compile(rb'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


@functools.cache
def text_of(path):
    return path.read_bytes()


def with_headers(source):
    """A source and every project header that it includes, directly or not."""
    seen, pending = set(), [source]
    while pending:
        path = pending.pop()
        if path in seen or not path.is_file():
            continue
        seen.add(path)
        pending += [TOP / name.decode() for name in INCLUDE.findall(text_of(path))]
    return sorted(seen)


def fingerprint(entry):
    """The same wherever the checkout lies."""
    command = entry["command"].replace(str(TOP), "")
    digest = hashlib.sha256(text_of(TOP / ".clang-tidy") + command.encode())
    for path in with_headers(pathlib.Path(entry["file"])):
        digest.update(path.relative_to(TOP).as_posix().encode() + b"\0" + text_of(path))
    return digest.hexdigest()


def tidy(build, entry):
    """What clang-tidy says about one source, or nothing."""
    passed = build / "tidy" / fingerprint(entry)
    if passed.exists():
        return ""
    done = subprocess.run(["clang-tidy", "--quiet", "-p", build, entry["file"]], capture_output=True, text=True)
    if done.returncode == 0:
        passed.touch()
        return ""
    return done.stdout or done.stderr


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = pathlib.Path(sys.argv[1])
    # The build is never run here, so nothing else notices a new source.
    subprocess.run(["cmake", build], check=True, stdout=subprocess.DEVNULL)
    (build / "tidy").mkdir(exist_ok=True)
    entries = json.loads((build / "compile_commands.json").read_text(encoding="utf-8"))
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        complaints = [text for text in pool.map(lambda entry: tidy(build, entry), entries) if text]
    print("\n".join(complaints), end="")
    print(f"clang-tidy: {len(entries)} sources, {len(complaints)} with complaints")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
