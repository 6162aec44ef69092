// SPDX-License-Identifier: MIT
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

// What is left to who writes. The codes of a pixel's bytes and the bits of an unfinished byte fit in one word.
constexpr unsigned longestCode = 12;
constexpr unsigned longestMatchBits = longestCode + 5 + 1;  // with the rest of the length and the distance

/// The number of the filter *Up*, which stands before each row.
constexpr std::uint8_t filterUp = 2;

/// The symbol of a match's length, and the bits that follow it. A match of length 0 is none: it has a symbol of its
/// own, which is never written.
constexpr std::size_t noMatch = symbolCount;
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
    table[0] = {noMatch, 0, 0};
    return table;
}();

/// How many bits follow a symbol: for matches the rest of the length and the distance.
inline constexpr auto bitsAfterSymbol = [] {
    std::array<std::uint8_t, symbolCount + 1> table{};
    for (std::size_t length = shortestMatch; length < matchLengths.size(); ++length)
        table[matchLengths[length].symbol] = static_cast<std::uint8_t>(matchLengths[length].extraBits + 1);
    return table;
}();

/// Hands as much of a match to a sink as leaves one that is not too long, which is returned.
template <class Sink>
[[gnu::always_inline]] inline std::size_t shortenedMatch(std::size_t left, std::size_t distance, Sink& sink) {
    for (; left >= longestMatch + shortestMatch; left -= longestMatch) sink.match(longestMatch, distance);
    if (left <= longestMatch) return left;
    sink.match(longestMatch - shortestMatch, distance);
    return left - (longestMatch - shortestMatch);
}

/// Hands a run to a sink as literals and matches. Inlined, so that what a sink keeps stays in registers.
template <std::size_t channels, class Sink>
[[gnu::always_inline]] inline void symbolsOf(const PixelRun& run, Sink& sink) {
    if (run.startsRow) sink.literal(filterUp);
    sink.template pixel<channels>(run.difference);
    std::size_t left = channels * run.pixels;
    if (run.repeats) {
        sink.match(shortenedMatch(left, channels, sink), channels);
        return;
    }
    // Zeros, which repeat the byte before them; the first one may have to be written.
    if (byteOf<channels - 1>(run.difference) != 0 && left > 0) {
        sink.literal(0);
        --left;
    }
    // Whether anything follows is hard to foresee, so there is always a match.
    sink.match(shortenedMatch(left, 1, sink), 1);
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

    void match(std::size_t length, std::size_t) { ++symbols_[matchLengths[length].symbol]; }

    /// Adds what was counted to the counts of others.
    void addTo(std::span<std::uint32_t, symbolCount> counts) const {
        for (std::size_t symbol = 0; symbol < symbolCount; ++symbol) counts[symbol] += symbols_[symbol];
        for (const auto& channel : bytes_)
            for (std::size_t byte = 0; byte < channel.size(); ++byte) counts[byte] += channel[byte];
    }

private:
    std::array<std::uint32_t, symbolCount + 1> symbols_{};
    // Apart, since the same byte comes in several channels, and each sum has to wait for the one before.
    std::array<std::array<std::uint32_t, 256>, 4> bytes_{};
};

/// Writes symbols as bits.
class SymbolWriter {
public:
    SymbolWriter(const BitWriter& bits, std::span<const HuffmanCode, symbolCount> codes)
        : bits_(bits), codes_(codes.data()) {
        for (std::size_t length = shortestMatch; length < matchLengths.size(); ++length) {
            const MatchLength& match = matchLengths[length];
            const HuffmanCode code = codes[match.symbol];
            matches_[length] = {code.bits | std::uint32_t{match.extra} << code.length,
                                static_cast<std::uint16_t>(code.length + match.extraBits), 1};
        }
    }

    [[nodiscard]] const BitWriter& bits() const { return bits_; }

    void literal(std::uint8_t byte) { bits_.put(codes_[byte]); }

    template <std::size_t channels>
    void pixel(std::uint32_t difference) {
        bits_.add(codes_[byteOf<0>(difference)]);
        bits_.add(codes_[byteOf<1>(difference)]);
        bits_.add(codes_[byteOf<2>(difference)]);
        // There is room for the match that follows, but for a fourth channel only where that is as short as it mostly
        // is.
        if constexpr (channels == 4) {
            const HuffmanCode code = codes_[byteOf<3>(difference)];
            bits_.add(code);
            if (code.length > BitWriter::room - 3 * longestCode - longestMatchBits) bits_.flush();
        }
    }

    void match(std::size_t length, std::size_t distance) {
        const Match& match = matches_[length];
        bits_.add(match.bits, match.count);
        bits_.put(distance == 1 ? 0 : 1, match.distanceBits);
    }

private:
    /// The bits of a match's length, and how many its distance has.
    struct Match {
        std::uint32_t bits;
        std::uint16_t count;
        std::uint16_t distanceBits;
    };
    BitWriter bits_;
    const HuffmanCode* codes_;
    std::array<Match, longestMatch + 1> matches_{};
};

}  // namespace tavrin::paint
