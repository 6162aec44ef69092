// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/paint/pixel_runs.h"
#include "tavrin/platform/paint/run_symbols.h"

namespace tavrin::paint {

/// Writes the rows of a picture as those of a PNG under the filter *Up* as a zlib stream, appended to a string. Of what
/// deflate offers it uses runs only: a widget is so much alike from row to row that most pixels are the one above, and
/// looking for anything else takes longer than all of this. The same rows are the same bytes, on every machine.
class RunDeflater {
public:
    /// Rows of opaque pixels have three channels, R, G and B, others four, with A.
    RunDeflater(std::string& out, bool opaque);

    /// One row of pixels 0xAARRGGBB with premultiplied channels, 1 to 65,535 of them, and the row above it.
    void addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width);
    /// Ends the stream, which has at least one row.
    void finish();

private:
    /// The two halves of a zlib stream's checksum.
    struct Sum {
        std::uint64_t bytes = 1;
        std::uint64_t sums = 0;

        template <std::size_t channels>
        void addRow(const RowDifferences& row, std::size_t width);
    };
    template <std::size_t channels>
    void addRuns(const std::uint32_t* row, const std::uint32_t* above, std::size_t width);
    template <std::size_t channels>
    void writeBlock(bool last);

    std::string& out_;
    bool opaque_;
    Sum sum_;
    RowDifferences differences_;
    std::array<SymbolCounter, 2> counters_;
    std::vector<PixelRun> runs_;  // the first ones are those of the block that is not written yet
    std::size_t runCount_ = 0;
    unsigned pendingBits_ = 0;
    unsigned pendingCount_ = 0;
    HeldBytes held_;  // what is written
};

}  // namespace tavrin::paint
