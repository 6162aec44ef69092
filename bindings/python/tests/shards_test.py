# SPDX-License-Identifier: MIT
"""Tar shards: whole, the same again, and no more drawn than is missing."""
import base64
import datetime
import hashlib
import io
import json
import os
import subprocess
import sys
import tarfile

import pyarrow
import pytest
import tavrin.arrow
import tavrin.shards
from tavrin import _rows

NAME = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}}'
DRAWING = {"document": NAME, "date": "2026-11-21T08:05:00Z", "size": (60, 30), "scale": 1}


def people(count, first=0):
    numbers = range(first, first + count)
    return pyarrow.record_batch({"id": [f"p{number}" for number in numbers],
                                 "model": [f'{{"name": "{number}"}}' for number in numbers]})


def one(**columns):
    return pyarrow.record_batch({"id": ["a"], "model": ['{"name": "A"}']} | columns)


def files(folder):
    return {file.name: file.read_bytes() for file in folder.iterdir()}


def members(folder, manifest):
    """The members of all shards, in their order."""
    found = {}
    for shard in manifest["shards"]:
        with tarfile.open(folder / shard["name"]) as tar:
            for member in tar:
                assert member.name not in found
                assert (member.mtime, member.uid, member.gid, member.uname, member.gname) == (0, 0, 0, "", "")
                found[member.name] = tar.extractfile(member).read()
    return found


@pytest.fixture
def drawn_rows(monkeypatch):
    """How many rows have been drawn, call by call."""
    counts = []
    render = tavrin.arrow.render

    def counted(batch, **drawing):
        counts.append(batch.num_rows)
        return render(batch, **drawing)

    monkeypatch.setattr(tavrin.arrow, "render", counted)
    return counts


def test_every_row_is_in_a_shard(tmp_path):
    manifest = tavrin.shards.write([people(700), people(1, 700)], tmp_path, rows=300, **DRAWING)
    found = members(tmp_path, manifest)
    assert list(found) == [f"p{number}.{suffix}" for number in range(701) for suffix in ("png", "json")]
    document = tavrin.Document(NAME)
    options = {name: value for name, value in DRAWING.items() if name != "document"}
    for number in (0, 299, 300, 700):
        assert found[f"p{number}.png"] == document.widget({"name": str(number)}, **options, time_zone="UTC").encode()
    assert json.loads(found["p3.json"]) == {"id": "p3", "model": '{"name": "3"}', "width": 60, "height": 30,
                                            "valid_until": None, "error": None}


def test_the_manifest_tells_what_there_is(tmp_path):
    batch = pyarrow.record_batch({"id": ["a", "b", "c"], "model": ['{"name": "A"}', "{", "{}"]})
    manifest = tavrin.shards.write([batch], tmp_path, rows=2, **DRAWING)
    assert json.loads((tmp_path / "manifest.json").read_text()) == json.loads(json.dumps(manifest))
    assert set(files(tmp_path)) == {"manifest.json", *(shard["name"] for shard in manifest["shards"])}
    assert manifest["errors"] == {"DecodingError": 1, "ModelContextError": 1}
    assert [(shard["first"], shard["rows"], shard["errors"]) for shard in manifest["shards"]] == [
        (0, 2, {"DecodingError": 1}), (2, 1, {"ModelContextError": 1})]
    for shard in manifest["shards"]:
        data = (tmp_path / shard["name"]).read_bytes()
        assert (len(data), hashlib.sha256(data).hexdigest()) == (shard["bytes"], shard["sha256"])
        assert shard["name"].startswith(f"{shard['first']:09}-{shard['first'] + shard['rows']:09}-")
    assert (manifest["rows"], manifest["bytes"]) == (3, sum(shard["bytes"] for shard in manifest["shards"]))
    assert manifest["drawing"]["document"] == hashlib.sha256(NAME.encode()).hexdigest()
    found = members(tmp_path, manifest)
    assert list(found) == ["a.png", "a.json", "b.json", "c.json"]
    assert json.loads(found["b.json"])["error"]["kind"] == "dataCorrupted"


