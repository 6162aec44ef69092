// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/gradient.h"

typedef struct _cairo_matrix cairo_matrix_t;

namespace tavrin::paint {

/// A paint as it falls on pixels.
class PixelSource {
public:
    /// `matrix` leads from the paint's points to pixels and can be inverted. Nothing when the paint draws nothing.
    static std::optional<PixelSource> make(const Paint& paint, const cairo_matrix_t& matrix);

    /// The one pixel that it has everywhere, if it has.
    [[nodiscard]] std::optional<std::uint32_t> solid() const;
    [[nodiscard]] bool isOpaque() const { return opaque_; }

private:
    friend class SourceRows;
    /// Writes the pixels of a part of a row whose first one lies at `start` in the ramp.
    void writeRun(double start, std::size_t count, std::uint32_t* out) const;

    /// Colours along the gradient, or one colour.
    [[nodiscard]] std::span<const std::uint32_t> ramp() const {
        return ramp_ ? std::span<const std::uint32_t>(*ramp_) : std::span<const std::uint32_t>(&color_, 1);
    }

    std::shared_ptr<const std::vector<std::uint32_t>> ramp_;  // null for one colour
    std::uint32_t color_ = 0;
    bool opaque_ = false;
    /// Place in the ramp at the centre of pixel (0, 0), and its change with each column and row.
    double origin_ = 0;
    double perColumn_ = 0;
    double perRow_ = 0;
};

/// The rows that a source has in an area, asked for in any order.
class SourceRows {
public:
    /// `source` must outlive this.
    SourceRows(const PixelSource& source, const PixelRect& area);

    /// The pixels of row `y`, as many as the area is wide; valid until the next call.
    [[nodiscard]] const std::uint32_t* row(int y);

private:
    enum class Method : unsigned char { sameRow, slide, compute };

    void prepareSlide();

    const PixelSource& source_;
    PixelRect area_;
    std::size_t width_;
    Method method_ = Method::compute;
    std::vector<std::uint32_t> pixels_;
    /// When sliding: how many columns a row is shifted against the one above, the least shift of all rows, and the
    /// length of the long row.
    double shift_ = 0;
    double leastShift_ = 0;
    std::size_t length_ = 0;
};

}  // namespace tavrin::paint
