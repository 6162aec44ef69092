// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/pixel_runs.h"

#include <bit>
#include <random>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tavrin::paint {
namespace {

using Pixels = std::vector<std::uint32_t>;

/// The runs of a row below black.
std::vector<PixelRun> runsOf(const Pixels& row, std::size_t shortest) {
    const Pixels above(row.size(), 0);
    RowDifferences differences;
    differences.compare(row.data(), above.data(), row.size(), subtractBytes);
    std::vector<PixelRun> runs(row.size());
    runs.resize(static_cast<std::size_t>(writeRuns(differences, shortest, runs.data()) - runs.data()));
    return runs;
}

/// "d" for a difference, "=n" for pixels as above, "xn" for repeats.
std::string described(const std::vector<PixelRun>& runs) {
    std::string text;
    for (const PixelRun& run : runs) {
        if (!text.empty()) text += ' ';
        text += fmt::format("{:x}", run.difference);
        if (run.pixels > 0) text += fmt::format("{}{}", run.repeats ? 'x' : '=', run.pixels);
        EXPECT_EQ(run.startsRow, text.find(' ') == std::string::npos);
    }
    return text;
}

Pixels zeros(std::size_t count) { return Pixels(count, 0); }

Pixels joined(std::initializer_list<Pixels> parts) {
    Pixels row;
    for (const Pixels& part : parts) row.insert(row.end(), part.begin(), part.end());
    return row;
}

TEST(PixelRuns, AreADifferenceAndWhatFollows) {
    const struct {
        const char* why;
        Pixels row;
        std::size_t shortest;
        std::string runs;
    } rows[] = {
        {"one pixel", {7}, 1, "7"},
        {"nothing differs", zeros(40), 1, "0=39"},
        {"no two alike", {1, 2, 3}, 1, "1 2 3"},
        {"repeats", {5, 5, 5, 6}, 1, "5x2 6"},
        {"as above", {5, 0, 0, 6}, 1, "5=2 6"},
        {"one as above", {5, 0, 6}, 1, "5=1 6"},
        {"one as above is too short", {5, 0, 6}, 2, "5 0 6"},
        {"repeats, then as above", {5, 5, 0, 0, 0, 6}, 2, "5x1 0=2 6"},
        {"repeats, then one as above", {5, 5, 0, 6}, 1, "5x1 0 6"},
        {"as above to the end", joined({{5, 6}, zeros(30)}), 2, "5 6=30"},
        {"one as above at the end", {5, 0}, 2, "5 0"},
        {"past the pixels that are compared at once", joined({zeros(15), {5, 5}, zeros(16), {6}}), 2,
         "0=14 5x1 0=15 6"},
        {"the last of those", joined({zeros(15), {5}, zeros(16)}), 2, "0=14 5=16"},
        {"more than a word of them", joined({Pixels(70, 5), zeros(60), {6}}), 2, "5x69 0=59 6"},
        {"one in each word", joined({{1}, zeros(63), {2}, zeros(63), {3}, zeros(71)}), 2, "1=63 2=63 3=71"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(described(runsOf(row.row, row.shortest)), row.runs);
    }
}

/// A row that is above black what runs say.
Pixels expanded(const std::vector<PixelRun>& runs) {
    Pixels row;
    for (const PixelRun& run : runs) {
        row.push_back(run.difference);
        row.insert(row.end(), run.pixels, run.repeats ? run.difference : 0);
    }
    return row;
}

TEST(PixelRuns, HoldARowOfAnyKind) {
    std::minstd_rand random(5);
    for (int i = 0; i < 2000; ++i) {
        Pixels row(1 + random() % 300);
        const auto differing = random() % 101;
        for (std::uint32_t& pixel : row)
            pixel = random() % 100 < differing ? 1 + static_cast<std::uint32_t>(random() % 3) : 0;
        for (const std::size_t shortest : {std::size_t{1}, std::size_t{2}})
            ASSERT_EQ(expanded(runsOf(row, shortest)), row);
    }
}

TEST(PixelRuns, CountOnes) {
    std::mt19937_64 random(7);
    for (int i = 0; i < 1000; ++i) {
        std::uint64_t bits = random();
        bits &= random();
        ASSERT_EQ(countOnes(bits), std::popcount(bits));
    }
    EXPECT_EQ(countOnes(~std::uint64_t{0}), 64U);
    EXPECT_EQ(countOnes(0), 0U);
}

TEST(PixelRuns, SubtractWithoutCarries) {
    EXPECT_EQ(subtractBytes(0x00000000, 0x01010101), 0xFFFFFFFF);
    EXPECT_EQ(subtractBytes(0x80FF0001, 0x01FF01FF), 0x7F00FF02);
    std::mt19937 random(3);
    for (int i = 0; i < 1000; ++i) {
        const auto a = static_cast<std::uint32_t>(random());
        const auto b = static_cast<std::uint32_t>(random());
        for (const unsigned shift : {0U, 8U, 16U, 24U})
            ASSERT_EQ(subtractBytes(a, b) >> shift & 0xFF, ((a >> shift & 0xFF) - (b >> shift & 0xFF)) & 0xFF);
    }
}

}  // namespace
}  // namespace tavrin::paint
