# SPDX-License-Identifier: MIT
"""Draws the rows of Arrow record batches, with pyarrow, which `pip install 'tavrin[arrow]'` brings.

>>> import pyarrow
>>> import tavrin.arrow
>>> text = '{"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}}'
>>> batch = pyarrow.record_batch({"model": ['{"name": "Ana"}', "{}"], "look": ["dark", None]})
>>> drawn = tavrin.arrow.render(batch, document=text, date="2026-11-21T08:05:00Z", appearance_column="look")
>>> drawn.schema.names
['model', 'look', 'picture', 'width', 'height', 'valid_until', 'error']
>>> drawn["picture"][0].as_py()[:4]
b'\\x89PNG'
>>> drawn["error"][1]["message"].as_py()
'key path not found in model: ["name"]'
"""
import hashlib
import os
import pathlib
import threading
from collections.abc import Iterator, Mapping
from typing import Any, Unpack

import pyarrow

from tavrin import _tavrin
from tavrin._options import RowOptions
from tavrin._values import plain_options

__all__ = ["addresses", "prefetch", "render"]

_OF_COLUMN = "_column"


def render(batch: pyarrow.RecordBatch, *, document: str | bytes | None = None, document_column: str | None = None,
           model: str | None = "model", **options: Unpack[RowOptions]) -> pyarrow.RecordBatch:
    """The batch with the picture of each row: all its columns as they are, and behind them

    - `picture`: binary, or large_binary where the pictures of the batch take 2 GiB or more;
    - `sha256`: text, the picture's digest in hexadecimal; only with `hashes`;
    - `width`, `height`: int32, in pixels, or of SVG and PDF in points, rounded;
    - `valid_until`: timestamp[us, UTC], when the picture changes next; null where it never does;
    - `error`: struct of `type`, `kind`, `message` (text), `path` (list of text: keys and indices), `line` and `column`
      (int32), as `tavrin.Error` has them, or null. Where it is not null, the others are.

    `document` is the text of one document for all rows, `document_column` names a column of documents instead. `model`
    names the column of models, JSON texts; without models it is None. Both may be of any type of text or binary,
    dictionaries too. Each option of `tavrin.Options` holds for all rows, or, with `_column` behind its name, is the
    name of a column that has each row's; nulls there stand for the option's default. `time_zone` is UTC by default.
    There must be a `date` or a `date_column` without nulls, so that a row that is drawn again is the same bytes.

    Rows are drawn one after the other on the calling thread, each from what differs from the one before, while other
    threads run. A row that cannot be drawn has an error and fails no other. The error is of type "UsageError" where the
    row's columns are at fault: for a value that an option does not take, and a document, model or date that is null.

    Raises TypeError for an unknown option, one of a wrong type and a column of a type that is not taken; ValueError for
    a value that an option does not have, a column that the batch does not have, and one that it has already.
    """
    if "date" not in options and "date_column" not in options:
        raise TypeError("render takes a date or a date_column, so that a row that is drawn again is the same bytes")
    rows = _Rows(batch, document, document_column, model, options)
    added = [name for name in ("picture", "sha256", "width", "height", "valid_until", "error")
             if name != "sha256" or rows.has_hashes]
    for name in added:
        if name in batch.schema.names:
            raise ValueError(f"the batch has a column '{name}' already; render adds one")
    drawn = pyarrow.record_batch(_Drawn(_tavrin.draw_rows(*rows.arguments())))
    columns = dict(zip(drawn.schema.names, drawn.columns))
    if rows.has_hashes:
        columns["sha256"] = pyarrow.array(rows.hashes(columns["picture"]), pyarrow.string())
    fields = [pyarrow.field(name, columns[name].type) for name in added]
    return pyarrow.RecordBatch.from_arrays([*batch.columns, *(columns[name] for name in added)],
                                           schema=pyarrow.schema([*batch.schema, *fields], batch.schema.metadata))


def addresses(batch: pyarrow.RecordBatch, *, document: str | bytes | None = None, document_column: str | None = None,
              model: str | None = "model", **options: Unpack[RowOptions]) -> pyarrow.StringArray:
    """The addresses of the pictures that the rows show, each once, in the order in which they come.

    Takes what `render` takes; a date may be left out. A row that cannot be bound to its model names none.

    >>> text = '{"version": "1.0", "nodes": {"main": {"type": "webImage", "url": "{{initServerParam.photo}}"}}}'
    >>> batch = pyarrow.record_batch({"model": ['{"photo": "https://example.com/a.png"}'] * 2})
    >>> addresses(batch, document=text).to_pylist()
    ['https://example.com/a.png']
    """
    pictures = _pictures(batch, document, document_column, model, options)
    return pyarrow.array(dict.fromkeys(address for address, _ in pictures), pyarrow.string())