@pytest.mark.parametrize("cut", [[100], [1] * 10 + [90], [64, 36], [30, 0, 70]], ids=str)
def test_how_rows_are_batched_does_not_matter(tmp_path, cut):
    batch, batches = people(100), []
    for count in cut:
        batches.append(batch.slice(sum(each.num_rows for each in batches), count))
    tables = [pyarrow.Table.from_batches(batches)]
    for folder, given in (("a", [batch]), ("b", batches), ("c", tables), ("d", iter(batches))):
        tavrin.shards.write(given, tmp_path / folder, rows=40, **DRAWING)
        assert files(tmp_path / folder) == files(tmp_path / "a")


def test_a_second_run_draws_nothing(tmp_path, drawn_rows):
    tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING)
    assert sum(drawn_rows) == 50
    before, times = files(tmp_path), {file: file.stat().st_mtime_ns for file in tmp_path.glob("*.tar")}
    drawn_rows.clear()
    tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING)
    assert sum(drawn_rows) == 0
    assert files(tmp_path) == before
    assert {file: file.stat().st_mtime_ns for file in tmp_path.glob("*.tar")} == times


@pytest.mark.parametrize("lost", ["removed", "cut short"])
def test_only_what_is_missing_is_drawn(tmp_path, drawn_rows, lost):
    manifest = tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING)
    before = files(tmp_path)
    victim = tmp_path / manifest["shards"][1]["name"]
    if lost == "removed":
        victim.unlink()
    else:
        os.truncate(victim, 1000)
    drawn_rows.clear()
    assert tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING) == manifest
    assert sum(drawn_rows) == 20
    assert files(tmp_path) == before


def test_an_interrupted_run_goes_on(tmp_path, drawn_rows):
    def broken_off():
        yield people(45)
        raise KeyboardInterrupt

    whole = tavrin.shards.write([people(50)], tmp_path / "whole", rows=20, **DRAWING)
    with pytest.raises(KeyboardInterrupt):
        tavrin.shards.write(broken_off(), tmp_path / "cut", rows=20, **DRAWING)
    assert set(files(tmp_path / "cut")) == {"unfinished.json", *(shard["name"] for shard in whole["shards"][:2])}
    drawn_rows.clear()
    assert tavrin.shards.write([people(50)], tmp_path / "cut", rows=20, **DRAWING) == whole
    assert sum(drawn_rows) == 10
    assert files(tmp_path / "cut") == files(tmp_path / "whole")


KILLED = """
import os, sys
import pyarrow
import tavrin.arrow
import tavrin.shards

render = tavrin.arrow.render

def killed_at_the_end(batch, **drawing):
    if batch.num_rows == 30:
        os.kill(os.getpid(), 9)
    return render(batch, **drawing)

tavrin.arrow.render = killed_at_the_end
tavrin.shards.write(pyarrow.ipc.open_stream(sys.stdin.buffer), sys.argv[1], rows=286, document=%r, date=%r, size=(60, 30),
                    scale=1)
""" % (NAME, DRAWING["date"])


def test_a_killed_run_goes_on(tmp_path):
    """A shard is drawn in pieces; the process ends when one of them has been written."""
    sink = io.BytesIO()
    with pyarrow.ipc.new_stream(sink, people(1).schema) as stream:
        stream.write(people(300))
    ended = subprocess.run([sys.executable, "-c", KILLED, tmp_path / "cut"], input=sink.getvalue(), timeout=60, check=False)
    assert ended.returncode == -9
    assert list(files(tmp_path / "cut")) == ["unfinished.tar"]
    whole = tavrin.shards.write([people(300)], tmp_path / "whole", rows=286, **DRAWING)
    assert tavrin.shards.write([people(300)], tmp_path / "cut", rows=286, **DRAWING) == whole
    assert files(tmp_path / "cut") == files(tmp_path / "whole")


def test_a_manifest_is_there_only_while_all_shards_are(tmp_path):
    manifest = tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING)
    (tmp_path / manifest["shards"][0]["name"]).unlink()

    def broken_off():
        yield people(20)
        assert not (tmp_path / "manifest.json").exists()
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt):
        tavrin.shards.write(broken_off(), tmp_path, rows=20, **DRAWING)
    assert tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING) == manifest


@pytest.mark.parametrize("change", [{"rows": 10}, {"scale": 2}, {"document": NAME + " "}, {"date": "2026-11-22T08:05:00Z"}],
                         ids=str)
