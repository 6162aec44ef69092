#include "tavrin/platform/paint/run_deflater.h"

#include <algorithm>
#include <array>
#include <bit>
#include <span>

#include "tavrin/platform/paint/bit_writer.h"
#include "tavrin/platform/paint/huffman_code.h"

namespace tavrin::paint {
namespace {

constexpr std::uint8_t filterUp = 2;
constexpr std::size_t runsInBlock = std::size_t{1} << 15;
constexpr unsigned adlerModulus = 65521;

// What deflate prescribes.
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t symbolCount = 286;
constexpr unsigned shortestMatch = 3;
constexpr unsigned longestMatch = 258;
constexpr unsigned longestLengthCode = 7;
/// In the order in which the lengths of their own codes are written.
constexpr std::array<std::uint8_t, 19> codeLengths{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
/// The codes of a pixel's bytes and the bits of an unfinished byte fit in one word.
constexpr unsigned longestCode = 12;

/// The symbol of a match's length, and the bits that follow it.
struct MatchLength {
    std::uint16_t symbol;
    std::uint8_t extraBits;
    std::uint8_t extra;
};
constexpr auto matchLengths = [] {
    std::array<MatchLength, longestMatch + 1> table{};
    for (unsigned length = shortestMatch; length < longestMatch; ++length) {
        const unsigned over = length - shortestMatch;
        const unsigned bits = over < 8 ? 0 : static_cast<unsigned>(std::bit_width(over)) - 3;
        table[length] = {static_cast<std::uint16_t>(257 + 4 * bits + (over >> bits)), static_cast<std::uint8_t>(bits),
                         static_cast<std::uint8_t>(over & ((1U << bits) - 1))};
    }
    table[longestMatch] = {285, 0, 0};
    return table;
}();

/// Hands a run to a sink as literals and matches.
template <std::size_t channels, class Sink>
void symbolsOf(const PixelRun& run, Sink& sink) {
    if (run.startsRow) sink.literal(filterUp);
    sink.template pixel<channels>(run.difference);
    std::size_t left = channels * run.pixels;
    if (left == 0) return;
    std::size_t distance = channels;
    if (!run.repeats) {
        // Zeros, which repeat the byte before them; the first one may have to be written.
        distance = 1;
        if (byteOf<channels - 1>(run.difference) != 0) {
            sink.literal(0);
            --left;
        }
    }
    for (; left >= longestMatch + shortestMatch; left -= longestMatch) sink.match(longestMatch, distance);
    if (left > longestMatch) {
        sink.match(longestMatch - shortestMatch, distance);
        left -= longestMatch - shortestMatch;
    }
    sink.match(left, distance);
}

}  // namespace

class RunDeflater::Counter {
public:
    void literal(std::uint8_t byte) { ++symbols_[byte]; }

    template <std::size_t channels>
    void pixel(std::uint32_t difference) {
        ++bytes_[0][byteOf<0>(difference)];
        ++bytes_[1][byteOf<1>(difference)];
        ++bytes_[2][byteOf<2>(difference)];
        if constexpr (channels == 4) ++bytes_[3][byteOf<3>(difference)];
    }

    void match(std::size_t length, std::size_t) {
        ++symbols_[matchLengths[length].symbol];
        otherBits_ += matchLengths[length].extraBits + 1U;
    }

    std::span<const std::uint32_t> symbols() {
        for (auto& channel : bytes_) {
            for (std::size_t byte = 0; byte < channel.size(); ++byte) symbols_[byte] += channel[byte];
            channel.fill(0);
        }
        symbols_[endOfBlock] = 1;
        return symbols_;
    }
    /// The bits of what is no symbol: distances and the rest of lengths.
    [[nodiscard]] std::uint64_t otherBits() const { return otherBits_; }

private:
    std::array<std::uint32_t, symbolCount> symbols_{};
    // Apart, since the same byte comes in several channels, and each sum has to wait for the one before.
    std::array<std::array<std::uint32_t, 256>, 4> bytes_{};
    std::uint64_t otherBits_ = 0;
};

/// Writes symbols as bits.
class RunDeflater::Writer {
public:
    Writer(BitWriter& bits, std::span<const HuffmanCode> codes) : bits_(bits), codes_(codes.data()) {}

    void literal(std::uint8_t byte) { bits_.put(codes_[byte]); }

    template <std::size_t channels>
    void pixel(std::uint32_t difference) {
        bits_.add(codes_[byteOf<0>(difference)]);
        bits_.add(codes_[byteOf<1>(difference)]);
        bits_.add(codes_[byteOf<2>(difference)]);
        if constexpr (channels == 4) bits_.add(codes_[byteOf<3>(difference)]);
        bits_.flush();
    }

