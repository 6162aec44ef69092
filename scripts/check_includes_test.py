#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""check_includes.py lets through what the table allows and names what it does not."""
import pathlib
import tempfile
import unittest

import check_includes

ALLOWED = [
    ("a header of its own folder", "tavrin/json/a.cpp", '"tavrin/json/a.h"'),
    ("a storey below", "tavrin/values/a.h", '"tavrin/platform/ui/color.h"'),
    ("a folder inside a listed one", "tavrin/images/cache/a.h", '"tavrin/dsl/node.h"'),
    ("the one header of a folder that is open", "tavrin/platform/text/a.h", '"tavrin/platform/ui/font.h"'),
    ("modifiers know nodes", "tavrin/modifiers/a.h", '"tavrin/nodes/color.h"'),
    ("a widget is drawn", "tavrin/widget/a.cpp", '"tavrin/platform/paint/a.h"'),
    ("the program knows the library", "cli/main.cpp", '"tavrin/tavrin.h"'),
    ("a server knows the program", "cli/serve/a.cpp", '"cli/usage_error.h"'),
    ("a server stands on what speaks HTTP", "cli/preview/a.cpp", '"cli/http/a.h"'),
    ("one header of the program", "cli/http/a.cpp", '"cli/io_error.h"'),
    ("a room of the foundation", "tavrin/platform/ui/a.h", '"tavrin/platform/foundation/net/url.h"'),
    ("one header of a room above", "tavrin/platform/foundation/strings/a.cpp",
     '"tavrin/platform/foundation/precondition.h"'),
    ("headers of others are not judged", "tavrin/json/a.cpp", "<simdjson.h>"),
]
REFUSED = [
    ("upwards", "tavrin/json/a.cpp", '"tavrin/values/a.h"'),
    ("upwards, in angle brackets", "tavrin/json/a.cpp", "<tavrin/values/a.h>"),
    ("the platform knows no document", "tavrin/platform/ui/a.h", '"tavrin/dsl/node.h"'),
    ("nodes know views, not layout", "tavrin/nodes/a.cpp", '"tavrin/platform/layout/a.h"'),
    ("nodes do not know modifiers", "tavrin/nodes/a.h", '"tavrin/modifiers/frame.h"'),
    ("modifiers do not know images", "tavrin/modifiers/a.h", '"tavrin/images/a.h"'),
    ("text knows one header of ui", "tavrin/platform/text/a.h", '"tavrin/platform/ui/views.h"'),
    ("the engine does not know painting", "tavrin/engine/a.cpp", '"tavrin/platform/paint/a.h"'),
    ("painting does not lay out", "tavrin/platform/paint/a.cpp", '"tavrin/widget/a.h"'),
    ("drawing texts knows no canvas", "tavrin/platform/paint/text/a.h", '"tavrin/platform/paint/canvas.h"'),
    ("layout does not know painting", "tavrin/platform/layout/a.cpp", '"tavrin/platform/paint/a.h"'),
    ("the library does not know the program", "tavrin/engine/a.cpp", '"cli/options.h"'),
    ("a listed folder inside one's own", "tavrin/platform/foundation/a.h", '"tavrin/platform/foundation/net/url.h"'),
    ("what else is in a room above", "tavrin/platform/foundation/strings/a.cpp",
     '"tavrin/platform/foundation/tavrin_error.h"'),
    ("a name beginning alike is another folder", "tavrin/json/a.cpp", '"tavrin/jsonic/a.h"'),
    ("what speaks HTTP knows no server", "cli/http/a.cpp", '"cli/serve/a.h"'),
    ("nor the program", "cli/http/a.cpp", '"cli/output.h"'),
    ("nor what is drawn", "cli/http/a.cpp", '"tavrin/widget/widget.h"'),
    ("a header without its folder", "tavrin/json/a.cpp", '"a.h"'),
    ("a folder the table does not know", "tavrin/extra/a.cpp", '"tavrin/json/a.h"'),
]


def violations(path, header):
    with tempfile.TemporaryDirectory() as folder:
        source = pathlib.Path(folder) / path
        source.parent.mkdir(parents=True)
        source.write_text(f"#pragma once\n\n#include {header}\n", encoding="utf-8")
        return check_includes.check(pathlib.Path(folder))


class CheckIncludes(unittest.TestCase):
    def test_what_is_allowed(self):
        for why, path, header in ALLOWED:
            with self.subTest(why):
                self.assertEqual(violations(path, header), [])

    def test_what_is_refused(self):
        for why, path, header in REFUSED:
            with self.subTest(why):
                found = violations(path, header)
                self.assertEqual(len(found), 1)
                self.assertTrue(found[0].startswith(f"{path}:3: "), found[0])

    def test_the_table_has_no_circle(self):
        for place, allowed in check_includes.MAY_INCLUDE.items():
            for other in allowed:
                if other in check_includes.MAY_INCLUDE:
                    self.assertIsNotNone(check_includes.violation(f"{other}/a.h", f"{place}/a.h"), (place, other))


if __name__ == "__main__":
    unittest.main()
