#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavrin::paint {

/// Writes the rows of a PNG under the filter *Up* as a zlib stream, appended to a string. Of what deflate offers it uses
/// runs only: a widget is so much alike from row to row that most pixels are the one above, and looking for anything
/// else takes longer than all of this. The same rows are the same bytes, on every machine.
class RunDeflater {
public:
    /// Rows of opaque pixels have three channels, R, G and B, others four, with A.
    RunDeflater(std::string& out, bool opaque);

    /// One row of `width` pixels 0xAARRGGBB, at least one, and the row above it.
    void addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width);
    void finish();

private:
    /// A pixel's difference to the one above, byte by byte without carries, and the run of others that follows it.
    struct Step {
        std::uint32_t difference;
        std::uint32_t pixels : 24;
        std::uint32_t repeats : 1;  ///< whether the run repeats the difference; else its pixels are those above
        std::uint32_t startsRow : 1;
    };
    class Counter;
    class Writer;

    template <std::size_t channels>
    void addSteps(const std::uint32_t* row, const std::uint32_t* above, std::size_t width);
    template <std::size_t channels>
    void addToSum(const Step& step);
    template <std::size_t channels, class Sink>
    void replay(Sink& sink) const;
    template <std::size_t channels>
    void writeBlock(bool last);

    std::string& out_;
    bool opaque_;
    std::vector<Step> steps_;  // of the block that is not written yet
    unsigned pendingBits_ = 0;
    unsigned pendingCount_ = 0;
    std::uint64_t sum_ = 1;  // the two halves of the stream's checksum
    std::uint64_t sumOfSums_ = 0;
};

}  // namespace tavrin::paint
