// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/diagnose.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/diagnostics/diagnosed.h"

namespace tavrin {
namespace {

using ::testing::ElementsAreArray;
using ::testing::HasSubstr;

TEST(Diagnose, SaysWhatLoadingRefuses) {
    const struct {
        const char* why;
        const char* document;
        const char* model;
        std::vector<std::string> found;
    } rows[] = {
        {"no JSON", "{\n  \"version\" 1}", "{}", {"error not-json "}},
        {"nothing", "", "{}", {"error not-json "}},
        {"another value", "[]", "{}", {"error wrong-type "}},
        {"a number", "5", "{}", {"error wrong-type "}},
        {"no nodes", R"({"version": "1.0"})", "{}", {"error missing-key "}},
        {"no main node", R"({"version": "1.0", "nodes": {}})", "{}", {"error refused nodes"}},
        {"a word", R"({"version": "2.0", "nodes": {}})", "{}", {"error unknown-word version"}},
        {"a model that is none",
         R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}}})",
         "{",
         {"error not-json model:"}},
        {"a text for a number",
         R"({"version": "1.0", "nodes": {"main": {"type": "spacer", "modifiers": [{"type": "opacity", "opacity": "a"}]}}})",
         "{}",
         {"error unreadable-value nodes.main.modifiers[0].opacity"}},
        {"a circle of references",
         R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "a"}, "a": {"type": "node", "name": "a"}}})",
         "{}",
         {"error refused nodes.a"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto found = diagnose(row.document, row.model, quietOptions());
        EXPECT_THAT(linesOf(found), ElementsAreArray(row.found));
        EXPECT_TRUE(!found.empty() && found.front().cause);
    }
}

