#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Seeds and a dictionary for the fuzzers of documents: fuzz_seeds.py FOLDER

Writes FOLDER/documents/, each document of examples/, tests/golden/cases/ and docs/reference/documents/ with its model
behind a line of three dashes, and FOLDER/documents.dict, every key and every short text in them.
"""
import json
import pathlib
import sys

TOP = pathlib.Path(__file__).resolve().parent.parent
LONGEST_WORD = 32


def documents():
    """Pairs of a document's path and its model's, if it has one."""
    for folder in ("examples", "tests/golden/cases"):
        for path in sorted((TOP / folder).glob("*/document.json")):
            model = path.with_name("model.json")
            yield path, model if model.exists() else None
    for path in sorted((TOP / "docs/reference/documents").glob("*.json")):
        yield path, None


def words(value):
    """The keys and texts of a JSON value."""
    if isinstance(value, dict):
        for key, member in value.items():
            yield key
            yield from words(member)
    elif isinstance(value, list):
        for element in value:
            yield from words(element)
    elif isinstance(value, str):
        yield value


def main():
    folder = pathlib.Path(sys.argv[1])
    seeds = folder / "documents"
    seeds.mkdir(parents=True, exist_ok=True)
    dictionary = set()
    for path, model in documents():
        text = path.read_text(encoding="utf-8")
        dictionary.update(words(json.loads(text)))
        if model:
            text += "\n---\n" + model.read_text(encoding="utf-8")
        (seeds / "-".join(path.relative_to(TOP).parts)).write_text(text, encoding="utf-8")
    plain = sorted(word for word in dictionary if word.isascii() and word.isprintable() and len(word) <= LONGEST_WORD)
    quoted = ['"\\"' + word.replace("\\", "\\\\").replace('"', '\\"') + '\\""\n' for word in plain if word]
    (folder / "documents.dict").write_text("".join(quoted), encoding="utf-8")


main()
