// SPDX-License-Identifier: MIT
#include "tavrin/platform/ui/widget_family.h"

#include <algorithm>
#include <set>
#include <utility>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

constexpr auto systemSmall = WidgetFamily::systemSmall;
constexpr auto systemMedium = WidgetFamily::systemMedium;
constexpr auto systemLarge = WidgetFamily::systemLarge;
constexpr auto systemExtraLarge = WidgetFamily::systemExtraLarge;
constexpr auto accessoryCircular = WidgetFamily::accessoryCircular;
constexpr auto accessoryRectangular = WidgetFamily::accessoryRectangular;
constexpr auto accessoryInline = WidgetFamily::accessoryInline;

constexpr WidgetFamily families[] = {systemSmall,       systemMedium,         systemLarge,    systemExtraLarge,
                                     accessoryCircular, accessoryRectangular, accessoryInline};

TEST(WidgetFamilies, HaveTheSizesOfTheScreen) {
    const struct {
        const char* why;
        WidgetFamily family;
        Size screen;
        std::optional<Size> size;
    } rows[] = {
        {"the usual phone", systemMedium, {390, 844}, Size{338, 158}},
        {"a phone that shares its sizes", systemLarge, {393, 852}, Size{338, 354}},
        {"the largest phone", systemSmall, {440, 956}, Size{170, 170}},
        {"a phone between the two", systemLarge, {402, 874}, Size{344, 366}},
        {"a narrow phone", systemMedium, {360, 780}, Size{329, 155}},
        {"a tablet's halves of a point", systemLarge, {1024, 1366}, Size{378.5, 378.5}},
        {"in one dimension only", systemMedium, {768, 1024}, Size{305.5, 141}},
        {"an extra large tablet", systemExtraLarge, {1192, 1590}, Size{860, 412}},
        {"only tablets have extra large widgets", systemExtraLarge, {440, 956}, std::nullopt},
        {"an accessory of the usual phone", accessoryCircular, {390, 844}, Size{72, 72}},
        {"of a large one", accessoryRectangular, {428, 926}, Size{172, 76}},
        {"of one with other home screen sizes", accessoryRectangular, {402, 874}, Size{160, 72}},
        {"of one with a wide lock screen", accessoryInline, {414, 896}, Size{248, 26}},
        {"of a small one", accessoryCircular, {375, 667}, Size{68, 68}},
        {"the smallest phone has none", accessoryInline, {320, 568}, std::nullopt},
        {"nor has a tablet", accessoryCircular, {834, 1194}, std::nullopt},
        {"a screen that is not known", systemSmall, {100, 100}, std::nullopt},
        {"no screen", systemSmall, {}, std::nullopt},
        {"a known one on its side", systemSmall, {844, 390}, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(widgetSize(row.family, row.screen), row.size);
    }
}

TEST(WidgetFamilies, KnowEachScreenOnce) {
    std::set<std::pair<double, double>> screens;
    for (const Size screen : knownScreens()) {
        SCOPED_TRACE(screen.width);
        EXPECT_TRUE(screens.emplace(screen.width, screen.height).second);
        for (const WidgetFamily family : {systemSmall, systemMedium, systemLarge})
            EXPECT_TRUE(widgetSize(family, screen).has_value());
        const bool isTablet = screen.width > 500;
        EXPECT_EQ(widgetSize(systemExtraLarge, screen).has_value(), isTablet);
        for (const WidgetFamily family : families)
            if (const auto size = widgetSize(family, screen)) {
                EXPECT_GT(std::min(size->width, size->height), 0);
                EXPECT_LT(size->width, screen.width);
            }
    }
    EXPECT_EQ(screens.size(), 22U);
}

TEST(WidgetFamilies, SayWhereLinksCanBeTapped) {
    for (const WidgetFamily family : families) {
        const std::string_view name = widgetFamilyNames[static_cast<std::size_t>(family)];
        SCOPED_TRACE(name);
        EXPECT_EQ(widgetFamily(name), family);
        const bool can = family == systemMedium || family == systemLarge || family == systemExtraLarge;
        EXPECT_EQ(linksCanBeTapped(family), can);
        const Size screen = family == systemExtraLarge ? Size{834, 1112} : Size{390, 844};
        const auto room = widgetRoom(family, screen);
        ASSERT_TRUE(room.has_value());
        EXPECT_EQ(room->name, name);
        EXPECT_EQ(room->size, widgetSize(family, screen));
        EXPECT_EQ(room->linksCanBeTapped, can);
    }
    EXPECT_FALSE(widgetRoom(systemExtraLarge, {390, 844}).has_value());
    EXPECT_TRUE(WidgetRoom{}.linksCanBeTapped) << "a size of one's own";
}

}  // namespace
}  // namespace tavrin
