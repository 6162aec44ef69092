// SPDX-License-Identifier: MIT
#include "tavrin/doors/open_document.h"

#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/doors/option_error.h"
#include "tavrin/widget/widget.h"

namespace tavrin {
namespace {

using testing::HasSubstr;

constexpr const char* greeting =
    R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}})";

DrawingOptions optionsAt(double seconds) {
    DrawingOptions options;
    options.widget.date = Date{seconds};
    options.widget.timeZone = TimeZone();
    options.widget.room = {.name = "100x50", .size = {100, 50}};
    return options;
}

std::string fresh(const std::string& model) { return Document(greeting).widget(model, optionsAt(0).widget).encode(); }

TEST(OpenDocument, AnswersAreTheWidgets) {
    const OpenDocument document(greeting);
    const OpenWidget widget = document.widget(R"({"name": "Ada"})", optionsAt(0));
    Widget own = Document(greeting).widget(R"({"name": "Ada"})", optionsAt(0).widget);
    EXPECT_EQ(widget.encode(), own.encode());
    EXPECT_EQ(widget.encode({.format = PictureFormat::svg}), own.encode(PictureFormat::svg));
    EXPECT_EQ(*widget.pixels(), own.pixels());
    EXPECT_EQ(widget.layoutText(), own.layoutText());
    EXPECT_EQ(widget.targetsText(), own.targetsText());
    EXPECT_EQ(widget.treeText(), own.document().treeText());
    EXPECT_EQ(widget.validUntil(), own.validUntil());
    EXPECT_THAT(widget.explanation(std::nullopt), HasSubstr("Text \"Ada\""));
    EXPECT_THAT(widget.explanation("nodes.main"), HasSubstr("Ada"));
    EXPECT_EQ(document.text(), greeting);
}

TEST(OpenDocument, DrawsAtOnceWhatItsWidgetDraws) {
    const OpenDocument document(R"({"version": "1.0", "nodes": {"main": {"type": "timer", "timestamp": "90.5"}}})");
    const struct {
        PictureFormat format;
        Size size;
    } rows[] = {{PictureFormat::png, {303, 151}}, {PictureFormat::jpeg, {303, 151}}, {PictureFormat::pdf, {101, 50.4}}};
    for (const auto& row : rows) {
        DrawingOptions options = optionsAt(7);
        options.widget.room.size = {101, 50.4};
        options.format = row.format;
        for (int times = 0; times < 2; ++times) {
            const DrawnPicture drawn = document.draw(std::nullopt, options);
            const OpenWidget widget = document.widget(std::nullopt, options);
            EXPECT_EQ(drawn.bytes, widget.encode());
            EXPECT_EQ(drawn.size, row.size);
            EXPECT_TRUE(drawn.validUntil);
            EXPECT_EQ(drawn.validUntil, widget.validUntil());
        }
    }
    try {
        static_cast<void>(OpenDocument(greeting).draw("{", optionsAt(0)));
        FAIL();
    } catch (const CallError& error) {
        EXPECT_EQ(error.description.role, TextRole::model);
    }
}

TEST(OpenDocument, NamesThePicturesThatItShows) {
    const OpenDocument document(
        R"({"version": "1.0", "nodes": {"main": {"type": "webImage", "url": "{{initServerParam.photo}}"}}})");
    const auto pictures = document.pictures(R"({"photo": "a"})", optionsAt(0));
    ASSERT_EQ(pictures.size(), 1U);
    EXPECT_EQ(pictures[0].url.string(), "a");
    EXPECT_EQ(pictures[0].fileName, "2b606");
    EXPECT_THROW(static_cast<void>(document.pictures("{}", optionsAt(0))), CallError);
}

TEST(OpenDocument, CompressionAndQualityOfAPictureWin) {
    const OpenWidget widget = OpenDocument(greeting).widget(R"({"name": "Ada"})", optionsAt(0));
    WidgetOptions small = optionsAt(0).widget;
    small.compression = PngCompression::small;
    EXPECT_EQ(widget.encode({.compression = PngCompression::small}),
              Document(greeting).widget(R"({"name": "Ada"})", small).encode());
}

TEST(OpenDocument, ErrorsKnowTheirPlace) {
    try {
        const OpenDocument document("{\n  \"version\": \"1.0\",\n  \"nodes\": {\"main\": {\"type\": 5}}}");
        FAIL();
    } catch (const CallError& error) {
        EXPECT_EQ(error.description.type, "DecodingError");
        EXPECT_EQ(error.description.place->line, 3U);
        EXPECT_THAT(toJSON(error.description), HasSubstr(R"("path":["nodes","main","type"])"));
        EXPECT_THAT(toJSON(error.description), HasSubstr(R"("role":"document","line":3)"));
    }
    try {
        (void)OpenDocument(greeting).widget("{", optionsAt(0));
        FAIL();
    } catch (const CallError& error) {
        EXPECT_THAT(toJSON(error.description), HasSubstr(R"("role":"model","line":1,"column":2)"));
    }
}

TEST(OpenDocument, AFolderWithoutFontsIsAnErrorOfTheCall) {
    DrawingOptions options = optionsAt(0);
    options.fontDir = "/nowhere";
    EXPECT_THROW((void)OpenDocument(greeting).widget(std::nullopt, options), CallError);
    EXPECT_THROW((void)checkDocument(greeting, std::nullopt, options, {}), CallError);
}

TEST(OpenDocument, AMalformedExpressionEndsNoProcess) {
    const OpenDocument document(
        R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.a]b[}}"}}})");
    EXPECT_THROW((void)document.widget(R"({"initServerParam": {}})", optionsAt(0)), CallError);
}

TEST(OpenDocument, ABudgetThatIsSpentIsAnError) {
    DrawingOptions options = optionsAt(0);
    options.widget.budget.cancel = CancelToken();
    const OpenWidget widget = OpenDocument(greeting).widget(R"({"name": "Ada"})", options);
    EXPECT_FALSE(widget.encode().empty());
    options.widget.budget.cancel->cancel();
    try {
        (void)widget.treeText();
        FAIL();
    } catch (const CallError& error) {
        EXPECT_EQ(error.description.kind, "Budget");
    }
}

TEST(OpenDocument, ChecksInEachFamily) {
    const auto codes = [](const std::vector<std::string>& families) {
        return toJSON(checkDocument("{", std::nullopt, optionsAt(0), families));
    };
    EXPECT_THAT(codes({}), HasSubstr("\"severity\":\"error\""));
    EXPECT_THAT(codes({"systemSmall", "systemLarge"}), HasSubstr("\"severity\":\"error\""));
    EXPECT_THROW((void)codes({"systemTiny"}), OptionError);
}

TEST(OpenDocumentThreads, ShareOneWidget) {
    const OpenDocument document(greeting);
    const OpenWidget shared = document.widget(R"({"name": "Ada"})", optionsAt(0));
    const std::string expected = fresh(R"({"name": "Ada"})");
    std::vector<std::thread> threads;
    std::vector<int> wrong(4);
    for (int& count : wrong)
        threads.emplace_back([&] {
            for (int i = 0; i < 20; ++i) {
                count += shared.encode() != expected;
                const std::string model = R"({"name": "N)" + std::to_string(i) + "\"}";
                count += document.widget(model, optionsAt(0)).encode() != fresh(model);
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_THAT(wrong, testing::Each(0));
    EXPECT_EQ(shared.encode(), expected) << "after the threads that drew it have gone";
}

}  // namespace
}  // namespace tavrin
