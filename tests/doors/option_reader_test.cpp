// SPDX-License-Identifier: MIT
#include "tavrin/doors/option_reader.h"

#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/doors/option_error.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

using testing::StartsWith;

DrawingOptions read(const std::vector<std::pair<OptionName, OptionValue>>& values,
                    OptionReader::Types types = OptionReader::Types::own) {
    OptionReader reader(Spelling::snake, types);
    for (const auto& [name, value] : values) reader.read(name, value);
    return reader.options();
}

TEST(OptionReader, NothingGivenIsWhatDoorsShare) {
    const DrawingOptions options = read({});
    EXPECT_EQ(options.widget.room.name, "systemMedium");
    EXPECT_EQ(options.widget.room.size, (Size{338, 158}));
    EXPECT_EQ(options.widget.scale, 3);
    EXPECT_EQ(options.widget.fetchPolicy, FetchPolicy::publicOnly);
    EXPECT_EQ(options.format, PictureFormat::png);
    EXPECT_FALSE(options.widget.budget.seconds);
}

TEST(OptionReader, EachOptionHasItsEffect) {
    const DrawingOptions options = read({{OptionName::family, "systemLarge"},
                                         {OptionName::screen, Size{375, 812}},
                                         {OptionName::scale, 2.0},
                                         {OptionName::appearance, "dark"},
                                         {OptionName::date, Date{5}},
                                         {OptionName::timeZone, "Europe/Madrid"},
                                         {OptionName::background, "#FF9500"},
                                         {OptionName::rounded, true},
                                         {OptionName::imageCacheDir, "pictures"},
                                         {OptionName::maxImageSize, "20x30"},
                                         {OptionName::fetch, "none"},
                                         {OptionName::format, "svg"},
                                         {OptionName::compression, "small"},
                                         {OptionName::quality, 70.0},
                                         {OptionName::hashes, true},
                                         {OptionName::budget, "strangers"},
                                         {OptionName::budgetPixels, std::uint64_t{7}}});
    const WidgetOptions& widget = options.widget;
    EXPECT_EQ(widget.room.size, *widgetSize(WidgetFamily::systemLarge, {375, 812}));
    EXPECT_EQ(widget.scale, 2);
    EXPECT_EQ(widget.appearance, Appearance::dark);
    EXPECT_EQ(widget.date, Date{5});
    EXPECT_EQ(widget.timeZone, TimeZone::named("Europe/Madrid"));
    EXPECT_EQ(widget.background.kind, WidgetBackground::Kind::color);
    EXPECT_TRUE(widget.rounded);
    EXPECT_TRUE(widget.imageCacheDir);
    EXPECT_EQ(widget.maxImageSize, (Size{20, 30}));
    EXPECT_EQ(widget.fetchPolicy, FetchPolicy::none);
    EXPECT_EQ(options.format, PictureFormat::svg);
    EXPECT_EQ(widget.compression, PngCompression::small);
    EXPECT_EQ(widget.quality, 70);
    EXPECT_TRUE(options.hashes);
    EXPECT_EQ(widget.budget.steps, RenderBudget::strangers().steps);
    EXPECT_EQ(widget.budget.pixels, 7U);
    EXPECT_EQ(widget.budget.seconds, 2);
}

TEST(OptionReader, AScreenLeavesASizeThatIsUsualAlone) {
    DrawingOptions usual;
    usual.widget.room = {.name = "100x50", .size = {100, 50}};
    OptionReader reader(Spelling::camel, OptionReader::Types::own, usual);
    reader.read("screen", "375x812");
    EXPECT_EQ(reader.options().widget.room.size, (Size{100, 50}));
    EXPECT_EQ(read({{OptionName::screen, "375x812"}}).widget.room.size,
              *widgetSize(WidgetFamily::systemMedium, {375, 812}));
}

TEST(OptionReader, ABudgetsMembersWinInAnyOrder) {
    const DrawingOptions options =
        read({{OptionName::budgetSeconds, 0.5}, {OptionName::budgetSteps, 9.0}, {OptionName::budget, "strangers"}});
    EXPECT_EQ(options.widget.budget.seconds, 0.5);
    EXPECT_EQ(options.widget.budget.steps, 9U);
}

TEST(OptionReader, PictureOptionsAreThoseGiven) {
    OptionReader reader(Spelling::camel, OptionReader::Types::own);
    EXPECT_FALSE(reader.pictureOptions().format);
    reader.read("format", "pdf");
    reader.read("quality", 50.0);
    EXPECT_EQ(reader.pictureOptions().format, PictureFormat::pdf);
    EXPECT_EQ(reader.pictureOptions().quality, 50);
    EXPECT_FALSE(reader.pictureOptions().compression);
}

