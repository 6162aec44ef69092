# SPDX-License-Identifier: MIT
"""The photo of the day: dusk over a mountain lake."""
import math
import random

from example_pictures.svg import blur, drawn, glow, gradient, polygon, rough_line

WIDTH, HEIGHT = 1014, 1062
WATER = 672  # where the far shore meets the lake
SUN = (676, 528)

# From far to near: the peaks that the ridge runs through, its roughness, its colour above and the haze at its foot.
RIDGES = [
    ([(0, 520), (120, 470), (250, 505), (400, 440), (520, 500), (640, 530), (760, 498), (900, 445), (1014, 490)],
     0.22, "#B57A94", "#F3B08A"),
    ([(0, 470), (90, 415), (170, 360), (245, 425), (330, 462), (440, 540), (560, 575), (700, 578), (800, 545),
      (890, 490), (960, 455), (1014, 480)], 0.27, "#8A5F8B", "#E39C8C"),
    ([(0, 565), (110, 520), (210, 548), (330, 590), (470, 612), (640, 618), (770, 590), (880, 540), (950, 520),
      (1014, 505)], 0.24, "#5F4A7E", "#B97A8E"),
    ([(0, 600), (140, 612), (260, 636), (420, 652), (600, 656), (780, 642), (900, 606), (1014, 590)],
     0.16, "#3A3566", "#7A5680"),
]


def sky():
    x, y = SUN
    return (f'<rect width="{WIDTH}" height="{WATER}" fill="url(#sky)"/>'
            f'<ellipse cx="{x}" cy="{y}" rx="760" ry="430" fill="url(#dusk)"/>'
            f'<rect y="60" width="{WIDTH}" height="440" filter="url(#clouds)" mask="url(#cloudy)"/>'
            f'<circle cx="{x}" cy="{y}" r="250" fill="url(#halo)"/>'
            f'<circle cx="{x}" cy="{y}" r="43" fill="url(#sun)"/>')


def ridges(chance):
    body = ""
    for number, (peaks, roughness, _, _) in enumerate(RIDGES):
        line = rough_line(chance, peaks, roughness)
        body += polygon([*line, (WIDTH, WATER), (0, WATER)], f"url(#ridge{number})")
    x, y = SUN
    return body + f'<ellipse cx="{x}" cy="{y + 60}" rx="420" ry="190" fill="url(#warmth)"/>'


def far_shore(chance):
    """A low wood on the other side, its tips against the haze."""
    tips = []
    x = 0.0
    while x < WIDTH:
        height = chance.uniform(3, 11) * (0.8 + 1.6 * abs(x / WIDTH - 0.56)) * (1 + 0.5 * math.sin(x / 37))
        width = chance.uniform(4, 8)
        tips += [(x, WATER - 5), (x + width / 2, WATER - 6 - height), (x + width, WATER - 5)]
        x += width * 0.8
    return polygon([*tips, (WIDTH, WATER + 1), (0, WATER + 1)], "#2A2850")


def glitter(chance):
    """The sun's road on the water: strokes that lengthen towards the viewer."""
    body = ""
    for _ in range(230):
        depth = chance.random() ** 1.3
        y = WATER + 4 + depth * 330
        x = SUN[0] + chance.gauss(0, 10 + 46 * depth)
        length = chance.uniform(6, 22) * (0.6 + 2.4 * depth)
        body += (f'<ellipse cx="{x:.1f}" cy="{y:.1f}" rx="{length:.1f}" ry="{0.7 + 1.5 * depth:.2f}" '
                 f'fill="#FFE3B0" opacity="{chance.uniform(0.12, 0.6) * (1 - 0.7 * depth):.2f}"/>')
    return body


def lake(chance):
    mirrored = f'<use xlink:href="#shore" transform="translate(0 {2 * WATER}) scale(1 -1)"/>'
    # The still one shows where ripples move in what is beyond the edges.
    return (f'<g clip-path="url(#water)">{mirrored}<g filter="url(#ripples)">{mirrored}</g>'
            f'<rect y="{WATER}" width="{WIDTH}" height="{HEIGHT - WATER}" fill="url(#depth)"/>'
            f'<ellipse cx="{SUN[0]}" cy="{2 * WATER - SUN[1]}" rx="110" ry="200" fill="url(#road)"/>'
            f'<g filter="url(#soft)">{glitter(chance)}</g>'
            f'<rect y="{WATER - 8}" width="{WIDTH}" height="34" fill="url(#mist)"/></g>'
            f'<ellipse cx="{SUN[0]}" cy="{WATER - 6}" rx="620" ry="24" fill="url(#bank)"/>')


