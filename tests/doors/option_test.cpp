// SPDX-License-Identifier: MIT
#include "tavrin/doors/option.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/doors/option_error.h"
#include "tavrin/json/json.h"

namespace tavrin {
namespace {

using testing::HasSubstr;

TEST(Option, NamesAreSpelledInThreeWays) {
    EXPECT_EQ(spelled(OptionName::maxImageSize, Spelling::camel), "maxImageSize");
    EXPECT_EQ(spelled(OptionName::maxImageSize, Spelling::snake), "max_image_size");
    EXPECT_EQ(spelled(OptionName::maxImageSize, Spelling::kebab), "--max-image-size");
    for (const OptionName name : enumerators<OptionName>)
        for (const Spelling spelling : enumerators<Spelling>)
            EXPECT_EQ(optionSpelled(spelled(name, spelling), spelling), name);
}

TEST(Option, AWordThatIsNoOptionIsRefusedWithTheNearest) {
    try {
        (void)optionSpelled("time_zon", Spelling::snake);
        FAIL();
    } catch (const OptionError& error) {
        EXPECT_EQ(error.fault, OptionFault::name);
        EXPECT_EQ(error.option, "time_zon");
        EXPECT_STREQ(error.what(), "there is no option 'time_zon'; did you mean 'time_zone'?");
    }
    EXPECT_THROW((void)optionSpelled("timeZone", Spelling::snake), OptionError);
}

TEST(Option, ABudgetHasFiveMembers) {
    EXPECT_EQ(budgetMember("profile"), OptionName::budget);
    EXPECT_EQ(budgetMember("steps"), OptionName::budgetSteps);
    for (const char* word : {"", "Steps", "step", "budgetSteps"}) EXPECT_THROW((void)budgetMember(word), OptionError);
}

TEST(Option, EachSaysWhatItTakes) {
    for (const Option& option : sharedOptions()) {
        EXPECT_FALSE(option.sentence.empty() || option.sentence.ends_with('.')) << name(option.name);
        EXPECT_FALSE(wantedBy(option).empty()) << name(option.name);
        EXPECT_EQ(option.kind == OptionKind::word, !option.words.empty()) << name(option.name);
    }
}

TEST(Option, AllAreWrittenAsJSON) {
    const JSON list = JSON::parse(sharedOptionsJSON());
    EXPECT_EQ(std::get<JSONArray>(list.object()).size(), enumeratorCount<OptionName>);
    EXPECT_THAT(sharedOptionsJSON(), HasSubstr("\"name\": \"quality\""));
}

}  // namespace
}  // namespace tavrin
