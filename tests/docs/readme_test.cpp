// SPDX-License-Identifier: MIT

// [README]
#include <string>
#include <string_view>

#include <tavrin/tavrin.h>

std::string renderWidget(std::string_view document, std::string_view model) {
    tavrin::WidgetOptions options;
    options.room = tavrin::widgetRoom(tavrin::WidgetFamily::systemMedium, {390, 844}).value();
    return tavrin::Document(document).widget(model, options).encode(tavrin::PictureFormat::png);
}
// [/README]

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/docs/content.h"

// What README.md shows is compiled, run and compared here.

namespace tavrin {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

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
