# SPDX-License-Identifier: MIT
"""Python's values as the library takes them."""
import json
import os
from collections.abc import Iterator, Mapping
from datetime import datetime, timezone
from numbers import Integral, Real
from typing import Any
from zoneinfo import ZoneInfo

from tavrin import _tavrin

Model = str | bytes | dict[str, Any] | list[Any] | None


def _snake(name: str) -> str:
    return "".join("_" + letter.lower() if letter.isupper() else letter for letter in name)


_KINDS: dict[str, str] = {_snake(option["name"]): option["kind"] for option in json.loads(_tavrin.options())}


def _flat(options: Mapping[str, Any]) -> Iterator[tuple[str, Any]]:
    """Options with the members of a budget as options of their own."""
    for name, value in options.items():
        if name == "budget" and isinstance(value, Mapping):
            for member, limit in value.items():
                yield "budget" if member == "profile" else f"budget_{member}", limit
        else:
            yield name, value


def _moment(name: str, date: datetime) -> str:
    if date.utcoffset() is None:
        raise ValueError(f"{name} takes a datetime with a time zone, such as datetime.now(timezone.utc)")
    try:
        return date.astimezone(timezone.utc).isoformat()
    except OverflowError:
        raise ValueError(f"{name} takes a date from year 1 to 9999 in UTC, not {date}") from None


def _zone(name: str, zone: ZoneInfo) -> str:
    if zone.key is None:
        raise ValueError(f"{name} takes a ZoneInfo with a key, or the name of a time zone")
    return zone.key


def _number(value: Any) -> Any:
    """A number of any library as Python's own; anything else as it is."""
    if isinstance(value, bool) or not isinstance(value, Real):
        return value
    if isinstance(value, Integral):
        return int(value)
    try:
        return float(value)
    except OverflowError:
        return float("inf")


def _plain(name: str, value: Any) -> Any:
    """A value as bool, number, str or pair of numbers, or else as it is, to be refused."""
    kind = _KINDS.get(name)
    if kind == "moment" and isinstance(value, datetime):
        return _moment(name, value)
    if kind == "timeZone" and isinstance(value, ZoneInfo):
        return _zone(name, value)
    if kind == "folder" and isinstance(value, os.PathLike):
        return os.fspath(value)
    if kind == "size" and isinstance(value, (tuple, list)):
        return tuple(_number(side) for side in value)
    if kind in ("number", "count"):
        return _number(value)
    return value


def plain_options(options: Mapping[str, Any]) -> dict[str, Any]:
    """Options as the library takes them."""
    return {name: _plain(name, value) for name, value in _flat(options)}


def model_text(model: Model) -> str | bytes | None:
    """A model's JSON text; None where there is no model."""
    if model is None or isinstance(model, (str, bytes)):
        return model
    if not isinstance(model, (dict, list)):
        raise TypeError(f"model takes a str, bytes, dict, list or None, not {type(model).__name__}")
    try:
        return json.dumps(model, ensure_ascii=False, allow_nan=False, separators=(",", ":")).encode()
    except (TypeError, ValueError, RecursionError) as error:
        raise TypeError(f"model takes what JSON can say: {error}") from error
