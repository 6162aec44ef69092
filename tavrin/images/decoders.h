// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string_view>

#include "tavrin/images/image_decoder.h"

namespace tavrin::images {

using Picture = std::shared_ptr<const Bitmap>;

/// What a picture may cost while it is decoded, and what it has come to.
struct Decoding {
    ImageBounds bounds = {};
    std::stop_token stop = {};
    /// Asks, before anything is allocated, whether one of those who wait for it may hold so many bytes, file and
    /// working memory included; null: always.
    std::function<bool(std::size_t bytes)> mayBeHeld = nullptr;

    /// The pixels that the file declares; 0 until they are found to be within the bounds.
    std::uint64_t pixels = 0;
    /// What is held beside the picture until it is decoded: its file, and what its decoder works in, as far as that is
    /// known beforehand. Some rows are not counted.
    std::uint64_t meanwhile = 0;
    /// Whether it was given up for a budget: it may be a picture for those who have more.
    bool isGivenUp = false;

    /// Whether a picture of this size may be decoded in so much working memory; to be asked before anything is
    /// allocated for it.
    bool admits(std::uint64_t width, std::uint64_t height, std::uint64_t workingBytes = 0);
    /// Whether to stop at this row: when `stop` asks for it or the thread's budget is spent.
    bool isStopped();
};

/// `tavrin::decodeImage`, and null also when it is stopped: that is looked at before the picture is begun and, but for
/// WebP, at every row.
Picture decodeImage(std::string_view bytes, Decoding& decoding);

// One decoder for each format; `decodeImage` chooses among them. What is said of it holds for each.

Picture decodePng(std::string_view bytes, Decoding& decoding);
Picture decodeJpeg(std::string_view bytes, Decoding& decoding);
Picture decodeWebP(std::string_view bytes, Decoding& decoding);
Picture decodeGif(std::string_view bytes, Decoding& decoding);

}  // namespace tavrin::images
