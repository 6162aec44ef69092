# SPDX-License-Identifier: MIT
"""Draws the rows of a Spark frame: pip install 'tavrin[spark]'."""
import functools
from typing import Unpack

import pyarrow
from pyspark.sql import DataFrame
from pyspark.sql.pandas.types import from_arrow_schema, to_arrow_schema
from pyspark.sql.types import StructType

from tavrin._options import RowOptions
from tavrin._rows import ROWS, drawing_of, drawn, drawn_schema, positive, without_network

__all__ = ["render"]


def render(frame: DataFrame, *, document: str | bytes | None = None, document_column: str | None = None,
           model: str | None = "model", batch_size: int = ROWS, **options: Unpack[RowOptions]) -> DataFrame:
    """The frame with the picture of each row, drawn by the workers of the cluster when the frame is consumed.

    It takes what `tavrin.arrow.render` takes and adds the same columns, with the same bytes. Workers fetch nothing
    unless `fetch` says so: pictures come from `image_cache_dir`, a folder that every machine of the cluster has and that
    `tavrin.arrow.prefetch` fills. Fonts are those of the machines, or of `font_dir`.

    `batch_size` is how many rows a worker draws at a time; their pictures are in memory together.

    Raises what `tavrin.arrow.render` raises for wrong arguments, at once.
    """
    drawing = without_network(drawing_of(document, document_column, model, dict(options)))
    given = to_arrow_schema(frame.schema)
    added = list(drawn_schema(given, drawing))[len(given):]
    schema = StructType(frame.schema.fields + from_arrow_schema(pyarrow.schema(added)).fields)
    return frame.mapInArrow(functools.partial(drawn, rows=positive("batch_size", batch_size), drawing=drawing), schema)
