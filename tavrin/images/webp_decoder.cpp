// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>
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

}  // namespace

Picture decodeWebP(std::string_view bytes, Decoding& decoding) {
    const WebPData data{reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()};
    const Handle<WebPDemuxer, WebPDemuxDelete> demuxer(WebPDemux(&data));
    if (!demuxer) return nullptr;
    const std::uint32_t width = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH);
    const std::uint32_t height = WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT);
    if (!decoding.admits(width, height)) return nullptr;

    WebPIterator frame{};
    const Handle<WebPIterator, WebPDemuxReleaseIterator> release(&frame);
    if (!WebPDemuxGetFrame(demuxer.get(), 1, &frame) || !isInside(frame, width, height)) return nullptr;
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
