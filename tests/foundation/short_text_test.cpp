// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/memory/short_text.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

constexpr std::array<std::string_view, 9> words{"",
                                                "a",
                                                "abcdefg",
                                                "abcdefgh",
                                                "abcdefghi",
                                                "abcdefghijklmnop",
                                                "fontWeight",
                                                "abcdefghijklmnopq",
                                                "foregroundColorAndMuchMore"};

TEST(ShortText, IsFoundWhereItIsTheSame) {
    for (std::size_t index = 0; index < words.size(); ++index) {
        SCOPED_TRACE(words[index]);
        EXPECT_EQ(indexOfText<words>(words[index]), index);
        for (std::size_t at = 0; at < words[index].size(); ++at) {
            std::string other(words[index]);
            other[at] = '?';
            EXPECT_EQ(indexOfText<words>(other), words.size()) << "another byte " << at;
        }
        EXPECT_EQ(indexOfText<words>(std::string(words[index]) + "?"), words.size());
    }
}

}  // namespace
}  // namespace tavrin
