# SPDX-License-Identifier: MIT
"""What mypy says of users' code in strict mode."""
import pathlib
import re
import subprocess
import sys

import pytest

GOOD = """
from datetime import datetime, timezone
from pathlib import Path
from zoneinfo import ZoneInfo
from typing import Any, Literal

import numpy
import pyarrow  # type: ignore[import-untyped]
import tavrin
import tavrin.arrow
import tavrin.ray
import tavrin.shards
import tavrin.spark

document: tavrin.Document = tavrin.Document.open(Path("agenda.json"), budget={"profile": "strangers", "seconds": 1})
options: tavrin.Options = {"family": "systemSmall", "scale": 2, "budget": {"steps": 10}}
widget = document.widget({"title": "a"}, date=datetime.now(timezone.utc), time_zone=ZoneInfo("UTC"), rounded=True,
                         size=(338, 158), background="none")
other = document.widget(**options)
png: bytes = widget.encode("png", compression="small") + other.encode(format="svg", quality=3)
width: int = widget.pixels().width
shape: tuple[int, int, int] = widget.pixels().shape
array = numpy.asarray(widget.pixels())
moment: datetime | None = widget.valid_until
why: str = widget.explain() + widget.explain("nodes.main")
for found in tavrin.check("{}", None, ["systemSmall"]):
    severity: Literal["error", "warning", "note"] = found.severity
    line: int | None = found.range.line if found.range else None
    edits: list[tavrin.Edit] = found.fix
try:
    tree = widget.tree(), widget.layout(), widget.targets()["targets"]
except tavrin.DecodingError as error:
    place: int | None = error.line
    path: list[str | int] | None = error.path
version: str = tavrin.__version__
schema = tavrin.schema()["$schema"]
signed: str = tavrin.sign("/v1/widgets/a.png", b"key", datetime.now(timezone.utc)) + tavrin.sign("/a", "key", expires=1)
view = memoryview(widget.pixels())
batch = pyarrow.record_batch({"model": ["{}"], "family": [None], "text": ["{}"]})
drawn = tavrin.arrow.render(batch, document="{}", date="2026-11-21T08:05:00Z", family_column="family", hashes=True)
drawn = tavrin.arrow.render(drawn, document_column="text", model=None, date_column="day", scale=2, hashes_column="family")
names: list[str] = tavrin.arrow.addresses(batch, document=b"{}").to_pylist()
tavrin.arrow.prefetch(batch, document="{}", image_cache_dir=Path("pictures"), fetch="all")
manifest: dict[str, Any] = tavrin.shards.write([batch], Path("out"), "id", rows=100, document="{}", scale=2)
anything: Any = batch
drawn = tavrin.ray.render(anything, document="{}", family_column="family", batch_size=50)
drawn = tavrin.spark.render(anything, document_column="text", date="2026-11-21T08:05:00Z")
"""

BAD = """
from typing import Any

import tavrin
import tavrin.arrow
import tavrin.ray
import tavrin.shards
import tavrin.spark

anything: Any = None

document = tavrin.Document(5)  # arg-type
document.widget(famly="systemSmall")  # call-arg
document.widget(family="systemTiny")  # arg-type
document.widget(scale="2")  # arg-type
document.widget(size=3)  # arg-type
document.widget(budget={"stps": 3})  # arg-type
document.widget(5)  # arg-type
document.widget().encode("gif")  # arg-type
document.widget().valid_until.year  # union-attr
tavrin.check("{}", families=["systemTiny"])  # list-item
tavrin.check("{}")[0].range.line  # union-attr
tavrin.check("{}")[0].code = "x"  # misc
tavrin.render()  # attr-defined
tavrin.arrow.render(None, document=5)  # arg-type
tavrin.arrow.render(None, famly_column="a")  # call-arg
tavrin.arrow.render(None, family_column=5)  # arg-type
tavrin.arrow.render(None, fetch="some")  # arg-type
tavrin.arrow.addresses(None, hashes="yes")  # arg-type
tavrin.arrow.prefetch(None, image_cache_dir=5)  # arg-type
tavrin.shards.write([], "out", rows="5")  # arg-type
tavrin.ray.render(anything, famly_column="a")  # call-arg
tavrin.spark.render(anything, fetch="some")  # arg-type
"""


@pytest.fixture
def mypy(tmp_path):
    def run(text):
        file = tmp_path / "user.py"
        file.write_text(text)
        return subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", tmp_path / "cache", file],
                              capture_output=True, encoding="utf-8", check=False, cwd=tmp_path)

    return run


def test_good_code_passes(mypy):
    checked = mypy(GOOD)
    assert checked.returncode == 0, checked.stdout


def test_every_mistake_is_found(mypy):
    checked = mypy(BAD)
    found = {int(line): code for line, code in re.findall(r"^[^:]+:(\d+): error: .*\[([a-z-]+)\]$", checked.stdout, re.M)}
    expected = {number: line.split("# ")[1] for number, line in enumerate(BAD.splitlines(), 1) if "# " in line}
    assert found == expected, checked.stdout


def test_the_package_is_checked_strictly():
    folder = pathlib.Path(__file__).resolve().parent.parent
    checked = subprocess.run([sys.executable, "-m", "mypy", "--strict", "tavrin"], capture_output=True,
                             encoding="utf-8", check=False, cwd=folder)
    assert checked.returncode == 0, checked.stdout
