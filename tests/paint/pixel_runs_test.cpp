#include "tavrin/platform/paint/pixel_runs.h"

#include <random>
#include <string>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

namespace tavrin::paint {
namespace {

using Pixels = std::vector<std::uint32_t>;

/// The runs of a row below black: "d" for the difference, "=n" pixels as above, "xn" repeats.
std::string runsOf(const Pixels& row, std::size_t shortest) {
    std::string text;
    const Pixels above(row.size(), 0);
    forEachRun(row.data(), above.data(), row.size(), shortest, subtractBytes, [&](const PixelRun& run) {
        if (!text.empty()) text += ' ';
        text += fmt::format("{:x}", run.difference);
        if (run.pixels > 0) text += fmt::format("{}{}", run.repeats ? 'x' : '=', run.pixels);
        EXPECT_EQ(run.startsRow, text.find(' ') == std::string::npos);
    });
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
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(runsOf(row.row, row.shortest), row.runs);
    }
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
