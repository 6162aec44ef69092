# SPDX-License-Identifier: MIT
"""Square pictures that stand beside headlines."""
import math
import random

from example_pictures.svg import blur, drawn, glow, gradient, polygon

SIDE = 240


def whole(fill):
    return f'<rect width="{SIDE}" height="{SIDE}" fill="{fill}"/>'


def comet():
    chance = random.Random(3)
    stars = ""
    for _ in range(90):
        x, y, size = chance.uniform(0, SIDE), chance.uniform(0, SIDE), chance.choice((0.5, 0.7, 0.9, 1.5))
        stars += (f'<circle cx="{x:.1f}" cy="{y:.1f}" r="{size}" fill="#E8F2FF" '
                  f'opacity="{chance.uniform(0.35, 1):.2f}"/>')
    tail = (polygon([(0, -17), (250, -62), (262, 40), (0, 17)], "url(#dust)", 'filter="url(#soft)"') +
            polygon([(0, -12), (250, -26), (250, 8), (0, 12)], "url(#gas)", 'filter="url(#soft)"'))
    definitions = "".join([
        gradient("space", [(0, "#0A1033"), (0.6, "#152A66"), (1, "#244C8E")], (0, 0, 0.5, 1)),
        glow("nebula", [(0, "#6F4BC0", 0.6), (1, "#3A2C8C", 0)]),
        gradient("dust", [(0, "#BFE6FF", 0.85), (0.4, "#8FB8FF", 0.4), (1, "#7C8CFF", 0)], (0, 0, 1, 0)),
        gradient("gas", [(0, "#FFFFFF", 0.95), (0.45, "#BFEFFF", 0.5), (1, "#8FD8FF", 0)], (0, 0, 1, 0)),
        glow("head", [(0, "#FFFFFF"), (0.28, "#F2FCFF", 0.95), (0.5, "#A8E4FF", 0.5), (1, "#70B8FF", 0)]),
        blur("soft", 4),
    ])
    body = (whole("url(#space)") + '<ellipse cx="190" cy="170" rx="150" ry="110" fill="url(#nebula)"/>' + stars +
            f'<g transform="translate(72 172) rotate(-43)">{tail}</g>'
            '<circle cx="72" cy="172" r="44" fill="url(#head)"/>')
    return drawn(SIDE, SIDE, definitions, body)


def skyline(chance, foot, low, high, fill, lit):
    """Houses side by side, with some of their windows lit."""
    body, x = "", -10.0
    while x < SIDE:
        width, height = chance.uniform(26, 46), chance.uniform(low, high)
        top = foot - height
        body += f'<rect x="{x:.1f}" y="{top:.1f}" width="{width + 1:.1f}" height="{height:.1f}" fill="{fill}"/>'
        for row in range(int(height / 15) - 1):
            for column in range(int(width / 12)):
                if chance.random() < lit:
                    body += (f'<rect x="{x + 5 + 12 * column:.1f}" y="{top + 9 + 15 * row:.1f}" width="5" '
                             f'height="7" rx="1" fill="#FFD98A" opacity="0.85"/>')
        x += width
    return body


def tram():
    chance = random.Random(5)
    windows = "".join(f'<rect x="{x}" y="122" width="{width}" height="34" rx="5" fill="url(#glass)"/>'
                      for x, width in ((36, 38), (80, 38), (124, 38), (168, 40)))
    wheels = "".join(f'<circle cx="{x}" cy="196" r="9" fill="#1C1B33"/>'
                     f'<circle cx="{x}" cy="196" r="3.4" fill="#8A8AA8"/>' for x in (62, 86, 156, 180))
    definitions = "".join([
        gradient("sky", [(0, "#33307A"), (0.45, "#B0568C"), (0.75, "#FF9A6C"), (1, "#FFCB86")]),
        gradient("paint", [(0, "#FFF4E0"), (0.52, "#FFEBD0"), (0.53, "#E2463F"), (1, "#C22F3C")]),
        gradient("glass", [(0, "#FFF0B4"), (1, "#FFC768")]),
        gradient("street", [(0, "#3A3158"), (1, "#231E40")]),
    ])
    body = (whole("url(#sky)") + '<circle cx="186" cy="58" r="23" fill="#FFE9B0"/>' +
            skyline(chance, 196, 96, 168, "#8D4C86", 0.0) + skyline(chance, 200, 70, 128, "#56376F", 0.4) +
            f'<rect y="196" width="{SIDE}" height="44" fill="url(#street)"/>'
            '<path d="M 0 66 L 240 60" stroke="#1E1A40" stroke-width="2"/>'
            '<path d="M 122 104 L 104 84 L 130 64 M 96 64 L 150 62" stroke="#1E1A40" stroke-width="3" fill="none"/>'
            '<rect x="78" y="100" width="90" height="12" rx="5" fill="#B9AFC0"/>'
            '<rect x="22" y="108" width="200" height="86" rx="20" fill="url(#paint)"/>' + windows +
            '<rect x="30" y="168" width="184" height="4" rx="2" fill="#FFD98A"/>'
            '<circle cx="211" cy="180" r="5" fill="#FFF6CF"/>' + wheels +
            '<path d="M 0 206 H 240 M 0 222 H 240" stroke="#8F86B8" stroke-width="2.5"/>')
    return drawn(SIDE, SIDE, definitions, body)