TEST(Diagnose, FindsAllThatDecodingRefuses) {
    const struct {
        const char* why;
        std::string main;
        std::vector<std::string> found;
    } rows[] = {
        {"two properties of a node",
         R"({"type": "text", "fontSize": {}, "content": []})",
         {"error wrong-type nodes.main.fontSize", "error wrong-type nodes.main.content"}},
        {"a property and what is inside",
         R"({"type": "vstack", "spacing": [], "children": [{"type": "text", "content": "a", "fontSize": {}}]})",
         {"error wrong-type nodes.main.spacing", "error wrong-type nodes.main.children[0].fontSize"}},
        {"nodes of a list",
         R"({"type": "vstack", "children": [{"type": "text"}, 5, {"content": "b"}, {"type": "spacer"}]})",
         {"error missing-key nodes.main.children[0]", "error wrong-type nodes.main.children[1]",
          "error missing-key nodes.main.children[2]"}},
        {"what an unknown node holds",
         R"({"type": "vstck", "alignment": "odd", "children": [{"type": "text", "content": []}]})",
         {"error unknown-word nodes.main.type", "error wrong-type nodes.main.children[0].content"}},
        {"an unknown node that holds nothing, and its modifiers",
         R"({"type": "lable", "modifiers": [{"type": "opacity", "opacity": "a"}, {"type": "nothing"}, {"type": "opacity"}]})",
         {"error unknown-word nodes.main.type", "error unreadable-value nodes.main.modifiers[0].opacity",
          "error unknown-word nodes.main.modifiers[1].type", "error missing-key nodes.main.modifiers[2]"}},
        {"what a modifier holds",
         R"({"type": "spacer", "modifiers": [{"type": "overlay", "view": {"type": "text"}}, {"type": "background"}]})",
         {"error missing-key nodes.main.modifiers[0].view", "error missing-key nodes.main.modifiers[1]"}},
        {"only what is wrong by itself",
         R"({"type": "text", "content": [1], "modifiers": [{"type": "frame", "width": true}]})",
         {"error wrong-type nodes.main.content"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::vector<Diagnostic> found = diagnose(documentOf(row.main), std::nullopt, quietOptions());
        std::erase_if(found, [](const Diagnostic& each) { return each.severity != Severity::error; });
        EXPECT_THAT(linesOf(found), ElementsAreArray(row.found));
        EXPECT_EQ(std::ranges::count(found, false, &Diagnostic::isFurther), 1) << "loading ends at one";
    }
}

TEST(Diagnose, GoesOnAfterErrorsWithinBounds) {
    std::string children = R"({"type": "spacer"})";
    for (int i = 0; i < 500; ++i) children += R"(, {"type": "text"})";
    const std::string document = documentOf(R"({"type": "vstack", "children": [)" + children + "]}");
    EXPECT_EQ(diagnose(document, std::nullopt, quietOptions()).size(), 100U);
    DiagnoseOptions poor = quietOptions();
    poor.budget.steps = 60'000;
    const std::size_t found = diagnose(document, std::nullopt, poor).size();
    EXPECT_GT(found, 1U);
    EXPECT_LT(found, 100U);
}

TEST(Diagnose, LooksOnTheBudgetOfTheDrawings) {
    std::string unknown;
    for (int i = 0; i < 2000; ++i) unknown += ", \"x" + std::to_string(i) + "\": 1";
    std::string frames = R"({"type": "spacer"})";
    for (int i = 0; i < 200; ++i)
        frames += R"(, {"type": "spacer", "modifiers": [{"type": "frame", "maxWidth": 100}]})";
    const struct {
        const char* why;
        std::string document;
    } rows[] = {
        {"the text's rules", documentOf(R"({"type": "spacer")" + unknown + "}")},
        {"the drawing's rules", documentOf(R"({"type": "zstack", "children": [)" + frames + "]}")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        DiagnoseOptions options = quietOptions();
        Widget widget = Document(row.document).widget(std::nullopt, options);
        (void)widget.layoutTree();
        options.budget.steps = widget.cost().steps;
        const auto isRefused = [&] {
            const auto found = diagnose(row.document, std::nullopt, options);
            return std::ranges::any_of(found, [](const Diagnostic& d) { return d.message.starts_with("Budget: "); });
        };
        EXPECT_TRUE(isRefused()) << "they take steps as well";
        options.budget = {};
        EXPECT_FALSE(isRefused());
        options.budget.cancel = CancelToken();
        options.budget.cancel->cancel();
        EXPECT_TRUE(isRefused());
    }
}

TEST(Diagnose, HoldsNoMoreThanItsBudgetInAll) {
    std::string texts = R"({"type": "spacer"})";
    for (int i = 0; i < 5'000; ++i) texts += R"(, {"type": "text", "content": "a"})";
    const std::string document = documentOf(R"({"type": "vstack", "children": [)" + texts + "]}");
    DiagnoseOptions options = quietOptions();
    const auto isRefused = [&](std::uint64_t bytes) {
        options.budget.bytes = bytes;
        const auto found = diagnose(document, std::nullopt, options);
        return std::ranges::any_of(found, [](const Diagnostic& d) { return d.message.starts_with("Budget: "); });
    };
    Widget widget = Document(document).widget(std::nullopt, options);
    (void)widget.pixels();
    const auto drawn = static_cast<std::uint64_t>(widget.cost().peakBytes);
    EXPECT_TRUE(isRefused(drawn)) << "the text as it is written and what is found in it are held as well";
    EXPECT_FALSE(isRefused(8 * drawn));
}

TEST(Diagnose, SaysWhatWasMeantByWhatLoadingRefuses) {
    const auto nodes = [](const std::string& all) { return R"({"version": "1.2", "nodes": {)" + all + "}}"; };
    const auto progress = [&](const std::string& keys) {
        return documentOf(R"({"type": "progressView", "lineWidth": 4, )" + keys + "}");
    };
    const struct {
        const char* why;
        std::string document;
        std::string found;  // where, and the whole message
        std::string fixed;  // empty: nothing
    } rows[] = {
        {"a reference", nodes(R"("main": {"type": "node", "name": "headr"}, "header": {"type": "spacer"})"),
         R"(nodes.main.name: RefNode: node for name: headr not found; did you mean "header"?)",
         nodes(R"("main": {"type": "node", "name": "header"}, "header": {"type": "spacer"})")},
        {"a reference to nothing like it", nodes(R"("main": {"type": "node", "name": "headr"})"),
         "nodes.main.name: RefNode: node for name: headr not found", ""},
        {"the main node", nodes(R"("mian": {"type": "spacer"}, "row": {"type": "spacer"})"),
         R"(nodes.mian: Engine: view must have main node; should "mian" be "main"?)",
         nodes(R"("main": {"type": "spacer"}, "row": {"type": "spacer"})")},
        {"no main node", nodes(R"("row": {"type": "spacer"})"), "nodes: Engine: view must have main node", ""},
        {"a keyword", progress(R"("style": "circlar", "value": 0.5)"),
         R"(nodes.main.style: cannot convert "circlar" to ProgressNode.Style; did you mean "circular"?)",
         progress(R"("style": "circular", "value": 0.5)")},
        {"a keyword like none", progress(R"("style": "pie", "value": 0.5)"),
         R"(nodes.main.style: cannot convert "pie" to ProgressNode.Style; there are "circular", "linear")", ""},
        {"a share in per cent", progress(R"("style": "linear", "value": "75%")"),
         R"(nodes.main.value: cannot convert "75%" to Float; did you mean 0.75?)", ""},
        {"a number with a unit",
         documentOf(R"({"type": "spacer", "modifiers": [{"type": "offset", "x": "12 px", "y": 0}]})"),
         R"(nodes.main.modifiers[0].x: cannot convert "12 px" to Float; did you mean 12?)", ""},
        {"a short colour", documentOf(R"({"type": "color", "value": "#F00"})"),
         R"(nodes.main.value: ColorNode: invalid color: #F00; did you mean "#FF0000"?)",
         documentOf(R"({"type": "color", "value": "#FF0000"})")},
        {"a short colour of a shape", documentOf(R"({"type": "circle", "fillColor": {"value": "abc"}})"),
         R"(nodes.main.fillColor.value: ColorNode: invalid color: abc; did you mean "#aabbcc"?)",
         documentOf(R"({"type": "circle", "fillColor": {"value": "#aabbcc"}})")},
        {"a colour without a model", documentOf(R"({"type": "color", "value": "{{initServerParam.c}}"})"),
         "nodes.main.value: ColorNode: invalid color: {{initServerParam.c}}; without a model there is no colour", ""},
        {"a side",
         documentOf(R"({"type": "spacer", "modifiers": [{"type": "padding", "length": 1, "edges": ["left"]}]})"),
         R"(nodes.main.modifiers[0].edges[0]: "left" is not an edge; there are "top", "bottom", "leading", "trailing", )"
         R"("all"; did you mean "leading"?)",
         documentOf(R"({"type": "spacer", "modifiers": [{"type": "padding", "length": 1, "edges": ["leading"]}]})")},
        {"a clip",
         documentOf(R"({"type": "spacer", "modifiers": [{"type": "clipShape", "view": {"type": "rectangle"}}]})"),
         "nodes.main.modifiers[0]: Invalid Shape: unsupported shape tavrin::Rectangle; a rectangle is no shape to clip "
         "to; a circle, a capsule or a roundedRectangle is",
         ""},
        {"a byte order mark", "\xEF\xBB\xBF" + documentOf(R"({"type": "spacer"})"),
         ": The given data was not valid JSON: unexpected byte order mark at the start of the document",
         documentOf(R"({"type": "spacer"})")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto found = diagnose(row.document, std::nullopt, quietOptions());
        const auto error = std::find_if(found.begin(), found.end(), [](const Diagnostic& each) { return each.cause; });
        ASSERT_NE(error, found.end());
        EXPECT_EQ(toText(error->path) + ": " + error->message, row.found);
        const FixedText fixed = applyFixes(row.document, {*error});
        EXPECT_EQ(fixed.fixed.empty() ? "" : fixed.text, row.fixed);
    }
}

/// The word that a message proposes in quotes; none where it proposes nothing.
std::optional<std::string> proposedBy(const std::string& message) {
    constexpr std::string_view start = "did you mean \"";
    const std::size_t begin = message.find(start);
    if (begin == std::string::npos) return std::nullopt;
    const std::size_t word = begin + start.size();
    return message.substr(word, message.find('"', word) - word);
}

std::optional<std::string> failureOf(const std::string& document) {
    try {
        Context context;
        static_cast<void>(TavrinEngine().loadView(document, std::nullopt, context));
        return std::nullopt;
    } catch (const std::exception& error) {
        return error.what();
    }
}

TEST(Diagnose, ProposesNothingThatIsRefusedNext) {
    const auto node = [](const std::string& type) { return documentOf(R"({"type": ")" + type + R"("})"); };
    const auto modifier = [](const std::string& type, const std::string& keys = "") {
        return documentOf(R"({"type": "spacer", "modifiers": [{"type": ")" + type + "\"" + keys + "}]}");
    };
    const auto entries = [](const std::string& nodes) { return R"({"version": "1.0", "nodes": {)" + nodes + "}}"; };
    const struct {
        const char* why;
        std::string document;
        const char* wrong;
        const char* proposed;  // null: nothing
    } rows[] = {
        {"a node", node("spacr"), "spacr", "spacer"},
        {"a node in capitals", node("EmptyView"), "EmptyView", "emptyView"},
        {"a modifier is no node", node("clipped"), "clipped", nullptr},
        {"nor one that is nearly one", node("zIndx"), "zIndx", nullptr},
        {"a modifier", modifier("cliped"), "cliped", "clipped"},
        {"a node is no modifier", modifier("capsule"), "capsule", nullptr},
        {"a reserved modifier", modifier("animation"), "animation", nullptr},
        {"one that is nearly reserved", modifier("animaton"), "animaton", nullptr},
        {"in capitals", modifier("Transition"), "Transition", nullptr},
        {"with a letter more", modifier("contentTransitions"), "contentTransitions", nullptr},
        {"a version", R"({"version": "v1.2", "nodes": {"main": {"type": "spacer"}}})", "v1.2", "1.2"},
        {"a version that is not there yet", R"({"version": "1.3", "nodes": {"main": {"type": "spacer"}}})", "1.3",
         nullptr},
        {"an edge", modifier("padding", R"(, "length": 1, "edges": ["botom"])"), "botom", "bottom"},
        {"a keyword", documentOf(R"({"type": "progressView", "style": "cirular", "value": 0.5, "lineWidth": 3})"),
         "cirular", "circular"},
        {"a name", entries(R"("main": {"type": "node", "name": "rwo"}, "row": {"type": "spacer"})"), "rwo", "row"},
        {"its own name", entries(R"("main": {"type": "node", "name": "mian"})"), "mian", nullptr},
        {"the name of what draws it",
         entries(R"("main": {"type": "node", "name": "row"}, "row": {"type": "node", "name": "maim"})"), "maim",
         nullptr},
        {"another one beside it", entries(R"("main": {"type": "node", "name": "mail"}, "mall": {"type": "spacer"})"),
         "mail", "mall"},
        {"a colour", documentOf(R"({"type": "color", "value": "#abc"})"), "#abc", "#aabbcc"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        ASSERT_TRUE(failureOf(row.document).has_value());
        const auto found = diagnose(row.document, std::nullopt, quietOptions());
        const auto error = std::find_if(found.begin(), found.end(), [](const Diagnostic& each) { return each.cause; });
        ASSERT_NE(error, found.end());
        const std::optional<std::string> proposed = proposedBy(error->message);
        EXPECT_EQ(proposed, row.proposed ? std::optional<std::string>(row.proposed) : std::nullopt);
        if (!proposed) continue;
        std::string mended = row.document;
        mended.replace(mended.find(row.wrong), std::strlen(row.wrong), *proposed);
        EXPECT_EQ(failureOf(mended), std::nullopt);
    }
}

TEST(Diagnose, KnowsPlacesInCodePoints) {
    const auto found = diagnose("{\"version\": \"1.0\", \"nodes\": {\n\"main\": {\"ü\": 1, \"type\": \"spacer\", \"é\n",
                                std::nullopt, quietOptions());
    ASSERT_EQ(found.size(), 1u);  // not JSON
    const std::string document =
        "{\"version\": \"1.0\", \"nodes\": {\n  \"main\": {\"üü\": 1, \"type\": \"text\", \"contents\": "
        "\"a\",\n\"content\": 3}}}";
    const auto keys = diagnose(document, std::nullopt, quietOptions());
    ASSERT_THAT(linesOf(keys), ElementsAreArray({R"(warning unknown-key nodes.main["üü"])",
                                                 "warning unknown-key nodes.main.contents"}));
    const TextRange& range = *keys[1].range;
    EXPECT_EQ(range.begin, placeAt(document, document.find("\"contents\"")));
    EXPECT_EQ(range.begin.line, 2u);
    EXPECT_EQ(range.begin.column, 37u);
    EXPECT_EQ(range.end.column, 47u);
    EXPECT_EQ(document.substr(range.begin.offset, range.end.offset - range.begin.offset), "\"contents\"");
}

TEST(Diagnose, MakesOnlySoMany) {
    DiagnoseOptions options = quietOptions();
    options.maximumDiagnostics = 3;
    std::string keys;
    for (int i = 0; i < 9; ++i) keys += ", \"key" + std::to_string(i) + "\": 0";
    const auto found = diagnose(documentOf("{\"type\": \"spacer\"" + keys + "}"), std::nullopt, options);
    EXPECT_LE(found.size(), 4u);
}

TEST(Diagnose, IsLinearInTheDocument) {
    std::string children;
    for (int i = 0; i < 20'000; ++i)
        children += R"({"type": "text", "content": "{{initServerParam.a}}", "fontsize": 1, "fontWeight": "Bold"},)";
    const std::string document =
        documentOf("{\"type\": \"zstack\", \"children\": [" + children + "{\"type\": \"spacer\"}]}");
    DiagnoseOptions options = quietOptions();
    options.rooms = {};
    EXPECT_GE(diagnose(document, R"({"a": 1})", options).size(), 1000u);
    // A quadratic step would take minutes; ctest ends it.
}

TEST(Diagnose, IsWrittenAsJSON) {
    const auto found =
        diagnose(documentOf(R"({"type": "text", "content": "a", "fontsize": 12})"), std::nullopt, quietOptions());
    EXPECT_EQ(
        toJSON(found),
        R"([{"severity":"warning","code":"unknown-key","message":"unknown key \"fontsize\" in text; did you mean \"fontSize\"?",)"
        R"("role":"document","path":["nodes","main","fontsize"],"range":{"line":1,"column":71,"endLine":1,"endColumn":81,"offset":70,"endOffset":80},)"
        R"("fix":[{"line":1,"column":71,"endLine":1,"endColumn":81,"offset":70,"endOffset":80,"text":"\"fontSize\""}]}])");
    EXPECT_EQ(toJSON({}), "[]");
}

TEST(Diagnose, RulesAreListedOnce) {
    std::set<std::string_view> codes;
    for (const DiagnosticRule& rule : diagnosticRules()) {
        EXPECT_TRUE(codes.insert(rule.code).second) << rule.code;
        EXPECT_TRUE(rule.summary.ends_with('.')) << rule.code;
    }
    EXPECT_EQ(&info(Rule::notLookedAt), &diagnosticRules().back());
    EXPECT_EQ(info(Rule::unknownKey).code, "unknown-key");
    EXPECT_EQ(info(Rule::lowContrast).code, "low-contrast");
}

TEST(DiagnoseThreads, ShareNothing) {
    const std::string document = documentOf(
        R"({"type": "text", "content": "Hello", "fontsize": 3, "modifiers": [{"type": "foregroundColor", "color": {"value": "#DDDDDD"}}]})");
    std::vector<std::string> results(4);
    std::vector<std::thread> threads;
    for (std::string& result : results)
        threads.emplace_back([&] { result = toJSON(diagnose(document, std::nullopt, quietOptions())); });
    for (std::thread& thread : threads) thread.join();
    for (const std::string& result : results) EXPECT_EQ(result, results.front());
    EXPECT_THAT(results.front(), HasSubstr("low-contrast"));
}

TEST(Fixes, ThatContradictEachOtherAreLeftOut) {
    const auto edit = [](std::size_t begin, std::size_t end, const char* text) {
        TextEdit made{{}, text};
        made.range.begin.offset = begin;
        made.range.end.offset = end;
        return made;
    };
    const auto fixing = [](std::vector<TextEdit> edits) {
        Diagnostic diagnostic;
        diagnostic.fix = std::move(edits);
        return diagnostic;
    };
    const struct {
        const char* why;
        std::vector<Diagnostic> diagnostics;
        const char* text;
        std::vector<std::size_t> fixed;
    } rows[] = {
        {"none", {}, "0123456789", {}},
        {"side by side", {fixing({edit(2, 4, "b")}), fixing({edit(0, 2, "a")})}, "ab456789", {0, 1}},
        {"one over the other", {fixing({edit(2, 5, "b")}), fixing({edit(4, 6, "c")})}, "01b56789", {0}},
        {"the same twice", {fixing({edit(2, 5, "b")}), fixing({edit(2, 5, "b"), edit(9, 10, "")})}, "01b5678", {0, 1}},
        {"all or nothing", {fixing({edit(2, 5, "b")}), fixing({edit(0, 1, "a"), edit(3, 4, "c")})}, "01b56789", {0}},
        {"past the end", {fixing({edit(9, 11, "b")})}, "0123456789", {}},
        {"put in between", {fixing({edit(3, 3, "x")}), fixing({edit(3, 3, "y")})}, "012x3456789", {0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const FixedText made = applyFixes("0123456789", row.diagnostics);
        EXPECT_EQ(made.text, row.text);
        EXPECT_EQ(made.fixed, row.fixed);
    }
}

}  // namespace
}  // namespace tavrin
