// SPDX-License-Identifier: MIT
#include "tavrin/doors/json_options.h"

#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/doors/option_error.h"

namespace tavrin {
namespace {

using testing::HasSubstr;

DrawingOptions readJSON(const std::string& text, DrawingOptions usual = {}) {
    OptionReader reader(Spelling::camel, OptionReader::Types::own, std::move(usual));
    const JSONText json(text);
    readOptions(reader, json.root());
    return reader.options();
}

TEST(JSONOptions, AreThoseOfEveryDoor) {
    const DrawingOptions options = readJSON(R"({
        "size": [100, 50.5], "scale": 2, "appearance": "dark", "date": "1970-01-01T00:00:05Z",
        "timeZone": "Europe/Madrid", "rounded": true, "maxImageSize": "20x30", "format": "webp", "quality": 70,
        "hashes": true, "budget": {"profile": "strangers", "steps": 18446744073709551615, "seconds": 0.5}})");
    const WidgetOptions& widget = options.widget;
    EXPECT_EQ(widget.room.size, (Size{100, 50.5}));
    EXPECT_EQ(widget.scale, 2);
    EXPECT_EQ(widget.appearance, Appearance::dark);
    EXPECT_EQ(widget.date, Date{5});
    EXPECT_EQ(widget.timeZone, TimeZone::named("Europe/Madrid"));
    EXPECT_TRUE(widget.rounded);
    EXPECT_EQ(widget.maxImageSize, (Size{20, 30}));
    EXPECT_EQ(options.format, PictureFormat::webp);
    EXPECT_EQ(widget.quality, 70);
    EXPECT_TRUE(options.hashes);
    EXPECT_EQ(widget.budget.pixels, RenderBudget::strangers().pixels);
    EXPECT_EQ(widget.budget.steps, std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(widget.budget.seconds, 0.5);
}

TEST(JSONOptions, ABudgetMayAlsoBeAWordOrStandFlat) {
    EXPECT_EQ(readJSON(R"({"budget": "strangers"})").widget.budget.steps, RenderBudget::strangers().steps);
    EXPECT_EQ(readJSON(R"({"budgetPixels": 7})").widget.budget.pixels, 7U);
}

TEST(JSONOptions, WhatIsNullOrLeftOutIsAsUsual) {
    DrawingOptions usual;
    usual.widget.scale = 1;
    usual.format = PictureFormat::svg;
    const DrawingOptions options = readJSON(R"({"scale": null, "budget": null, "appearance": "dark"})", usual);
    EXPECT_EQ(options.widget.scale, 1);
    EXPECT_EQ(options.format, PictureFormat::svg);
    EXPECT_EQ(options.widget.appearance, Appearance::dark);
}

TEST(JSONOptions, WhatCannotBeFollowedIsRefusedByName) {
    const struct {
        const char* text;
        OptionFault fault;
        const char* option;
        const char* message;
    } rows[] = {
        {"[]", OptionFault::type, "options", "options takes an object of options, not an array"},
        {R"("dark")", OptionFault::type, "options", "options takes an object of options, not a string"},
        {R"({"famly": "systemSmall"})", OptionFault::name, "famly", "no option 'famly'; did you mean 'family'?"},
        {R"({"famly": null})", OptionFault::name, "famly", "no option 'famly'"},
        {R"({"time_zone": "UTC"})", OptionFault::name, "time_zone", "did you mean 'timeZone'?"},
        {R"({"scale": "2"})", OptionFault::type, "scale", "scale takes a number above 0 and up to 100, not a text"},
        {R"({"scale": -1})", OptionFault::value, "scale", "not -1"},
        {R"({"scale": [2]})", OptionFault::type, "scale", "scale takes a number above 0 and up to 100"},
        {R"({"scale": {}})", OptionFault::type, "scale", "scale takes a number"},
        {R"({"size": [1, "2"]})", OptionFault::type, "size", "size takes a width and a height"},
        {R"({"size": [1, 2, 3]})", OptionFault::type, "size", "size takes a width and a height"},
        {R"({"size": [1, 0]})", OptionFault::value, "size", "not 1x0"},
        {R"({"rounded": 1})", OptionFault::type, "rounded", "rounded takes true or false, not a number"},
        {R"({"budget": {"step": 1}})", OptionFault::name, "budget.step", "no 'step'; did you mean 'steps'?"},
        {R"({"budget": {"steps": 1.5}})", OptionFault::value, "budgetSteps", "budgetSteps takes a positive whole"},
        {R"({"budget": {"steps": {}}})", OptionFault::type, "budgetSteps", "budgetSteps takes a positive whole"},
        {R"({"budget": []})", OptionFault::type, "budget", "budget takes usual or strangers"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        try {
            (void)readJSON(row.text);
            ADD_FAILURE() << "is followed";
        } catch (const OptionError& error) {
            EXPECT_THAT(error.what(), HasSubstr(row.message));
            EXPECT_EQ(error.fault, row.fault);
            EXPECT_EQ(error.option, row.option);
        }
    }
}

}  // namespace
}  // namespace tavrin
