// SPDX-License-Identifier: MIT
#include "tavrin/values/expression_path.h"

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(ExpressionPath, TakesComponentsApart) {
    using Path = std::vector<JSONKey>;
    const struct {
        const char* inner;
        Path path;
    } rows[] = {
        {"", {}},
        {"a", {"a"}},
        {"a..b.", {"a", "b"}},
        {"a.b[2].c", {"a", "b", std::int64_t{2}, "c"}},
        {"[-1]", {"", std::int64_t{-1}}},
        {"a[x]", {"a[x]"}},
        {"a[1][2]", {"a", std::int64_t{1}}},
        {" a ", {" a "}},
    };
    for (const auto& row : rows) EXPECT_EQ(expressionPath(row.inner), row.path) << row.inner;
}

TEST(ExpressionPath, FindsReversedBrackets) {
    for (const char* inner : {"a][", "a.b]c[", "x[1].]["}) EXPECT_TRUE(hasReversedBrackets(inner)) << inner;
    for (const char* inner : {"", "a", "a[", "a]", "a[]", "a].b[", "a[1]]["})
        EXPECT_FALSE(hasReversedBrackets(inner)) << inner;
}

}  // namespace
}  // namespace tavrin