struct Refused {
    OptionName name;
    OptionValue value;
    OptionFault fault;
    const char* message;
};

TEST(OptionReader, WhatAnOptionDoesNotTakeIsRefusedByName) {
    const Refused table[] = {
        {OptionName::family, "systemMediun", OptionFault::value, "family takes systemSmall, systemMedium"},
        {OptionName::family, 3.0, OptionFault::type, "family takes systemSmall"},
        {OptionName::scale, "3", OptionFault::type, "scale takes a number above 0 and up to 100, not a text"},
        {OptionName::scale, true, OptionFault::type, "scale takes a number above 0 and up to 100, not a boolean"},
        {OptionName::scale, 0.0, OptionFault::value, "scale takes a number above 0 and up to 100, not 0"},
        {OptionName::scale, std::numeric_limits<double>::quiet_NaN(), OptionFault::value, "scale takes a number"},
        {OptionName::scale, 101.0, OptionFault::value, "scale takes a number above 0 and up to 100, not 101"},
        {OptionName::size, Size{0, 5}, OptionFault::value, "size takes a width and a height such as 338x158, not 0x5"},
        {OptionName::size, "5", OptionFault::value, "size takes a width and a height such as 338x158, not '5'"},
        {OptionName::date, "today", OptionFault::value, "date takes a date and time such as"},
        {OptionName::date, 5.0, OptionFault::type, "date takes a date and time such as"},
        {OptionName::timeZone, "Mars", OptionFault::value, "time_zone takes the name of a time zone"},
        {OptionName::background, "red", OptionFault::value, "background takes auto, none or a colour"},
        {OptionName::rounded, "yes", OptionFault::type, "rounded takes true or false, not a text"},
        {OptionName::imageCacheDir, "", OptionFault::value, "image_cache_dir takes the name of a folder, not ''"},
        {OptionName::imageCacheDir, std::string("a\0b", 3), OptionFault::value, "image_cache_dir takes the name of a"},
        {OptionName::quality, 0.0, OptionFault::value, "quality takes a whole number from 1 to 100, not 0"},
        {OptionName::quality, 85.5, OptionFault::value, "quality takes a whole number from 1 to 100, not 85.5"},
        {OptionName::budgetSteps, -1.0, OptionFault::value, "budget_steps takes a positive whole number, not -1"},
        {OptionName::budgetSeconds, 0.0, OptionFault::value, "budget_seconds takes a positive number of seconds"},
    };
    for (const Refused& row : table) {
        try {
            (void)read({{row.name, row.value}});
            ADD_FAILURE() << row.message;
        } catch (const OptionError& error) {
            EXPECT_THAT(error.what(), StartsWith(row.message));
            EXPECT_EQ(error.fault, row.fault) << row.message;
            EXPECT_EQ(error.option, spelled(row.name, Spelling::snake));
        }
    }
}

TEST(OptionReader, DoorsWithoutTypesGiveTexts) {
    const DrawingOptions options = read({{OptionName::scale, "2"},
                                         {OptionName::rounded, "1"},
                                         {OptionName::quality, "7"},
                                         {OptionName::size, "100x50"},
                                         {OptionName::budgetSteps, "18446744073709551615"}},
                                        OptionReader::Types::texts);
    EXPECT_EQ(options.widget.scale, 2);
    EXPECT_TRUE(options.widget.rounded);
    EXPECT_EQ(options.widget.quality, 7);
    EXPECT_EQ(options.widget.room.size, (Size{100, 50}));
    EXPECT_EQ(options.widget.room.name, "100x50");
    EXPECT_EQ(options.widget.budget.steps, std::numeric_limits<std::uint64_t>::max());
    EXPECT_THROW((void)read({{OptionName::rounded, "yes"}}, OptionReader::Types::texts), OptionError);
}

TEST(OptionReader, ASizeStandsInsteadOfAFamily) {
    try {
        (void)read({{OptionName::family, "systemSmall"}, {OptionName::size, Size{1, 1}}});
        FAIL();
    } catch (const OptionError& error) {
        EXPECT_STREQ(error.what(), "size stands instead of family; give one of them");
    }
    EXPECT_THROW((void)read({{OptionName::family, "systemExtraLarge"}}), OptionError) << "phones have none";
}

TEST(OptionReader, AFolderOfFontsIsOpenedAndKept) {
    const auto fonts = [](const std::string& folder) {
        return read({{OptionName::fontDir, folder}}).withFonts().fonts;
    };
    EXPECT_EQ(fonts("/usr/share/fonts"), fonts("/usr/share/fonts"));
    EXPECT_THROW((void)fonts("/nowhere"), TavrinError);
}

}  // namespace
}  // namespace tavrin
