#include "tavrin/platform/paint/run_deflater.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <utility>

#include "tavrin/platform/paint/huffman_code.h"

namespace tavrin::paint {
namespace {

static_assert(std::endian::native == std::endian::little, "bits are written as little-endian words");

constexpr std::uint8_t filterUp = 2;
constexpr std::size_t stepsInBlock = std::size_t{1} << 15;
constexpr unsigned adlerModulus = 65521;

// What deflate prescribes.
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t symbolCount = 286;
constexpr unsigned longestMatch = 258;
constexpr unsigned shortestMatch = 3;
constexpr unsigned longestLengthCode = 7;
/// In the order in which the lengths of their own codes are written.
constexpr std::array<std::uint8_t, 19> codeLengths{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
/// The four bytes of a pixel and what is left of a byte fit in one word.
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

/// Byte by byte and without carries.
constexpr std::uint32_t subtractBytes(std::uint32_t a, std::uint32_t b) {
    constexpr std::uint32_t high = 0x80808080;
    return ((a | high) - (b & ~high)) ^ ((a ^ ~b) & high);
}

/// A byte of a pixel in the order of a PNG.
template <std::size_t channel>
constexpr std::uint8_t byteOf(std::uint32_t pixel) {
    constexpr std::array<unsigned, 4> shifts{16, 8, 0, 24};
    return static_cast<std::uint8_t>(pixel >> shifts[channel]);
}

/// The first pixel from `i` on that is not the one above, or the row's end.
std::size_t endOfSame(const std::uint32_t* row, const std::uint32_t* above, std::size_t i, std::size_t width) {
    constexpr std::size_t block = 8;
    for (; i + block <= width; i += block) {
        std::uint32_t difference = 0;
        for (std::size_t k = 0; k < block; ++k) difference |= row[i + k] ^ above[i + k];
        if (difference != 0) break;
    }
    while (i < width && row[i] == above[i]) ++i;
    return i;
}

}  // namespace

/// Counts how often each symbol is needed.
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
        for (auto& channel : bytes_)
            for (std::size_t byte = 0; byte < channel.size(); ++byte) symbols_[byte] += std::exchange(channel[byte], 0U);
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

/// Writes bits to memory, of which there must be eight bytes more than is written.
class RunDeflater::Writer {
public:
    Writer(char* out, unsigned bits, unsigned count) : out_(out), bits_(bits), count_(count) {}

    void put(std::uint64_t bits, unsigned count) {
        add(bits, count);
        flush();
    }
    void put(HuffmanCode code) { put(code.bits, code.length); }

    void use(std::span<const HuffmanCode> codes) { codes_ = codes; }
    void literal(std::uint8_t byte) { put(codes_[byte]); }

    template <std::size_t channels>
    void pixel(std::uint32_t difference) {
        add(codes_[byteOf<0>(difference)]);
        add(codes_[byteOf<1>(difference)]);
        add(codes_[byteOf<2>(difference)]);
        if constexpr (channels == 4) add(codes_[byteOf<3>(difference)]);
        flush();
    }

    void match(std::size_t length, std::size_t distance) {
        const MatchLength& code = matchLengths[length];
        add(codes_[code.symbol]);
        add(code.extra, code.extraBits);
        add(distance == 1 ? 0 : 1, 1);
        flush();
    }

    [[nodiscard]] char* end() const { return out_; }
    [[nodiscard]] unsigned bits() const { return static_cast<unsigned>(bits_); }
    [[nodiscard]] unsigned count() const { return count_; }

private:
    void add(std::uint64_t bits, unsigned count) {
        bits_ |= bits << count_;
        count_ += count;
    }
    void add(HuffmanCode code) { add(code.bits, code.length); }
    void flush() {
        std::memcpy(out_, &bits_, sizeof bits_);
        out_ += count_ / 8;
        bits_ >>= count_ & ~7U;
        count_ &= 7U;
    }

