# SPDX-License-Identifier: MIT
"""What drawing rows elsewhere than in one process takes."""
from collections.abc import Iterable, Iterator
from typing import Any

import pyarrow

from tavrin import arrow

ROWS = 256
"""How many rows are drawn at a time: their pictures, some tens of megabytes, are in memory together."""


def drawing_of(document: str | bytes | None, document_column: str | None, model: str | None,
               options: dict[str, Any]) -> dict[str, Any]:
    """The arguments of `arrow.render` beside the batch."""
    return {"document": document, "document_column": document_column, "model": model, **options}


def positive(name: str, value: int) -> int:
    """A whole number above 0; raises TypeError and ValueError for what is none."""
    if not isinstance(value, int) or isinstance(value, bool):
        raise TypeError(f"{name} takes a whole number, not {type(value).__name__}")
    if value < 1:
        raise ValueError(f"{name} takes a whole number above 0, not {value}")
    return value


def without_network(drawing: dict[str, Any]) -> dict[str, Any]:
    """The same, where nothing is said of fetching without it: a server that all workers ask at once is soon none."""
    return drawing if {"fetch", "fetch_column"} & drawing.keys() else {**drawing, "fetch": "none"}


def _names_column(argument: str) -> bool:
    return argument == "model" or argument.endswith("_column")


def drawn_schema(schema: pyarrow.Schema | None, drawing: dict[str, Any]) -> pyarrow.Schema:
    """What rows of a schema become when they are drawn. Raises what `arrow.render` raises for wrong arguments; where the
    schema is not known, as far as these can be judged without."""
    if schema is None:
        named = {value: pyarrow.bool_() if name == "hashes_column" else pyarrow.null()
                 for name, value in drawing.items() if isinstance(value, str) and _names_column(name)}
        schema = pyarrow.schema(named.items())
    return arrow.render(pyarrow.RecordBatch.from_pylist([], schema=schema), **drawing).schema


def drawn(batches: Iterable[pyarrow.RecordBatch], rows: int, drawing: dict[str, Any]) -> Iterator[pyarrow.RecordBatch]:
    """The batches with their pictures, in pieces of so many rows."""
    for batch in batches:
        for start in range(0, batch.num_rows, rows):
            yield arrow.render(batch.slice(start, rows), **drawing)
