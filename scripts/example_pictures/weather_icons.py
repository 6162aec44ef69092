# SPDX-License-Identifier: MIT
"""Icons of the sky, 256 pixels square, on nothing."""
import math

from example_pictures.svg import drawn, gradient

SIDE = 256

DEFINITIONS = "".join([
    gradient("sun", [(0, "#FFE36A"), (1, "#FFB21E")]),
    gradient("ray", [(0, "#FFD84F"), (1, "#FFBE2E")]),
    gradient("cloud", [(0, "#FFFFFF"), (0.55, "#F6FAFF"), (1, "#CFE0F4")]),
    gradient("far", [(0, "#DCE9F8"), (1, "#B3CBE8")]),
    gradient("dark", [(0, "#E4ECF6"), (0.5, "#BCCBDF"), (1, "#8FA5C2")]),
    gradient("bolt", [(0, "#FFE873"), (1, "#FFAE1A")]),
    gradient("moon", [(0, "#FFF7D6"), (1, "#F6D98A")], (0, 0, 1, 1)),
])

# About 212 wide and 130 high, its left foot at the origin.
CLOUD = "M 46 0 a 46 46 0 0 1 -6 -91.6 a 66 66 0 0 1 124 -12 a 52 52 0 0 1 4 103.6 Z"


def cloud(x, y, fill="cloud", size=1.0):
    return f'<path d="{CLOUD}" transform="translate({x} {y}) scale({size})" fill="url(#{fill})"/>'


def sun(x, y, radius):
    """A disc with twelve rays around it."""
    rays = ""
    for ray in range(12):
        rays += (f'<rect x="{-radius * 0.085:.1f}" y="{-radius * 1.78:.1f}" width="{radius * 0.17:.1f}" '
                 f'height="{radius * (0.46 if ray % 2 == 0 else 0.32):.1f}" rx="{radius * 0.085:.1f}" '
                 f'fill="url(#ray)" transform="rotate({30 * ray + 180})"/>')
    return (f'<g transform="translate({x} {y})">{rays}'
            f'<circle r="{radius}" fill="url(#sun)"/></g>')


def star(x, y, radius):
    """Four points with hollow sides."""
    near = radius * 0.22
    points = []
    for corner in range(8):
        away, angle = (radius if corner % 2 == 0 else near), math.pi * corner / 4
        points.append(f"{x + away * math.sin(angle):.1f},{y - away * math.cos(angle):.1f}")
    return f'<polygon points="{" ".join(points)}" fill="#FFF3C4"/>'


def drops(places):
    return "".join(f'<line x1="{x}" y1="{y}" x2="{x - 13}" y2="{y + 34}" stroke="#BDE8FF" stroke-width="12" '
                   f'stroke-linecap="round"/>' for x, y in places)


def icons():
    """The name of each icon and its picture."""
    bolt = '<path d="M 140 150 L 96 208 L 124 208 L 108 252 L 166 188 L 135 188 L 156 150 Z" fill="url(#bolt)" ' \
           'stroke="url(#bolt)" stroke-width="5" stroke-linejoin="round"/>'
    moon = '<path d="M 150 36 A 98 98 0 1 0 226 168 A 82 82 0 0 1 150 36 Z" fill="url(#moon)" stroke="url(#moon)" ' \
           'stroke-width="6" stroke-linejoin="round"/>'
    bodies = {
        "sun": sun(128, 128, 66),
        "partly-cloudy": sun(92, 94, 50) + cloud(44, 222, size=0.96),
        "cloud": cloud(92, 138, "far", 0.7) + cloud(12, 214, size=1.05),
        "rain": drops([(86, 184), (138, 184), (190, 184), (112, 206), (164, 206)]) + cloud(20, 160),
        "thunder": drops([(72, 186), (196, 186)]) + bolt + cloud(20, 160, "dark"),
        "moon": moon + star(196, 66, 22) + star(228, 112, 13) + star(158, 104, 11),
    }
    return {name: drawn(SIDE, SIDE, DEFINITIONS, body) for name, body in bodies.items()}
