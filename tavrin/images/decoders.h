// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <stop_token>
#include <string_view>

#include "tavrin/images/image_decoder.h"

namespace tavrin::images {

using Picture = std::shared_ptr<const Bitmap>;

/// `tavrin::decodeImage`, and null also when `stop` asks for it: that is looked at before the picture is begun and, but
/// for WebP, at every row.
Picture decodeImage(std::string_view bytes, const ImageBounds& bounds, const std::stop_token& stop);

// One decoder for each format; `decodeImage` chooses among them. What is said of it holds for each.

/// Whether a file may declare so many pixels.
bool isWithin(const ImageBounds& bounds, std::uint64_t width, std::uint64_t height);

Picture decodePng(std::string_view bytes, const ImageBounds& bounds, const std::stop_token& stop);
Picture decodeJpeg(std::string_view bytes, const ImageBounds& bounds, const std::stop_token& stop);
Picture decodeWebP(std::string_view bytes, const ImageBounds& bounds, const std::stop_token& stop);
Picture decodeGif(std::string_view bytes, const ImageBounds& bounds, const std::stop_token& stop);

}  // namespace tavrin::images
