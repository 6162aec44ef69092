// SPDX-License-Identifier: MIT
#include "tavrin/widget/frame_span.h"

#include <limits>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

constexpr double begin = 1'795'262'400;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

TEST(FrameSpan, HasItsMoments) {
    const struct {
        const char* why;
        double seconds, step;
        std::size_t count;
        double last;  // the last moment, in seconds from the first
    } rows[] = {
        {"a minute in seconds, both ends included", 60, 1, 61, 60},
        {"one moment", 0, 1, 1, 0},
        {"a step longer than the span", 5, 60, 1, 0},
        {"steps that don't meet the end", 10, 3, 4, 9},
        {"parts of a second", 1, 0.25, 5, 1},
        {"steps that are no binary fractions", 1, 0.1, 11, 1},
        {"as many as there may be", 35'999, 1, 36'000, 35'999},
        {"a span of centuries", 1e10, 1e9, 11, 1e10},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const FrameSpan span{{begin}, {begin + row.seconds}, row.step};
        ASSERT_EQ(span.count(), row.count);
        EXPECT_EQ(span.moment(0), Date{begin});
        EXPECT_EQ(span.moment(row.count - 1), Date{begin + row.last});
    }
}

TEST(FrameSpan, RefusesWhatIsNone) {
    const struct {
        const char* why;
        double seconds, step;
    } rows[] = {
        {"backwards", -1, 1},
        {"no step", 1, 0},
        {"a step back", 1, -1},
        {"a step that is no number", 1, notANumber},
        {"an endless step", 1, infinity},
        {"an endless span", infinity, 1},
        {"no span", notANumber, 1},
        {"one moment too many", 36'000, 1},
        {"far too many", 1e10, 1e-300},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const FrameSpan span{{begin}, {begin + row.seconds}, row.step};
        EXPECT_THROW(static_cast<void>(span.count()), TavrinError);
    }
}

}  // namespace
}  // namespace tavrin
