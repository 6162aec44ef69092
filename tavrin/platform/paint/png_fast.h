// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "tavrin/platform/foundation/pixels/pixel_rect.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_file.h"

namespace tavrin::paint {

/// RGB or RGBA, every row as its difference to the row above, of which only runs are compressed.
[[nodiscard]] std::string encodePngFast(const PixelBuffer& picture);

/// The rows alone, as RGBA or, of an opaque picture, as RGB: a zlib stream, appended to `out`.
void appendPngRowsFast(const PixelBuffer& picture, PngColorType colorType, std::string& out);

/// Encodes one picture after another as `encodePngFast` does, the same bytes whatever came before. Their rows are
/// compressed in bands that need nothing of each other, and what a band of the last picture came to is kept: only where
/// a picture differs from it is work done. One thread at a time.
///
/// Where a band ends depends on nothing but the rows just above: after 16, 32, 64 … rows that begin at a multiple of
/// their number and are made of so many runs that another table of codes costs next to nothing. So a change moves
/// hardly any end but those nearby.
class FastPng {
public:
    FastPng();
    ~FastPng();
    FastPng(FastPng&&) noexcept;
    FastPng& operator=(FastPng&&) noexcept;

    /// `changed` holds every pixel that may differ from the last picture that was encoded; it is disregarded for the
    /// first and for one of another size. Where encoding throws, the next picture counts as the first.
    [[nodiscard]] std::string encode(const PixelBuffer& picture, std::span<const PixelRect> changed);

    /// How many rows have been looked at, of all pictures.
    [[nodiscard]] std::uint64_t seenRows() const { return seenRows_; }
    /// The bytes that are kept.
    [[nodiscard]] std::size_t byteCount() const;

private:
    struct Kept;
    std::unique_ptr<Kept> kept_;
    std::uint64_t seenRows_ = 0;
};

}  // namespace tavrin::paint
