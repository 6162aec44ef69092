# SPDX-License-Identifier: MIT
"""The engines, and rows that are good and bad."""
import base64
import json
import pathlib
import sys

import pyarrow
import pyarrow.parquet
import pytest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import engines

NAME = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}}'
GOOD = {"document": NAME, "family": None, "zone": "UTC", "steps": None, "size": "120x60",
        "date": "2026-11-21T08:05:00Z"}
BAD = [
    {"model": "{"},
    {"model": "{}"},
    {"document": NAME.replace("text", "txt")},
    {"family": "systemTiny", "size": None},
    {"zone": "Moon/Sea"},
    {"steps": 1},
    {"size": "20000x20000"},
    {"date": "yesterday"},
]
OPTIONS = {"family": "family", "zone": "timeZone", "steps": "budgetSteps", "size": "size", "date": "date"}


@pytest.fixture(scope="module", params=[engines.Ray, engines.Spark], ids=lambda kind: kind.name)
def engine(request):
    engine = request.param()
    try:
        yield engine
    finally:
        engine.stop()


@pytest.fixture
def read(engine, tmp_path):
    """Hands rows to the engine, as eight files."""

    def read(table, parts=8):
        size = -(-table.num_rows // parts)
        for part in range(parts):
            pyarrow.parquet.write_table(table.slice(part * size, size), tmp_path / f"{part}.parquet")
        return engine.read(tmp_path)

    return read


@pytest.fixture(scope="session")
def rows():
    """Rows of which one in a hundred is bad, of each kind as many; what is to be said of them is in their columns."""
    numbers = range(1600)
    kind = {number: BAD[number // 100 % len(BAD)] for number in numbers if number % 100 == 37}
    listed = [{"id": number, "model": json.dumps({"name": f"No. {number}"})} | GOOD | kind.get(number, {})
              for number in numbers]
    return pyarrow.Table.from_pylist(listed)


@pytest.fixture(scope="session")
def columns():
    """How the columns of those rows are named to `render`."""
    return {"document_column": "document", "family_column": "family", "time_zone_column": "zone",
            "budget_steps_column": "steps", "size_column": "size", "date_column": "date", "scale": 1}


@pytest.fixture(scope="session")
def answers(program, rows):
    """What the program says of each of those rows: a picture or an error."""
    lines = [json.dumps({"document": row["document"], "model": row["model"], "options": {
        option: row[name] for name, option in OPTIONS.items() if row[name] is not None}}) for row in rows.to_pylist()]
    answered = program.run("render", "--jsonl", "--scale", "1", input="\n".join(lines).encode()).stdout.splitlines()
    return {number: json.loads(line) for number, line in enumerate(answered)}


@pytest.fixture
def as_answered(answers):
    """Asserts that drawn rows are what the program answered, each of them once."""

    def compare(drawn):
        listed = sorted(drawn.to_pylist(), key=lambda row: row["id"])
        assert [row["id"] for row in listed] == list(answers)
        bad = 0
        for row in listed:
            answer = answers[row["id"]]
            if "error" not in answer:
                assert row["error"] is None
                assert row["picture"] == base64.b64decode(answer["picture"])
                assert (row["width"], row["height"]) == (answer["width"], answer["height"])
                continue
            bad += 1
            assert (row["picture"], row["width"], row["height"], row["valid_until"]) == (None,) * 4
            said = answer["error"] | {"message": answer["error"]["message"].replace("timeZone", "time_zone")}
            if said.get("path") is not None:
                said["path"] = [str(step) for step in said["path"]]
            assert row["error"] == {name: said.get(name) for name in row["error"]}
        assert bad == len(listed) // 100

    return compare
