// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include <webp/decode.h>
#include <webp/demux.h>

#include "tavrin/images/decoders.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::images {
namespace {

bool isInside(const WebPIterator& frame, std::uint32_t width, std::uint32_t height) {
    const auto fits = [](int offset, int side, std::uint32_t room) {
        return offset >= 0 && side >= 1 && static_cast<std::uint32_t>(offset) <= room &&
               static_cast<std::uint32_t>(side) <= room - static_cast<std::uint32_t>(offset);
    };
    return fits(frame.x_offset, frame.width, width) && fits(frame.y_offset, frame.height, height);
}

/// What a frame is decoded in: of a lossless one all pixels, else all of the alpha channel, twice.
std::optional<std::uint64_t> workingBytes(const WebPIterator& frame) {
    constexpr int lossless = 2;
    WebPBitstreamFeatures features{};
    if (WebPGetFeatures(frame.fragment.bytes, frame.fragment.size, &features) != VP8_STATUS_OK) return std::nullopt;
    const auto pixels = static_cast<std::uint64_t>(features.width) * static_cast<std::uint64_t>(features.height);
    return pixels * (features.format == lossless ? 4 : features.has_alpha != 0 ? 2 : 0);
}

}  // namespace

Picture decodeWebP(std::string_view bytes, Decoding& decoding) {
    const WebPData data{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    const Handle<WebPDemuxer, WebPDemuxDelete> demuxer(WebPDemux(&data));
    if (!demuxer) return nullptr;
    const std::uint32_t width = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH);
    const std::uint32_t height = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT);

    WebPIterator frame{};
    const Handle<WebPIterator, WebPDemuxReleaseIterator> release(&frame);
    if (!WebPDemuxGetFrame(demuxer.get(), 1, &frame) || !isInside(frame, width, height)) return nullptr;
    const std::optional<std::uint64_t> working = workingBytes(frame);
    if (!working || !decoding.admits(width, height, *working)) return nullptr;
    std::vector<std::uint32_t> pixels(std::size_t{width} * height);
    const std::size_t first =
        static_cast<std::size_t>(frame.y_offset) * width + static_cast<std::size_t>(frame.x_offset);
    auto* target = reinterpret_cast<std::uint8_t*>(pixels.data());
    if (WebPDecodeRGBAInto(frame.fragment.bytes, frame.fragment.size, target + 4 * first, 4 * (pixels.size() - first),
                           static_cast<int>(4 * width)) == nullptr)
        return nullptr;
    premultiplyPixels(target, pixels.data(), pixels.size());
    return std::make_shared<const Bitmap>(static_cast<int>(width), static_cast<int>(height), std::move(pixels));
}

}  // namespace tavrin::images
