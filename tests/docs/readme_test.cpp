// [README]
#include <string>
#include <string_view>

#include <tavrin/tavrin.h>

std::string renderWidget(std::string_view document, std::string_view model) {
    tavrin::TavrinEngine::Context context;
    const tavrin::AnyView view = tavrin::TavrinEngine().loadView(document, model, context);

    tavrin::RenderOptions options;
    options.size = *tavrin::widgetSize(tavrin::WidgetFamily::systemMedium, {390, 844});
    options.environment.date = tavrin::Date::now();
    return tavrin::ImageRenderer(view, options).encode(tavrin::PictureFormat::png);
}
// [/README]

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// What README.md shows is compiled, run and compared here.

namespace tavrin {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(std::filesystem::path(TAVRIN_SOURCE_DIR) / file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// What stands between `begin` and the next `end`; empty when there is no such place.
std::string between(const std::string& text, std::string_view begin, std::string_view end) {
    const std::size_t found = text.find(begin);
    if (found == std::string::npos) return {};
    const std::size_t first = found + begin.size();
    return text.substr(first, text.find(end, first) - first);
}

std::string withoutSpace(std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

TEST(Readme, ShowsTheCodeThatIsCompiledHere) {
    const std::string code = between(contentOf("tests/docs/readme_test.cpp"), "// [README]\n", "// [/README]\n");
    ASSERT_THAT(code, HasSubstr("renderWidget"));
    EXPECT_THAT(contentOf("README.md"), HasSubstr("\n```cpp\n" + code + "```\n"));
}

TEST(Readme, ItsCodeDrawsAWidget) {
    const std::string png =
        renderWidget(contentOf("examples/agenda/document.json"), contentOf("examples/agenda/model.json"));
    EXPECT_THAT(png, StartsWith("\x89PNG\r\n\x1A\n"));
    const std::string sides{"\0\0\x03\xF6\0\0\x01\xDA", 8};  // 1014 x 474 pixels, big-endian
    EXPECT_EQ(png.substr(16, 8), sides);
}

TEST(Readme, ItsExcerptsStandInTheExample) {
    const std::string example =
        withoutSpace(contentOf("examples/agenda/document.json") + contentOf("examples/agenda/model.json"));
    std::string rest = contentOf("README.md");
    for (int excerpt = 0; excerpt < 2; ++excerpt) {
        const std::string json = between(rest, "```json\n", "```");
        ASSERT_FALSE(json.empty());
        EXPECT_THAT(example, HasSubstr(withoutSpace(json.substr(0, json.find("…")))));
        rest.erase(0, rest.find(json) + json.size() + 3);
    }
}

}  // namespace
}  // namespace tavrin