def test_another_drawing_does_not_go_into_a_folder_with_shards(tmp_path, drawn_rows, change):
    tavrin.shards.write([people(50)], tmp_path, **DRAWING | {"rows": 20})
    before = files(tmp_path)
    drawn_rows.clear()
    with pytest.raises(FileExistsError, match="another drawing"):
        tavrin.shards.write([people(50)], tmp_path, **DRAWING | {"rows": 20} | change)
    assert sum(drawn_rows) == 0
    assert files(tmp_path) == before


@pytest.mark.parametrize("batches", [[people(50, 1)], [people(39)], []], ids=["others", "fewer", "none"])
def test_other_rows_do_not_go_into_a_folder_with_shards(tmp_path, batches):
    tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING)
    with pytest.raises(FileExistsError, match="other rows"):
        tavrin.shards.write(batches, tmp_path, rows=20, **DRAWING)


def test_more_rows_are_other_rows_only_where_a_shard_was_not_full(tmp_path, drawn_rows):
    tavrin.shards.write([people(40)], tmp_path, rows=20, **DRAWING)
    drawn_rows.clear()
    assert tavrin.shards.write([people(50)], tmp_path, rows=20, **DRAWING)["rows"] == 50
    assert sum(drawn_rows) == 10


def test_rows_that_are_drawn_already_are_written(tmp_path, drawn_rows):
    drawn = tavrin.arrow.render(people(50), **DRAWING)
    drawn_rows.clear()
    manifest = tavrin.shards.write([drawn], tmp_path / "drawn", rows=20)
    assert not drawn_rows
    undrawn = tavrin.shards.write([people(50)], tmp_path / "undrawn", rows=20, **DRAWING)
    assert members(tmp_path / "drawn", manifest) == members(tmp_path / "undrawn", undrawn)
    before = files(tmp_path / "drawn")
    tavrin.shards.write([drawn.slice(0, 7), drawn.slice(7)], tmp_path / "drawn", rows=20)
    assert files(tmp_path / "drawn") == before
    other = tavrin.arrow.render(people(50), **DRAWING | {"appearance": "dark"})
    with pytest.raises(FileExistsError):
        tavrin.shards.write([other], tmp_path / "drawn", rows=20)


@pytest.mark.parametrize("format, suffix", [("png", "png"), ("webp", "webp"), ("jpeg", "jpg"), ("pdf", "pdf"), ("svg", "svg")])
def test_the_suffix_is_the_format_s(tmp_path, format, suffix):
    manifest = tavrin.shards.write([one()], tmp_path, format=format, **DRAWING)
    assert list(members(tmp_path, manifest)) == [f"a.{suffix}", "a.json"]


@pytest.mark.parametrize("key, name", [
    ("ann", "ann"), ("Ann_B-2", "Ann_B-2"), (7, "7"), (-7, "-7"), ("../../etc/passwd", "%2E%2E%2F%2E%2E%2Fetc%2Fpasswd"),
    ("..", "%2E%2E"), ("a.b", "a%2Eb"), ("a b", "a%20b"), ("a%2Eb", "a%252Eb"), ("Zoë", "Zo%C3%AB"), ("a\0\n", "a%00%0A"),
    ("😀", "%F0%9F%98%80"), ("x" * 200, "x" * 200),
])
def test_keys_become_names_that_lead_nowhere(tmp_path, key, name):
    manifest = tavrin.shards.write([one(id=[key])], tmp_path, **DRAWING)
    found = members(tmp_path, manifest)
    assert list(found) == [f"{name}.png", f"{name}.json"]
    assert json.loads(found[f"{name}.json"])["id"] == key


@pytest.mark.parametrize("keys, why", [
    (["a", None], "row 1 has None"), (["a", ""], "row 1 has ''"), (["a", "a"], "row 1 has 'a' again"), ([1.5, 2], "1.5"),
    ([True, False], "True"), (["a", "x" * 201], "201"), (["a", "ö" * 34], "204"), ([b"a", b"b"], "b'a'"),
], ids=str)
def test_keys_that_name_no_file_are_refused(tmp_path, keys, why):
    batch = pyarrow.record_batch({"id": keys, "model": ["{}"] * 2})
    with pytest.raises(ValueError, match="id") as caught:
        tavrin.shards.write([batch], tmp_path, **DRAWING)
    assert why in str(caught.value)


