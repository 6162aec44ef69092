#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Makes the small pictures that the decoders are tested with: make_pictures.py [TOP]

They go to tests/images/pictures, those that are worth mutating to fuzz/corpus/decode_image, and larger ones to
bench/pictures. PNG and GIF files for tests are written byte by byte, since a library would write only its own choice of
what the formats allow.
"""
import pathlib
import shutil
import struct
import sys
import zlib

from PIL import Image

# Every picture with exact pixels is WIDTH x HEIGHT and has colour number (x + 3 y) mod the number of its colours.
WIDTH, HEIGHT = 13, 9
RGBA = [(255, 0, 0, 255), (0, 255, 0, 255), (0, 0, 255, 85), (255, 255, 255, 0)]
GRAY = [0, 85, 170, 255]
ALPHA = [255, 170, 85, 0]


def number(x, y, colors=4):
    return (x + 3 * y) % colors


def chunk(name, payload):
    return struct.pack(">I", len(payload)) + name + payload + struct.pack(">I", zlib.crc32(name + payload))


def samples(kind, depth, x, y):
    """The samples of a pixel of a colour type, as numbers of `depth` bits."""
    most = (1 << depth) - 1
    i = number(x, y, 2 if depth == 1 else 4)
    gray = GRAY[i] if depth > 1 else 255 * i
    wide = {0: [gray], 2: RGBA[i][:3], 4: [gray, ALPHA[i]], 6: RGBA[i]}
    return [i] if kind == 3 else [value * most // 255 for value in wide[kind]]


def packed(values, depth):
    """Samples as bytes, the first in the highest bits; `depth` bits each."""
    bits = "".join(f"{value:0{depth}b}" for value in values)
    bits += "0" * (-len(bits) % 8)
    return bytes(int(bits[at : at + 8], 2) for at in range(0, len(bits), 8))


def png(kind, depth, interlaced=False, transparency=b"", extra=b""):
    passes = [(0, 0, 1, 1)]
    if interlaced:
        passes = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]
    rows = b""
    for left, top, right, down in passes:
        for y in range(top, HEIGHT, down):
            values = [value for x in range(left, WIDTH, right) for value in samples(kind, depth, x, y)]
            if values:
                rows += b"\0" + packed(values, depth)
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, depth, kind, 0, 0, interlaced)
    colors = chunk(b"PLTE", bytes(value for color in RGBA[: 1 << depth] for value in color[:3])) if kind == 3 else b""
    trns = chunk(b"tRNS", transparency) if transparency else b""
    body = chunk(b"IHDR", header) + extra + colors + trns + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")
    return b"\x89PNG\r\n\x1a\n" + body


def png_files():
    for depth in (1, 2, 4, 8, 16):
        yield f"gray{depth}.png", png(0, depth)
        if depth < 16:
            yield f"palette{depth}.png", png(3, depth)
    for depth in (8, 16):
        yield f"rgb{depth}.png", png(2, depth)
        yield f"gray-alpha{depth}.png", png(4, depth)
        yield f"rgba{depth}.png", png(6, depth)
    for kind, depth, name in ((0, 1, "gray1"), (3, 4, "palette4"), (6, 8, "rgba8"), (2, 16, "rgb16")):
        yield f"interlaced-{name}.png", png(kind, depth, interlaced=True)
    yield "palette-transparent.png", png(3, 8, transparency=bytes(color[3] for color in RGBA))
    yield "gray-transparent.png", png(0, 8, transparency=struct.pack(">H", GRAY[2]))
    yield "rgb-transparent.png", png(2, 8, transparency=struct.pack(">HHH", 0, 0, 255))
    yield "gamma.png", png(6, 8, extra=chunk(b"gAMA", struct.pack(">I", 100000)))


def lzw(indices, bits):
    """GIF's compression without compression: the table is cleared before codes would grow."""
    clear, width = 1 << bits, bits + 1
    codes = []
    for at, index in enumerate(indices):
        codes += [clear] * (at % (clear - 2) == 0) + [index]
    stream = sum(code << (width * at) for at, code in enumerate([*codes, clear + 1]))
    data = stream.to_bytes((width * (len(codes) + 1) + 7) // 8, "little")
    blocks = b"".join(bytes([len(data[at : at + 255])]) + data[at : at + 255] for at in range(0, len(data), 255))
    return bytes([bits]) + blocks + b"\0"


def gif_frame(left, top, width, height, interlaced=False, local=b"", transparent=None):
    order = list(range(height))
    if interlaced:
        order = [y for first, step in ((0, 8), (4, 8), (2, 4), (1, 2)) for y in range(first, height, step)]
    flags = 0x40 * interlaced | (0x81 if local else 0)
    control = b"" if transparent is None else bytes([0x21, 0xF9, 4, 1, 0, 0, transparent, 0])
    indices = [number(x + left, y + top) for y in order for x in range(width)]
    return control + struct.pack("<BHHHHB", 0x2C, left, top, width, height, flags) + local + lzw(indices, 3)


def gif(frames, width=WIDTH, height=HEIGHT, colors=True):
    palette = bytes(value for color in RGBA for value in color[:3])
    screen = struct.pack("<HHBBB", width, height, 0x81 if colors else 0, 0, 0)
    return b"GIF89a" + screen + palette * colors + frames + b";"


def gif_files():
    whole = (0, 0, WIDTH, HEIGHT)
    palette = bytes(value for color in RGBA for value in color[:3])
    comment = b"\x21\xFE\x05hello\0"
    yield "plain.gif", gif(gif_frame(*whole))
    yield "transparent.gif", gif(gif_frame(*whole, transparent=3))
    yield "interlaced.gif", gif(gif_frame(*whole, interlaced=True))
    yield "local-colors.gif", gif(comment + gif_frame(*whole, local=palette), colors=False)
    yield "two-frames.gif", gif(gif_frame(*whole) + gif_frame(1, 1, 5, 5))
    yield "part-of-screen.gif", gif(gif_frame(4, 2, 6, 5))
    yield "no-screen.gif", gif(gif_frame(*whole), width=0, height=0)
    yield "no-colors.gif", gif(gif_frame(*whole), colors=False)


def exact():
    """The pattern with all its colours and alphas."""
    image = Image.new("RGBA", (WIDTH, HEIGHT))
    image.putdata([RGBA[number(x, y)] for y in range(HEIGHT) for x in range(WIDTH)])
    return image


TILE = 16
TILES = [["#C03030", "#30A040", "#3050C0"], ["#F0F0F0", "#808080", "#202020"]]


def tiles(tile=TILE):
    """Three columns and two rows of plain tiles, which lossy formats keep."""
    image = Image.new("RGB", (3 * tile, 2 * tile))
    for row, colors in enumerate(TILES):
        for column, color in enumerate(colors):
            image.paste(color, (column * tile, row * tile, (column + 1) * tile, (row + 1) * tile))
    return image


def save_jpegs(folder):
    def save(name, image, **options):
        image.save(folder / name, "JPEG", quality=95, **options)

    save("baseline.jpg", tiles())
    save("progressive.jpg", tiles(), progressive=True)
    save("gray.jpg", tiles().convert("L"))
    save("inks.jpg", tiles().convert("CMYK"))
    save("large.jpg", tiles(160))
    # Undoing what the orientation asks for.
    turns = [
        None,
        Image.Transpose.FLIP_LEFT_RIGHT,
        Image.Transpose.ROTATE_180,
        Image.Transpose.FLIP_TOP_BOTTOM,
        Image.Transpose.TRANSPOSE,
        Image.Transpose.ROTATE_90,
        Image.Transpose.TRANSVERSE,
        Image.Transpose.ROTATE_270,
    ]
    for orientation, turn in enumerate(turns, 1):
        # In both byte orders.
        order, mark = (">", b"MM") if orientation % 2 else ("<", b"II")
        tiff = mark + struct.pack(order + "HIHHHIHHI", 42, 8, 1, 0x0112, 3, 1, orientation, 0, 0)
        stored = tiles().transpose(turn) if turn is not None else tiles()
        save(f"orientation{orientation}.jpg", stored, exif=b"Exif\0\0" + tiff)


def save_webps(folder):
    def save(name, image, **options):
        image.save(folder / name, "WEBP", **options)

    save("lossless.webp", exact(), lossless=True, exact=True)
    save("opaque.webp", exact().convert("RGB"), lossless=True)
    save("lossy.webp", tiles(), quality=95)
    faded = tiles().convert("RGBA")
    faded.putalpha(85)
    save("lossy-alpha.webp", faded, quality=95)
    frames = [Image.new("RGBA", (WIDTH, HEIGHT), (0, 0, 0, 255))]
    save("two-frames.webp", exact(), save_all=True, append_images=frames, lossless=True, exact=True, duration=100)


def save_for_benchmarks(folder):
    def fractal(size, x, y, reach):
        return Image.effect_mandelbrot(size, (x - reach, y - reach, x + reach, y + reach), 100)

    places = ((-0.74, 0.18, 0.02), (-0.75, 0.1, 0.05), (-0.5, 0.6, 0.3))
    photo = Image.merge("RGB", [fractal((800, 600), *place) for place in places])
    disc = Image.radial_gradient("L").point(lambda distance: max(0, min(255, 900 - 5 * distance)))
    icon = photo.crop((200, 200, 456, 456))
    icon.putalpha(disc)
    icon.save(folder / "icon.png", optimize=True)
    icon.save(folder / "icon.webp", lossless=True)
    icon.convert("RGB").quantize(64).save(folder / "icon.gif")
    photo.save(folder / "photo.jpg", quality=80)
    photo.save(folder / "progressive.jpg", quality=80, progressive=True)
    tiff = b"MM" + struct.pack(">HIHHHIHHI", 42, 8, 1, 0x0112, 3, 1, 6, 0, 0)
    photo.save(folder / "turned.jpg", quality=80, exif=b"Exif\0\0" + tiff)
    photo.save(folder / "photo.webp", quality=80)


FUZZED = ["gray1.png", "interlaced-palette4.png", "palette-transparent.png", "rgba16.png", "baseline.jpg", "inks.jpg",
          "progressive.jpg", "orientation6.jpg", "lossless.webp", "lossy-alpha.webp", "two-frames.webp",
          "transparent.gif", "interlaced.gif", "part-of-screen.gif"]


def main():
    top = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent.parent
    folder = top / "tests/images/pictures"
    corpus = top / "fuzz/corpus/decode_image"
    benchmarks = top / "bench/pictures"
    for place in (folder, corpus, benchmarks):
        place.mkdir(parents=True, exist_ok=True)
    for name, data in [*png_files(), *gif_files()]:
        (folder / name).write_bytes(data)
    save_jpegs(folder)
    save_webps(folder)
    save_for_benchmarks(benchmarks)
    for name in FUZZED:
        shutil.copy(folder / name, corpus / name)


if __name__ == "__main__":
    main()
