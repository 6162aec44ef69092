// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/strings/edit_distance.h"

#include <string>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(EditDistance, FindsWhatWasMeant) {
    constexpr std::string_view words[] = {"hstack", "vstack", "zstack", "text", "timer", "roundedRectangle", "id", "x"};
    const std::string endless(100'000, 'a');
    const struct {
        const char* why;
        std::string_view word;
        std::optional<std::string_view> match;
    } rows[] = {
        {"letter left out", "timr", "timer"},
        {"letter added", "textt", "text"},
        {"letter replaced", "tixt", "text"},
        {"letters swapped", "tmier", "timer"},
        {"letter case", "RoundedRectangle", "roundedRectangle"},
        {"several slips in a long word", "roundRectangel", "roundedRectangle"},
        {"the first among equals", "stack", "hstack"},
        {"the closest", "zstak", "zstack"},
        {"swapped in a short word", "di", "id"},
        {"too far", "picture", std::nullopt},
        {"a single letter is no hint", "y", std::nullopt},
        {"nothing", "", std::nullopt},
        {"endless", endless, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(closestMatch(row.word, words), row.match);
    }
    EXPECT_EQ(closestMatch("text", {}), std::nullopt);
}

}  // namespace
}  // namespace tavrin
