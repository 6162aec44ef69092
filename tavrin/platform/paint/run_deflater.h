// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/paint/pixel_runs.h"
#include "tavrin/platform/paint/run_symbols.h"

namespace tavrin::paint {

/// The bytes of some pixels in a row, added up: once, and as often as a checksum of the row does not count them.
struct RowBytes {
    std::uint64_t once = 0;
    std::uint64_t byPlace = 0;   ///< each as often as there are pixels to the left
    std::uint64_t inPixels = 0;  ///< each as often as there are others before it in its pixel

    friend RowBytes operator+(const RowBytes& a, const RowBytes& b) {
        return {a.once + b.once, a.byPlace + b.byPlace, a.inPixels + b.inPixels};
    }
    friend RowBytes operator-(const RowBytes& a, const RowBytes& b) {
        return {a.once - b.once, a.byPlace - b.byPlace, a.inPixels - b.inPixels};
    }
};

/// The columns x with begin <= x < end.
struct Columns {
    std::size_t begin = 0;
    std::size_t end = 0;

    [[nodiscard]] bool empty() const { return begin >= end; }
    void add(const Columns& other) {
        *this = empty() ? other : Columns{std::min(begin, other.begin), std::max(end, other.end)};
    }
};

/// The checksum of a part of a zlib stream's text; those of parts that follow each other make that of both.
struct ZlibSum {
    std::uint64_t bytes = 1;
    std::uint64_t sums = 0;
    std::uint64_t length = 0;

    void append(const ZlibSum& next);
    /// Adds a row with the number of its filter.
    void append(const RowBytes& row, std::size_t width, std::size_t channels);
    /// Big-endian, as it stands at the end of a stream.
    [[nodiscard]] std::array<char, 4> digits() const;
};

/// Compresses the rows of a picture as those of a PNG under the filter *Up*. Of what deflate offers it uses runs only:
/// a widget is so much alike from row to row that most pixels are the one above, and looking for anything else takes
/// longer than all of this. The same rows are the same bytes, on every machine.
class RunDeflater {
public:
    /// Rows of opaque pixels have three channels, R, G and B, others four, with A.
    explicit RunDeflater(bool opaque) : opaque_(opaque) {}
    [[nodiscard]] bool isOpaque() const { return opaque_; }
    [[nodiscard]] std::size_t channels() const { return opaque_ ? 3 : 4; }
    /// The memory it takes.
    [[nodiscard]] std::size_t byteCount() const { return sizeof *this + runs_.capacity() * sizeof(PixelRun); }

    /// One row of pixels 0xAARRGGBB with premultiplied channels, 1 to 65,535 of them, and the row above it.
    struct Row {
        const std::uint32_t* pixels;
        const std::uint32_t* above;
        std::size_t width;
    };
    /// Returns of how many runs it is made.
    std::size_t addRow(const Row& row, RowBytes& bytes);
    /// The same of a row that was made of some runs, with those bytes, before it changed in some columns. What lies
    /// beside them is not looked at.
    std::size_t addRow(const Row& row, RowBytes& bytes, std::span<const PixelRun> before, const Columns& changed);
    /// One row as the runs it is made of.
    void addRow(std::span<const PixelRun> runs);
    /// The last so many runs that were added; none where a block has been written within them.
    [[nodiscard]] std::span<const PixelRun> lastRuns(std::size_t count) const;
    /// The rows that were added since it was last called, at least one: blocks of deflate that end with a whole byte
    /// and need nothing of what stands before them. Whether they are the picture's last.
    [[nodiscard]] std::string take(bool last);

private:
    template <std::size_t channels>
    std::size_t addRow(const Row& row, RowBytes& bytes, std::span<const PixelRun> before, const Columns& changed);
    template <std::size_t channels>
    void count(std::span<const PixelRun> runs);
    void makeRoom(std::size_t runs);
    template <std::size_t channels>
    void writeBlock(bool last);
    void fillByte(bool last);

    bool opaque_;
    std::string blocks_;
    RowDifferences differences_;
    std::array<SymbolCounter, 2> counters_;
    std::vector<PixelRun> runs_;  // the first ones are those of the block that is not written yet
    std::size_t runCount_ = 0;
    unsigned pendingBits_ = 0;
    unsigned pendingCount_ = 0;
    HeldBytes held_;  // what is written
};

}  // namespace tavrin::paint
