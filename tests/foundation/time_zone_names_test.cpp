// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/time/time_zone_names.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/time/time_zone.h"

namespace tavrin {
namespace {

TEST(TimeZoneNames, AreThoseOfZones) {
    const auto names = timeZoneNames();
    EXPECT_THAT(names, ::testing::IsSupersetOf({"Europe/Madrid", "America/New_York", "UTC", "EST", "CEST", "WIT"}));
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end()) << "none twice, though both know it";
    for (const std::string_view name : names) EXPECT_TRUE(TimeZone::named(name)) << name;
}

}  // namespace
}  // namespace tavrin
