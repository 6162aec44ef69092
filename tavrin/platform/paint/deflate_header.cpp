// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/deflate_header.h"

#include <algorithm>
#include <array>
#include <vector>

#include "tavrin/platform/paint/run_symbols.h"

namespace tavrin::paint {
namespace {

constexpr unsigned longestLengthCode = 7;
/// In the order in which deflate wants the lengths of their own codes.
constexpr std::array<std::uint8_t, 19> codeLengths{16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};

/// A symbol that stands for a code's length or for several, and the bits that follow it.
struct LengthSymbol {
    std::uint8_t symbol;
    std::uint8_t extra = 0;
    std::uint8_t extraBits = 0;
};

/// The lengths of codes as deflate writes them: of those that repeat, how often.
std::vector<LengthSymbol> lengthSymbols(std::span<const std::uint8_t> lengths) {
    constexpr std::size_t mostZeros = 138;
    constexpr std::size_t fewestOfMany = 11;
    constexpr std::size_t mostRepeats = 6;
    constexpr std::size_t fewest = 3;
    std::vector<LengthSymbol> symbols;
    symbols.reserve(lengths.size());
    for (std::size_t i = 0; i < lengths.size();) {
        const std::uint8_t length = lengths[i];
        std::size_t same = 1;
        while (i + same < lengths.size() && lengths[i + same] == length) ++same;
        std::size_t taken = 1;
        if (length == 0 && same >= fewest) {
            taken = std::min(same, mostZeros);
            const bool many = taken >= fewestOfMany;
            const auto extra = static_cast<std::uint8_t>(taken - (many ? fewestOfMany : fewest));
            symbols.push_back(many ? LengthSymbol{18, extra, 7} : LengthSymbol{17, extra, 3});
        } else {
            symbols.push_back({length});
            if (same > fewest) {
                const std::size_t repeats = std::min(same - 1, mostRepeats);
                symbols.push_back({16, static_cast<std::uint8_t>(repeats - fewest), 2});
                taken += repeats;
            }
        }
        i += taken;
    }
    return symbols;
}

}  // namespace

void writeDeflateHeader(BitWriter& bits, bool last, std::span<const HuffmanCode> codes,
                        std::span<const std::uint8_t> distanceLengths) {
    std::vector<std::uint8_t> lengths;
    lengths.reserve(codes.size() + distanceLengths.size());
    for (const HuffmanCode& code : codes) lengths.push_back(static_cast<std::uint8_t>(code.length));
    lengths.insert(lengths.end(), distanceLengths.begin(), distanceLengths.end());
    const std::vector<LengthSymbol> symbols = lengthSymbols(lengths);
    std::array<std::uint32_t, codeLengths.size()> counts{};
    for (const LengthSymbol& symbol : symbols) ++counts[symbol.symbol];
    const std::vector<HuffmanCode> lengthCodes = huffmanCodes(counts, longestLengthCode);

    constexpr unsigned ownCodes = 2;
    bits.put((last ? 1 : 0) | ownCodes << 1, 3);
    bits.put(symbolCount - (endOfBlock + 1), 5);
    bits.put(distanceLengths.size() - 1, 5);
    bits.put(codeLengths.size() - 4, 4);
    for (const std::uint8_t length : codeLengths) bits.put(lengthCodes[length].length, 3);
    for (const LengthSymbol& symbol : symbols) {
        const HuffmanCode code = lengthCodes[symbol.symbol];
        bits.put(code.bits | unsigned{symbol.extra} << code.length, code.length + symbol.extraBits);
    }
}

}  // namespace tavrin::paint
