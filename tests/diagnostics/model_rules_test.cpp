// SPDX-License-Identifier: MIT
#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/diagnostics/diagnosed.h"

// What is doubtful in the values that a document takes from its model, and in the moments of timers.

namespace tavrin {
namespace {

using ::testing::ElementsAreArray;

/// "path: message" of what has one of some codes; in the model "model:path: message".
std::vector<std::string> messagesOf(const std::string& main, const std::optional<std::string>& model,
                                    const std::vector<std::string_view>& codes) {
    DiagnoseOptions options = quietOptions();
    options.rooms = {};
    std::vector<std::string> messages;
    for (const Diagnostic& found : diagnose(documentOf(main), model, options))
        if (std::ranges::count(codes, found.code) > 0)
            messages.push_back((found.role == TextRole::model ? "model:" : "") + toText(found.path) + ": " +
                               found.message);
    return messages;
}

std::vector<std::string> oneOrNone(const char* message) {
    return *message ? std::vector<std::string>{message} : std::vector<std::string>();
}

TEST(OddTexts, ShowWhatIsNotForReaders) {
    const struct {
        const char* why;
        const char* content;
        const char* model;
        const char* found;
    } rows[] = {
        {"noise", R"("{{initServerParam.a}}")", R"({"a": 0.30000000000000004})",
         "nodes.main.content: the model's 0.30000000000000004 is shown with all its digits; did you mean 0.3?"},
        {"noise of a negative number", R"("{{initServerParam.a}}")", R"({"a": -1.2000000000000002})",
         "nodes.main.content: the model's -1.2000000000000002 is shown with all its digits; did you mean -1.2?"},
        {"an endless number", R"("{{initServerParam.a}}")", R"({"a": 0.3333333333333333})",
         "nodes.main.content: the model's 0.3333333333333333 is shown with all its digits"},
        {"in a list", R"("{{initServerParam.a[0].b}}")", R"({"a": [{"b": null}]})",
         "nodes.main.content: the model's null is shown as a word"},
        {"in the document itself", "0.30000000000000004", "{}",
         "nodes.main.content: 0.30000000000000004 is shown with all its digits; did you mean 0.3?"},
        {"a number for readers", R"("{{initServerParam.a}}")", R"({"a": 21.5})", ""},
        {"a number of many digits", R"("{{initServerParam.a}}")", R"({"a": 1234567.125})", ""},
        {"a large whole number", R"("{{initServerParam.a}}")", R"({"a": 12345678901234567})", ""},
        {"a text that says so", R"("{{initServerParam.a}}")", R"({"a": "0.30000000000000004"})", ""},
        {"the word", R"("{{initServerParam.a}}")", R"({"a": "null"})", ""},
        {"nothing there", R"("{{initServerParam.b}}")", R"({"a": null})", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string main = R"({"type": "text", "content": )" + std::string(row.content) + "}";
        EXPECT_THAT(messagesOf(main, row.model, {"odd-text"}), ElementsAreArray(oneOrNone(row.found)));
    }
}

TEST(OddTexts, AreNoNumbersOfOtherProperties) {
    const char* const main =
        R"({"type": "text", "content": "a", "modifiers": [{"type": "opacity", "opacity": "{{initServerParam.a}}"}]})";
    EXPECT_THAT(messagesOf(main, R"({"a": 0.30000000000000004})", {"odd-text"}), ElementsAreArray(oneOrNone("")));
}

TEST(UnusedElements, OfListsOfWhichOthersAreUsed) {
    const struct {
        const char* why;
        std::vector<const char*> paths;
        const char* model;
        std::vector<std::string> found;
    } rows[] = {
        {"one more", {"a[0]"}, R"({"a": [1, 2]})", {"model:a[1]: nothing uses this of the 2 elements of the list"}},
        {"several more",
         {"a[0]", "a[2]"},
         R"({"a": [1, 2, 3, 4]})",
         {"model:a[1]: nothing uses this and 1 more of the 4 elements of the list"}},
        {"members of elements",
         {"a[0].b", "a[0].c"},
         R"({"a": [{"b": 1, "c": 2}, {}]})",
         {"model:a[1]: nothing uses this of the 2 elements of the list"}},
        {"lists in lists",
         {"a[0].b[0]", "a[1].b[0]"},
         R"({"a": [{"b": [1, 2]}, {"b": [1]}]})",
         {"model:a[0].b[1]: nothing uses this of the 2 elements of the list"}},
        {"all are used", {"a[0]", "a[1]"}, R"({"a": [1, 2]})", {}},
        {"none are used", {"b"}, R"({"a": [1, 2], "b": 1})", {}},
        {"an index past the end", {"a[7]"}, R"({"a": [1, 2]})", {}},
        {"an index of an object", {"a[0]"}, R"({"a": {"b": 1}})", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::string main = R"({"type": "vstack", "children": [{"type": "spacer"})";
        for (const char* const path : row.paths)
            main += R"(, {"type": "text", "content": "{{initServerParam.)" + std::string(path) + R"(}}"})";
        EXPECT_THAT(messagesOf(main + "]}", row.model, {"unused-element"}), ElementsAreArray(row.found));
    }
    EXPECT_THAT(
        messagesOf(R"({"type": "text", "content": "{{initServerParam.a[0]}}"})", std::nullopt, {"unused-element"}),
        ElementsAreArray(oneOrNone("")));
}

TEST(Timers, CountToTheMomentThatIsMeant) {
    const struct {
        const char* why;
        const char* timestamp;
        const char* found;
    } rows[] = {
        {"a rounded moment", "1772358060",
         "nodes.main.timestamp: the timer's moment 1772358060 is rounded to 1772358016, 2026-03-01T09:40:16Z"},
        {"as a text", "\"1772358081\"",
         "nodes.main.timestamp: the timer's moment 1772358081 is rounded to 1772358144, 2026-03-01T09:42:24Z"},
        {"from the model", "\"{{initServerParam.at}}\"",
         "nodes.main.timestamp: the timer's moment 1772358060 is rounded to 1772358016, 2026-03-01T09:40:16Z"},
        {"a moment that is kept", "1772358016", ""},
        {"a fraction", "0.1", ""},
        {"infinitely far", "\"infinity\"", ""},
        {"a date", "\"2026-03-01T09:41:00Z\"",
         "nodes.main.timestamp: \"2026-03-01T09:41:00Z\" is no number, so \"timestamp\" counts as left out; seconds "
         "since 1970 are meant: 1772358060"},
        {"a date of another zone", "\"2026-03-01T09:41:00+01:00\"",
         "nodes.main.timestamp: \"2026-03-01T09:41:00+01:00\" is no number, so \"timestamp\" counts as left out; "
         "seconds since 1970 are meant: 1772354460"},
        {"a date without a zone", "\"2026-03-01 09:41\"",
         "nodes.main.timestamp: \"2026-03-01 09:41\" is no number, so \"timestamp\" counts as left out; seconds since "
         "1970 are meant: 1772358060"},
        {"a day", "\"2026-03-01\"",
         "nodes.main.timestamp: \"2026-03-01\" is no number, so \"timestamp\" counts as left out; seconds since 1970 "
         "are meant: 1772323200"},
        {"a date from the model", "\"{{initServerParam.day}}\"",
         "nodes.main.timestamp: the model gives \"2026-03-01T00:00:00Z\", which is no number, so \"timestamp\" counts "
         "as "
         "left out; seconds since 1970 are meant: 1772323200"},
        {"no date", "\"tomorrow\"",
         "nodes.main.timestamp: \"tomorrow\" is no number, so \"timestamp\" counts as left out"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string main = R"({"type": "timer", "timestamp": )" + std::string(row.timestamp) + "}";
        EXPECT_THAT(messagesOf(main, R"({"at": 1772358060, "day": "2026-03-01T00:00:00Z"})",
                               {"rounded-moment", "dropped-value"}),
                    ElementsAreArray(oneOrNone(row.found)));
    }
}

}  // namespace
}  // namespace tavrin