def guitar():
    strings = "".join(f'<line x1="{x}" y1="-190" x2="{x}" y2="84" stroke="#FFF1D0" '
                      f'stroke-width="{1.1 + 0.16 * n:.2f}"/>' for n, x in enumerate((12, 7.2, 2.4, -2.4, -7.2, -12)))
    frets = "".join(f'<line x1="-16" y1="{y}" x2="16" y2="{y}" stroke="#D8C8A0" stroke-width="2"/>'
                    for y in (-62, -80, -99, -119, -141, -165))
    outline = ("M 0 -66 C 34 -82 76 -60 74 -20 C 73 4 60 10 62 30 C 64 46 98 60 98 104 C 98 152 50 170 0 170 "
               "C -50 170 -98 152 -98 104 C -98 60 -64 46 -62 30 C -60 10 -73 4 -74 -20 C -76 -60 -34 -82 0 -66 Z")
    definitions = "".join([
        gradient("wall", [(0, "#1F6F78"), (1, "#0E3B4C")], (0, 0, 1, 1)),
        glow("wood", [(0, "#FFC874"), (0.6, "#EE9C45"), (1, "#B9601F")]),
        gradient("neck", [(0, "#4A2A1C"), (0.5, "#6A3F2A"), (1, "#3A2016")], (0, 0, 1, 0)),
        blur("shadow", 9),
    ])
    body = (whole("url(#wall)") + '<g transform="translate(104 136) rotate(38)">'
            f'<path d="{outline}" transform="translate(10 6)" fill="#04141C" opacity="0.55" filter="url(#shadow)"/>'
            f'<path d="{outline}" fill="url(#wood)" stroke="#6B3312" stroke-width="4"/>'
            '<rect x="-16" y="-200" width="32" height="196" fill="url(#neck)"/>' + frets +
            '<circle cy="24" r="31" fill="none" stroke="#8A4A1C" stroke-width="3"/>'
            '<circle cy="24" r="26" fill="#2A120A" stroke="#FFE2A8" stroke-width="2.5"/>'
            '<rect x="-34" y="78" width="68" height="14" rx="4" fill="#4A2412"/>' + strings + "</g>")
    return drawn(SIDE, SIDE, definitions, body)


def pentagon(x, y, radius, turn):
    corners = [math.radians(turn + 72 * corner) for corner in range(5)]
    return [(x + radius * math.sin(angle), y - radius * math.cos(angle)) for angle in corners]


def football():
    """A ball on a striped pitch, one of its black pieces in front and five around it."""
    radius, x, y = 66, 124, 132
    pieces, seams = polygon(pentagon(x, y, 25, 0), "#20242E"), ""
    for at in range(5):
        angle = math.radians(72 * at)
        away = (math.sin(angle), -math.cos(angle))
        pieces += polygon(pentagon(x + 63 * away[0], y + 63 * away[1], 23, 72 * at + 36), "#20242E")
        seams += (f'<line x1="{x + 25 * away[0]:.1f}" y1="{y + 25 * away[1]:.1f}" x2="{x + 44 * away[0]:.1f}" '
                  f'y2="{y + 44 * away[1]:.1f}" stroke="#20242E" stroke-width="3"/>')
    stripes = ""
    for n in range(-8, 8):
        corners = [(120 + 18 * n, 70), (138 + 18 * n, 70), (182 + 62 * n, 240), (120 + 62 * n, 240)]
        stripes += polygon(corners, "#3FA653" if n % 2 == 0 else "#348F49")
    lights = "".join(f'<circle cx="{at}" cy="26" r="34" fill="url(#lamp)"/>' for at in (38, 120, 202))
    definitions = "".join([
        gradient("night", [(0, "#0F1E4A"), (1, "#2B4C8C")]),
        glow("lamp", [(0, "#FFFFFF"), (0.14, "#FFFDF0"), (0.3, "#E8F0FF", 0.5), (1, "#C8DCFF", 0)]),
        '<radialGradient id="ball" cx="0.38" cy="0.3" r="0.8"><stop offset="0" stop-color="#FFFFFF"/>'
        '<stop offset="0.6" stop-color="#EEF1F6"/><stop offset="1" stop-color="#AEB8C8"/></radialGradient>',
        '<radialGradient id="round" cx="0.38" cy="0.3" r="0.8">'
        '<stop offset="0.5" stop-color="#0A1020" stop-opacity="0"/>'
        '<stop offset="1" stop-color="#0A1020" stop-opacity="0.45"/></radialGradient>',
        f'<clipPath id="inside"><circle cx="{x}" cy="{y}" r="{radius}"/></clipPath>',
        blur("shadow", 6),
    ])
    circle = f'cx="{x}" cy="{y}" r="{radius}"'
    body = (whole("url(#night)") + lights + stripes +
            f'<rect y="66" width="{SIDE}" height="6" fill="#E8F4FF" opacity="0.85"/>'
            '<ellipse cx="134" cy="204" rx="66" ry="13" fill="#0C3018" opacity="0.6" filter="url(#shadow)"/>'
            f'<circle {circle} fill="url(#ball)"/><g clip-path="url(#inside)">{seams}{pieces}</g>'
            f'<circle {circle} fill="url(#round)"/>')
    return drawn(SIDE, SIDE, definitions, body)
