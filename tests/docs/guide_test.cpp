// SPDX-License-Identifier: MIT

// [draw]
#include <string>
#include <string_view>
#include <vector>

#include <tavrin/tavrin.h>

struct DrawnWidget {
    std::string png;
    std::vector<tavrin::TapTarget> targets;
};

DrawnWidget drawWidget(std::string_view document, std::string_view model, tavrin::Date moment) {
    tavrin::WidgetOptions options;
    options.date = moment;
    options.appearance = tavrin::Appearance::dark;
    options.room.size = {158, 158};
    options.fetchPolicy = tavrin::FetchPolicy::publicOnly;
    options.linkConverter = [](const tavrin::URL& url) {
        return tavrin::URL::parse("my-app://open?" + url.string()).value_or(url);
    };
    tavrin::Widget widget = tavrin::Document(document).widget(model, options);
    return {widget.encode(tavrin::PictureFormat::png), widget.targets()};
}
// [/draw]

// [next]
/// A picture for each model; each costs what differs from the one before.
std::vector<std::string> picturesOf(const tavrin::Document& document, const std::vector<std::string>& models) {
    tavrin::LastPicture last;
    std::vector<std::string> pictures;
    for (const std::string& model : models)
        pictures.push_back(document.widget(model, {}).encode(tavrin::PictureFormat::png, last));
    return pictures;
}
// [/next]

// [explain]
/// Where in a text an error is: where it stops being JSON, or at the value that the error's path leads to.
tavrin::TextPlace placeOf(const tavrin::PlacedError& error, std::string_view text) {
    const auto* decoding = dynamic_cast<const tavrin::DecodingError*>(&error);
    const auto offset = decoding && decoding->offset ? decoding->offset : tavrin::locate(text, error.codingPath);
    return tavrin::placeAt(text, offset.value_or(0));
}

/// What is wrong with a widget, as "model:line:column: why"; empty when nothing is.
std::string faultOf(std::string_view document, std::string_view model) {
    try {
        static_cast<void>(tavrin::Document(document).bind(model, {}));
        return "";
    } catch (const tavrin::PlacedError& error) {
        if (!error.isRooted) return error.message;
        const bool isModel = error.role == tavrin::TextRole::model;
        const auto place = placeOf(error, isModel ? model : document);
        return (isModel ? "model:" : "document:") + std::to_string(place.line) + ":" + std::to_string(place.column) +
               ": " + error.message;
    }
}
// [/explain]

// [badge]
/// The content on a capsule in the host's colour.
struct Badge {
    tavrin::AnyView content;

    [[nodiscard]] tavrin::AnyView body(const tavrin::EnvironmentValues&) const {
        const auto blue = tavrin::Color::rgb(0, 0.48, 1);
        return tavrin::Background{
            .background = tavrin::FilledShape{.shape = tavrin::Capsule{}, .fill = blue},
            .content = tavrin::Padding{.length = 12, .content = content},
        };
    }
};
// [/badge]

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/docs/content.h"

// What docs/guide.md shows in C++ is compiled and run here; its documents and commands are run by run_guide.py.

namespace tavrin {
namespace {

using testing::HasSubstr;
using testing::SizeIs;
using testing::StartsWith;

TEST(Guide, ShowsTheCodeThatIsCompiledHere) {
    const std::string source = contentOf("tests/docs/guide_test.cpp");
    const std::string guide = contentOf("docs/guide.md");
    for (const std::string part : {"draw", "next", "explain", "badge"}) {
        const std::string code = between(source, "// [" + part + "]\n", "// [/" + part + "]\n");
        ASSERT_FALSE(code.empty()) << part;
        EXPECT_THAT(guide, HasSubstr("\n```cpp\n" + code + "```\n"));
    }
}

TEST(Guide, ItsCodeDrawsAWidgetThatCanBeTapped) {
    const DrawnWidget drawn = drawWidget(R"({"version": "1.0", "nodes": {"main":
        {"type": "link", "url": "{{initServerParam.url}}", "view": {"type": "text", "content": "Read on"}}}})",
                                         R"({"url": "https://example.com/1"})", {});
    EXPECT_THAT(drawn.png, StartsWith("\x89PNG\r\n\x1A\n"));
    ASSERT_THAT(drawn.targets, SizeIs(1));
    EXPECT_EQ(drawn.targets.front().destination.string(), "my-app://open?https://example.com/1");
}

TEST(Guide, ItsCodeDrawsAPictureForEachModel) {
    const Document document(R"({"version": "1.0", "nodes": {"main":
        {"type": "text", "content": "{{initServerParam.name}}"}}})");
    const std::vector<std::string> pictures =
        picturesOf(document, {R"({"name": "Ann"})", R"({"name": "Ben"})", R"({"name": "Ann"})"});
    ASSERT_THAT(pictures, SizeIs(3));
    EXPECT_EQ(pictures[1], document.widget(R"({"name": "Ben"})", {}).encode());
    EXPECT_EQ(pictures[0], pictures[2]);
    EXPECT_NE(pictures[0], pictures[1]);
}

TEST(Guide, ItsCodeDrawsTheMomentThatItIsGiven) {
    const std::string timer = R"({"version": "1.1", "nodes": {"main": {"type": "timer"}}})";
    const std::string clock = R"({"version": "1.2", "nodes": {"main": {"type": "rectangle",
        "modifiers": [{"type": "clockHandRotationEffect", "period": 60}]}}})";
    EXPECT_EQ(drawWidget(timer, "{}", {1}).png, drawWidget(timer, "{}", {1'700'000'000}).png) << "counts from there";
    EXPECT_NE(drawWidget(clock, "{}", {1}).png, drawWidget(clock, "{}", {8}).png);
}

TEST(Guide, ItsCodeSaysWhatIsWrong) {
    constexpr std::string_view spacer = R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}}})";
    constexpr std::string_view title = R"({"version": "1.0", "nodes": {"main": {"type": "text",
 "content": "{{initServerParam.title}}"}}})";
    EXPECT_EQ(faultOf(spacer, "{}"), "");
    EXPECT_EQ(faultOf("{\"version\": \"1.0\",\n \"nodes\": {\"main\": {\"type\": \"text\"}}}", "{}"),
              "document:2:20: the key \"content\" is missing");
    EXPECT_EQ(faultOf("{\"version\": \"1.0\",\n \"nodes\": nothing}", "{}"),
              "document:2:11: The given data was not valid JSON: expected a value, found 'nothing'");
    EXPECT_EQ(faultOf(spacer, "{\n  \"title\": }"),
              "model:2:12: The given data was not valid JSON: expected a value, found '}'");
    EXPECT_EQ(faultOf(title, R"({"titel": ""})"), "document:2:13: key path not found in model: [\"title\"]");
    EXPECT_EQ(faultOf(R"({"version": "1.0", "nodes": {}})", "{}"), "view must have main node");
}

TEST(Guide, ItsBadgeIsBlueAroundItsContent) {
    ImageRenderer renderer(Badge{Color::white}, {.size = {60, 60}, .scale = 1});
    const PixelBuffer pixels = renderer.pixels();
    EXPECT_EQ(pixels.row(30)[30], 0xFFFFFFFF);
    EXPECT_EQ(pixels.row(30)[4], 0xFF007AFF);
}

}  // namespace
}  // namespace tavrin
