// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/golden/golden_case.h"

namespace tavrin {
namespace {

using testing::ElementsAre;

constexpr double hour = 3600;
constexpr double justBefore = 1e-6;  // seconds; today's dates are four times as fine

/// The example that is drawn for a day instead of an hour.
std::string exampleOfADay() {
    const char* const name = std::getenv("TAVRIN_DRAW_A_DAY_OF");
    return name == nullptr ? "" : name;
}

/// An example at one moment after another.
class Moments {
public:
    explicit Moments(const GoldenCase& example)
        : document_(example.document()),
          model_(readFile(example.folder / "model.json")),
          options_(example.widgetOptions()) {
        options_.scale = 1;
    }

    [[nodiscard]] Widget at(Date moment) {
        options_.date = moment;
        return document_.widget(model_.empty() ? std::nullopt : std::optional<std::string_view>(model_), options_);
    }

private:
    Document document_;
    std::string model_;
    WidgetOptions options_;
};

/// Follows an example from change to change, and holds what it says against its pictures. Where it changes all the time
/// there is nothing to hold; whether it does must be as it was.
void checkSpan(const GoldenCase& example, Date begin, double seconds) {
    Moments moments(example);
    LastPicture last;
    Widget widget = moments.at(begin);
    const bool isEarly = widget.validUntil() == begin;
    for (Date moment = begin; moment.secondsSince1970 < begin.secondsSince1970 + seconds;) {
        const std::optional<Date> next = widget.validUntil();
        ASSERT_TRUE(next.has_value()) << moment.secondsSince1970;
        ASSERT_EQ(*next == moment, isEarly) << moment.secondsSince1970;
        if (isEarly) {
            moment.secondsSince1970 += 1;
            widget = moments.at(moment);
            continue;
        }
        ASSERT_GT(next->secondsSince1970, moment.secondsSince1970);
        const std::shared_ptr<const PixelBuffer> picture = widget.pixels(last);
        const auto before = moments.at({next->secondsSince1970 - justBefore}).pixels(last);
        ASSERT_TRUE(*before == *picture) << "before " << next->secondsSince1970;
        widget = moments.at(*next);
        ASSERT_FALSE(*widget.pixels(last) == *picture) << "at " << next->secondsSince1970;
        moment = *next;
    }
}

TEST(ValidUntilOfExamples, PicturesChangeThenAndNoSooner) {
    const std::string day = exampleOfADay();
    bool hasDay = false;
    std::vector<std::string> timers;
    std::vector<std::string> hands;
    for (const GoldenCase& example : exampleCases()) {
        SCOPED_TRACE(example.name());
        const Date begin = example.widgetOptions().date.value_or(Date{1'795'262'400});
        const std::optional<Date> next = Moments(example).at(begin).validUntil();
        if (!next) continue;
        (*next == begin ? hands : timers).push_back(example.folder.filename());
        const bool isDay = example.folder.filename() == day;
        hasDay = hasDay || isDay;
        ASSERT_NO_FATAL_FAILURE(checkSpan(example, begin, isDay ? 24 * hour : hour));
    }
    EXPECT_THAT(timers, ElementsAre("boarding", "countdown", "departures", "train"));
    EXPECT_THAT(hands, ElementsAre("clock"));
    EXPECT_TRUE(hasDay || day.empty()) << "there is no '" << day << "', or it never changes";
}

}  // namespace
}  // namespace tavrin
