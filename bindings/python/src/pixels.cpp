// SPDX-License-Identifier: MIT
#include "bindings/python/src/pixels.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

constexpr Py_ssize_t channels = 4;

int getBuffer(PyObject* self, Py_buffer* view, int flags) {
    if (!nb::inst_ready(self)) {  // made by __new__ alone
        PyErr_SetString(PyExc_BufferError, "there are no pixels");
        return -1;
    }
    return nb::inst_ptr<Pixels>(self)->fill(self, *view, flags);
}

/// What NumPy and Pillow ask for the shape; the bytes they take from the buffer.
nb::dict arrayInterface(const Pixels& pixels) {
    nb::dict members;
    members["version"] = 3;
    members["shape"] = pixels.shape();
    members["typestr"] = "|u1";
    return members;
}

}  // namespace

Pixels::Pixels(const paint::PixelBuffer& buffer)
    : bytes_(buffer.straightRGBA()),
      shape_{buffer.height(), buffer.width(), channels},
      strides_{buffer.width() * channels, channels, 1} {}

nb::tuple Pixels::shape() const { return nb::make_tuple(shape_[0], shape_[1], shape_[2]); }

int Pixels::fill(PyObject* self, Py_buffer& view, int flags) {
    view.obj = nullptr;
    if ((flags & PyBUF_F_CONTIGUOUS) == PyBUF_F_CONTIGUOUS) {
        PyErr_SetString(PyExc_BufferError, "pixels lie row by row");
        return -1;
    }
    const bool hasShape = (flags & PyBUF_ND) == PyBUF_ND;
    static char bytes[] = "B";
    view.buf = bytes_.data();
    view.len = static_cast<Py_ssize_t>(bytes_.size());
    view.itemsize = 1;
    view.readonly = 0;
    view.format = (flags & PyBUF_FORMAT) == PyBUF_FORMAT ? bytes : nullptr;
    view.ndim = hasShape ? 3 : 1;
    view.shape = hasShape ? shape_ : nullptr;
    view.strides = (flags & PyBUF_STRIDES) == PyBUF_STRIDES ? strides_ : nullptr;
    view.suboffsets = nullptr;
    view.internal = nullptr;
    view.obj = nb::handle(self).inc_ref().ptr();
    return 0;
}

void addPixels(nb::module_& module) {
    static PyType_Slot slots[] = {{Py_bf_getbuffer, reinterpret_cast<void*>(getBuffer)}, {0, nullptr}};
    auto type = nb::class_<Pixels>(
        module, "Pixels", nb::type_slots(slots), nb::is_final(),
        "A picture in memory: a writable buffer of unsigned bytes of shape (height, width, 4), each pixel\n"
        "red, green, blue and alpha, rows from top to bottom. Colours are straight: not multiplied by alpha.\n"
        "numpy.asarray and PIL.Image.fromarray take it without a copy.");
    type.def_prop_ro("width", &Pixels::width, "In pixels.");
    type.def_prop_ro("height", &Pixels::height, "In pixels.");
    type.def_prop_ro("shape", &Pixels::shape, "(height, width, 4)");
    type.def_prop_ro("__array_interface__", arrayInterface);
    type.attr("__module__") = "tavrin";
}

}  // namespace tavrin::python