def prefetch(batch: pyarrow.RecordBatch, *, document: str | bytes | None = None, document_column: str | None = None,
             model: str | None = "model", **options: Unpack[RowOptions]) -> pyarrow.RecordBatch:
    """Fetches the pictures that the rows show into a folder, from which `render` takes them when it is given the same
    `image_cache_dir`; it asks no network then.

    Gives a batch of `address`, each once, and `error`: text, why there is no picture, or null. What lies in the folder
    already is not fetched again. Up to 64 pictures are under way at once, each of 32 MiB and 60 seconds at most; what
    fails for a reason that may pass is tried three times. Takes what `addresses` takes, but needs an `image_cache_dir`,
    and `fetch` is that of all rows. Raises OSError where the folder cannot be written.
    """
    if "image_cache_dir" not in options or "fetch_column" in options:
        raise TypeError("prefetch takes an image_cache_dir, the folder to fetch into, and the fetch of all rows")
    folder = pathlib.Path(options["image_cache_dir"])
    pictures = _pictures(batch, document, document_column, model, options)
    errors: dict[str, str | None] = {}
    owners: dict[str, str] = {}  # by the names of their files
    for address, name in pictures:
        errors.setdefault(address, None)
        if owners.setdefault(name, address) != address:
            errors[address] = f"its name in the folder, {name}, is that of '{owners[name]}' too"
    missing = {name: address for name, address in owners.items() if not (folder / name).exists()}
    names = list(missing)
    downloads = _tavrin.Downloads(list(missing.values()), plain_options(
        {name: value for name, value in options.items() if name in ("fetch", "image_cache_dir")}))
    folder.mkdir(parents=True, exist_ok=True)
    for index, picture, error in iter(downloads.next, None):
        if error:
            errors[missing[names[index]]] = error
        else:
            _write(folder / names[index], picture)
    return pyarrow.record_batch({"address": pyarrow.array(errors.keys(), pyarrow.string()),
                                 "error": pyarrow.array(errors.values(), pyarrow.string())})


class _Drawn:
    """What the compiled half hands over."""

    def __init__(self, capsules: tuple[object, object]) -> None:
        self._capsules = capsules

    def __arrow_c_array__(self, requested_schema: object = None) -> tuple[object, object]:
        return self._capsules


class _Rows:
    """The rows of a batch as the compiled half takes them."""

    def __init__(self, batch: pyarrow.RecordBatch, document: str | bytes | None, document_column: str | None,
                 model: str | None, options: Mapping[str, Any]) -> None:
        if not isinstance(batch, pyarrow.RecordBatch):
            raise TypeError(f"batch takes a pyarrow.RecordBatch, not {type(batch).__name__}")
        if (document is None) == (document_column is None):
            raise TypeError("give a document for all rows, or the document_column that has theirs")
        self._count = batch.num_rows
        self._document = document if document_column is None else _column(batch, "document_column", document_column)
        self._model = None if model is None else _column(batch, "model", model)
        plain = {name: value for name, value in options.items() if not name.endswith(_OF_COLUMN)}
        self._columns = {name.removesuffix(_OF_COLUMN): _column(batch, name, column)
                         for name, column in options.items() if name.endswith(_OF_COLUMN)}
        for name in self._columns.keys() & plain.keys():
            raise ValueError(f"{name}{_OF_COLUMN} stands instead of {name}; give one of them")
        self._hashes = plain.pop("hashes", False), self._columns.pop("hashes", None)
        self._options = plain_options(plain)
        if not isinstance(self._hashes[0], bool):
            raise TypeError("hashes takes true or false")
        if self._hashes[1] and not pyarrow.types.is_boolean(self._hashes[1][0].type):
            raise TypeError(f"hashes_column takes a column of booleans, not of {self._hashes[1][1]}")

    @property
    def has_hashes(self) -> bool:
        return self._hashes[0] is True or self._hashes[1] is not None

    def hashes(self, pictures: pyarrow.Array) -> Iterator[str | None]:
        """The digest of each picture that is there and is asked for."""
        column = self._hashes[1]
        asked = column[0].to_pylist() if column else [True] * self._count
        for picture, wanted in zip(pictures, asked):
            yield hashlib.sha256(picture.as_buffer()).hexdigest() if wanted and picture.is_valid else None

    def arguments(self) -> tuple[int, Any, Any, dict[str, Any], dict[str, Any]]:
        return self._count, self._document, self._model, self._options, self._columns


def _column(batch: pyarrow.RecordBatch, argument: str, name: object) -> tuple[pyarrow.Array, str]:
    """A column that can be read safely, and what its type is called."""
    if not isinstance(name, str):
        raise TypeError(f"{argument} takes the name of a column, not {type(name).__name__}")
    places = batch.schema.get_all_field_indices(name)
    if len(places) != 1:
        raise ValueError(f"{argument} names '{name}', which {'several columns' if places else 'no column'} of the batch "
                         f"{'are' if places else 'is'} called")
    column = batch.column(places[0])
    column.validate(full=True)
    return column, str(column.type)


def _pictures(batch: pyarrow.RecordBatch, document: str | bytes | None, document_column: str | None,
              model: str | None, options: Mapping[str, Any]) -> list[tuple[str, str]]:
    """Addresses and names of files, where pictures come from the network."""
    fetched = {name: value for name, value in options.items() if not name.startswith("image_cache_dir")}
    return _tavrin.row_pictures(*_Rows(batch, document, document_column, model, fetched).arguments())


def _write(path: pathlib.Path, content: bytes) -> None:
    """Whole or not at all, whoever else writes it."""
    part = path.with_name(f"{path.name}.{os.getpid()}-{threading.get_ident()}.part")
    try:
        part.write_bytes(content)
        part.replace(path)
    finally:
        part.unlink(missing_ok=True)
