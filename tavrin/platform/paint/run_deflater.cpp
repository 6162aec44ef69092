// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/run_deflater.h"

#include <array>
#include <span>

#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::paint {
namespace {

constexpr std::size_t runsInBlock = std::size_t{1} << 14;
constexpr unsigned adlerModulus = 65521;
constexpr unsigned longestLengthCode = 7;
/// In the order in which deflate wants the lengths of their own codes.
constexpr std::array<std::uint8_t, 19> codeLengths{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
constexpr std::size_t mostOfHeader = 512;

/// Says that a block begins that has codes of its own, and which.
void writeHeader(BitWriter& bits, bool last, std::span<const HuffmanCode> codes, std::size_t channels) {
    std::vector<std::uint16_t> lengths;
    for (const HuffmanCode& code : codes) lengths.push_back(code.length);
    // Distances are 1 or a pixel, with one bit each.
    for (std::size_t distance = 1; distance <= channels; ++distance)
        lengths.push_back(distance == 1 || distance == channels ? 1 : 0);
    std::array<std::uint32_t, codeLengths.size()> counts{};
    for (const std::uint16_t length : lengths) ++counts[length];
    const std::vector<HuffmanCode> lengthCodes = huffmanCodes(counts, longestLengthCode);

    constexpr unsigned ownCodes = 2;
    bits.put((last ? 1 : 0) | ownCodes << 1, 3);
    bits.put(symbolCount - (endOfBlock + 1), 5);
    bits.put(channels - 1, 5);
    bits.put(codeLengths.size() - 4, 4);
    for (const std::uint8_t length : codeLengths) bits.put(lengthCodes[length].length, 3);
    for (const std::uint16_t length : lengths) bits.put(lengthCodes[length]);
}

/// The difference of two pixels whose channels are then no longer premultiplied.
template <std::size_t channels>
struct SubtractStraight {
    std::uint32_t operator()(std::uint32_t a, std::uint32_t b) const {
        constexpr std::uint32_t opaque = 0xFF000000;
        if (channels == 4 && (a & b) < opaque) return subtractBytes(straightenPixel(a), straightenPixel(b));
        return subtractBytes(a, b);
    }
};

}  // namespace

template <std::size_t channels>
void RunDeflater::Sum::addRow(const RowDifferences& row, std::size_t width) {
    std::uint64_t ofBytes = 0;
    std::uint64_t ofPlaces = 0;  // each byte as often as there are pixels to the left
    std::uint64_t inPixels = 0;  // each byte as often as there are others before it in its pixel
    for (std::size_t i = 0; i < row.count(); ++i) {
        const std::uint32_t difference = row.differences()[i];
        const std::uint32_t c1 = byteOf<1>(difference);
        const std::uint32_t c2 = byteOf<2>(difference);
        const std::uint32_t c3 = channels == 4 ? byteOf<3>(difference) : 0;
        const std::uint32_t once = byteOf<0>(difference) + c1 + c2 + c3;
        ofBytes += once;
        ofPlaces += once * row.places()[i];
        inPixels += c1 + 2 * c2 + 3 * c3;
    }
    // A byte is in the sum of sums as often as there are bytes from it to the end.
    const std::uint64_t pixelBytes = channels * width;
    sums += (bytes + filterUp) * (pixelBytes + 1) + ofBytes * pixelBytes - channels * ofPlaces - inPixels;
    bytes += filterUp + ofBytes;
    bytes %= adlerModulus;
    sums %= adlerModulus;
}

RunDeflater::RunDeflater(std::string& out, bool opaque) : out_(out), opaque_(opaque) { out_.append("\x78\x01", 2); }

void RunDeflater::addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
    if (opaque_)
        addRuns<3>(row, above, width);
    else
        addRuns<4>(row, above, width);
}

template <std::size_t channels>
void RunDeflater::addRuns(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
    constexpr std::size_t shortest = shortestMatch / channels + 1;  // one byte may have to be written by itself
    // Before a row, so that one is left for the last block.
    if (runCount_ >= runsInBlock) writeBlock<channels>(false);
    runs_.resize(runsInBlock + width);
    differences_.compare(row, above, width, SubtractStraight<channels>{});
    sum_.addRow<channels>(differences_, width);
    PixelRun* const begin = runs_.data() + runCount_;
    PixelRun* const end = writeRuns(differences_, shortest, begin);
    const auto count = static_cast<std::size_t>(end - begin);
    // By turns, since the same symbols often follow each other, and each sum has to wait for the one before.
    for (std::size_t i = 0; i + 1 < count; i += 2) {
        symbolsOf<channels>(begin[i], counters_[0]);
        symbolsOf<channels>(begin[i + 1], counters_[1]);
    }
    if (count % 2 != 0) symbolsOf<channels>(end[-1], counters_[0]);
    runCount_ += count;
}

void RunDeflater::finish() {
    if (opaque_)
        writeBlock<3>(true);
    else
        writeBlock<4>(true);
    if (pendingCount_ > 0) out_ += static_cast<char>(pendingBits_);
    for (const std::uint64_t half : {sum_.sums, sum_.bytes}) {
        out_ += static_cast<char>(half >> 8);
        out_ += static_cast<char>(half);
    }
}

template <std::size_t channels>
void RunDeflater::writeBlock(bool last) {
    std::array<std::uint32_t, symbolCount> counts{};
    for (const SymbolCounter& counter : counters_) counter.addTo(counts);
    counts[endOfBlock] = 1;
    const std::vector<HuffmanCode> codes = huffmanCodes(counts, longestCode);
    std::uint64_t size = 0;
    for (std::size_t symbol = 0; symbol < symbolCount; ++symbol)
        size += std::uint64_t{counts[symbol]} * (codes[symbol].length + bitsAfterSymbol[symbol]);
    const std::size_t begin = out_.size();
    held_.grow(size / 8 + mostOfHeader);
    out_.resize(begin + size / 8 + mostOfHeader);

    BitWriter bits(out_.data() + begin, pendingBits_, pendingCount_);
    writeHeader(bits, last, codes, channels);
    SymbolWriter writer(bits, std::span<const HuffmanCode, symbolCount>(codes));
    for (const PixelRun& run : std::span(runs_).first(runCount_)) symbolsOf<channels>(run, writer);
    bits = writer.bits();
    bits.put(codes[endOfBlock]);
    pendingBits_ = bits.bits();
    pendingCount_ = bits.count();
    out_.resize(static_cast<std::size_t>(bits.end() - out_.data()));
    runCount_ = 0;
    counters_ = {};
}

}  // namespace tavrin::paint
