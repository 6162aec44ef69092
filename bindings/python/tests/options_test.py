# SPDX-License-Identifier: MIT
"""Options: each taken, each refused with its name."""
import json
import os
import pathlib
import subprocess
import sys
import typing
from datetime import datetime, timedelta, timezone
from fractions import Fraction
from zoneinfo import ZoneInfo

import numpy
import pytest
import tavrin
from tavrin import _options, _tavrin, _values

TOP = pathlib.Path(__file__).resolve().parents[3]
FONTS = "/usr/share/fonts/opentype/inter"
SHARED = json.loads(_tavrin.options())

# Option: what it takes, of what type it is not, what it does not have.
TABLE = {
    "family": (["systemSmall", "accessoryInline"], [1, None, b"systemSmall", ["systemSmall"]], ["systemTiny", ""]),
    "size": (["338x158", (338, 158), [10.5, 20], (numpy.int32(5), numpy.float32(4))],
             [338, None, (1, 2, 3), ("1", "2"), (True, 2), {}], ["338", "0x1", (0, 10), (-1, 1), (float("nan"), 1),
                                                                (10**400, 1)]),
    "screen": (["430x932", (430, 932)], [430, (430,), None], ["1x1", "wide", (1, 1)]),
    "scale": ([1, 2.5, 0.5, Fraction(3, 2), numpy.int64(2), numpy.float32(1.5)], ["2", True, None, [2], 2j],
              [0, -1, 101, float("nan"), float("inf"), 10**400, -10**400, Fraction(10**400, 1)]),
    "appearance": (["light", "dark"], [0, None], ["Dark", "dim"]),
    "date": (["2026-11-21T08:05:00Z", datetime(2026, 11, 21, tzinfo=timezone.utc),
              datetime(2026, 11, 21, 9, tzinfo=ZoneInfo("Europe/Madrid"))],
             [0, 1.5, None, datetime(2026, 11, 21).date(), timedelta(1)],
             ["yesterday", "2026-11-21", datetime(2026, 11, 21), datetime.max.replace(tzinfo=timezone(-timedelta(hours=9))),
              "\ud800"]),
    "time_zone": (["Europe/Madrid", "GMT+2", ZoneInfo("UTC")], [1, None, timezone.utc], ["Moon/Sea", ""]),
    "background": (["#FF9500", "FF9500", "none", "auto"], [0xFF9500, None, (1, 1, 1)], ["red", "#FFF"]),
    "rounded": ([True, False], [1, 0, "1", None], []),
    "image_cache_dir": (["pictures", pathlib.Path("pictures")], [1, None, b"pictures"], [""]),
    "max_image_size": (["10x10", (10, 10)], [10, None], ["10", (0, 0)]),
    "fetch": (["none", "public", "all"], [None, False], ["some"]),
    "font_dir": ([FONTS, pathlib.Path(FONTS)], [1, None], [""]),
    "format": (["png", "svg", "pdf"], [None, 1], ["PNG", "gif"]),
    "compression": (["fast", "balanced", "small"], [None, 1], ["best"]),
    "quality": ([1, 100, numpy.uint8(50), 50.0], [None, "85", True], [0, 101, -1, 1.5, 2**64, 10**400]),
    "budget": (["usual", "strangers", {}, {"profile": "strangers", "steps": 10**9, "seconds": 60}], [None, 1, ["usual"]],
               ["none"]),
    "budget_steps": ([10**6, 10**6 * 1.0], [None, "5", True], [0, -5, 1.5, float("nan")]),
    "budget_pixels": ([10**9], [None, "5"], [0, -5]),
    "budget_bytes": ([10**8, 2**64 - 1], [None, "5"], [0, 2**64]),
    "budget_seconds": ([60, 0.5e2], [None, "5"], [0, -1, float("inf")]),
}
OTHER = {"format": ("encode", "format"), "compression": ("encode", "compression"), "quality": ("encode", "quality")}


def rows(column):
    return [pytest.param(name, value, id=f"{name}-{value!r:.30}") for name, row in TABLE.items() for value in row[column]]


def test_the_table_has_every_option():
    assert list(TABLE) == [_values._snake(option["name"]) for option in SHARED if option["use"] != "answer"]


@pytest.mark.parametrize("name, value", rows(0))
def test_options_are_taken(hello, name, value):
    document = tavrin.Document(hello)
    assert document.widget(**{name: value}).tree()["view"] == "Text"
    assert isinstance(tavrin.check(hello, **{name: value}), list)


@pytest.mark.parametrize("name, value", rows(1))
def test_a_wrong_type_is_a_type_error(hello, name, value):
    with pytest.raises(TypeError, match=rf"\b{name}\b"):
        tavrin.Document(hello).widget(**{name: value})
    with pytest.raises(TypeError, match=rf"\b{name}\b"):
        tavrin.check(hello, **{name: value})


@pytest.mark.parametrize("name, value", rows(2))
def test_a_wrong_value_is_a_value_error(hello, name, value):
    with pytest.raises(ValueError, match=rf"\b{name}\b"):
        tavrin.Document(hello).widget(**{name: value})


