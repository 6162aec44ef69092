#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the types of the Python package's options from what the library says of them: make_python_options.py [--check]

Run it with an interpreter that has the package. --check writes nothing and fails where something else would be written.
"""
import json
import pathlib
import re
import sys
import textwrap

from tavrin import _tavrin

TOP = pathlib.Path(__file__).resolve().parent.parent
FILE = TOP / "bindings/python/tavrin/_options.py"
HEAD = '''# SPDX-License-Identifier: MIT
"""The options, for those who check types and for editors. Made by scripts/make_python_options.py."""
import os
from datetime import datetime
from typing import Literal, TypedDict
from zoneinfo import ZoneInfo

Size = str | tuple[float, float]
'''
TYPES = {
    "flag": "bool",
    "number": "float",
    "count": "int",
    "size": "Size",
    "moment": "str | datetime",
    "timeZone": "str | ZoneInfo",
    "color": "str",
    "folder": "str | os.PathLike[str]",
}
BUDGET = "budget"


def words_type(option):
    """What the words of an option are called."""
    return "Profile" if option["name"] == BUDGET else option["name"].capitalize()


def field(name, kind, option):
    """A member of a class with what it means below it."""
    text = option["sentence"]
    if "maximum" in option:
        text += f"; from {option['minimum']} to" if "minimum" in option else "; above 0, up to"
        text += f" {option['maximum']}"
    if "default" in option:
        text += f". By default {option['default']}"
    wrapped = textwrap.fill(f'"""{text}."""', 116, initial_indent="    ", subsequent_indent="    ")
    return f"    {name}: {kind}\n{wrapped}\n"


def snake(name):
    return re.sub("[A-Z]", lambda letter: "_" + letter[0].lower(), name)


def source():
    options = json.loads(_tavrin.options())
    parts = [HEAD]
    for option in options:
        if option["kind"] == "word":
            words = ", ".join(f'"{word}"' for word in option["words"])
            line = f"{words_type(option)} = Literal[{words}]\n"
            parts.append(line if len(line) <= 120 else textwrap.fill(line, 118, subsequent_indent="    ").replace(
                "Literal[", "Literal[\n    ", 1) + "\n")

    profile = next(option for option in options if option["name"] == BUDGET)
    parts.append('\n\nclass Budget(TypedDict, total=False):\n    """What a call may cost."""\n\n')
    parts.append(field("profile", "Profile", profile))
    parts += [field(snake(option["name"]).removeprefix("budget_"), TYPES[option["kind"]], option)
              for option in options if option["name"] != BUDGET and option["name"].startswith(BUDGET)]

    parts.append('\n\nclass Options(TypedDict, total=False):\n    """How a document becomes a widget, and a widget a '
                 'picture."""\n\n')
    for option in options:
        if option["use"] == "answer":
            continue
        kind = words_type(option) if option["kind"] == "word" else TYPES[option["kind"]]
        parts.append(field(snake(option["name"]), kind + " | Budget" * (option["name"] == BUDGET), option))

    parts.append('\n\nclass RowOptions(Options, total=False):\n    """The same for rows: as it is for all of them, or '
                 'the name of a column that has each row\'s."""\n\n')
    parts += [field(snake(option["name"]), TYPES[option["kind"]], option)
              for option in options if option["use"] == "answer"]
    parts += [f"    {snake(option['name'])}_column: str\n" for option in options]
    return "".join(parts)


def main():
    if "--check" not in sys.argv[1:]:
        FILE.write_text(source(), encoding="utf-8")
    elif FILE.read_text(encoding="utf-8") != source():
        sys.exit(f"{FILE.relative_to(TOP)} is not what the options are; scripts/make_python_options.py rewrites it")


if __name__ == "__main__":
    main()
