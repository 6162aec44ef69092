// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/rfc3339.h"

#include <limits>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(RFC3339, TellsAMoment) {
    const struct {
        const char* why;
        double seconds;
        std::optional<std::string> text;
    } rows[] = {
        {"the start of the count", 0, "1970-01-01T00:00:00Z"},
        {"a morning", 1795242600.0, "2026-11-21T06:30:00Z"},
        {"before the count", -1, "1969-12-31T23:59:59Z"},
        {"a fraction", 1700000000.25, "2023-11-14T22:13:20.250Z"},
        {"a fraction before the count", -0.25, "1969-12-31T23:59:59.750Z"},
        {"never late", 0.0009, "1970-01-01T00:00:00Z"},
        {"not rounded up to the next second", 0.9999, "1970-01-01T00:00:00.999Z"},
        {"a leap day", 951782400, "2000-02-29T00:00:00Z"},
        {"the first year", -62167219200, "0000-01-01T00:00:00Z"},
        {"the last second", 253402300799, "9999-12-31T23:59:59Z"},
        {"a year too early", -62167219201, std::nullopt},
        {"a year too late", 253402300800, std::nullopt},
        {"never", std::numeric_limits<double>::infinity(), std::nullopt},
        {"no moment", std::numeric_limits<double>::quiet_NaN(), std::nullopt},
    };
    for (const auto& row : rows) EXPECT_EQ(rfc3339Text(Date{row.seconds}), row.text) << row.why;
}

TEST(RFC3339, IsReadBack) {
    for (double seconds = -62e9; seconds < 253e9; seconds += 987'654'321.125) {
        const auto text = rfc3339Text(Date{seconds});
        ASSERT_TRUE(text) << seconds;
        EXPECT_EQ(Date::parseRFC3339(*text), Date{seconds}) << *text;
    }
}

}  // namespace
}  // namespace tavrin
