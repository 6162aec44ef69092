# SPDX-License-Identifier: MIT
"""Drawings as SVG text, and what several of them share."""
import io
import random
import subprocess

from PIL import Image


def gradient(name, stops, across=(0, 0, 0, 1)):
    """A linear gradient from (offset, colour) or (offset, colour, opacity); `across` is x1, y1, x2, y2."""
    x1, y1, x2, y2 = across
    return f'<linearGradient id="{name}" x1="{x1}" y1="{y1}" x2="{x2}" y2="{y2}">{_stops(stops)}</linearGradient>'


def glow(name, stops):
    """A radial gradient from the centre of what it fills to its edge."""
    return f'<radialGradient id="{name}">{_stops(stops)}</radialGradient>'


def _stops(stops):
    return "".join(f'<stop offset="{at}" stop-color="{color}" stop-opacity="{opacity[0] if opacity else 1}"/>'
                   for at, color, *opacity in stops)


def blur(name, x, y=None):
    """A blur whose region is large enough for anything that lies in the picture."""
    return (f'<filter id="{name}" x="-50%" y="-50%" width="200%" height="200%" color-interpolation-filters="sRGB">'
            f'<feGaussianBlur stdDeviation="{x} {x if y is None else y}"/></filter>')


def polygon(points, fill, more=""):
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    return f'<polygon points="{path}" fill="{fill}" {more}/>'


def rough_line(chance: random.Random, points, roughness, steps=6):
    """A line through points, broken again and again at the middle of each piece: up or down by a share of its length.
    """
    for _ in range(steps):
        broken = [points[0]]
        for (x0, y0), (x1, y1) in zip(points, points[1:]):
            away = chance.uniform(-1, 1) * roughness * (x1 - x0)
            broken += [((x0 + x1) / 2, (y0 + y1) / 2 + away), (x1, y1)]
        points = broken
    return points


def drawn(width, height, definitions, body):
    """The picture of an SVG document."""
    document = (f'<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" width="{width}" '
                f'height="{height}"><defs>{definitions}</defs>{body}</svg>')
    png = subprocess.run(["rsvg-convert"], input=document.encode(), stdout=subprocess.PIPE, check=True).stdout
    return Image.open(io.BytesIO(png)).convert("RGBA")