    char* out_;
    std::uint64_t bits_;
    unsigned count_;
    std::span<const HuffmanCode> codes_;
};

RunDeflater::RunDeflater(std::string& out, bool opaque) : out_(out), opaque_(opaque) { out_.append("\x78\x01", 2); }

void RunDeflater::addRow(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
    if (opaque_)
        addSteps<3>(row, above, width);
    else
        addSteps<4>(row, above, width);
}

void RunDeflater::finish() {
    if (opaque_)
        writeBlock<3>(true);
    else
        writeBlock<4>(true);
    if (pendingCount_ > 0) out_ += static_cast<char>(pendingBits_);
    for (const std::uint64_t half : {sumOfSums_, sum_}) {
        out_ += static_cast<char>(half >> 8);
        out_ += static_cast<char>(half);
    }
}

template <std::size_t channels>
void RunDeflater::addSteps(const std::uint32_t* row, const std::uint32_t* above, std::size_t width) {
    for (std::size_t i = 0; i < width;) {
        Step step{subtractBytes(row[i], above[i]), 0, 0, i == 0};
        const std::size_t begin = ++i;
        i = endOfSame(row, above, begin, width);
        if (i == begin) {
            while (i < width && subtractBytes(row[i], above[i]) == step.difference) ++i;
            step.repeats = 1;
        } else if (channels * (i - begin) < shortestMatch + 1) {
            i = begin;  // hardly a run
        }
        step.pixels = static_cast<std::uint32_t>(i - begin) & 0xFFFFFFU;
        addToSum<channels>(step);
        steps_.push_back(step);
    }
    sum_ %= adlerModulus;
    sumOfSums_ %= adlerModulus;
    if (steps_.size() >= stepsInBlock) writeBlock<channels>(false);
}

template <std::size_t channels>
void RunDeflater::addToSum(const Step& step) {
    const auto add = [&](std::uint8_t byte) { sumOfSums_ += sum_ += byte; };
    if (step.startsRow) add(filterUp);
    for (std::uint32_t left = step.repeats ? step.pixels + 1 : 1; left > 0; --left) {
        add(byteOf<0>(step.difference));
        add(byteOf<1>(step.difference));
        add(byteOf<2>(step.difference));
        if constexpr (channels == 4) add(byteOf<3>(step.difference));
    }
    if (!step.repeats) sumOfSums_ += sum_ * channels * step.pixels;
}

/// Hands the steps to a sink as literals and matches.
template <std::size_t channels, class Sink>
void RunDeflater::replay(Sink& sink) const {
    for (const Step& step : steps_) {
        if (step.startsRow) sink.literal(filterUp);
        sink.template pixel<channels>(step.difference);
        std::size_t left = channels * step.pixels;
        if (left == 0) continue;
        std::size_t distance = channels;
        if (!step.repeats) {
            distance = 1;
            if (byteOf<channels - 1>(step.difference) != 0) {
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
}

template <std::size_t channels>
void RunDeflater::writeBlock(bool last) {
    Counter counter;
    replay<channels>(counter);
    const std::span<const std::uint32_t> counts = counter.symbols();
    const std::vector<HuffmanCode> codes = huffmanCodes(counts, longestCode);
    // Distances are 1 or a pixel, with one bit each.
    std::vector<std::uint8_t> lengths;
    for (const HuffmanCode& code : codes) lengths.push_back(static_cast<std::uint8_t>(code.length));
    for (std::size_t distance = 1; distance <= channels; ++distance)
        lengths.push_back(distance == 1 || distance == channels ? 1 : 0);
    std::array<std::uint32_t, codeLengths.size()> lengthCounts{};
    for (const std::uint8_t length : lengths) ++lengthCounts[length];
    const std::vector<HuffmanCode> lengthCodes = huffmanCodes(lengthCounts, longestLengthCode);

    std::uint64_t bits = counter.otherBits();
    for (std::size_t symbol = 0; symbol < codes.size(); ++symbol)
        bits += std::uint64_t{counts[symbol]} * codes[symbol].length;
    constexpr std::size_t headerAndSlack = 512;
    const std::size_t begin = out_.size();
    out_.resize(begin + bits / 8 + headerAndSlack);
    Writer writer(out_.data() + begin, pendingBits_, pendingCount_);
    constexpr unsigned dynamicCodes = 2;
    writer.put((last ? 1 : 0) | dynamicCodes << 1, 3);
    writer.put(symbolCount - 257, 5);
    writer.put(channels - 1, 5);
    writer.put(codeLengths.size() - 4, 4);
    for (const std::uint8_t length : codeLengths) writer.put(lengthCodes[length].length, 3);
    for (const std::uint8_t length : lengths) writer.put(lengthCodes[length]);
    writer.use(codes);
    replay<channels>(writer);
    writer.put(codes[endOfBlock]);
    pendingBits_ = writer.bits();
    pendingCount_ = writer.count();
    out_.resize(static_cast<std::size_t>(writer.end() - out_.data()));
    steps_.clear();
}

}  // namespace tavrin::paint
