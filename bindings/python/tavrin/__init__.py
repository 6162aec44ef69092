# SPDX-License-Identifier: MIT
"""Renders home-screen widgets from small JSON documents.

>>> import tavrin
>>> document = tavrin.Document('{"version": "1.0", "nodes": {"main": {"type": "text", "content": "Hello"}}}')
>>> png = document.widget(family="systemSmall", date="2026-11-21T08:05:00Z").encode("png")
"""
from tavrin._check import Diagnostic, Edit, Range, check, schema
from tavrin._document import Document, Widget
from tavrin._errors import ConversionError, DecodingError, Error, ModelContextError, TavrinError
from tavrin._options import Budget, Options
from tavrin._sign import sign
from tavrin._tavrin import Pixels
from tavrin._tavrin import version as __version__

__all__ = [
    "Budget",
    "ConversionError",
    "DecodingError",
    "Diagnostic",
    "Document",
    "Edit",
    "Error",
    "ModelContextError",
    "Options",
    "Pixels",
    "Range",
    "TavrinError",
    "Widget",
    "__version__",
    "check",
    "schema",
    "sign",
]
for _name in __all__:
    if isinstance(globals()[_name], type):
        globals()[_name].__module__ = __name__
del _name
