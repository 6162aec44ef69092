// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/diagnostics/diagnosed.h"

// docs/diagnostics.md explains every rule, and its examples show what they are meant to.

namespace tavrin {
namespace {

using ::testing::Contains;
using ::testing::EndsWith;
using ::testing::Not;

std::string page() {
    std::ifstream file(std::filesystem::path(TAVRIN_SOURCE_DIR) / "docs/diagnostics.md");
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The text between two marks, taken off the front with all before it; empty where there is none.
std::string take(std::string_view& text, std::string_view from, std::string_view to) {
    const std::size_t begin = text.find(from);
    if (begin == std::string_view::npos) return {};
    text.remove_prefix(begin + from.size());
    const std::size_t end = std::min(text.find(to), text.size());
    const std::string taken(text.substr(0, end));
    text.remove_prefix(end);
    return taken;
}

/// A section without line breaks in its prose.
std::string joined(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (text.ends_with(" ")) text.pop_back();
    return text;
}

std::string wholeDocument(const std::string& example) {
    if (example.find("\"version\"") != std::string::npos) return example;
    return "{\"version\": \"1.2\", \"nodes\": {\"row\": {\"type\": \"spacer\"}, \"main\": " + example + "}}";
}

std::set<std::string_view> codesOf(const std::string& example, const std::optional<std::string>& model,
                                   const WidgetRoom& room) {
    DiagnoseOptions options = quietOptions();
    options.imageCacheDir = URL::fileURL("/nonexistent");
    options.rooms = {room};
    std::set<std::string_view> codes;
    for (const Diagnostic& found : diagnose(wholeDocument(example), model, options)) codes.insert(found.code);
    return codes;
}

TEST(DiagnosticDocs, ExplainEveryRuleWithExamples) {
    const std::string text = page();
    std::string_view rest = text;
    for (const DiagnosticRule& rule : diagnosticRules()) {
        SCOPED_TRACE(rule.code);
        const std::string section = take(rest, "\n## " + std::string(rule.code) + "\n", "\n## ");
        ASSERT_FALSE(section.empty()) << "a section for each rule, in their order";
        const std::string details = rule.details.empty() ? "" : " " + std::string(rule.details);
        EXPECT_THAT(joined(section.substr(0, section.find("\n\n", 1))),
                    EndsWith(" " + std::string(name(rule.severity)) + ". " + std::string(rule.summary) + details));

        std::string_view blocks = section;
        std::optional<std::string> model;
        if (section.find("With this model") != std::string::npos) model = take(blocks, "```json\n", "\n```");
        const bool isSmall = section.find("\nIn the family `systemSmall`:\n") != std::string::npos;
        const WidgetRoom room = isSmall ? widgetRoom(WidgetFamily::systemSmall, {390, 844}).value() : WidgetRoom{};
        const std::string before = take(blocks, "```json\n", "\n```");
        const bool isBetter = blocks.find("\nBetter:\n") != std::string_view::npos;
        const std::string after = isBetter ? take(blocks, "Better:\n\n```json\n", "\n```") : "";
        if (rule.code == "not-looked-at") continue;  // its example would be 64 MiB large
        EXPECT_THAT(codesOf(before, model, room), Contains(rule.code));
        if (isBetter) {
            EXPECT_THAT(codesOf(after, model, room), Not(Contains(rule.code)));
        }
    }
    EXPECT_EQ(rest.find("\n## "), std::string_view::npos) << "no section without a rule";
}

}  // namespace
}  // namespace tavrin
