// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/huffman_code.h"

#include <numeric>
#include <random>

#include <gtest/gtest.h>

namespace tavrin::paint {
namespace {

using Counts = std::vector<std::uint32_t>;

std::vector<int> lengths(const Counts& counts, unsigned longest) {
    std::vector<int> result;
    for (const HuffmanCode& code : huffmanCodes(counts, longest)) result.push_back(code.length);
    return result;
}

TEST(HuffmanCodes, AreShorterForWhatOccursMoreOften) {
    const struct {
        const char* why;
        Counts counts;
        unsigned longest;
        std::vector<int> lengths;
    } rows[] = {
        {"two symbols", {3, 9}, 15, {1, 1}},
        {"what does not occur has no code", {3, 0, 9, 0}, 15, {1, 0, 1, 0}},
        {"equal counts", {5, 5, 5, 5}, 15, {2, 2, 2, 2}},
        {"halves", {1, 1, 2, 4, 8}, 15, {4, 4, 3, 2, 1}},
        {"halves, cut", {1, 1, 2, 4, 8}, 3, {3, 3, 3, 3, 1}},
        {"as many as fit", {1, 1, 2, 4, 8, 16, 32, 64}, 3, {3, 3, 3, 3, 3, 3, 3, 3}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(lengths(row.counts, row.longest), row.lengths);
    }
}

TEST(HuffmanCodes, AreNumberedAsDeflateWants) {
    // Lengths 2, 1, 3, 3: canonical codes 10, 0, 110, 111, written from their first bit on.
    const std::vector<HuffmanCode> codes = huffmanCodes(Counts{4, 8, 1, 1}, 15);
    const std::vector<std::pair<int, int>> expected{{0b01, 2}, {0, 1}, {0b011, 3}, {0b111, 3}};
    for (std::size_t i = 0; i < codes.size(); ++i)
        EXPECT_EQ((std::pair<int, int>{codes[i].bits, codes[i].length}), expected[i]) << i;
}

TEST(HuffmanCodes, UseEveryBitPatternOnce) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        Counts counts(2 + random() % 285);
        // Steep enough that codes have to be cut.
        for (std::uint32_t& count : counts) count = static_cast<std::uint32_t>(1 + random() % (1U << random() % 24));
        const unsigned longest = 9 + random() % 4;
        std::uint64_t taken = 0;
        for (const int length : lengths(counts, longest)) {
            ASSERT_GE(length, 1);
            ASSERT_LE(length, static_cast<int>(longest));
            taken += std::uint64_t{1} << (longest - static_cast<unsigned>(length));
        }
        EXPECT_EQ(taken, std::uint64_t{1} << longest);
    }
}

}  // namespace
}  // namespace tavrin::paint
