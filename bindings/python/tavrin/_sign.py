# SPDX-License-Identifier: MIT
"""Signed addresses of a server of pictures."""
import base64
import hashlib
import hmac
import math
import re
from datetime import datetime

_LATEST = 10**15


def _members(path: str) -> list[str]:
    _, mark, query = path.partition("?")
    return query.split("&") if mark else []


def _seconds(expires: int | datetime) -> int:
    if isinstance(expires, datetime):
        if expires.utcoffset() is None:
            raise ValueError("expires takes a datetime with a time zone, such as datetime.now(timezone.utc)")
        expires = math.ceil(expires.timestamp())
    if isinstance(expires, bool) or not isinstance(expires, int):
        raise TypeError(f"expires takes seconds since 1970 or a datetime, not {type(expires).__name__}")
    if not 0 <= expires < _LATEST:
        raise ValueError(f"expires takes seconds since 1970 of at most 15 digits, not {expires}")
    return expires


def _check(path: str, expires: int | datetime | None) -> None:
    """Raises ValueError for what no request can have as it is, or what is signed already."""
    if not re.fullmatch(r"/[!-~]*", path) or "#" in path:
        raise ValueError("path begins with '/', and all but printable ASCII, and '#', is percent-encoded in it")
    for member in _members(path):
        name, _, value = member.partition("=")
        if "%" in name:
            raise ValueError("names of a query's members are not percent-encoded in path")
        if name == "s":
            raise ValueError("path has an s already")
        if name == "expires" and (expires is not None or not re.fullmatch("[0-9]{1,15}", value)):
            raise ValueError("path has an expires already, or one of another form than seconds since 1970")


def sign(path: str, key: str | bytes, expires: int | datetime | None = None) -> str:
    """The path and query of a request, with the signature that `tavrin serve --key-file` wants, as `tavrin sign` makes it.

    `path` is as the server gets it, percent-encoded, such as "/v1/widgets/agenda.png?family=systemSmall"; `key` is a
    line of the server's file of keys. With `expires`, in seconds since 1970 or a datetime with a time zone, it ceases
    to hold at that moment. Raises ValueError for what cannot be signed.
    """
    if not isinstance(path, str):
        raise TypeError(f"path takes a str, not {type(path).__name__}")
    if not isinstance(key, (str, bytes)):
        raise TypeError(f"key takes a str or bytes, not {type(key).__name__}")
    if not key:
        raise ValueError("key is empty")
    _check(path, expires)
    if expires is not None:
        path += f"{'&' if '?' in path else '?'}expires={_seconds(expires)}"
    code = hmac.digest(key.encode() if isinstance(key, str) else key, path.encode(), hashlib.sha256)
    signature = base64.urlsafe_b64encode(code).rstrip(b"=").decode()
    return f"{path}{'&' if '?' in path else '?'}s={signature}"
