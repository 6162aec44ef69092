# SPDX-License-Identifier: MIT
"""What documents and models are refused with."""
import json


class Error(Exception):
    """A document, its model or a drawing is at fault. `str` of it is its message.

    Options are blamed by other errors: a TypeError for an unknown one or one of a wrong type, a ValueError for a value
    that is none of those allowed. Both name the option.
    """

    message: str
    """One sentence for people."""
    kind: str | None
    """What kind of error of its type, such as "Engine" or "typeMismatch"; None where the type has none."""
    path: list[str | int] | None
    """Keys and indices that lead from the root of the text to the value at fault; None where no value is known."""
    line: int | None
    """Where that value is written, from 1; None where that is not known. A model that was given as a dict or list
    counts as one line of JSON."""
    column: int | None
    """The same, in characters from 1."""
    role: str | None
    """Which text it is about, "document" or "model"; None where it is about neither."""
    key: str | None
    """The key that an object lacks, where one does."""
    domain: str | None
    """Of a ConversionError, "ZepDSLConverter"; else None."""
    code: int | None
    """Of a ConversionError, -1; else None."""

    def __init__(self, message: str, *, kind: str | None = None, path: list[str | int] | None = None,
                 line: int | None = None, column: int | None = None, role: str | None = None, key: str | None = None,
                 domain: str | None = None, code: int | None = None) -> None:
        super().__init__(message)
        self.message = message
        self.kind, self.path, self.role, self.key = kind, path, role, key
        self.line, self.column = line, column
        self.domain, self.code = domain, code

    @property
    def type(self) -> str:
        """The name of its class."""
        return type(self).__name__


class DecodingError(Error):
    """A text is no JSON, or what it says is not what a document says. `kind` is keyNotFound, typeMismatch,
    valueNotFound or dataCorrupted; for keyNotFound `path` leads to the object that lacks `key`."""


class ConversionError(Error):
    """A value cannot be converted to the type that it stands for."""


class ModelContextError(Error):
    """A model does not have what an expression asks it for."""


class TavrinError(Error):
    """Any other failure: of `kind` "Budget" for what costs more than it may, "Render" for what cannot be drawn."""


_TYPES = {type.__name__: type for type in (DecodingError, ConversionError, ModelContextError, TavrinError)}


def error_of(text: str) -> Error:
    """The error that JSON describes; shown, it also says where."""
    members = json.loads(text)
    error = _TYPES[members.pop("type")](**members)
    if error.line is not None:
        error.add_note(f"line {error.line}, column {error.column} of the {error.role}")
    return error
