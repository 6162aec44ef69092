// SPDX-License-Identifier: MIT
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/strings/utf8.h"
#include "tests/diagnostics/diagnosed.h"

namespace tavrin {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

TEST(DrawnTexts, ThatAreCutOffOrUnreadable) {
    const struct {
        const char* why;
        const char* main;
        std::vector<std::string> found;
    } rows[] = {
        {"fits", R"({"type": "text", "content": "Hello"})", {}},
        {"too long for the widget",
         R"({"type": "text", "content": "many words in large letters", "fontSize": 80})",
         {"warning truncated-text nodes.main"}},
        {"limited by its author",
         R"({"type": "text", "content": "many words in large letters", "fontSize": 40, "modifiers": [
            {"type": "lineLimit", "number": 1}]})",
         {"note truncated-text nodes.main"}},
        {"reaches past the widget",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "offset", "x": 160, "y": 0}]})",
         {"warning clipped-text nodes.main"}},
        {"is clipped",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "frame", "width": 60, "height": 20},
            {"type": "offset", "x": 20, "y": 0}, {"type": "clipped"}]})",
         {"warning clipped-text nodes.main"}},
        {"pale on white, and on nearly black well",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#DDDDDD"}}]})",
         {"warning low-contrast nodes.main"}},
        {"the colour of what is behind it",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#FFFFFF", "dark": "#1C1C1E"}}]})",
         {"warning low-contrast nodes.main"}},
        {"gray, but large",
         R"({"type": "text", "content": "Hello", "fontSize": 30, "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#8A8A8A"}}]})",
         {}},
        {"gray and small",
         R"({"type": "text", "content": "Hello", "fontSize": 12, "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#8A8A8A"}}]})",
         {"warning low-contrast nodes.main"}},
        {"faded",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "opacity", "opacity": 0.3}]})",
         {"warning low-contrast nodes.main"}},
        {"faded away", R"({"type": "text", "content": "Hello", "modifiers": [{"type": "opacity", "opacity": 0}]})", {}},
        {"behind something",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "overlay", "view": {"type": "color",
            "value": "#334455"}}]})",
         {}},
        {"white on a dark shape",
         R"({"type": "text", "content": "Hello", "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#FFFFFF"}}, {"type": "padding", "length": 4}, {"type": "background",
            "view": {"type": "color", "value": "#003355"}}]})",
         {}},
        {"white where a gradient turns white",
         R"({"type": "text", "content": "from here to over there", "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#FFFFFF"}}, {"type": "background", "view": {"type": "color", "gradient": true,
            "start": "leading", "end": "trailing", "value": "#000000-#FFFFFF"}}]})",
         {"warning low-contrast nodes.main"}},
        {"emoji have their own colours",
         R"({"type": "text", "content": "🍋", "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#FFFFFF"}}]})",
         {}},
        {"a frame that contradicts itself",
         R"({"type": "spacer", "modifiers": [{"type": "frame", "minWidth": 9, "maxWidth": 5}]})",
         {"warning contradictory-frame nodes.main.modifiers[0]"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THAT(linesOf(diagnose(documentOf(row.main), std::nullopt, quietOptions())), ElementsAreArray(row.found));
    }
}

