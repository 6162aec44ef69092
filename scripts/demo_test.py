#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""README.md lists the families of the examples, and the page escapes what it shows."""
import json
import unittest

from demo import ACCESSORIES, TOP, families
from gallery_page import highlighted, page, pretty

HIGHLIGHTS = [
    ("keys, texts and numbers", '{"a": "b", "c": -1.5e3}',
     "{<b>&quot;a&quot;</b>: <i>&quot;b&quot;</i>, <b>&quot;c&quot;</b>: <u>-1.5e3</u>}"),
    ("words", "[true, false, null]", "[<u>true</u>, <u>false</u>, <u>null</u>]"),
    ("quotes in a text", r'"a\"b: 1"', r"<i>&quot;a\&quot;b: 1&quot;</i>"),
    ("markup in a text", '"<b>&\'"', "<i>&quot;&lt;b&gt;&amp;&#x27;&quot;</i>"),
    ("markup where JSON has none", "<script> 1 </script>", "&lt;script&gt; <u>1</u> &lt;/script&gt;"),
]

ATTACK = "</pre><script>\"'&"
EXAMPLE = {
    "name": ATTACK,
    "settings": ATTACK,
    "pictures": [{"family": ATTACK, "light": ATTACK, "dark": ATTACK, "size": (158.0, 158.0)}],
    "document": ATTACK,
    "model": ATTACK,
    "tree": {ATTACK: [ATTACK]},
    "targets": [{"kind": ATTACK, "destination": ATTACK, "frame": [0, 0, 99.5, 1]}],
    "targets_family": ATTACK,
}


class Families(unittest.TestCase):
    def test_readme_lists_them(self):
        readme = (TOP / "README.md").read_text()
        for folder in (document.parent for document in TOP.glob("examples/*/document.json")):
            names = [family.removeprefix("system").removeprefix("accessory").lower() for family in families(folder)]
            self.assertIn(f"\n| [{folder.name}](examples/{folder.name}) | {', '.join(names)} | ", readme)


class Page(unittest.TestCase):
    def test_highlights(self):
        for why, text, expected in HIGHLIGHTS:
            with self.subTest(why):
                self.assertEqual(highlighted(text), expected)

    def test_escapes_everything(self):
        text = page([EXAMPLE])
        self.assertEqual(text.count("</pre>"), 3)
        self.assertNotIn("<script", text)
        self.assertNotIn(ATTACK, text)

    def test_gives_widgets_of_the_lock_screen_their_shapes(self):
        for family in ACCESSORIES:
            text = page([{**EXAMPLE, "pictures": [{**EXAMPLE["pictures"][0], "family": family}]}])
            self.assertIn(f"\n.{family} {{ border-radius: ", text)
            self.assertEqual(text.count(f' class="{family}" '), 2)

    def test_loads_nothing_from_elsewhere(self):
        self.assertNotRegex(page([{**EXAMPLE, "pictures": []}]), r"https?:|//|@import|url\(")

    def test_pretty_is_the_same_json(self):
        value = {"a": [1, {"b": ["é" * 60, None]}], "c": {}, "d": [], "e" * 90: "f" * 90}
        self.assertEqual(json.loads(pretty(value)), value)
        self.assertEqual(pretty({"a": [1, 2]}), '{"a": [1, 2]}')
        self.assertEqual(pretty([1, [2, 3]], width=7), "[\n  1,\n  [\n    2,\n    3\n  ]\n]")


if __name__ == "__main__":
    unittest.main()
