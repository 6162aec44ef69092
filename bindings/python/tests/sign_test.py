# SPDX-License-Identifier: MIT
"""`sign` makes what the program's `sign` makes, and another program made for the table that both are tested with."""
import json
import pathlib
from datetime import datetime, timedelta, timezone

import pytest
import tavrin

TABLE = json.loads((pathlib.Path(__file__).parents[3] / "tests/serve/signatures.json").read_text(encoding="utf-8"))


@pytest.mark.parametrize("row", TABLE["signed"], ids=lambda row: row["why"])
def test_signs(row):
    assert tavrin.sign(row["path"], row["key"], row.get("expires")) == row["signed"]
    assert tavrin.sign(row["path"], row["key"].encode(), expires=row.get("expires")) == row["signed"]


@pytest.mark.parametrize("row", TABLE["refused"], ids=lambda row: row["why"])
def test_refuses(row):
    with pytest.raises(ValueError, match="path|expires"):
        tavrin.sign(row["path"], "secret", row.get("expires"))


def test_takes_moments():
    path = "/v1/widgets/a.png"
    moment = datetime(2026, 12, 1, tzinfo=timezone.utc)
    signed = tavrin.sign(path, "secret", 1796083200)
    assert tavrin.sign(path, "secret", moment) == signed
    assert tavrin.sign(path, "secret", moment - timedelta(milliseconds=1)) == signed
    assert tavrin.sign(path, "secret", moment.astimezone(timezone(timedelta(hours=5)))) == signed


@pytest.mark.parametrize(("words", "error", "said"), [
    ((b"/a", "secret"), TypeError, "path takes a str, not bytes"),
    (("/a", None), TypeError, "key takes a str or bytes, not NoneType"),
    (("/a", ""), ValueError, "key is empty"),
    (("/a", "secret", 1.5), TypeError, "expires takes seconds since 1970 or a datetime, not float"),
    (("/a", "secret", True), TypeError, "not bool"),
    (("/a", "secret", -1), ValueError, "expires takes seconds since 1970"),
    (("/a", "secret", datetime(2026, 12, 1)), ValueError, "expires takes a datetime with a time zone"),
])
def test_refuses_values(words, error, said):
    with pytest.raises(error, match=said):
        tavrin.sign(*words)
