// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/huffman_code.h"

#include <algorithm>
#include <cstddef>

namespace tavrin::paint {
namespace {

/// How many of the codes have each length, 0 to `longest`.
using LengthCounts = std::vector<std::uint32_t>;

/// What merging the two rarest again and again gives for `weights`, which ascend. The last merged is the root, and its
/// parts lie before it.
LengthCounts mergedLengths(const std::vector<std::uint64_t>& weights, unsigned longest) {
    const std::size_t leaves = weights.size();
    std::vector<std::uint64_t> merged;
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

std::uint16_t reversed(unsigned bits, unsigned length) {
    unsigned result = 0;
    for (unsigned i = 0; i < length; ++i) result |= (bits >> i & 1) << (length - 1 - i);
    return static_cast<std::uint16_t>(result);
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
    // Each count with its symbol behind it, which keeps the order of those that are alike.
    constexpr unsigned symbolBits = 32;
    std::vector<std::uint64_t> weights;
    for (std::size_t symbol = 0; symbol < counts.size(); ++symbol)
        if (counts[symbol] > 0) weights.push_back(std::uint64_t{counts[symbol]} << symbolBits | symbol);
    std::sort(weights.begin(), weights.end());
    std::vector<std::uint32_t> symbols(weights.size());
    std::transform(weights.begin(), weights.end(), symbols.begin(),
                   [](std::uint64_t weight) { return static_cast<std::uint32_t>(weight); });
    for (std::uint64_t& weight : weights) weight >>= symbolBits;

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