    void match(std::size_t length, std::size_t distance) {
        const MatchLength& code = matchLengths[length];
        bits_.add(codes_[code.symbol]);
        bits_.add(code.extra, code.extraBits);
        bits_.put(distance == 1 ? 0 : 1, 1);
    }

private:
    BitWriter& bits_;
    const HuffmanCode* codes_;
};

template <std::size_t channels>
void RunDeflater::Sum::add(const PixelRun& run) {
    if (run.startsRow) sums += bytes += filterUp;
    const std::uint64_t c0 = byteOf<0>(run.difference);
    const std::uint64_t c1 = byteOf<1>(run.difference);
    const std::uint64_t c2 = byteOf<2>(run.difference);
    const std::uint64_t c3 = channels == 4 ? byteOf<3>(run.difference) : 0;
    // Each pixel adds its bytes, and to the sum of sums the first ones as often as there are bytes to come.
    const std::uint64_t once = c0 + c1 + c2 + c3;
    const std::uint64_t often = channels * c0 + (channels - 1) * c1 + (channels - 2) * c2 + c3;
    for (std::uint32_t left = run.repeats ? run.pixels + 1 : 1; left > 0; --left) {
        sums += channels * bytes + often;
        bytes += once;
    }
    if (!run.repeats) sums += channels * bytes * run.pixels;
}

RunDeflater::RunDeflater(std::string& out, bool opaque)
    : out_(out), opaque_(opaque), counter_(std::make_unique<Counter>()) {
    out_.append("\x78\x01", 2);
}
RunDeflater::~RunDeflater() = default;

void RunDeflater::addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
    if (opaque_)
        addRuns<3>(row, above, width);
    else
        addRuns<4>(row, above, width);
}

template <std::size_t channels>
void RunDeflater::addRuns(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
    constexpr std::size_t shortest = shortestMatch / channels + 1;  // one byte may have to be written by itself
    // Not emptied between blocks, since that would mean to clear it again.
    if (runs_.size() < runCount_ + width) runs_.resize(runCount_ + width + runsInBlock);
    PixelRun* const begin = runs_.data() + runCount_;
    PixelRun* end = begin;
    forEachRun(row, above, width, shortest, [&end](const PixelRun& run) { *end++ = run; });
    runCount_ += static_cast<std::size_t>(end - begin);

    Sum sum = sum_;
    for (const PixelRun& run : std::span(begin, end)) {
        sum.add<channels>(run);
        symbolsOf<channels>(run, *counter_);
    }
    sum_ = {sum.bytes % adlerModulus, sum.sums % adlerModulus};
    if (runCount_ >= runsInBlock) writeBlock<channels>(false);
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
    const std::span<const std::uint32_t> counts = counter_->symbols();
    const std::vector<HuffmanCode> codes = huffmanCodes(counts, longestCode);
    // Distances are 1 or a pixel, with one bit each.
    std::vector<std::uint16_t> lengths;
    for (const HuffmanCode& code : codes) lengths.push_back(code.length);
    for (std::size_t distance = 1; distance <= channels; ++distance)
        lengths.push_back(distance == 1 || distance == channels ? 1 : 0);
    std::array<std::uint32_t, codeLengths.size()> lengthCounts{};
    for (const std::uint16_t length : lengths) ++lengthCounts[length];
    const std::vector<HuffmanCode> lengthCodes = huffmanCodes(lengthCounts, longestLengthCode);

    std::uint64_t size = counter_->otherBits();
    for (std::size_t symbol = 0; symbol < codes.size(); ++symbol)
        size += std::uint64_t{counts[symbol]} * codes[symbol].length;
    constexpr std::size_t mostOfHeader = 512;
    const std::size_t begin = out_.size();
    out_.resize(begin + size / 8 + mostOfHeader);

    BitWriter bits(out_.data() + begin, pendingBits_, pendingCount_);
    constexpr unsigned ownCodes = 2;
    bits.put((last ? 1 : 0) | ownCodes << 1, 3);
    bits.put(symbolCount - 257, 5);
    bits.put(channels - 1, 5);
    bits.put(codeLengths.size() - 4, 4);
    for (const std::uint8_t length : codeLengths) bits.put(lengthCodes[length].length, 3);
    for (const std::uint16_t length : lengths) bits.put(lengthCodes[length]);
    Writer writer(bits, codes);
    for (const PixelRun& run : std::span(runs_).first(runCount_)) symbolsOf<channels>(run, writer);
    bits.put(codes[endOfBlock]);
    pendingBits_ = bits.bits();
    pendingCount_ = bits.count();
    out_.resize(static_cast<std::size_t>(bits.end() - out_.data()));
    runCount_ = 0;
    *counter_ = {};
}

}  // namespace tavrin::paint
