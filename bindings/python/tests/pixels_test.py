# SPDX-License-Identifier: MIT
"""Pixels are a buffer that other packages take as it is."""
import io

import numpy
import PIL.Image
import pytest
import tavrin

# Half transparent red over nothing beside opaque green.
DOCUMENT = """{"version": "1.0", "nodes": {"main": {"type": "hstack", "spacing": 0, "children": [
    {"type": "color", "value": "#FF0000", "modifiers": [{"type": "opacity", "opacity": 0.5}]}, {"type": "color", "value": "#00FF00"}]}}}"""


@pytest.fixture
def pixels():
    return tavrin.Document(DOCUMENT).widget(size=(20, 10), scale=2, background="none").pixels()


def test_they_are_rows_of_straight_rgba(pixels):
    array = numpy.asarray(pixels)
    assert (pixels.shape, pixels.height, pixels.width) == ((20, 40, 4), 20, 40)
    assert (array.shape, array.dtype) == (pixels.shape, numpy.uint8)
    assert array[0, 0].tolist() in ([255, 0, 0, 127], [255, 0, 0, 128])
    assert array[19, 39].tolist() == [0, 255, 0, 255]


def test_they_are_what_the_png_decodes_to(agenda):
    text, model, options = agenda
    widget = tavrin.Document(text).widget(model, rounded=True, **options)
    decoded = numpy.asarray(PIL.Image.open(io.BytesIO(widget.encode())).convert("RGBA"))
    array = numpy.asarray(widget.pixels())
    assert numpy.array_equal(array[..., 3], decoded[..., 3])
    assert numpy.array_equal(array[array[..., 3] > 0], decoded[array[..., 3] > 0])


def address(view):
    return numpy.asarray(view).__array_interface__["data"][0]


def test_nobody_copies_them(pixels):
    array = numpy.asarray(pixels)
    view = memoryview(pixels)
    assert (view.shape, view.format, view.itemsize, view.strides) == (pixels.shape, "B", 1, (160, 4, 1))
    assert address(view) == address(array)
    array[3, 4] = [1, 2, 3, 4]
    assert view[3, 4, 2] == 3
    image = PIL.Image.frombuffer("RGBA", (pixels.width, pixels.height), pixels, "raw", "RGBA", 0, 1)
    assert image.getpixel((4, 3)) == (1, 2, 3, 4)
    array[3, 4] = [9, 8, 7, 6]
    assert image.getpixel((4, 3)) == (9, 8, 7, 6)
    image = PIL.Image.fromarray(pixels)
    array[3, 4] = [5, 5, 5, 5]
    assert (image.mode, image.size, image.getpixel((4, 3))) == ("RGBA", (40, 20), (5, 5, 5, 5))


def test_views_keep_them(pixels):
    array = numpy.asarray(pixels)
    before = array.copy()
    del pixels
    assert numpy.array_equal(array, before)


def test_they_are_each_caller_s_own():
    widget = tavrin.Document(DOCUMENT).widget(size=(20, 10))
    first, second = widget.pixels(), widget.pixels()
    numpy.asarray(first)[:] = 0
    assert numpy.asarray(second).any()
    assert numpy.array_equal(numpy.asarray(widget.pixels()), numpy.asarray(second))


def test_no_other_order_is_given(pixels):
    assert bytes(pixels) == numpy.asarray(pixels).tobytes()
    with pytest.raises(TypeError):
        hash(memoryview(pixels)[::2, 0, 0].cast("B"))
