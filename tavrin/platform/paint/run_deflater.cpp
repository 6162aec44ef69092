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

/// A pixel's bytes, added up: once, and each as often as there are others before it.
struct PixelBytes {
    std::uint32_t once;
    std::uint32_t inPixel;
};
template <std::size_t channels>
PixelBytes bytesOf(std::uint32_t difference) {
    const std::uint32_t c1 = byteOf<1>(difference);
    const std::uint32_t c2 = byteOf<2>(difference);
    const std::uint32_t c3 = channels == 4 ? byteOf<3>(difference) : 0;
    return {byteOf<0>(difference) + c1 + c2 + c3, c1 + 2 * c2 + 3 * c3};
}

/// Of pixels from a place of their row on.
template <std::size_t channels>
RowBytes bytesOf(const RowDifferences& differences, std::uint32_t begin) {
    RowBytes bytes;
    for (std::size_t i = 0; i < differences.count(); ++i) {
        const auto [once, inPixel] = bytesOf<channels>(differences.differences()[i]);
        bytes.once += once;
        bytes.byPlace += once * (begin + differences.places()[i]);
        bytes.inPixels += inPixel;
    }
    return bytes;
}

/// Of the runs they were made of.
template <std::size_t channels>
RowBytes bytesOf(std::span<const PixelRun> runs, std::uint64_t begin) {
    RowBytes bytes;
    for (const PixelRun& run : runs) {
        const auto [once, inPixel] = bytesOf<channels>(run.difference);
        const std::uint64_t pixels = run.pixels + std::uint64_t{1};
        const std::uint64_t count = run.repeats ? pixels : 1;
        bytes.once += count * once;
        bytes.byPlace += once * (count * begin + count * (count - 1) / 2);
        bytes.inPixels += count * inPixel;
        begin += pixels;
    }
    return bytes;
}

}  // namespace

void ZlibSum::append(const ZlibSum& next) {
    sums = (sums + next.sums + next.length % adlerModulus * (bytes + adlerModulus - 1)) % adlerModulus;
    bytes = (bytes + next.bytes + adlerModulus - 1) % adlerModulus;
    length += next.length;
}

void ZlibSum::append(const RowBytes& row, std::size_t width, std::size_t channels) {
    // A byte is in the sum of sums as often as there are bytes from it to the end.
    const std::uint64_t pixelBytes = channels * width;
    sums += (bytes + filterUp) * (pixelBytes + 1) + row.once * pixelBytes - channels * row.byPlace - row.inPixels;
    bytes += filterUp + row.once;
    bytes %= adlerModulus;
    sums %= adlerModulus;
    length += pixelBytes + 1;
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

std::size_t RunDeflater::addRow(const Row& row, RowBytes& bytes) { return addRow(row, bytes, {}, {0, row.width}); }

std::size_t RunDeflater::addRow(const Row& row, RowBytes& bytes, std::span<const PixelRun> before,
                                const Columns& changed) {
    makeRoom(row.width);
    return opaque_ ? addRow<3>(row, bytes, before, changed) : addRow<4>(row, bytes, before, changed);
}

template <std::size_t channels>
std::size_t RunDeflater::addRow(const Row& row, RowBytes& bytes, std::span<const PixelRun> before,
                                const Columns& changed) {
    constexpr std::size_t shortest = shortestMatch / channels + 1;  // one byte may have to be written by itself
    constexpr SubtractStraight<channels> subtract{};
    // What follows from a run's beginning on depends on nothing before, if it is a pixel that is not as above.
    // 1. The last such run before anything differs: one ends where the next pixel is known.
    std::size_t first = 0;
    std::size_t begin = 0;
    std::size_t last = 0;
    std::size_t end = 0;
    for (; last < before.size(); ++last) {
        if (before[last].difference != 0) {
            first = last;
            begin = end;
        }
        const std::size_t next = end + before[last].pixels + 1;
        if (next >= changed.begin) break;
        end = next;
    }
    // 2. The first one behind that, unless the pixel before it now differs as much and may be one run with it.
    for (; last < before.size(); end += before[last++].pixels + std::size_t{1})
        if (end >= changed.end && end > begin && before[last].difference != 0 &&
            subtract(row.pixels[end - 1], row.above[end - 1]) != before[last].difference)
            break;
    // 3. What lies between is made anew.
    if (last == before.size()) end = row.width;
    differences_.compare(row.pixels + begin, row.above + begin, end - begin, subtract);
    PixelRun* const out = runs_.data() + runCount_;
    PixelRun* const anew = std::copy(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(first), out);
    PixelRun* const rest = writeRuns(differences_, shortest, anew);
    anew->startsRow = first == 0;
    const auto added = static_cast<std::size_t>(
        std::copy(before.begin() + static_cast<std::ptrdiff_t>(last), before.end(), rest) - out);
    bytes = bytes + bytesOf<channels>(differences_, static_cast<std::uint32_t>(begin)) -
            bytesOf<channels>(before.subspan(first, last - first), begin);
    count<channels>({out, added});
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