TEST(DrawnTexts, ThatAreCutOffNameWhatTookTheRoom) {
    const std::string words = "many words that go on and on until no line is left for the last of them to stand in";
    const std::string text = R"({"type": "text", "content": ")" + words + "\"";
    const auto spacer = [](const std::string& side, int length) {
        return R"({"type": "spacer", "modifiers": [{"type": "frame", ")" + side + "\": " + std::to_string(length) +
               "}]}";
    };
    const struct {
        const char* why;
        std::string main;
        const char* message;
    } rows[] = {
        {"a frame", text + R"(, "modifiers": [{"type": "frame", "width": 49, "height": 30}]})",
         "; the frame of 49 × 30 leaves it no more room: a larger one, fewer words or a smaller font would help"},
        {"a frame's width", text + R"(, "modifiers": [{"type": "frame", "width": 49}]})",
         "; the frame of width 49 leaves it no more room"},
        {"a frame's height",
         text + R"(, "modifiers": [{"type": "padding", "length": 2}, {"type": "frame", "height": 30}]})",
         "; the frame of height 30 leaves it no more room"},
        {"the inner one of two frames",
         text + R"(, "modifiers": [{"type": "frame", "height": 30}, {"type": "frame", "width": 200}]})",
         "; the frame of height 30 leaves it no more room"},
        {"a spacer", R"({"type": "hstack", "children": [)" + text + "}, " + spacer("width", 290) + "]}",
         "; the spacer beside it takes 290 points: less of it, fewer words or a smaller font would help"},
        {"the larger of two",
         R"({"type": "hstack", "children": [)" + spacer("width", 90) + ", " + text + "}, " + spacer("width", 200) +
             "]}",
         "; the spacer beside it takes 200 points"},
        {"a shape",
         R"({"type": "hstack", "children": [)" + text +
             R"(}, {"type": "circle", "modifiers": [{"type": "frame", "width": 290}]}]})",
         "; the shape beside it takes 290 points"},
        {"another text", R"({"type": "hstack", "children": [)" + text + R"(}, {"type": "text", "content": "Wide",
            "modifiers": [{"type": "frame", "width": 290}]}]})",
         "; the text \"Wide\" beside it takes 290 points"},
        {"a column",
         R"({"type": "vstack", "children": [)" + text + R"(, "fontSize": 30}, )" + spacer("height", 90) + "]}",
         "; the spacer in its column takes 90 points"},
        {"nothing but the widget", text + R"(, "fontSize": 80})",
         "; the widget has no more room: fewer words or a smaller font would help"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::string messages;
        for (const Diagnostic& found : diagnose(documentOf(row.main), std::nullopt, quietOptions()))
            if (found.code == "truncated-text") messages += found.message + "\n";
        EXPECT_THAT(messages,
                    HasSubstr("\"many words that go on an…\" does not fit and is cut off" + std::string(row.message)));
    }
}

TEST(DrawnTexts, ThatLieWhollyOutside) {
    const auto clipped = [](const std::string& inside, const std::string& clip = R"("width": 60, "height": 20)") {
        return R"({"type": "vstack", "children": [)" + inside +
               R"(], "modifiers": [{"type": "frame", "alignment": "top",)" + clip + R"(}, {"type": "clipped"}]})";
    };
    const auto text = [](const std::string& modifiers, const std::string& content = "Hello") {
        return R"({"type": "text", "content": ")" + content + R"(", "modifiers": [)" + modifiers + "]}";
    };
    const std::string two = text("") + "," + text("");
    const std::vector<std::string> found{"warning unseen-text nodes.main"};
    const std::vector<std::string> second{"warning unseen-text nodes.main.children[1]"};
    const struct {
        const char* why;
        std::string main;
        std::vector<std::string> found;
    } rows[] = {
        {"of the widget", text(R"({"type": "offset", "x": 900, "y": 0})"), found},
        {"of a clip", clipped(two), second},
        {"hidden by its opacity",
         text(R"({"type": "offset", "x": 900, "y": 0}, {"type": "opacity", "opacity": 0})"),
         {}},
        {"hidden by its colour",
         text(R"({"type": "foregroundColor", "color": {"value": "#00FFFFFF"}}, {"type": "offset", "x": 900, "y": 0})"),
         {}},
        {"hidden by its size", text(R"({"type": "scaleEffect", "x": 0}, {"type": "offset", "x": 900, "y": 0})"), {}},
        {"hidden by a clip without a size", clipped(two, R"("width": 60, "height": 0)"), {}},
        {"a strip that is moved inside a clip",
         clipped(R"({"type": "vstack", "children": [)" + two +
                 R"(], "modifiers": [{"type": "offset", "x": 0, "y": -22}]})"),
         {}},
        {"moved by the model", text(R"({"type": "offset", "x": "{{initServerParam.x}}", "y": 0})"), {}},
        {"moved by the clock",
         text(R"({"type": "offset", "x": 900, "y": 0}, {"type": "clockHandRotationEffect", "period": 60})"),
         {}},
        {"without letters", text(R"({"type": "offset", "x": 900, "y": 0})", " "), {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_THAT(linesOf(diagnose(documentOf(row.main), R"({"x": 900})", quietOptions())),
                    ElementsAreArray(row.found));
    }
}

TEST(DrawnTexts, ThatAreSeenInOneDrawingAreFine) {
    const std::string document = R"({"version": "1.0", "nodes": {"main": {"type": "zstack", "children": [
            {"type": "node", "name": "a"},
            {"type": "zstack", "children": [{"type": "node", "name": "a"}, {"type": "text", "content": "far"}],
             "modifiers": [{"type": "offset", "x": 300, "y": 0}]}]}, "a": {"type": "text", "content": "near"}}})";
    DiagnoseOptions options = quietOptions();
    const std::vector<std::string> found{"warning unseen-text nodes.main.children[1].children[1]"};
    EXPECT_THAT(linesOf(diagnose(document, std::nullopt, options)), ElementsAreArray(found));
    options.rooms.push_back({"wide", {900, 100}});
    EXPECT_THAT(diagnose(document, std::nullopt, options), ::testing::IsEmpty());
}

