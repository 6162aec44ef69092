# SPDX-License-Identifier: MIT
"""Rows as the members of shards: what they are called, and what JSON says of them."""
import base64
import hashlib
import json
import math
import re
from collections.abc import Iterable, Iterator
from typing import Any, NamedTuple

import pyarrow

LONGEST = 200
"""Of a key as the name of a file, in bytes: with a suffix it fits wherever files have names."""

_SUFFIXES = {b"\x89PNG": "png", b"RIFF": "webp", b"\xff\xd8\xff": "jpg", b"%PDF": "pdf", b"<": "svg"}


class Row(NamedTuple):
    """A row before it is drawn."""

    name: str
    members: dict[str, Any]


class Sample(NamedTuple):
    """What a shard has of a row."""

    name: str
    suffix: str | None
    picture: bytes | None
    text: bytes
    error: str | None


def plain_rows(table: pyarrow.Table, key: str, taken: set[str], start: int) -> list[Row]:
    """The rows of a table without their pictures, of which the first has a number. Adds their names to those taken."""
    if len(set(table.column_names)) < table.num_columns:
        raise ValueError(f"columns take different names, not {', '.join(table.column_names)}")
    if key not in table.column_names:
        raise ValueError(f"key names the column '{key}', which the rows have not")
    rows = table.drop_columns(["picture"] if "picture" in table.column_names else []).to_pylist()
    found = [Row(_file_name(key, members[key], number), members) for number, members in enumerate(rows, start)]
    for number, row in enumerate(found, start):
        if row.name in taken:
            raise ValueError(f"{key} takes each key once, but row {number} has {row.members[key]!r} again")
        taken.add(row.name)
    return found


def digest(table: pyarrow.Table, rows: Iterable[Row], seed: bytes) -> str:
    """What tells these rows from others, their pictures included."""
    made_of = hashlib.sha256(seed)
    for row in rows:
        made_of.update(_json(row.members))
    if "picture" in table.column_names:
        for picture in table["picture"]:
            made_of.update(hashlib.sha256(picture.as_py() or b"").digest())
    return made_of.hexdigest()


def samples(rows: Iterable[Row], batches: Iterable[pyarrow.RecordBatch], known: list[str]) -> Iterator[Sample]:
    """What shards have of rows that batches have drawn; known are the columns that the rows themselves have."""
    undrawn = iter(rows)
    for batch in batches:
        added = batch.select([name for name in batch.schema.names if name != "picture" and name not in known])
        told = added.to_pylist() if added.num_columns else [{}] * batch.num_rows
        for picture, more, row in zip(batch["picture"], told, undrawn):
            members = row.members | more
            error = members.get("error")
            data = picture.as_py()
            yield Sample(row.name, None if data is None else _suffix(data), data, _json(members),
                         None if error is None else _type_of(error))


def _type_of(error: Any) -> str:
    """What is counted of an error, which may be of whoever drew the rows."""
    return str(error["type"]) if isinstance(error, dict) and error.get("type") else "error"


def _file_name(column: str, key: Any, number: int) -> str:
    if not isinstance(key, (str, int)) or isinstance(key, bool) or key == "":
        raise ValueError(f"{column} takes texts that are not empty, and whole numbers, but row {number} has {key!r}")
    name = re.sub("[^A-Za-z0-9_-]", lambda match: "".join(f"%{byte:02X}" for byte in match[0].encode()), str(key))
    if len(name) > LONGEST:
        raise ValueError(f"{column} takes keys of at most {LONGEST} bytes as the name of a file; that of row {number} has "
                         f"{len(name)}")
    return name


def _suffix(picture: bytes) -> str:
    for magic, suffix in _SUFFIXES.items():
        if picture.startswith(magic):
            return suffix
    raise ValueError(f"pictures are PNG, WebP, JPEG, PDF or SVG, but one begins with {picture[:8]!r}")


def _json(members: dict[str, Any]) -> bytes:
    try:
        return _text(members)
    except ValueError:  # numbers that JSON has not
        return _text(_finite(members))


def _text(value: Any) -> bytes:
    return json.dumps(value, default=_word, ensure_ascii=False, allow_nan=False, separators=(",", ":")).encode() + b"\n"


def _word(value: Any) -> str:
    """What JSON has no word for."""
    if isinstance(value, bytes):
        return base64.b64encode(value).decode()
    return str(value.isoformat()) if hasattr(value, "isoformat") else str(value)


def _finite(value: Any) -> Any:
    if isinstance(value, dict):
        return {name: _finite(each) for name, each in value.items()}
    if isinstance(value, (list, tuple)):
        return [_finite(each) for each in value]
    if isinstance(value, float) and not math.isfinite(value):
        return "nan" if math.isnan(value) else "infinity" if value > 0 else "-infinity"
    return value
