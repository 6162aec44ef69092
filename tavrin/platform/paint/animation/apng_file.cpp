// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/animation/apng_file.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "tavrin/platform/paint/png_balanced.h"
#include "tavrin/platform/paint/png_fast.h"
#include "tavrin/platform/paint/png_file.h"
#include "tavrin/platform/paint/png_small.h"

namespace tavrin::paint {
namespace {

/// The data of a chunk: numbers, most significant byte first.
class ChunkData {
public:
    ChunkData& add(std::uint64_t value, unsigned byteCount) {
        while (byteCount-- > 0) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * byteCount)));
        return *this;
    }
    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

/// A time as a fraction of seconds whose parts have 16 bits, as exact as these can say.
std::pair<std::uint64_t, std::uint64_t> fractionOf(std::uint64_t milliseconds) {
    constexpr std::uint64_t largest = 0xFFFF;
    std::uint64_t parts = 1000;
    for (; milliseconds > largest && parts > 1; parts /= 10) milliseconds = (milliseconds + 5) / 10;
    return {std::min(milliseconds, largest), parts};
}

void addControl(PngFile& file, const EncodedFrame& frame, std::uint32_t sequence) {
    constexpr unsigned keepWhatIsThere = 0;
    const auto side = [](int pixels) { return static_cast<std::uint64_t>(pixels); };
    const auto [delay, parts] = fractionOf(frame.milliseconds);
    ChunkData data;
    data.add(sequence, 4).add(side(frame.area.width()), 4).add(side(frame.area.height()), 4);
    data.add(side(frame.area.x0), 4).add(side(frame.area.y0), 4).add(delay, 2).add(parts, 2);
    data.add(keepWhatIsThere, 1).add(frame.isBlended ? 1 : 0, 1);
    file.addChunk("fcTL", data.bytes());
}

}  // namespace

std::string apngFrame(const FramePatch& patch, PngCompression compression) {
    if (compression == PngCompression::small) return pngRowsSmall(patch.pixels);
    if (compression == PngCompression::balanced) return pngRowsBalanced(patch.pixels);
    std::string rows;
    appendPngRowsFast(patch.pixels, PngColorType::rgba, rows);
    return rows;
}

std::string apngFile(int width, int height, std::span<const EncodedFrame> frames) {
    constexpr unsigned endless = 0;
    PngFile file(width, height, 8, PngColorType::rgba);
    file.addChunk("acTL", ChunkData().add(frames.size(), 4).add(endless, 4).bytes());
    std::uint32_t sequence = 0;
    for (const EncodedFrame& frame : frames) {
        const bool isFirst = sequence == 0;
        addControl(file, frame, sequence++);
        file.beginChunk(isFirst ? "IDAT" : "fdAT");
        if (!isFirst) {
            const ChunkData number = ChunkData().add(sequence++, 4);
            file.bytes().append(number.bytes().begin(), number.bytes().end());
        }
        file.bytes() += frame.bytes;
        file.endChunk();
    }
    return file.finish();
}

}  // namespace tavrin::paint
