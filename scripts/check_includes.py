#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Who may include whom: check_includes.py [TOP]. Prints each include that the table does not allow."""
import pathlib
import re
import sys

# Folder -> the folders whose headers its files may include, besides its own. A folder that is not listed stands under
# the nearest listed one above it, one that is listed stands for itself only; a single file may be listed too, for
# itself or as a header that may be included.
PLATFORM = "tavrin/platform"
FOUNDATION, UI, TEXT = f"{PLATFORM}/foundation", f"{PLATFORM}/ui", f"{PLATFORM}/text"
LAYOUT, PAINT, EXPLAIN = f"{PLATFORM}/layout", f"{PLATFORM}/paint", f"{PLATFORM}/explain"
PAINT_TEXT = f"{PAINT}/text"
FONT = f"{UI}/font.h"
MEMORY, STRINGS, TIME = f"{FOUNDATION}/memory", f"{FOUNDATION}/strings", f"{FOUNDATION}/time"
THREADS, PIXELS, NET = f"{FOUNDATION}/threads", f"{FOUNDATION}/pixels", f"{FOUNDATION}/net"
BUDGET = f"{FOUNDATION}/budget"
ALL_FOUNDATION = [FOUNDATION, BUDGET, MEMORY, STRINGS, TIME, THREADS, PIXELS, NET]

VALUES_BELOW = ["tavrin/json", *ALL_FOUNDATION, UI]
NODES_BELOW = ["tavrin/dsl", "tavrin/values", *VALUES_BELOW]

ANYWHERE = ["tavrin"]  # the program is made of all of the library
HTTP = "cli/http"
OPEN_IN_PROGRAM = ["cli/file_descriptor.h", "cli/io_error.h"]

MAY_INCLUDE = {
    FOUNDATION: [STRINGS],
    BUDGET: [FOUNDATION],
    MEMORY: [BUDGET],
    STRINGS: [f"{FOUNDATION}/precondition.h"],
    TIME: [STRINGS],
    THREADS: [],
    PIXELS: [BUDGET, MEMORY],
    NET: [STRINGS, THREADS, MEMORY, FOUNDATION],
    UI: ALL_FOUNDATION,
    TEXT: [FONT, *ALL_FOUNDATION],
    LAYOUT: [TEXT, UI, *ALL_FOUNDATION],
    EXPLAIN: [LAYOUT, TEXT, UI, *ALL_FOUNDATION],
    PAINT: [PAINT_TEXT, LAYOUT, TEXT, UI, *ALL_FOUNDATION],
    PAINT_TEXT: [TEXT, *ALL_FOUNDATION],
    "tavrin/json": ALL_FOUNDATION,
    "tavrin/values": VALUES_BELOW,
    "tavrin/dsl": ["tavrin/values", *VALUES_BELOW],
    "tavrin/nodes": NODES_BELOW,
    "tavrin/modifiers": ["tavrin/nodes", *NODES_BELOW],  # a colour property's type is the colour node
    "tavrin/images": NODES_BELOW,
    "tavrin/engine": ["tavrin/images", "tavrin/modifiers", "tavrin/nodes", *NODES_BELOW],
    "tavrin/schema": ["tavrin/engine", "tavrin/images", "tavrin/modifiers", "tavrin/nodes", *NODES_BELOW],
    # The one room that knows both storeys: above it stands what draws documents, below it what does one part.
    "tavrin/widget": ["tavrin/engine", "tavrin/images", *NODES_BELOW, LAYOUT, PAINT, PAINT_TEXT, EXPLAIN, TEXT],
    "tavrin/diagnostics": ["tavrin/widget", "tavrin/schema", "tavrin/engine", "tavrin/images", "tavrin/modifiers",
                           "tavrin/nodes", *NODES_BELOW, LAYOUT, PAINT, TEXT],
    "tavrin/doors": ["tavrin/widget", "tavrin/diagnostics", "tavrin/schema", "tavrin/engine", "tavrin/images",
                     *NODES_BELOW, LAYOUT, PAINT, EXPLAIN, TEXT],
    "tavrin/tavrin.h": ANYWHERE,
    "tavrin/records.h": ANYWHERE,
    "tavrin/diagnostics.h": ANYWHERE,
    "cli": [*ANYWHERE, HTTP, *OPEN_IN_PROGRAM],
    # What speaks HTTP knows neither the servers that stand on it nor the rest of the program.
    HTTP: [*ALL_FOUNDATION, *OPEN_IN_PROGRAM],
    **{header: [] for header in OPEN_IN_PROGRAM},
    "bindings": ANYWHERE,
}

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<((?:tavrin|cli|bindings)/[^>]+)>)')


def home(path):
    """The entry of the table that a file stands under: itself or the nearest folder above it, or None."""
    while path not in MAY_INCLUDE:
        if "/" not in path:
            return None
        path = path.rpartition("/")[0]
    return path


def is_open_to(place, header):
    """Whether files that stand under a place may include a header."""
    if home(header) == place or header in MAY_INCLUDE[place]:
        return True
    if header.startswith("tavrin/") and "tavrin" in MAY_INCLUDE[place]:
        return True
    return home(header) in MAY_INCLUDE[place]


def violation(path, header):
    """What is wrong with a file that includes a project header, or None."""
    place = home(path)
    if place is None:
        return "stands in no folder of the table in check_includes.py"
    if not is_open_to(place, header):
        return f"{place} must not include {header}"
    return None


def check(top):
    """Every violation below a folder as 'file:line: message'."""
    found = []
    for source in sorted(path for place in ("tavrin", "cli", "bindings") for path in (top / place).rglob("*")):
        if source.suffix not in (".h", ".cpp") or "node_modules" in source.parts:
            continue
        path = source.relative_to(top).as_posix()
        for line, text in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
            if match := INCLUDE.match(text):
                if message := violation(path, match[1] or match[2]):
                    found.append(f"{path}:{line}: {message}")
    return found


def main():
    top = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    found = check(top)
    print("\n".join(found), end="\n" if found else "")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