TEST(DrawnTexts, AreFoundOnceForAllRoomsAndUses) {
    DiagnoseOptions options = quietOptions();
    options.rooms = {{"small", {100, 60}}, {"large", {900, 300}}, {"tiny", {60, 40}}};
    const auto found = diagnose(
        R"({"version": "1.0", "nodes": {"main": {"type": "zstack", "children": [{"type": "node", "name": "a"},
            {"type": "node", "name": "a"}]},
            "a": {"type": "text", "content": "words that need their room here", "fontSize": 20}}})",
        std::nullopt, options);
    ASSERT_THAT(linesOf(found), ElementsAreArray({"warning truncated-text nodes.a"}));
    EXPECT_THAT(found.front().message, HasSubstr("(small, tiny)"));
    EXPECT_EQ(found.front().range->begin.line, 3u);
}

TEST(DrawnTexts, NameTheAppearanceThatTheyAreUnreadableIn) {
    const std::string document = documentOf(
        R"({"type": "text", "content": "Hello", "modifiers": [{"type": "foregroundColor",
            "color": {"value": "#DDDDDD"}}]})");
    const auto found = diagnose(document, std::nullopt, quietOptions());
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found.front().message,
              "\"Hello\" has a contrast of 1.3:1 with what lies behind it; 4.5:1 is wanted (systemMedium; light)");
    DiagnoseOptions onBlack = quietOptions();
    onBlack.background = {WidgetBackground::Kind::color, Color::rgb(0, 0, 0)};
    EXPECT_THAT(diagnose(document, std::nullopt, onBlack), ::testing::IsEmpty());
    DiagnoseOptions dark = quietOptions();
    dark.appearances = {Appearance::dark};
    EXPECT_THAT(diagnose(document, std::nullopt, dark), ::testing::IsEmpty());
}

TEST(DrawnTexts, AreJudgedWithSquareCorners) {
    const std::string document = documentOf(R"({"type": "text", "content": "1", "fontSize": 9, "modifiers": [
        {"type": "frame", "maxWidth": "infinity", "maxHeight": "infinity", "alignment": "topLeading"}]})");
    DiagnoseOptions options = quietOptions();
    options.rooms = {{"systemSmall", {158, 158}}};
    options.scale = 2;
    options.rounded = true;
    EXPECT_THAT(diagnose(document, std::nullopt, options), ::testing::IsEmpty());
}

TEST(DrawnTexts, WithCharactersThatNoFontHas) {
    const struct {
        const char* why;
        const char* content;
        std::vector<std::string> missing;
    } rows[] = {
        {"none", "Rain 雨 🌧️ مطر", {}},
        {"for private use", "a\\uF8F0b", {"U+F8F0"}},
        {"beyond the first plane", "\U0010FFFD", {"U+10FFFD"}},
        {"not assigned", "\u0378", {"U+0378"}},
        {"each once, in their order", "\\uF8F1\\uF8F0\\uF8F1 \\uF8F0", {"U+F8F1", "U+F8F0"}},
        {"a mark that belongs to nothing around it", "x\\uF8F0\u0301", {"U+F8F0"}},
        {"in right-to-left text", "مطر \\uF8F0 مطر", {"U+F8F0"}},
        {"not what draws nothing", "a\u200Db\u2060c\uFE0F\u00ADd", {}},
        {"not what is no text", "a\\u0007\\tb", {}},
        {"not the sign for broken text, which fonts have", "\uFFFD", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto found = diagnose(documentOf(R"({"type": "vstack", "children": [{"type": "text", "content": ")" +
                                               std::string(row.content) + R"("}]})"),
                                    std::nullopt, quietOptions());
        ASSERT_EQ(found.size(), row.missing.size());
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_EQ(found[i].message, "no font has " + row.missing[i] + "; a box is drawn (systemMedium)");
            EXPECT_EQ(linesOf(found)[i], "warning missing-glyph nodes.main.children[0]");
        }
    }
}

