# SPDX-License-Identifier: MIT
"""Documents and the widgets that they become."""
import json
import os
from datetime import datetime, timedelta, timezone
from typing import Any, Unpack

from tavrin import _tavrin
from tavrin._options import Budget, Compression, Format, Options, Profile
from tavrin._values import Model, model_text, plain_options

_EPOCH = datetime(1970, 1, 1, tzinfo=timezone.utc)


class Document:
    """A document, decoded once, of which widgets are made with any number of models.

    It never changes: any number of threads may use it at once, and while it works, other threads run. It pickles, by
    its text.

    >>> document = Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
    >>> png = document.widget(family="systemSmall").encode()
    """

    __slots__ = ("_core", "_budget", "__weakref__")

    def __init__(self, text: str | bytes, *, budget: Profile | Budget | None = None) -> None:
        """Decodes a JSON text; bytes are UTF-8. `budget` is what that may cost, by default the profile "usual".

        Raises DecodingError or ConversionError for a text that is no document, TavrinError of kind "Budget" for one
        that costs too much.
        """
        self._budget = budget
        self._core = _tavrin.open_document(text, plain_options({} if budget is None else {"budget": budget}))

    @classmethod
    def open(cls, path: str | os.PathLike[str], *, budget: Profile | Budget | None = None) -> "Document":
        """Decodes a file. Raises OSError where it cannot be read, and else as Document does."""
        with open(path, "rb") as file:
            return cls(file.read(), budget=budget)

    def widget(self, model: Model = None, **options: Unpack[Options]) -> "Widget":
        """Binds the document to a model: JSON text, a dict or list that JSON can say, or None for no model.

        `tavrin.Options` says what options there are: how large the widget is, when and how it is seen, what may be
        fetched for it and what each of its answers may cost. Those that say how its picture is written are what
        `encode` then does by default.

        Raises ConversionError, ModelContextError or TavrinError where model and document do not go together, TypeError
        for an unknown option, one of a wrong type or a model that JSON cannot say, ValueError for a value that an
        option does not have.

        >>> document = Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
        >>> document.widget(size=(200, 100), scale=2)
        <tavrin.Widget 200x100>
        >>> document.widget(family="systemTiny")
        Traceback (most recent call last):
        ...
        ValueError: family takes systemSmall, ... or accessoryInline, not 'systemTiny'
        """
        return Widget(self._core.widget(model_text(model), plain_options(options)))

    def __repr__(self) -> str:
        return f"<tavrin.Document of {len(self._core.text())} bytes>"

    def __reduce__(self) -> tuple[Any, ...]:
        return _decoded, (self._core.text(), self._budget)


def _decoded(text: bytes, budget: Profile | Budget | None) -> Document:
    return Document(text, budget=budget)


class Widget:
    """A document with its model, at one moment and in one room, which answers what it looks like and why. Made by
    `Document.widget`.

    It never changes: any number of threads may ask it at once, and while it works, other threads run. Every answer is
    worked out when it is asked for, and may raise TavrinError: of kind "Budget" for what costs more than it may,
    "Render" for a picture that is too large. In a notebook it shows its picture.
    """

    __slots__ = ("_core", "__weakref__")

    def __init__(self, core: _tavrin.Widget) -> None:
        self._core = core

    def encode(self, format: Format | None = None, *, compression: Compression | None = None,
               quality: int | None = None) -> bytes:
        """Its picture as a file; the same bytes for the same document, model and options.

        Absent, each is what the widget was made with: else "png", "fast" and, for a JPEG, 85. Raises ValueError for
        one that there is not.

        >>> document = Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
        >>> document.widget().encode("png")[:4]
        b'\\x89PNG'
        """
        asked = {"format": format, "compression": compression, "quality": quality}
        return self._core.encode(plain_options({name: value for name, value in asked.items() if value is not None}))

    def pixels(self) -> _tavrin.Pixels:
        """Its picture in memory: a buffer of unsigned bytes of shape (height, width, 4), in pixels; red, green, blue
        and alpha, rows from top to bottom, colours not multiplied by alpha. numpy.asarray and PIL.Image.fromarray take
        it without a copy.

        >>> document = Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
        >>> document.widget(size=(20, 10), scale=2).pixels().shape
        (20, 40, 4)
        """
        return self._core.pixels()

    def tree(self) -> dict[str, Any]:
        """The tree of its views. Numbers that are not finite are "infinity", "-infinity" and "nan".

        >>> document = Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
        >>> document.widget().tree()["text"]
        'Hello'
        """
        return _object(self._core.tree())

    def layout(self) -> dict[str, Any]:
        """The same with a "frame" for every view: [x, y, width, height] in points from the widget's top leading corner,
        None for a view that takes no place."""
        return _object(self._core.layout())

    def targets(self) -> dict[str, Any]:
        """Where it can be tapped: {"targets": [{"kind", "destination", "frame"}, …]}, in the order in which they are
        drawn. The last one that contains a point is the one that is tapped there."""
        return _object(self._core.targets())

    def explain(self, path: str | None = None) -> str:
        """Why each view lies where it does, as an outline; with a path of the document, such as
        "nodes.main.children[1]", in sentences about the views that come from it. Raises TavrinError of kind "Explain"
        for a path that names nothing that is drawn."""
        if path is not None and not isinstance(path, str):
            raise TypeError("path takes a str, such as 'nodes.main.children[1]', or None")
        return self._core.explain(path)

    @property
    def valid_until(self) -> datetime | None:
        """When its pixels change next, in UTC; None where they never do. Never late, but early where that cannot be
        known: for a clock whose hands turn it is the widget's own date."""
        seconds = self._core.valid_until()
        if seconds is None:
            return None
        try:
            return _EPOCH + timedelta(seconds=seconds)
        except OverflowError:
            return (datetime.min if seconds < 0 else datetime.max).replace(tzinfo=timezone.utc)

    def _repr_png_(self) -> bytes:
        return self.encode("png")

    def __repr__(self) -> str:
        return f"<tavrin.Widget {self._core.room()}>"


def _object(text: str) -> dict[str, Any]:
    parsed: dict[str, Any] = json.loads(text)
    return parsed
