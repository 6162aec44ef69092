// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/huffman_code.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

namespace tavrin::paint {
namespace {

/// How many of the codes have each length, 0 to `longest`.
using LengthCounts = std::vector<std::uint32_t>;

/// What merging the two rarest again and again gives for `weights`, which ascend. The last merged is the root, and its
/// parts lie before it.
LengthCounts mergedLengths(const std::vector<std::uint64_t>& weights, unsigned longest) {
    const std::size_t leaves = weights.size();
    std::vector<std::uint64_t> merged;
    merged.reserve(leaves);
    std::vector<std::size_t> parents(2 * leaves - 1);
    std::size_t leaf = 0;
    std::size_t inner = 0;
    const auto takeRarest = [&] {
        const bool isLeaf = leaf < leaves && (inner == merged.size() || weights[leaf] <= merged[inner]);
        parents[isLeaf ? leaf : leaves + inner] = leaves + merged.size();
        return isLeaf ? weights[leaf++] : merged[inner++];
    };
    while (merged.size() + 1 < leaves) {
        const std::uint64_t first = takeRarest();
        const std::uint64_t second = takeRarest();
        merged.push_back(first + second);
    }

    LengthCounts counts(longest + 1);
    std::vector<unsigned> depths(parents.size());
    for (std::size_t node = parents.size() - 1; node-- > 0;) {
        depths[node] = depths[parents[node]] + 1;
        if (node < leaves) ++counts[std::min(depths[node], longest)];
    }
    return counts;
}

/// Makes codes whose lengths were cut fit again: longer ones take the place of a shorter one, as often as is needed.
void makeFit(LengthCounts& counts) {
    const std::size_t longest = counts.size() - 1;
    std::uint64_t taken = 0;
    for (std::size_t length = 1; length <= longest; ++length)
        taken += std::uint64_t{counts[length]} << (longest - length);
    for (; taken > std::uint64_t{1} << longest; --taken) {
        std::size_t shorter = longest - 1;
        while (counts[shorter] == 0) --shorter;
        --counts[shorter];
        counts[shorter + 1] += 2;
        --counts[longest];
    }
}

std::uint16_t reversed(std::uint32_t bits, unsigned length) {
    bits = (bits & 0x5555) << 1 | (bits >> 1 & 0x5555);
    bits = (bits & 0x3333) << 2 | (bits >> 2 & 0x3333);
    bits = (bits & 0x0F0F) << 4 | (bits >> 4 & 0x0F0F);
    bits = (bits & 0x00FF) << 8 | (bits >> 8 & 0x00FF);
    return static_cast<std::uint16_t>(bits >> (16 - length));
}

/// The symbols that occur, by how often; those that are alike in their own order. Digit by digit: counts are short
/// numbers, and what comes next is hard to foresee.
std::vector<std::uint32_t> byCount(std::span<const std::uint32_t> counts) {
    constexpr unsigned digitBits = 8;
    constexpr std::uint32_t digitMask = (1U << digitBits) - 1;
    std::vector<std::uint32_t> symbols;
    symbols.reserve(counts.size());
    std::uint32_t greatest = 0;
    for (std::uint32_t symbol = 0; symbol < counts.size(); ++symbol) {
        if (counts[symbol] > 0) symbols.push_back(symbol);
        greatest = std::max(greatest, counts[symbol]);
    }
    std::vector<std::uint32_t> sorted(symbols.size());
    for (unsigned shift = 0; shift < 32 && greatest >> shift != 0; shift += digitBits) {
        std::array<std::uint32_t, digitMask + 2> places{};
        for (const std::uint32_t symbol : symbols) ++places[(counts[symbol] >> shift & digitMask) + 1];
        std::partial_sum(places.begin(), places.end(), places.begin());
        for (const std::uint32_t symbol : symbols) sorted[places[counts[symbol] >> shift & digitMask]++] = symbol;
        symbols.swap(sorted);
    }
    return symbols;
}

void numberCodes(std::vector<HuffmanCode>& codes, const LengthCounts& counts) {
    std::vector<unsigned> next(counts.size());
    for (std::size_t length = 2; length < counts.size(); ++length)
        next[length] = (next[length - 1] + counts[length - 1]) << 1;
    for (HuffmanCode& code : codes)
        if (code.length > 0) code.bits = reversed(next[code.length]++, code.length);
}

}  // namespace

std::vector<HuffmanCode> huffmanCodes(std::span<const std::uint32_t> counts, unsigned longest) {
    const std::vector<std::uint32_t> symbols = byCount(counts);
    std::vector<std::uint64_t> weights(symbols.size());
    std::ranges::transform(symbols, weights.begin(), [&](std::uint32_t symbol) { return counts[symbol]; });

    LengthCounts lengths = mergedLengths(weights, longest);
    makeFit(lengths);

    std::vector<HuffmanCode> codes(counts.size());
    auto symbol = symbols.begin();
    for (unsigned length = longest; length > 0; --length)
        for (std::uint32_t i = 0; i < lengths[length]; ++i)
            codes[*symbol++].length = static_cast<std::uint16_t>(length);
    numberCodes(codes, lengths);
    return codes;
}

}  // namespace tavrin::paint