@pytest.mark.parametrize("name, value", [row for column in (1, 2) for row in rows(column) if row.values[0] in OTHER])
def test_encode_refuses_the_same(hello, name, value):
    widget = tavrin.Document(hello).widget()
    if value is None:  # not given
        assert widget.encode(**{name: value}) == widget.encode()
        return
    with pytest.raises((TypeError, ValueError), match=rf"\b{name}\b"):
        widget.encode(**{name: value})


@pytest.mark.parametrize("name", ["famly", "timeZone", "hashes", "budget_", "", "\ud800"])
def test_an_unknown_name_is_a_type_error(hello, name):
    for refuse in (lambda: tavrin.Document(hello).widget(**{name: 1}), lambda: tavrin.check(hello, **{name: 1})):
        with pytest.raises(TypeError if name.isascii() else ValueError, match=f"option.*{name.strip(chr(0xd800))}"):
            refuse()


def test_budgets_name_what_they_do_not_have(hello):
    with pytest.raises(TypeError, match="budget_stps.*budget_steps"):
        tavrin.Document(hello).widget(budget={"stps": 1})
    with pytest.raises(ValueError, match="budget_steps"):
        tavrin.Document(hello).widget(budget={"steps": 0})
    with pytest.raises(tavrin.TavrinError, match="bytes") as caught:
        tavrin.Document(hello + " " * 1_000_000, budget={"bytes": 1})
    assert caught.value.kind == "Budget"


@pytest.mark.parametrize("good, same", [
    ({"size": (200, 100)}, {"size": "200x100"}),
    ({"date": datetime(2026, 11, 21, 9, 5, tzinfo=ZoneInfo("Europe/Madrid"))}, {"date": "2026-11-21T08:05:00Z"}),
    ({"time_zone": ZoneInfo("Asia/Tokyo")}, {"time_zone": "Asia/Tokyo"}),
    ({"scale": Fraction(3, 2)}, {"scale": 1.5}),
    ({"font_dir": pathlib.Path(FONTS)}, {"font_dir": FONTS}),
], ids=repr)
def test_the_language_s_own_types_mean_the_same(agenda, good, same):
    text, model, options = agenda
    document = tavrin.Document(text)
    pictures = {document.widget(model, **options | given).encode() for given in (good, same)}
    assert len(pictures) == 1


def test_a_naive_datetime_is_told_to_have_a_zone(hello):
    with pytest.raises(ValueError, match="date takes a datetime with a time zone"):
        tavrin.Document(hello).widget(date=datetime(2026, 11, 21))


@pytest.mark.parametrize("model", [object(), 1, True, 1.5, ("a",), {"a": {1}}, {"a": b"x"}, [float("nan")], {(1, 2): 3},
                                   {"a": "\ud800"}, bytearray(b"{}")], ids=lambda value: f"{value!r:.20}")
def test_a_model_that_json_cannot_say_is_a_type_error(hello, model):
    for refuse in (lambda: tavrin.Document(hello).widget(model), lambda: tavrin.check(hello, model)):
        with pytest.raises(TypeError, match="model"):
            refuse()


def test_a_model_in_itself_is_a_type_error(hello):
    endless = []
    endless.append(endless)
    with pytest.raises(TypeError, match="model"):
        tavrin.Document(hello).widget(endless)


@pytest.mark.parametrize("text", [None, 1, ["{}"], {"version": "1.0"}, bytearray(b"{}"), memoryview(b"{}")],
                         ids=lambda value: f"{value!r:.20}")
def test_a_document_is_a_str_or_bytes(text):
    with pytest.raises(TypeError, match="document"):
        tavrin.Document(text)
    with pytest.raises(TypeError, match="document"):
        tavrin.check(text)
    with pytest.raises(ValueError, match="document"):
        tavrin.Document('{"\ud800": 1}')


@pytest.mark.parametrize("families, error", [("systemSmall", TypeError), ([1], TypeError), (["systemTiny"], ValueError)])
def test_families_are_refused(hello, families, error):
    with pytest.raises(error, match="families"):
        tavrin.check(hello, families=families)


def hints():
    return typing.get_type_hints(tavrin.Options), typing.get_type_hints(tavrin.Budget)


def test_types_have_the_options_and_words_that_there_are():
    options, budget = hints()
    assert list(options) == [_values._snake(option["name"]) for option in SHARED if option["use"] != "answer"]
    for option in SHARED:
        if option["use"] != "answer" and option["kind"] == "word":
            kind = options[_values._snake(option["name"])]
            literal = kind if option["name"] != "budget" else budget["profile"]
            assert list(typing.get_args(literal)) == option["words"]
    assert ["budget_" + name for name in budget if name != "profile"] == [
        name for name in options if name.startswith("budget_")]


def test_the_file_of_types_is_what_the_options_make():
    script = TOP / "scripts/make_python_options.py"
    subprocess.run([sys.executable, script, "--check"], check=True, env=os.environ)
    assert _options.__doc__
