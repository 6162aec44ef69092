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

TEST(ExpressionPath, SaysWhatIsWrongWithBrackets) {
    using Kind = ExpressionFault::Kind;
    using Path = std::vector<JSONKey>;
    const struct {
        const char* inner;
        std::optional<ExpressionFault> fault;
        Path path;
    } rows[] = {
        {"", {}, {}},
        {"a.b[2]", {}, {"a", "b", std::int64_t{2}}},
        {"a][.b", ExpressionFault{Kind::reversedBrackets, "a]["}, {}},
        {"a.b]c[", ExpressionFault{Kind::reversedBrackets, "b]c["}, {"a"}},
        {"x[1].].][", ExpressionFault{Kind::unmatchedBracket, "]"}, {"x", std::int64_t{1}, "]"}},
        {"x[1].][", ExpressionFault{Kind::reversedBrackets, "]["}, {"x", std::int64_t{1}}},
        {"a[.b", ExpressionFault{Kind::unmatchedBracket, "a["}, {"a[", "b"}},
        {"a].b[", ExpressionFault{Kind::unmatchedBracket, "a]"}, {"a]", "b["}},
        {"a[].b", ExpressionFault{Kind::noIndex, "a[]", ""}, {"a[]", "b"}},
        {"a.b[x]", ExpressionFault{Kind::noIndex, "b[x]", "x"}, {"a", "b[x]"}},
        {"a[1]][", ExpressionFault{Kind::ignoredText, "a[1]][", "1"}, {"a", std::int64_t{1}}},
        {"a[1][2].b", ExpressionFault{Kind::ignoredText, "a[1][2]", "1"}, {"a", std::int64_t{1}, "b"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.inner);
        EXPECT_EQ(findBracketFault(row.inner), row.fault);
        EXPECT_EQ(expressionPath(row.inner), row.path);
    }
}

}  // namespace
}  // namespace tavrin
