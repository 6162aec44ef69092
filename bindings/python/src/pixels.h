// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include <nanobind/nanobind.h>

#include "tavrin/platform/paint/pixel_buffer.h"

namespace tavrin::python {

/// Rows of pixels from top to bottom, bytes R, G, B, A with straight alpha, which Python sees as a buffer.
class Pixels {
public:
    explicit Pixels(const paint::PixelBuffer& buffer);

    [[nodiscard]] Py_ssize_t height() const { return shape_[0]; }
    [[nodiscard]] Py_ssize_t width() const { return shape_[1]; }
    [[nodiscard]] nanobind::tuple shape() const;

    /// Fills in a view of `self`, which holds this; -1 and a Python error for a view that there is none of.
    int fill(PyObject* self, Py_buffer& view, int flags);

private:
    std::vector<std::uint8_t> bytes_;
    Py_ssize_t shape_[3];
    Py_ssize_t strides_[3];
};

void addPixels(nanobind::module_& module);

}  // namespace tavrin::python
