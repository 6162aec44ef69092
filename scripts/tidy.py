#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Run clang-tidy over the sources of a compile database: tidy.py BUILD_DIR

A source is looked at again only when it, a project file it includes, its command or its settings have changed. Most
sources are compiled, and so looked at, together with others of their folder.
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


def with_included(source):
    """A source and every file of the project that it includes, directly or not."""
    seen, pending = set(), [source]
    while pending:
        path = pending.pop()
        if path in seen or not path.is_file():
            continue
        seen.add(path)
        pending += [TOP / name.decode() for name in INCLUDE.findall(text_of(path))]
    return sorted(seen)


def config_of(source):
    """The settings of the folder that a source, or the first that it includes for the build, stands in."""
    included = INCLUDE.search(text_of(source)) if source.is_relative_to(TOP / "build") else None
    folder = pathlib.Path(included.group(1).decode() if included else source).parent
    while not (folder / ".clang-tidy").exists():
        folder = folder.parent
    return folder / ".clang-tidy"


def fingerprint(entry, config):
    """The same wherever the checkout lies."""
    command = entry["command"].replace(str(TOP), "")
    settings = text_of(TOP / ".clang-tidy") + text_of(config)
    digest = hashlib.sha256(settings + command.encode())
    for path in with_included(pathlib.Path(entry["file"])):
        digest.update(path.relative_to(TOP).as_posix().encode() + b"\0" + text_of(path))
    return digest.hexdigest()


def tidy(build, entry):
    """What clang-tidy says about one source, or nothing."""
    config = config_of(pathlib.Path(entry["file"]))
    passed = build / "tidy" / fingerprint(entry, config)
    if passed.exists():
        return ""
    command = ["clang-tidy", "--quiet", "-p", build, f"--config-file={config}", entry["file"]]
    done = subprocess.run(command, capture_output=True, text=True)
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
