# SPDX-License-Identifier: MIT
"""The options, for those who check types and for editors. Made by scripts/make_python_options.py."""
import os
from datetime import datetime
from typing import Literal, TypedDict
from zoneinfo import ZoneInfo

Size = str | tuple[float, float]
Family = Literal[
    "systemSmall", "systemMedium", "systemLarge", "systemExtraLarge", "accessoryCircular",
    "accessoryRectangular", "accessoryInline"]
Appearance = Literal["light", "dark"]
Fetch = Literal["none", "public", "all"]
Format = Literal["png", "svg", "pdf", "webp", "jpeg"]
Compression = Literal["fast", "balanced", "small"]
Profile = Literal["usual", "strangers"]


class Budget(TypedDict, total=False):
    """What a call may cost."""

    profile: Profile
    """What each picture may cost: usual, or strangers for documents of people one does not know. By default
    usual."""
    steps: int
    """How many steps the work may take: nodes, questions of layout, characters, things drawn."""
    pixels: int
    """How many pixels may be painted."""
    bytes: int
    """How many bytes may be held at once."""
    seconds: float
    """How long it may take, in seconds."""


class Options(TypedDict, total=False):
    """How a document becomes a widget, and a widget a picture."""

    family: Family
    """A widget family's size. By default systemMedium."""
    size: Size
    """The widget's size in points, instead of a family's."""
    screen: Size
    """The screen whose widget sizes hold. By default 390x844."""
    scale: float
    """Pixels for each point; above 0, up to 100. By default 3."""
    appearance: Appearance
    """The device's appearance. By default light."""
    date: str | datetime
    """The moment that is drawn, such as 2026-03-01T09:41:00Z. By default now."""
    time_zone: str | ZoneInfo
    """The device's time zone, such as Europe/Madrid, CET or GMT+2. By default the machine's."""
    background: str
    """What lies behind the widget: six hexadecimal digits RRGGBB, nothing, or the platform's own. By default
    auto."""
    rounded: bool
    """Cut the home screen's rounded corners; transparent outside."""
    image_cache_dir: str | os.PathLike[str]
    """The folder in which pictures are looked for instead of on the network."""
    max_image_size: Size
    """Larger pictures are scaled down to this size, in points."""
    fetch: Fetch
    """What may be fetched: nothing, only what has a public address on the Internet, or everything. By default
    public."""
    font_dir: str | os.PathLike[str]
    """A folder of fonts to draw with instead of the system's. By default the system's."""
    format: Format
    """What the picture is written as. By default png."""
    compression: Compression
    """Whether a PNG, or a WebP without loss, is written quickly, small or between. By default fast."""
    quality: int
    """The quality of a JPEG, or of a WebP that is not to be lossless; from 1 to 100. By default 85."""
    budget: Profile | Budget
    """What each picture may cost: usual, or strangers for documents of people one does not know. By default
    usual."""
    budget_steps: int
    """How many steps the work may take: nodes, questions of layout, characters, things drawn."""
    budget_pixels: int
    """How many pixels may be painted."""
    budget_bytes: int
    """How many bytes may be held at once."""
    budget_seconds: float
    """How long it may take, in seconds."""


class RowOptions(Options, total=False):
    """The same for rows: as it is for all of them, or the name of a column that has each row's."""

    hashes: bool
    """Tell the SHA-256 of each picture."""
    family_column: str
    size_column: str
    screen_column: str
    scale_column: str
    appearance_column: str
    date_column: str
    time_zone_column: str
    background_column: str
    rounded_column: str
    image_cache_dir_column: str
    max_image_size_column: str
    fetch_column: str
    font_dir_column: str
    format_column: str
    compression_column: str
    quality_column: str
    hashes_column: str
    budget_column: str
    budget_steps_column: str
    budget_pixels_column: str
    budget_bytes_column: str
    budget_seconds_column: str
