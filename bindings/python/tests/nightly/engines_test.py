# SPDX-License-Identifier: MIT
"""Rows that clusters draw are those that one process draws: none is lost, none is there twice."""
import json

import pyarrow
import pytest
import tavrin.arrow

TITLE = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.title}}"}}}'
DATE = "2026-11-21T08:05:00Z"


def models(count, **more):
    return pyarrow.table({"id": range(count), "model": [json.dumps({"title": f"Nr. {n}"}) for n in range(count)]} | more)


def by_id(table):
    return table.combine_chunks().sort_by("id")


@pytest.mark.parametrize("count, options", [
    (20, {"family": "systemSmall", "hashes": True}),
    (1, {"format": "svg"}),
    (700, {"size": (40, 20), "scale": 1, "time_zone": "Asia/Tokyo", "appearance_column": "look", "batch_size": 50}),
], ids=["a few", "one", "some"])
def test_what_is_drawn_is_the_same(engine, read, count, options):
    table = models(count, look=["dark", "light", None, "dim"] * (count // 4) + [None] * (count % 4))
    options = {"document": TITLE, "date": DATE} | options
    drawn = by_id(engine.collect(engine.render(read(table), **options)))
    options.pop("batch_size", None)
    [batch] = table.combine_chunks().to_batches()
    expected = pyarrow.Table.from_batches([tavrin.arrow.render(batch, **options)])
    assert drawn.to_pylist() == expected.to_pylist()
    assert drawn.schema.names == expected.schema.names


def test_bad_rows_are_the_program_s_errors(engine, read, rows, columns, as_answered):
    as_answered(engine.collect(engine.render(read(rows), **columns)))


def test_a_killed_worker_loses_nothing(engine, read, rows, columns, as_answered, program):
    """Rows that take long, so that the worker is in the midst of some."""
    count, slow = 320, {"scale": 3, "family": "systemLarge", "compression": "small", "document": TITLE, "date": DATE}
    table = models(count)
    drawn = by_id(engine.collect_and_kill(engine.render(read(table), batch_size=16, **slow)))
    assert drawn["id"].to_pylist() == list(range(count))
    [batch] = table.combine_chunks().to_batches()
    expected = tavrin.arrow.render(batch, **slow)
    assert drawn["picture"].to_pylist() == expected["picture"].to_pylist()


@pytest.mark.parametrize("options, error, why", [
    ({"famly": "systemSmall"}, TypeError, "famly"),
    ({"family": "systemTiny"}, ValueError, "family"),
    ({"scale": "3"}, TypeError, "scale"),
    ({"date": None}, TypeError, "date"),
    ({"document": None}, TypeError, "document"),
    ({"document_column": "id"}, TypeError, "document"),
    ({"model": "person"}, ValueError, "person"),
    ({"family_column": "families"}, ValueError, "families"),
    ({"time_zone_column": "id"}, TypeError, "time_zone"),
    ({"batch_size": 0}, ValueError, "batch_size"),
    ({"batch_size": "5"}, TypeError, "batch_size"),
], ids=str)
def test_wrong_arguments_are_refused_at_once(engine, read, options, error, why):
    given = {"document": TITLE, "date": DATE} | options
    with pytest.raises(error, match=why):
        engine.render(read(models(8)), **given)


def test_a_column_that_is_there_is_not_replaced(engine, read):
    with pytest.raises(ValueError, match="picture"):
        engine.render(read(models(8, picture=["x"] * 8)), document=TITLE, date=DATE)
