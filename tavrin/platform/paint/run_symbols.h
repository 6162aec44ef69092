#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "tavrin/platform/paint/bit_writer.h"
#include "tavrin/platform/paint/huffman_code.h"
#include "tavrin/platform/paint/pixel_runs.h"

// Runs of pixels as the symbols of deflate: bytes as they are, and matches with what came a byte or a pixel before.

namespace tavrin::paint {

// What deflate prescribes.
constexpr std::size_t endOfBlock = 256;
constexpr std::size_t symbolCount = 286;
constexpr unsigned shortestMatch = 3;
constexpr unsigned longestMatch = 258;

/// The number of the filter *Up*, which stands before each row.
constexpr std::uint8_t filterUp = 2;

/// The symbol of a match's length, and the bits that follow it.
struct MatchLength {
    std::uint16_t symbol;
    std::uint8_t extraBits;
    std::uint8_t extra;
};
inline constexpr auto matchLengths = [] {
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

/// Hands a run to a sink as literals and matches. Inlined, so that what a sink keeps stays in registers.
template <std::size_t channels, class Sink>
[[gnu::always_inline]] inline void symbolsOf(const PixelRun& run, Sink& sink) {
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

/// Counts how often each symbol of a block is needed.
class SymbolCounter {
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
class SymbolWriter {
public:
    SymbolWriter(const BitWriter& bits, std::span<const HuffmanCode> codes) : bits_(bits), codes_(codes.data()) {}

    [[nodiscard]] const BitWriter& bits() const { return bits_; }

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
    BitWriter bits_;
    const HuffmanCode* codes_;
};

}  // namespace tavrin::paint
