# SPDX-License-Identifier: MIT
"""What pages show for Ray and Spark runs on them."""
import json
import pathlib
import re

import pyarrow
import pyarrow.parquet
import pytest
import tavrin.ray
import tavrin.shards
import tavrin.spark

TOP = pathlib.Path(__file__).resolve().parents[4]
TITLE = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.title}}"}}}'
BLOCK = re.compile(r"^```py(?:thon)?\n(.*?)^```$", re.M | re.S)
OF_ENGINE = {"ray": re.compile(r"\bray\b"), "spark": re.compile(r"\b(spark|session)\b")}
ROWS = 40


def code(page, engine):
    """The parts of a page's blocks that are about one of the two; blank lines part them."""
    blocks = BLOCK.findall((TOP / page).read_text(encoding="utf-8"))
    return [part for block in blocks for part in block.split("\n\n") if OF_ENGINE[engine].search(part)]


@pytest.mark.parametrize("page", ["docs/guide.md", "docs/nightly.md"])
def test_the_code_of_pages_runs(engine, tmp_path, page):
    models, pictures, shards = (tmp_path / name for name in ("models", "pictures", "shards"))
    models.mkdir()
    rows = [{"id": f"p{number}", "model": json.dumps({"title": f"Nr. {number}"}), "zone": "UTC"} for number in range(ROWS)]
    for part in range(2):
        pyarrow.parquet.write_table(pyarrow.Table.from_pylist(rows[part::2]), models / f"people-{part}.parquet")
    names = {"document": TITLE, "ray": engine.engine, "session": engine.engine, "pyarrow": pyarrow, "tavrin": tavrin,
             "files": sorted(models.iterdir()), "out": shards}
    parts = code(page, engine.name)
    assert parts
    for part in parts:  # workers may stand in another folder
        there = part.replace('"models"', repr(str(models))).replace('"pictures"', repr(str(pictures)))
        exec(compile(there, page, "exec"), names)
    assert pyarrow.parquet.read_table(pictures)["error"].null_count == ROWS
    if "manifests" in names:
        assert [manifest["rows"] for manifest in names["manifests"]] == [ROWS // 2] * 2