def test_a_key_is_there_once_in_all_shards(tmp_path):
    with pytest.raises(ValueError, match="row 40 has 'p3' again"):
        tavrin.shards.write([people(40), people(1, 3)], tmp_path, rows=20, **DRAWING)


def test_columns_are_told_in_json(tmp_path):
    moment = datetime.datetime(2026, 11, 21, 8, 5, tzinfo=datetime.timezone.utc)
    more = {"whole": [2**60], "real": [0.5], "odd": [float("-inf")], "flag": [True], "none": [None], "bytes": [b"\xff\0"],
            "moment": [moment], "day": [moment.date()], "list": [[1.5, float("nan")]], "record": [{"a": {"b": "ö"}}]}
    manifest = tavrin.shards.write([one(**more)], tmp_path, **DRAWING)
    told = json.loads(members(tmp_path, manifest)["a.json"])
    assert {name: told[name] for name in more} == {
        "whole": 2**60, "real": 0.5, "odd": "-infinity", "flag": True, "none": None,
        "bytes": base64.b64encode(b"\xff\0").decode(), "moment": "2026-11-21T08:05:00+00:00", "day": "2026-11-21",
        "list": [1.5, "nan"], "record": {"a": {"b": "ö"}}}


@pytest.mark.parametrize("batch, arguments, error, why", [
    (people(1), {}, ValueError, "no column 'picture'"),
    (people(1), {"scale": 2}, TypeError, "scale"),
    (people(1), DRAWING | {"key": "ID"}, ValueError, "key.*'ID'"),
    (people(1), DRAWING | {"rows": 0}, ValueError, "rows"),
    (people(1), DRAWING | {"rows": "9"}, TypeError, "rows"),
    (people(1), DRAWING | {"famly": "x"}, TypeError, "famly"),
    (people(1), DRAWING | {"family": "x"}, ValueError, "family"),
    (people(1), DRAWING | {"model": "x"}, ValueError, "'x'"),
    (people(1), {"document": NAME}, TypeError, "date"),
    (one(picture=["x"]), {}, TypeError, "picture.*string"),
    (one(picture=[b"GIF89a"]), {}, ValueError, "GIF89a"),
    (pyarrow.RecordBatch.from_arrays([pyarrow.array(["{}"])] * 3, names=["id", "id", "model"]), DRAWING, ValueError, "id, id"),
])
def test_what_makes_no_sense_is_refused(tmp_path, batch, arguments, error, why):
    with pytest.raises(error, match=why):
        tavrin.shards.write([batch], tmp_path / "out", **arguments)
    assert not list(tmp_path.glob("out/*"))


@pytest.mark.parametrize("text", ["", "[]", "{}", '{"shards": 5}', '{"shards": [{}]}', '{"shards": [5]}'])
def test_a_manifest_of_something_else_stays(tmp_path, text):
    (tmp_path / "manifest.json").write_text(text)
    with pytest.raises(FileExistsError, match="no manifest of shards"):
        tavrin.shards.write([people(1)], tmp_path, **DRAWING)
    assert (tmp_path / "manifest.json").read_text() == text


def test_a_folder_has_one_writer(tmp_path):
    def batches():
        yield people(20)
        with pytest.raises(BlockingIOError, match="another process"):
            tavrin.shards.write([people(20)], tmp_path, **DRAWING)
        yield people(20, 20)

    assert tavrin.shards.write(batches(), tmp_path, rows=20, **DRAWING)["rows"] == 40


def test_few_rows_are_drawn_at_a_time(tmp_path, drawn_rows):
    tavrin.shards.write([people(2 * _rows.ROWS + 5)], tmp_path, **DRAWING)
    assert [count for count in drawn_rows if count] == [_rows.ROWS, _rows.ROWS, 5]


def test_no_rows_are_no_shards(tmp_path):
    manifest = tavrin.shards.write([people(0)], tmp_path, **DRAWING)
    assert (manifest["rows"], manifest["shards"]) == (0, [])
    assert set(files(tmp_path)) == {"manifest.json"}
