// [draw]
#include <string>
#include <string_view>
#include <vector>

#include <tavrin/tavrin.h>

struct DrawnWidget {
    std::string png;
    std::vector<tavrin::TapTarget> targets;
};

DrawnWidget drawWidget(std::string_view document, std::string_view model) {
    tavrin::TavrinEngine::Context context;
    context.fetchPolicy = tavrin::FetchPolicy::publicOnly;
    context.linkConverter = [](const tavrin::URL& url) {
        return tavrin::URL::parse("my-app://open?" + url.string()).value_or(url);
    };
    const tavrin::AnyView view = tavrin::TavrinEngine().loadView(document, model, context);

    tavrin::RenderOptions options;
    options.size = {158, 158};
    options.widgetURL = context.widgetURL();
    options.environment.appearance = tavrin::Appearance::dark;
    options.environment.date = tavrin::Date::now();
    tavrin::ImageRenderer renderer(view, options);
    return {renderer.encode(tavrin::PictureFormat::png), renderer.targets()};
}
// [/draw]

// [explain]
/// What is wrong with a document, as "line:column: why"; empty when nothing is.
std::string faultOf(std::string_view document) {
    try {
        tavrin::TavrinEngine::Context context;
        static_cast<void>(tavrin::TavrinEngine().loadView(document, std::nullopt, context));
        return "";
    } catch (const tavrin::PlacedError& error) {
        if (!error.isRooted) return error.message;
        const auto offset = tavrin::locate(document, error.codingPath);
        const auto place = tavrin::placeAt(document, offset.value_or(0));
        return std::to_string(place.line) + ":" + std::to_string(place.column) + ": " + error.message;
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
    for (const std::string part : {"draw", "explain", "badge"}) {
        const std::string code = between(source, "// [" + part + "]\n", "// [/" + part + "]\n");
        ASSERT_FALSE(code.empty()) << part;
        EXPECT_THAT(guide, HasSubstr("\n```cpp\n" + code + "```\n"));
    }
}

TEST(Guide, ItsCodeDrawsAWidgetThatCanBeTapped) {
    const DrawnWidget drawn = drawWidget(R"({"version": "1.0", "nodes": {"main":
        {"type": "link", "url": "{{initServerParam.url}}", "view": {"type": "text", "content": "Read on"}}}})",
                                         R"({"url": "https://example.com/1"})");
    EXPECT_THAT(drawn.png, StartsWith("\x89PNG\r\n\x1A\n"));
    ASSERT_THAT(drawn.targets, SizeIs(1));
    EXPECT_EQ(drawn.targets.front().destination.string(), "my-app://open?https://example.com/1");
}

TEST(Guide, ItsCodeSaysWhatIsWrong) {
    EXPECT_EQ(faultOf(R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}}})"), "");
    EXPECT_EQ(faultOf("{\"version\": \"1.0\",\n \"nodes\": {\"main\": {\"type\": \"text\"}}}"),
              "2:20: the key \"content\" is missing");
    EXPECT_EQ(faultOf(R"({"version": "1.0", "nodes": {}})"), "view must have main node");
}

TEST(Guide, ItsBadgeIsBlueAroundItsContent) {
    ImageRenderer renderer(Badge{Color::white}, {.size = {60, 60}, .scale = 1});
    const PixelBuffer pixels = renderer.pixels();
    EXPECT_EQ(pixels.row(30)[30], 0xFFFFFFFF);
    EXPECT_EQ(pixels.row(30)[4], 0xFF007AFF);
}

}  // namespace
}  // namespace tavrin
