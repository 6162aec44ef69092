# SPDX-License-Identifier: MIT
"""Draws the rows of a Ray dataset: pip install 'tavrin[ray]'."""
from typing import Any, Unpack

import pyarrow
import ray.data

from tavrin._options import RowOptions
from tavrin._rows import ROWS, drawing_of, drawn, drawn_schema, positive, without_network

__all__ = ["render"]


class _Worker:
    """A process of the pool, which keeps fonts and decoded documents from batch to batch."""

    def __init__(self, rows: int, drawing: dict[str, Any]) -> None:
        self._rows, self._drawing = rows, drawing

    def __call__(self, table: pyarrow.Table) -> pyarrow.Table:
        return pyarrow.Table.from_batches(drawn(table.to_batches(), self._rows, self._drawing),
                                          schema=drawn_schema(table.schema, self._drawing))


def render(dataset: ray.data.Dataset, *, document: str | bytes | None = None, document_column: str | None = None,
           model: str | None = "model", batch_size: int = ROWS, compute: ray.data.ActorPoolStrategy | None = None,
           **options: Unpack[RowOptions]) -> ray.data.Dataset:
    """The dataset with the picture of each row, drawn by workers of the cluster when the dataset is consumed.

    It takes what `tavrin.arrow.render` takes and adds the same columns, with the same bytes. Workers fetch nothing
    unless `fetch` says so: pictures come from `image_cache_dir`, a folder that every machine of the cluster has and that
    `tavrin.arrow.prefetch` fills. Fonts are those of the machines, or of `font_dir`.

    `batch_size` is how many rows a worker draws at a time, and `compute` the pool of workers, a core for each: by default
    as many as Ray finds room for. Rows come in any order unless the context of the dataset has `preserve_order`.

    Raises what `tavrin.arrow.render` raises for wrong arguments, at once; those that name columns are judged later where
    Ray does not know yet what columns there are.
    """
    drawing = without_network(drawing_of(document, document_column, model, dict(options)))
    known = dataset.schema(fetch_if_missing=False)
    schema = known.base_schema if known is not None else None
    drawn_schema(schema if isinstance(schema, pyarrow.Schema) else None, drawing)
    # Blocks as they were read, of some 100 MB, would be so many models that one worker had all of them.
    blocks = dataset.repartition(target_num_rows_per_block=4 * positive("batch_size", batch_size))
    return blocks.map_batches(_Worker, fn_constructor_args=(batch_size, drawing), batch_format="pyarrow",
                              batch_size=batch_size, compute=compute or ray.data.ActorPoolStrategy(), num_cpus=1)
