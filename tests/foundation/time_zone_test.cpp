// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/time_zone.h"

#include <cstdlib>
#include <limits>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

Date at(std::string_view text) { return Date::parseRFC3339(text).value(); }

/// The variable `TZ` for the length of a test.
class ZoneVariable {
public:
    explicit ZoneVariable(const char* value) {
        if (const char* before = std::getenv("TZ")) before_ = before;
        setenv("TZ", value, 1);
    }
    ~ZoneVariable() {
        if (before_)
            setenv("TZ", before_->c_str(), 1);
        else
            unsetenv("TZ");
    }
    ZoneVariable(const ZoneVariable&) = delete;
    ZoneVariable& operator=(const ZoneVariable&) = delete;

private:
    std::optional<std::string> before_;
};

TEST(TimeZone, IsUTCByDefault) {
    EXPECT_EQ(TimeZone().identifier(), "UTC");
    EXPECT_EQ(TimeZone().secondsFromUTC(Date{1e9}), 0);
    EXPECT_EQ(TimeZone::named("UTC"), TimeZone());
    EXPECT_EQ(TimeZone::named("GMT").value().identifier(), "GMT");
    EXPECT_EQ(TimeZone::named("GMT").value().secondsFromUTC(Date{1e9}), 0);
}

TEST(TimeZone, KnowsTheDifferenceFromUTC) {
    const double hour = 3600;
    const struct {
        const char* why;
        const char* zone;
        const char* moment;
        double seconds;
    } rows[] = {
        {"east, winter", "Europe/Madrid", "2026-01-01T00:00:00Z", 1 * hour},
        {"east, summer", "Europe/Madrid", "2026-07-01T00:00:00Z", 2 * hour},
        {"the second before the clock is put forward", "Europe/Madrid", "2026-03-29T00:59:59Z", 1 * hour},
        {"the second when it is", "Europe/Madrid", "2026-03-29T01:00:00Z", 2 * hour},
        {"fractions belong to the second before", "Europe/Madrid", "2026-03-29T00:59:59.999Z", 1 * hour},
        {"west, winter", "America/New_York", "2026-01-01T00:00:00Z", -5 * hour},
        {"west, summer", "America/New_York", "2026-07-01T00:00:00Z", -4 * hour},
        {"southern summer", "Australia/Sydney", "2026-01-01T00:00:00Z", 11 * hour},
        {"three quarters of an hour", "Asia/Kathmandu", "2026-01-01T00:00:00Z", 5.75 * hour},
        {"no daylight saving", "Asia/Tokyo", "2026-07-01T00:00:00Z", 9 * hour},
        {"before 1970", "Europe/Madrid", "1969-12-31T23:59:59.5Z", 1 * hour},
        {"a fixed zone", "Etc/GMT+5", "2026-07-01T00:00:00Z", -5 * hour},
        {"an old name", "US/Pacific", "2026-07-01T00:00:00Z", -7 * hour},
        {"the last listed change", "America/New_York", "2037-11-01T06:00:00Z", -5 * hour},
        {"summer behind the list", "America/New_York", "2040-07-01T00:00:00Z", -4 * hour},
        {"winter behind the list", "America/New_York", "2040-12-31T23:00:00Z", -5 * hour},
        {"southern summer behind the list", "Australia/Sydney", "2061-01-15T00:00:00Z", 11 * hour},
        {"southern winter behind the list", "Australia/Sydney", "2061-07-15T00:00:00Z", 10 * hour},
        {"the day of a change behind the list, before", "Europe/Madrid", "2050-03-27T00:59:59Z", 1 * hour},
        {"the day of a change behind the list, after", "Europe/Madrid", "2050-03-27T01:00:00Z", 2 * hour},
        {"a leap day behind the list", "America/New_York", "2040-02-29T12:00:00Z", -5 * hour},
        {"no daylight saving behind the list either", "Asia/Tokyo", "2050-07-01T00:00:00Z", 9 * hour},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto zone = TimeZone::named(row.zone);
        ASSERT_TRUE(zone.has_value());
        EXPECT_EQ(zone->identifier(), row.zone);
        EXPECT_EQ(zone->secondsFromUTC(at(row.moment)), row.seconds);
    }
}