TEST(DrawnTexts, ThatAreNoTextsAreFoundInBounds) {
    std::string content;
    for (char32_t i = 0; i < 300; ++i) appendUtf8(content, 0x100000 + i);
    const auto found =
        diagnose(documentOf(R"({"type": "text", "content": ")" + content + R"("})"), std::nullopt, quietOptions());
    EXPECT_EQ(std::count_if(found.begin(), found.end(), [](const auto& each) { return each.code == "missing-glyph"; }),
              100);
}

TEST(DrawnLinks, ThatCannotBeTapped) {
    const std::vector<WidgetRoom> medium{WidgetRoom{}};
    const std::vector<WidgetRoom> sized{{"158x158", {158, 158}}};
    std::vector<WidgetRoom> all;
    for (std::size_t i = 0; i < widgetFamilyNames.size(); ++i)
        if (auto room = widgetRoom(static_cast<WidgetFamily>(i), {390, 844})) all.push_back(*std::move(room));
    const std::vector<WidgetRoom> small{all.front()};
    const std::string link = R"({"type": "link", "url": "a:b", "view": {"type": "color", "value": "#336699"})";
    const struct {
        const char* why;
        std::string main;
        std::vector<WidgetRoom> rooms;
        const char* found;
        const char* families;
    } rows[] = {
        {"they can", link + "}", medium, nullptr, nullptr},
        {"also in a size of one's own", link + "}", sized, nullptr, nullptr},
        {"a small widget", link + "}", small, "warning untappable-link nodes.main", "(systemSmall)"},
        {"once for all families", link + "}", all, "warning untappable-link nodes.main",
         "(systemSmall, accessoryCircular, accessoryRectangular, accessoryInline)"},
        {"with modifiers of its own", link + R"(, "modifiers": [{"type": "padding", "length": 4}]})", small,
         "warning untappable-link nodes.main", "(systemSmall)"},
        {"inside", R"({"type": "zstack", "children": [)" + link + "}]}", small,
         "warning untappable-link nodes.main.children[0]", "(systemSmall)"},
        {"the widget leads somewhere", link + R"(, "modifiers": [{"type": "widgetURL", "url": "a:c"}]})", small,
         "note untappable-link nodes.main", "(systemSmall)"},
        {"none that is not seen", link + R"(, "modifiers": [{"type": "offset", "x": 900, "y": 0}]})", small, nullptr,
         nullptr},
        {"none of a text that is no address",
         R"({"type": "link", "url": "a b:", "view": {"type": "color", "value": "#336699"}})", small,
         "warning invalid-url nodes.main.url", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        DiagnoseOptions options = quietOptions();
        options.rooms = row.rooms;
        const auto found = diagnose(documentOf(row.main), std::nullopt, options);
        const std::vector<std::string> expected =
            row.found ? std::vector<std::string>{row.found} : std::vector<std::string>{};
        EXPECT_THAT(linesOf(found), ElementsAreArray(expected));
        if (row.found && !found.empty()) {
            EXPECT_THAT(found.front().message, ::testing::EndsWith(row.families));
        }
    }
}

TEST(DrawnPictures, ThatAreNotInTheFolder) {
    const std::filesystem::path folder = std::filesystem::path(::testing::TempDir()) / "diagnosed-pictures";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(std::filesystem::path(TAVRIN_SOURCE_DIR) / "tests/images/pictures/gray8.png",
                               folder / WebImageHasher("there"), std::filesystem::copy_options::overwrite_existing);
    DiagnoseOptions options = quietOptions();
    options.imageCacheDir = URL::fileURL(folder);
    const auto found = diagnose(documentOf(R"({"type": "hstack", "children": [
            {"type": "webImage", "url": "there"}, {"type": "webImage", "url": "not there"},
            {"type": "webImage", "url": "not there", "alt": "there"}]})"),
                                std::nullopt, options);
    EXPECT_THAT(linesOf(found), ElementsAreArray({"warning missing-image nodes.main.children[1]"}));
}

TEST(DrawnPictures, InLongAddressesAreNamedByTheirBeginnings) {
    const std::string address = "data:," + std::string(300, 'a');
    const auto found =
        diagnose(documentOf(R"({"type": "webImage", "url": ")" + address + "\"}"), std::nullopt, quietOptions());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found.front().message,
                ::testing::StartsWith("no picture could be had from \"" + address.substr(0, 200) + "…\""));
}

}  // namespace
}  // namespace tavrin
