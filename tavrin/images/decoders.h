#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "tavrin/images/image_decoder.h"

// One decoder for each format; `decodeImage` chooses among them. What it says of `decodeImage` holds for each.

namespace tavrin::images {

using Picture = std::shared_ptr<const Bitmap>;

/// Whether a file may declare so many pixels.
bool isWithin(const ImageBounds& bounds, std::uint64_t width, std::uint64_t height);

Picture decodePng(std::string_view bytes, const ImageBounds& bounds);
Picture decodeJpeg(std::string_view bytes, const ImageBounds& bounds);
Picture decodeWebP(std::string_view bytes, const ImageBounds& bounds);
Picture decodeGif(std::string_view bytes, const ImageBounds& bounds);

}  // namespace tavrin::images
