#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""reference_examples.py finds each key that no document of a page uses or shows."""
import contextlib
import json
import pathlib
import re
import subprocess
import tempfile
import unittest
from unittest import mock

import reference_examples
from reference_examples import examples, misnamed, undrawn, unseen

NODE, MODIFIER, COLOR, BADGE = ({"$ref": f"#/$defs/{name}"} for name in ("node", "modifier", "nodes.color", "badge"))
COMMON = {"type": {}, "modifiers": {"type": ["array", "null"], "items": MODIFIER}}


def record(**properties):
    return {"type": "object", "properties": properties}


SCHEMA = {"$defs": {
    "node": record(type={}), "modifier": record(type={}), "number": {"type": "number"},
    "nodes.node": record(**COMMON, name={"type": "string"}),
    "nodes.color": record(**COMMON, value={"type": "string"}, dark={"anyOf": [{"type": "string"}]}),
    "nodes.stack": record(**COMMON, children={"items": NODE}, badge={"anyOf": [BADGE, {"type": "null"}]}),
    "badge": record(at={"$ref": "#/$defs/number"}, view=NODE),
    "modifiers.tint": record(type={}, color={"anyOf": [COLOR]}),
}}
FOLDERS = {"nodes": ["node", "color", "stack"], "modifiers": ["tint"]}

COMPLETE = {
    "node": {"type": "node", "name": "a", "modifiers": []},
    "color": {"type": "color", "value": "#000000", "dark": "#FFFFFF"},
    "stack": {"type": "stack", "children": [], "badge": {"at": 1, "view": {"type": "color", "value": "#000000"}}},
    "tint": {"type": "color", "value": "#000000", "modifiers": [{"type": "tint", "color": {"value": "#000000"}}]},
}
CASES = [
    ("all are there", {}, []),
    ("a key is missing", {"color": {"type": "color", "value": "#000000"}}, [("color", "dark")]),
    ("what all nodes have is wanted for references alone", {"node": {"type": "node", "name": "a"}},
     [("node", "modifiers")]),
    ("the parts of a key that is missing are missing, too", {"stack": {"type": "stack", "children": []}},
     [("stack", "badge"), ("stack", "at"), ("stack", "view")]),
    ("a key of another record does not count", {"tint": {"type": "color", "value": "#000000", "color": "#000000"}},
     [("tint", "type"), ("tint", "color")]),
    ("a key that lies in a list, in a part and in a modifier counts",
     {"color": {"type": "stack", "children": [{"type": "stack", "badge": {"at": 1, "view": {
         "type": "node", "modifiers": [{"type": "tint", "color": {"type": "color", "value": "#000000", "dark": "#FFFFFF"}}],
     }}}]}}, []),
    ("an expression has no keys", {"stack": {"type": "stack", "children": [], "badge": "{{badge}}"}},
     [("stack", "at"), ("stack", "view")]),
]


@contextlib.contextmanager
def listed(documents, table=""):
    """The examples of a folder with these documents."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "examples.toml").write_text(table)
        for stem, node in documents.items():
            (folder / f"{stem}.json").write_text(json.dumps({"version": "1.0", "nodes": {"main": node}}))
        with mock.patch.multiple(reference_examples, DOCUMENTS=folder, TABLE=folder / "examples.toml"):
            yield examples([*FOLDERS["nodes"], *FOLDERS["modifiers"]])


class Undrawn(unittest.TestCase):
    def missing(self, *folder):
        with listed(*folder) as shown:
            return undrawn(SCHEMA, FOLDERS, shown)

    def test_finds_what_is_missing(self):
        for why, documents, expected in CASES:
            with self.subTest(why):
                self.assertEqual(self.missing({**COMPLETE, **documents}), expected)

    def test_further_documents_count(self):
        documents = {**COMPLETE, "color": {"type": "color", "value": "#000000"}, "color-look": COMPLETE["color"]}
        self.assertEqual(self.missing(documents), [("color", "dark")])
        table = '[[color]]\ntopic = "look"\ntitle = "Look"\nwords = "Both."\n'
        self.assertEqual(self.missing(documents, table), [])

    def test_examples_of_no_page_are_refused(self):
        with self.assertRaisesRegex(ValueError, "square, for which there is no page"):
            self.missing(COMPLETE, '[[square]]\ntopic = "look"\ntitle = "Look"\nwords = "Both."\n')


def fake_drawing(_, *, input, **__):
    """Answers as a program would that never draws the key `at`, and `dark` in dark appearance alone."""
    answers = []
    for line in map(json.loads, input.splitlines()):
        picture = re.sub(r'"at": \d+, ', "", line["document"])
        if line["options"]["appearance"] == "light":
            picture = re.sub(r', "dark": "[^"]*"', "", picture)
        answers.append(json.dumps({"picture": picture}))
    return subprocess.CompletedProcess([], 0, stdout="\n".join(answers))


class Unseen(unittest.TestCase):
    def same(self, table=""):
        with listed({**COMPLETE, "color-look": COMPLETE["color"]}, table) as shown, \
                mock.patch("subprocess.run", fake_drawing):
            return unseen("tavrin", SCHEMA, FOLDERS, shown)

    def test_finds_what_no_picture_shows(self):
        self.assertEqual(self.same(), [("color", "dark"), ("stack", "at")])

    def test_looks_at_all_appearances(self):
        look = '[[color]]\ntopic = "look"\ntitle = "Look"\nwords = "Both."\nappearances = ["light", "dark"]\n'
        self.assertEqual(self.same(look), [("stack", "at")])


class Misnamed(unittest.TestCase):
    def test_finds_what_an_example_does_not_use(self):
        look = '[[color]]\ntopic = "look"\ntitle = "Look"\nwords = "Both."\nkeys = ["dark", "badge"]\n'
        with listed({**COMPLETE, "color-look": COMPLETE["color"]}, look) as shown:
            self.assertEqual(misnamed(SCHEMA, shown), [("color-look", "badge")])


if __name__ == "__main__":
    unittest.main()