TEST(TimeZone, IsKnownByOtherNames) {
    const double hour = 3600;
    const struct {
        const char* why;
        const char* name;
        const char* identifier;
        double winter;
        double summer;
    } rows[] = {
        {"an abbreviation has its zone's daylight saving", "EST", "America/New_York", -5 * hour, -4 * hour},
        {"also that of summer in winter", "EDT", "America/New_York", -5 * hour, -4 * hour},
        {"one that is the database's too", "CET", "Europe/Paris", 1 * hour, 2 * hour},
        {"one that the database has without daylight saving", "MST", "America/Denver", -7 * hour, -6 * hour},
        {"of three countries", "CST", "America/Chicago", -6 * hour, -5 * hour},
        {"of four letters", "WEST", "Europe/Lisbon", 0, 1 * hour},
        {"half an hour", "IST", "Asia/Kolkata", 5.5 * hour, 5.5 * hour},
        {"the islands'", "BST", "Europe/London", 0, 1 * hour},
        {"southern", "NZST", "Pacific/Auckland", 13 * hour, 12 * hour},
        {"the last one", "WIT", "Asia/Jakarta", 7 * hour, 7 * hour},
        {"the first one", "ADT", "America/Halifax", -4 * hour, -3 * hour},
        {"hours", "GMT+8", "GMT+0800", 8 * hour, 8 * hour},
        {"in two digits", "GMT+08", "GMT+0800", 8 * hour, 8 * hour},
        {"and minutes", "GMT+0530", "GMT+0530", 5.5 * hour, 5.5 * hour},
        {"behind a colon", "GMT-03:30", "GMT-0330", -3.5 * hour, -3.5 * hour},
        {"behind a colon and one digit", "GMT-3:30", "GMT-0330", -3.5 * hour, -3.5 * hour},
        {"the most", "GMT+18", "GMT+1800", 18 * hour, 18 * hour},
        {"the least", "GMT-1800", "GMT-1800", -18 * hour, -18 * hour},
        {"nothing", "GMT-0", "GMT", 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto zone = TimeZone::named(row.name);
        ASSERT_TRUE(zone.has_value());
        EXPECT_EQ(zone->identifier(), row.identifier);
        EXPECT_EQ(zone->secondsFromUTC(at("2026-01-01T00:00:00Z")), row.winter);
        EXPECT_EQ(zone->secondsFromUTC(at("2026-07-01T00:00:00Z")), row.summer);
        EXPECT_EQ(TimeZone::named(row.identifier), zone) << "it is known by its identifier too";
    }
    EXPECT_EQ(TimeZone::named("GMT+8"), TimeZone::named("GMT+08:00"));
    EXPECT_NE(TimeZone::named("GMT+8"), TimeZone::named("GMT-8"));
}

TEST(TimeZone, TakesAnyDate) {
    const TimeZone zone = TimeZone::named("America/New_York").value();
    for (const double seconds : {-1e300, -1e18, -1e12, 1e12, 1e18, 1e300, std::numeric_limits<double>::infinity(),
                                 -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        SCOPED_TRACE(seconds);
        EXPECT_LE(zone.secondsFromUTC(Date{seconds}), -4 * 3600);
        EXPECT_GE(zone.secondsFromUTC(Date{seconds}), -5 * 3600);
    }
}

TEST(TimeZone, RefusesWhatIsNoZone) {
    const struct {
        const char* why;
        std::string_view identifier;
    } rows[] = {
        {"empty", ""},
        {"unknown", "Mars/Olympus_Mons"},
        {"a folder", "Europe"},
        {"whatever this machine is set to", "localtime"},
        {"a path out of the database", "../../etc/passwd"},
        {"an absolute path", "/usr/share/zoneinfo/Europe/Madrid"},
        {"a way around", "Europe/../Europe/Madrid"},
        {"other letter case", "europe/madrid"},
        {"a blank behind", "Europe/Madrid "},
        {"NUL behind", std::string_view("Europe/Madrid\0", 14)},
        {"NUL within", std::string_view("UTC\0x", 5)},
        {"not UTF-8", "\xff\xfe"},
        {"an abbreviation in small letters", "est"},
        {"an abbreviation that no one knows", "XST"},
        {"a sign alone", "GMT+"},
        {"no sign", "GMT8"},
        {"two signs", "GMT+-8"},
        {"a blank", "GMT+ 8"},
        {"more than 18 hours", "GMT+19"},
        {"a minute more", "GMT-1801"},
        {"sixty minutes", "GMT+0160"},
        {"three digits", "GMT+530"},
        {"five digits", "GMT+05300"},
        {"three digits before a colon", "GMT+005:30"},
        {"no minutes behind a colon", "GMT+5:"},
        {"one digit of minutes", "GMT+5:3"},
        {"no hours before a colon", "GMT+:30"},
        {"two colons", "GMT+5:30:00"},
        {"letters", "GMT+a"},
        {"counted from another name", "UTC+8"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_FALSE(TimeZone::named(row.identifier).has_value());
    }
    EXPECT_FALSE(TimeZone::named(std::string(1'000'000, 'x')).has_value());
}

TEST(TimeZone, IsTheOneTheProcessRunsIn) {
    EXPECT_NO_THROW(static_cast<void>(TimeZone::current()));
    {
        const ZoneVariable variable("Asia/Tokyo");
        EXPECT_EQ(TimeZone::current().identifier(), "Asia/Tokyo");
    }
    {
        const ZoneVariable variable(":Asia/Tokyo");
        EXPECT_EQ(TimeZone::current().identifier(), "Asia/Tokyo");
    }
    const std::string systemZone = [] {
        const ZoneVariable variable("");
        return TimeZone::current().identifier();
    }();
    const ZoneVariable variable("../nonsense");
    EXPECT_EQ(TimeZone::current().identifier(), systemZone);
}

TEST(TimeZoneThreads, AreServedAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i)
        threads.emplace_back(
            [] { EXPECT_EQ(TimeZone::named("Asia/Seoul").value().secondsFromUTC(Date{1.7e9}), 9 * 3600); });
    for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace tavrin
