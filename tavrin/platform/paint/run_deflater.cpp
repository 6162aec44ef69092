// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/run_deflater.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/paint/deflate_header.h"

namespace tavrin::paint {
namespace {

constexpr std::size_t runsInBlock = std::size_t{1} << 14;
constexpr unsigned adlerModulus = 65521;
/// The difference of two pixels whose channels are then no longer premultiplied.
template <std::size_t channels>
struct SubtractStraight {
    std::uint32_t operator()(std::uint32_t a, std::uint32_t b) const {
        constexpr std::uint32_t opaque = 0xFF000000;
        if (channels == 4 && (a & b) < opaque) return subtractBytes(straightenPixel(a), straightenPixel(b));
        return subtractBytes(a, b);
    }
};

/// Adds a row with the number of its filter to a checksum.
template <std::size_t channels>
void addRowTo(ZlibSum& sum, const RowDifferences& row, std::size_t width) {
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
    sum.sums += (sum.bytes + filterUp) * (pixelBytes + 1) + ofBytes * pixelBytes - channels * ofPlaces - inPixels;
    sum.bytes += filterUp + ofBytes;
    sum.bytes %= adlerModulus;
    sum.sums %= adlerModulus;
    sum.length += pixelBytes + 1;
}

}  // namespace

void ZlibSum::append(const ZlibSum& next) {
    sums = (sums + next.sums + next.length % adlerModulus * (bytes + adlerModulus - 1)) % adlerModulus;
    bytes = (bytes + next.bytes + adlerModulus - 1) % adlerModulus;
    length += next.length;
}

std::array<char, 4> ZlibSum::digits() const {
    return {static_cast<char>(sums >> 8), static_cast<char>(sums), static_cast<char>(bytes >> 8),
            static_cast<char>(bytes)};
}

/// Before a row, so that one is left for the last block.
void RunDeflater::makeRoom(std::size_t runs) {
    if (runCount_ >= runsInBlock) {
        if (opaque_)
            writeBlock<3>(false);
        else
            writeBlock<4>(false);
    }
    if (runs_.size() < runCount_ + runs) runs_.resize(runsInBlock + runs);
}

std::size_t RunDeflater::addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width, ZlibSum& sum) {
    makeRoom(width);
    return opaque_ ? addRow<3>(row, above, width, sum) : addRow<4>(row, above, width, sum);
}

template <std::size_t channels>
std::size_t RunDeflater::addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width, ZlibSum& sum) {
    constexpr std::size_t shortest = shortestMatch / channels + 1;  // one byte may have to be written by itself
    differences_.compare(row, above, width, SubtractStraight<channels>{});
    addRowTo<channels>(sum, differences_, width);
    PixelRun* const begin = runs_.data() + runCount_;
    PixelRun* const end = writeRuns(differences_, shortest, begin);
    const auto added = static_cast<std::size_t>(end - begin);
    count<channels>({begin, added});
    runCount_ += added;
    return added;
}

template <std::size_t channels>
void RunDeflater::count(std::span<const PixelRun> runs) {
    // By turns, since the same symbols often follow each other, and each sum has to wait for the one before.
    for (std::size_t i = 0; i + 1 < runs.size(); i += 2) {
        symbolsOf<channels>(runs[i], counters_[0]);
        symbolsOf<channels>(runs[i + 1], counters_[1]);
    }
    if (runs.size() % 2 != 0) symbolsOf<channels>(runs.back(), counters_[0]);
}

void RunDeflater::addRow(std::span<const PixelRun> runs) {
    makeRoom(runs.size());
    std::ranges::copy(runs, runs_.begin() + static_cast<std::ptrdiff_t>(runCount_));
    if (opaque_)
        count<3>(runs);
    else
        count<4>(runs);
    runCount_ += runs.size();
}

std::span<const PixelRun> RunDeflater::lastRuns(std::size_t count) const {
    if (count > runCount_) return {};
    return std::span(runs_).first(runCount_).last(count);
}

std::string RunDeflater::take(bool last) {
    if (opaque_)
        writeBlock<3>(last);
    else
        writeBlock<4>(last);
    fillByte(last);
    held_ = {};  // from now on who takes them holds them
    return std::exchange(blocks_, {});
}

/// Lets the blocks end with a whole byte; an empty one follows where others are to come.
void RunDeflater::fillByte(bool last) {
    if (pendingCount_ == 0) return;
    constexpr unsigned bitsOfKind = 3;
    constexpr unsigned bitsInByte = 8;
    constexpr std::string_view noBytes("\0\0\xFF\xFF", 4);
    blocks_ += static_cast<char>(pendingBits_);
    if (!last && pendingCount_ + bitsOfKind > bitsInByte) blocks_ += '\0';
    if (!last) blocks_ += noBytes;
    pendingBits_ = 0;
    pendingCount_ = 0;
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
    std::string& out = blocks_;
    const std::size_t begin = out.size();
    held_.grow(size / 8 + mostOfDeflateHeader);
    out.resize(begin + size / 8 + mostOfDeflateHeader);

    BitWriter bits(out.data() + begin, pendingBits_, pendingCount_);
    // Distances are 1 or a pixel, with one bit each.
    std::array<std::uint8_t, channels> distanceLengths{};
    distanceLengths.front() = distanceLengths.back() = 1;
    writeDeflateHeader(bits, last, codes, distanceLengths);
    SymbolWriter writer(bits, std::span<const HuffmanCode, symbolCount>(codes));
    for (const PixelRun& run : std::span(runs_).first(runCount_)) symbolsOf<channels>(run, writer);
    bits = writer.bits();
    bits.put(codes[endOfBlock]);
    pendingBits_ = bits.bits();
    pendingCount_ = bits.count();
    out.resize(static_cast<std::size_t>(bits.end() - out.data()));
    runCount_ = 0;
    counters_ = {};
}

}  // namespace tavrin::paint
