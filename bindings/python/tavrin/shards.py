# SPDX-License-Identifier: MIT
"""Writes pictures into tar shards, as web datasets read them: pip install 'tavrin[arrow]'.

>>> import tempfile
>>> import pyarrow
>>> import tavrin.shards
>>> text = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}}'
>>> people = pyarrow.record_batch({"id": ["ana", "ben"], "model": ['{"name": "Ana"}', '{"name": "Ben"}']})
>>> with tempfile.TemporaryDirectory() as folder:
...     manifest = tavrin.shards.write([people], folder, document=text, date="2026-11-21T08:05:00Z")
>>> manifest["rows"], manifest["errors"], len(manifest["shards"])
(2, {}, 1)
"""
import hashlib
import json
import os
import pathlib
from collections.abc import Iterable, Iterator
from typing import Any, Unpack

import pyarrow

from tavrin import _tavrin
from tavrin._options import RowOptions
from tavrin._rows import ROWS, drawing_of, drawn, drawn_schema, positive
from tavrin._shard_files import ShardFolder
from tavrin._shard_rows import digest, plain_rows, samples
from tavrin._values import plain_options

__all__ = ["write"]


def write(batches: Iterable[pyarrow.RecordBatch | pyarrow.Table], folder: str | os.PathLike[str], key: str = "id", *,
          rows: int = 3200, document: str | bytes | None = None, document_column: str | None = None,
          model: str | None = "model", **options: Unpack[RowOptions]) -> dict[str, Any]:
    """Writes the rows of record batches or tables into a folder of tar files, and gives their manifest.

    With `document` or `document_column` it draws the rows, as `tavrin.arrow.render` does with the same arguments;
    without, they are drawn already. A shard has so many `rows`, by default 3200, which is some 256 MB with pictures of
    80 kB each, and a picture and a JSON file for each: ann.png and ann.json, where "ann" is the row's value of the
    column `key`, a text or whole number. The JSON object has the row's other columns: bytes as base64, moments as ISO
    8601 writes them, numbers that are not finite as "infinity", "-infinity" and "nan". A row that failed has an `error`
    and no picture. In the names of files everything of a key but letters of ASCII, digits, "-" and "_" is written as %
    and two digits for each byte, so that no key leads out of the folder and none is taken for another.

    A shard is called by its first row, the row behind its last, and a digest of its rows and of how they are drawn. It
    is written under another name, synced and renamed; manifest.json comes last, with the name, rows, bytes and SHA-256
    of each shard, and how many rows failed by the type of their errors. Who is interrupted writes the same rows again
    into the same folder: shards that are there are neither drawn nor written again, and the bytes are the same as of a
    run without interruption. `batches` should therefore come in the same order each time, and be cheap to read.

    In memory are the rows of one shard, with their pictures only where they were drawn before, and all keys.

    Raises what `tavrin.arrow.render` raises for wrong arguments, ValueError for a column that there is not and for a
    key that is null, empty, longer than 200 bytes in the name of a file, or there twice, FileExistsError for a
    folder with other rows or another drawing, BlockingIOError where another process is writing into it.
    """
    drawing = drawing_of(document, document_column, model, dict(options))
    draws = document is not None or document_column is not None
    if draws:
        drawn_schema(None, drawing)
    elif options:
        raise TypeError(f"{next(iter(options))} says how rows are drawn; give document or document_column, too")
    recipe = _recipe(drawing if draws else {}, key, positive("rows", rows))
    keys: set[str] = set()
    with ShardFolder(pathlib.Path(folder), recipe) as shards:
        start = 0
        for table in _tables(batches, rows):
            _check_pictures(drawn_schema(table.schema, drawing) if draws else table.schema)
            known = plain_rows(table, key, keys, start)
            seed = json.dumps(recipe, sort_keys=True).encode()
            name = f"{start:09}-{start + table.num_rows:09}-{digest(table, known, seed)[:12]}.tar"
            if not shards.has(start, name):
                pictured = drawn(table.to_batches(), ROWS, drawing) if draws else table.to_batches()
                shards.add(start, name, samples(known, pictured, table.column_names))
            start += table.num_rows
        return shards.finish()


def _check_pictures(schema: pyarrow.Schema) -> None:
    if "picture" not in schema.names:
        raise ValueError("the rows have no column 'picture'; give document or document_column to draw them")
    kind = schema.field("picture").type
    if not (pyarrow.types.is_binary(kind) or pyarrow.types.is_large_binary(kind)):
        raise TypeError(f"picture is a column of binary values, not of {kind}")


def _recipe(drawing: dict[str, Any], key: str, rows: int) -> dict[str, Any]:
    """What the bytes of shards come from, beside the rows, as JSON can say it."""
    told = {name: value for name, value in plain_options(drawing).items() if value is not None}
    if "document" in told:
        text = told.pop("document")
        told["document"] = hashlib.sha256(text.encode() if isinstance(text, str) else text).hexdigest()
    return {"tavrin": _tavrin.version, "key": key, "rows": rows, "drawing": told}


def _tables(batches: Iterable[pyarrow.RecordBatch | pyarrow.Table], rows: int) -> Iterator[pyarrow.Table]:
    """The rows of all batches, so many at a time, and what is left at the end."""
    kept: list[pyarrow.RecordBatch] = []
    count = 0
    for each in batches:
        for batch in each.to_batches() if isinstance(each, pyarrow.Table) else [each]:
            while count + batch.num_rows >= rows:
                kept.append(batch.slice(0, rows - count))
                batch = batch.slice(rows - count)
                yield pyarrow.Table.from_batches(kept)
                kept, count = [], 0
            if batch.num_rows:
                kept.append(batch)
                count += batch.num_rows
    if kept:
        yield pyarrow.Table.from_batches(kept)
