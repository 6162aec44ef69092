# SPDX-License-Identifier: MIT
"""What is wrong or doubtful in a document."""
import json
from collections.abc import Sequence
from dataclasses import dataclass, field
from typing import Any, Literal, Unpack

from tavrin import _tavrin
from tavrin._options import Family, Options
from tavrin._values import Model, model_text, plain_options


@dataclass(frozen=True)
class Range:
    """A stretch of a text, from its first character to the one behind its last. Lines and columns count from 1, columns
    in characters; offsets count bytes of the text in UTF-8 from 0."""

    line: int
    column: int
    end_line: int
    end_column: int
    offset: int
    end_offset: int


@dataclass(frozen=True)
class Edit:
    """Puts `text` in the place of a stretch of the text."""

    range: Range
    text: str


@dataclass(frozen=True)
class Diagnostic:
    """One thing that is wrong, or doubtful, in a document or its model."""

    severity: Literal["error", "warning", "note"]
    """How bad it is: refused, legal but surely meant otherwise, or worth knowing."""
    code: str
    """What kind of thing, a word that never changes."""
    message: str
    """One sentence for people."""
    path: list[str | int] = field(hash=False)
    """Keys and indices that lead to the value in question; empty for all of the text."""
    range: Range | None
    """Where that is written; None where it is written nowhere."""
    fix: list[Edit] = field(hash=False)
    """What may be put in its place safely, all of it or nothing; empty where there is no such thing."""
    role: Literal["document", "model"] = "document"
    """Which of the two texts it is about."""


def check(text: str | bytes, model: Model = None, families: Sequence[Family] = (),
          **options: Unpack[Options]) -> list[Diagnostic]:
    """Everything that is wrong or doubtful in a document, in the order of the text.

    The widget is looked at in each of the families, light and dark; without any, in the room that the options give
    it. A bad document raises nothing; options are refused as `Document.widget` refuses them.

    >>> [found] = check('{"version": "1.0", "nodes": {"main": {"type": "txt"}}}')
    >>> found.severity, found.path, found.range.column
    ('error', ['nodes', 'main', 'type'], 47)
    """
    names: list[str] = [families] if isinstance(families, str) else list(families)
    if isinstance(families, str) or not all(isinstance(name, str) for name in names):
        raise TypeError("families takes a list of the names of widget families")
    found = json.loads(_tavrin.check(text, model_text(model), plain_options(options), names))
    return [_diagnostic(members) for members in found]


def schema() -> dict[str, Any]:
    """A JSON Schema (2020-12) of documents, with which editors complete, explain and check them.

    >>> schema()["$schema"]
    'https://json-schema.org/draft/2020-12/schema'
    """
    parsed: dict[str, Any] = json.loads(_tavrin.schema())
    return parsed


def _range(members: dict[str, Any]) -> Range:
    return Range(members["line"], members["column"], members["endLine"], members["endColumn"], members["offset"],
                 members["endOffset"])


def _diagnostic(members: dict[str, Any]) -> Diagnostic:
    return Diagnostic(
        severity=members["severity"],
        code=members["code"],
        message=members["message"],
        path=members["path"],
        range=_range(members["range"]) if "range" in members else None,
        fix=[Edit(_range(edit), edit["text"]) for edit in members.get("fix", [])],
        role=members["role"],
    )
