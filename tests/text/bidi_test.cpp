// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/bidi.h"

#include <gtest/gtest.h>

namespace tavrin::text {
namespace {

TEST(Bidi, LevelsFollowTheFirstStrongCharacter) {
    const struct {
        const char* why;
        std::u32string_view text;
        std::uint8_t base;
        std::vector<std::uint8_t> levels;
    } rows[] = {
        {"Latin needs no levels", U"abc", 0, {}},           {"Hebrew", U"\u05D0\u05D1", 1, {1, 1}},
        {"Hebrew in Latin", U"a \u05D0", 0, {0, 0, 1}},     {"a number in Hebrew", U"\u05D0 12", 1, {1, 1, 2, 2}},
        {"an isolate", U"a\u2067b\u2069", 0, {0, 0, 2, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const BidiLevels result = bidiLevels(row.text);
        EXPECT_EQ(result.base, row.base);
        EXPECT_EQ(result.levels, row.levels);
    }
}

TEST(Bidi, PiecesAreReordered) {
    const struct {
        const char* why;
        std::vector<std::uint8_t> levels;
        std::vector<std::uint32_t> order;
    } rows[] = {
        {"nothing", {}, {}},
        {"left to right", {0, 0, 0}, {0, 1, 2}},
        {"right to left", {1, 1, 1}, {2, 1, 0}},
        {"a number inside right-to-left text", {1, 2, 1}, {2, 1, 0}},
        {"several pieces of a number keep their order", {1, 2, 2, 1}, {3, 1, 2, 0}},
        {"right-to-left text inside left-to-right text", {0, 1, 1, 0}, {0, 2, 1, 3}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(visualOrder(row.levels), row.order);
    }
}

}  // namespace
}  // namespace tavrin::text
