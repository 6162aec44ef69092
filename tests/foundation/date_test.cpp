// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/date.h"

#include <limits>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(Date, ReadsRFC3339) {
    const struct {
        const char* why;
        std::string_view text;
        std::optional<double> seconds;
    } rows[] = {
        {"the start of the count", "1970-01-01T00:00:00Z", 0},
        {"UTC", "2023-11-14T22:13:20Z", 1700000000},
        {"east of Greenwich it is later", "2026-11-21T07:30:00+01:00", 1795242600},
        {"west of Greenwich it is earlier", "2026-11-21T00:30:00-06:00", 1795242600},
        {"lower case", "2023-11-14t22:13:20z", 1700000000},
        {"fraction", "2023-11-14T22:13:20.25Z", 1700000000.25},
        {"many digits of fraction", "2023-11-14T22:13:20.50000000000000000000000000000001Z", 1700000000.5},
        {"before 1970", "1969-12-31T23:59:59.5Z", -0.5},
        {"the first year", "0000-01-01T00:00:00Z", -62167219200},
        {"the last year", "9999-12-31T23:59:59Z", 253402300799},
        {"unknown local offset", "1970-01-01T00:00:00-00:00", 0},
        {"leap day", "2024-02-29T00:00:00Z", 1709164800},
        {"leap day of a century", "2000-02-29T00:00:00Z", 951782400},
        {"leap second", "1990-12-31T23:59:60Z", 662688000},
        {"leap second elsewhere", "1990-12-31T15:59:60-08:00", 662688000},
        {"within a leap second", "1990-12-31T23:59:60.5Z", 662688000.5},
        {"no leap second at that time", "2026-11-21T07:30:60Z", {}},
        {"no leap second on that day", "2026-11-21T23:59:60Z", {}},
        {"no leap day", "2023-02-29T00:00:00Z", {}},
        {"no leap day in that century", "1900-02-29T00:00:00Z", {}},
        {"no such day", "2026-04-31T00:00:00Z", {}},
        {"day 0", "2026-04-00T00:00:00Z", {}},
        {"month 0", "2026-00-01T00:00:00Z", {}},
        {"month 13", "2026-13-01T00:00:00Z", {}},
        {"hour 24", "2026-01-01T24:00:00Z", {}},
        {"minute 60", "2026-01-01T00:60:00Z", {}},
        {"second 61", "2026-01-01T00:00:61Z", {}},
        {"offset of 24 hours", "2026-01-01T00:00:00+24:00", {}},
        {"offset of 60 minutes", "2026-01-01T00:00:00+00:60", {}},
        {"offset without colon", "2026-01-01T00:00:00+0100", {}},
        {"no offset", "2026-01-01T00:00:00", {}},
        {"no time", "2026-01-01", {}},
        {"no seconds", "2026-01-01T00:00Z", {}},
        {"blank for the T", "2026-01-01 00:00:00Z", {}},
        {"fraction without digits", "2026-01-01T00:00:00.Z", {}},
        {"comma", "2026-01-01T00:00:00,5Z", {}},
        {"one digit", "2026-1-01T00:00:00Z", {}},
        {"sign for a digit", "2026-+1-01T00:00:00Z", {}},
        {"five digits of year", "12026-01-01T00:00:00Z", {}},
        {"something behind", "2026-01-01T00:00:00Z ", {}},
        {"something before", " 2026-01-01T00:00:00Z", {}},
        {"NUL behind", std::string_view("2026-01-01T00:00:00Z\0", 21), {}},
        {"empty", "", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto date = Date::parseRFC3339(row.text);
        EXPECT_EQ(date.has_value(), row.seconds.has_value());
        if (date && row.seconds) {
            EXPECT_EQ(date->secondsSince1970, *row.seconds);
        }
    }
}

TEST(Date, RefusesEveryPartOfAText) {
    const std::string_view text = "2026-11-21T07:30:00.5+01:00";
    for (std::size_t length = 0; length < text.size(); ++length)
        EXPECT_FALSE(Date::parseRFC3339(text.substr(0, length)).has_value()) << length;
    EXPECT_TRUE(Date::parseRFC3339(text).has_value());
}

TEST(Date, NowPassesBy) {
    const Date before = Date::now();
    EXPECT_GT(before.secondsSince1970, 1.7e9);
    EXPECT_GE(Date::now().secondsSince1970, before.secondsSince1970);
}

TEST(TimerText, CountsToAndFromADate) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const struct {
        const char* why;
        double date;
        double now;
        const char* text;
    } rows[] = {
        {"now", 100, 100, "0:00"},
        {"counts down", 105, 100, "0:05"},
        {"rounded up when it counts down", 104.1, 100, "0:05"},
        {"not yet over", 100.001, 100, "0:01"},
        {"counts up", 100, 105, "0:05"},
        {"rounded down when it counts up", 100, 105.9, "0:05"},
        {"not yet a second", 100, 100.999, "0:00"},
        {"minutes", 754, 0, "12:34"},
        {"the last second without hours", 3599, 0, "59:59"},
        {"rounded up to an hour", 3599.5, 0, "1:00:00"},
        {"still below an hour", 0, 3599.5, "59:59"},
        {"hours", 3723, 0, "1:02:03"},
        {"more than a day", 36 * 3600 + 59 * 60 + 1, 0, "36:59:01"},
        {"before 1970", -3723, 0, "1:02:03"},
        {"bounded", 1e300, 0, "999999999:59:59"},
        {"never", infinity, 0, "999999999:59:59"},
        {"since ever", -infinity, 0, "999999999:59:59"},
        {"nothing to tell", infinity, infinity, "0:00"},
        {"not a number", nan, 0, "0:00"},
        {"no number for now", 0, nan, "0:00"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(timerText(Date{row.date}, Date{row.now}), row.text);
    }
}

}  // namespace
}  // namespace tavrin