def pine(chance, x, foot, height):
    """A conifer: boughs that hang from its trunk, the wider the lower."""
    left, right = [], []
    boughs = 8 + int(height / 12)
    for bough in range(boughs):
        down = (bough + chance.uniform(0.7, 1)) / boughs
        y = foot - height * (0.94 - 0.9 * down)
        for side, reach in ((left, -1), (right, 1)):
            wide = height * (0.006 + 0.2 * down ** 1.1) * chance.uniform(0.68, 1.1)
            drop = height * (0.006 + 0.035 * down) * chance.uniform(0.7, 1.2)
            side += [(x + reach * wide, y + drop), (x + reach * wide * 0.3, y - height * 0.012)]
    outline = [(x, foot - height), *right, (x + 3, foot + 20), (x - 3, foot + 20), *reversed(left)]
    return polygon(outline, "url(#pine)")


def near_shore(chance):
    corners = [(0, 905), (130, 930), (290, 985), (430, 1020), (610, 1036), (800, 1020), (1014, 968)]
    line = rough_line(chance, corners, 0.05)
    trees = ""
    for x, height in [(150, 150), (262, 118), (338, 70), (16, 330), (92, 250), (60, 205), (196, 190), (-20, 260),
                      (1002, 190), (960, 132), (906, 88), (1024, 250)]:
        foot = next(y for at, y in line if at >= min(max(x, 0), WIDTH)) + 8
        trees += pine(chance, x, foot, height)
    return trees + polygon([*line, (WIDTH, HEIGHT), (0, HEIGHT)], "url(#ground)")


def definitions():
    clouds = ('<filter id="clouds" x="0" y="0" width="1" height="1" color-interpolation-filters="sRGB">'
              '<feTurbulence type="fractalNoise" baseFrequency="0.0028 0.017" numOctaves="5" seed="11"/>'
              '<feColorMatrix values="0 0 0 0 1  0 0 0 0 0.64  0 0 0 0 0.56  2.9 0 0 0 -1.25"/></filter>')
    ripples = (f'<filter id="ripples" filterUnits="userSpaceOnUse" x="-40" y="{WATER - 40}" width="{WIDTH + 80}" '
               f'height="{HEIGHT - WATER + 40}" color-interpolation-filters="sRGB">'
               '<feTurbulence type="fractalNoise" baseFrequency="0.006 0.11" numOctaves="3" seed="4" result="waves"/>'
               '<feGaussianBlur in="SourceGraphic" stdDeviation="1.5 4.5" result="calm"/>'
               '<feDisplacementMap in="calm" in2="waves" scale="34" xChannelSelector="R" yChannelSelector="G"/>'
               '</filter>')
    parts = [
        gradient("sky", [(0, "#1D2856"), (0.22, "#3C3F7C"), (0.42, "#7C5C96"), (0.6, "#C87A92"), (0.74, "#F09C80"),
                         (0.84, "#F9BE86"), (1, "#FBD7A0")]),
        glow("dusk", [(0, "#FFD08A", 0.75), (0.35, "#FFB080", 0.35), (1, "#FF9080", 0)]),
        glow("halo", [(0, "#FFF3CF", 0.95), (0.2, "#FFE0A0", 0.6), (0.5, "#FFC080", 0.2), (1, "#FFB070", 0)]),
        glow("sun", [(0, "#FFFDF2"), (0.8, "#FFF6D8"), (1, "#FFEFC0")]),
        glow("warmth", [(0, "#FFC088", 0.55), (0.5, "#FFA880", 0.18), (1, "#FFA080", 0)]),
        glow("road", [(0, "#FFC58C", 0.55), (0.5, "#FFB080", 0.22), (1, "#FFA080", 0)]),
        glow("bank", [(0, "#FFD9B0", 0.6), (0.6, "#F5B8A0", 0.2), (1, "#E0A0A0", 0)]),
        gradient("fading", [(0, "#000000"), (0.35, "#FFFFFF"), (0.75, "#FFFFFF"), (1, "#000000")]),
        f'<mask id="cloudy"><rect y="60" width="{WIDTH}" height="440" fill="url(#fading)"/></mask>',
        gradient("depth", [(0, "#40346A", 0.16), (0.45, "#33285E", 0.42), (1, "#14163A", 0.86)]),
        gradient("mist", [(0, "#FFD8B8", 0.5), (1, "#FFC8B0", 0)]),
        gradient("pine", [(0, "#1B1C3C"), (1, "#0B0D20")]),
        gradient("ground", [(0, "#10122A"), (1, "#05060F")]),
        f'<clipPath id="water"><rect y="{WATER}" width="{WIDTH}" height="{HEIGHT - WATER}"/></clipPath>',
        blur("soft", 1.2, 0.5), clouds, ripples,
    ]
    parts += [gradient(f"ridge{number}", [(0, above), (0.85, haze), (1, haze)])
              for number, (_, _, above, haze) in enumerate(RIDGES)]
    return "".join(parts)


def photo():
    chance = random.Random(7)
    shore = f'<g id="shore">{sky()}{ridges(chance)}{far_shore(chance)}</g>'
    return drawn(WIDTH, HEIGHT, definitions(), shore + lake(chance) + near_shore(chance)).convert("RGB")
