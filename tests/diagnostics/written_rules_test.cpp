// SPDX-License-Identifier: MIT
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/diagnostics/written_document.h"
#include "tavrin/engine/registries.h"
#include "tests/diagnostics/diagnosed.h"

namespace tavrin {
namespace {

using ::testing::ElementsAreArray;

/// A node "main", what is found in the document, and the node after its fixes where it has any.
struct Row {
    const char* why;
    const char* main;
    std::vector<std::string> found;
    const char* fixed = nullptr;
    const char* model = nullptr;
    const char* version = "1.2";
};

void judge(const Row& row) {
    SCOPED_TRACE(row.why);
    DiagnoseOptions options = quietOptions();
    options.rooms = {};  // what is drawn has tests of its own
    const std::string document = documentOf(row.main, row.version);
    const auto model = row.model ? std::optional<std::string_view>(row.model) : std::nullopt;
    const std::vector<Diagnostic> diagnostics = diagnose(document, model, options);
    EXPECT_THAT(linesOf(diagnostics), ElementsAreArray(row.found));
    const FixedText fixed = applyFixes(document, diagnostics);
    if (row.fixed) {
        EXPECT_EQ(fixed.text, documentOf(row.fixed, row.version));
        EXPECT_FALSE(fixed.fixed.empty());
    } else {
        EXPECT_THAT(fixed.fixed, ::testing::IsEmpty());
    }
}

TEST(UnknownKeys, AreFoundWithTheKeyThatWasMeant) {
    const Row rows[] = {
        {"a letter's case",
         R"({"type": "text", "content": "a", "fontsize": 12})",
         {"warning unknown-key nodes.main.fontsize"},
         R"({"type": "text", "content": "a", "fontSize": 12})"},
        {"an escaped key",
         R"({"type": "text", "content": "a", "font\u0073ize": 12})",
         {"warning unknown-key nodes.main.fontsize"},
         R"({"type": "text", "content": "a", "fontSize": 12})"},
        {"of a modifier",
         R"({"type": "spacer", "modifiers": [{"type": "offset", "x": 1, "y": 1, "z": 1}]})",
         {R"(warning unknown-key nodes.main.modifiers[0].z)"}},
        {"two may be meant",
         R"({"type": "spacer", "modifiers": [{"type": "frame", "m_Width": 1}]})",
         {"warning unknown-key nodes.main.modifiers[0].m_Width"}},
        {"the right key is there as well",
         R"({"type": "text", "content": "a", "fontSize": 1, "fontsize": 2})",
         {"warning unknown-key nodes.main.fontsize"}},
        {"a modifier among the keys",
         R"({"type": "spacer", "opacity": 0.5, "modifiers": []})",
         {"warning unknown-key nodes.main.opacity"}},
        {"in an attachment",
         R"({"type": "progressView", "style": "linear", "value": 1, "lineWidth": 2, "attachment": {"position": "top",
            "view": {"type": "spacer"}, "views": 1}})",
         {"warning unknown-key nodes.main.attachment.views"}},
        {"in a colour",
         R"({"type": "circle", "fillColor": {"type": "color", "value": "#112233", "drak": "#000000"}})",
         {"warning unknown-key nodes.main.fillColor.drak"},
         R"({"type": "circle", "fillColor": {"type": "color", "value": "#112233", "dark": "#000000"}})"},
        {"the author's own keys", R"({"type": "spacer", "_todo": 1, "$id": 2, "// why": 3})", {}},
        {"a fix that mends an error",
         R"({"type": "text", "contnet": "a"})",
         {"error missing-key nodes.main", "warning unknown-key nodes.main.contnet"},
         R"({"type": "text", "content": "a"})"},
    };
    for (const Row& row : rows) judge(row);
}

TEST(UnknownKeys, OfTheDocumentItself) {
    const auto found =
        diagnose(R"({"$schema": "s", "version": "1.0", "title": 1, "nodes": {"main": {"type": "spacer"}}})",
                 std::nullopt, quietOptions());
    EXPECT_THAT(linesOf(found), ElementsAreArray({"warning unknown-key title"}));
}

TEST(UnknownKeys, AreNotMetWhereAPropertyIsLookedFor) {
    std::string node = R"({"type": "circle")";
    for (int i = 0; i < 2000; ++i) node += ", \"x" + std::to_string(i) + "\": 1";
    const std::string text = documentOf(node + R"(, "stroke": true, "stroke": true})");
    const WrittenDocument document(text);
    const WrittenRecord& circle = document.records().back();
    ASSERT_EQ(circle.members.size(), 2003U);
    ASSERT_EQ(circle.properties().size(), 1U);
    EXPECT_EQ(memberOf(circle, "stroke"), &circle.properties().front());
}

TEST(DuplicateKeys, OfRecordsAndNodes) {
    const Row rows[] = {
        {"a property",
         R"({"type": "text", "content": "a", "content": "b"})",
         {"warning duplicate-key nodes.main.content"}},
        {"a node", R"({"type": "spacer"}, "main": {"type": "text"})", {"warning duplicate-key nodes.main"}},
    };
    for (const Row& row : rows) judge(row);
}

TEST(DroppedValues, OfOptionalProperties) {
    const Row rows[] = {
        {"a keyword's case",
         R"({"type": "text", "content": "a", "fontWeight": "Bold"})",
         {"warning dropped-value nodes.main.fontWeight"},
         R"({"type": "text", "content": "a", "fontWeight": "bold"})"},
        {"no such keyword",
         R"({"type": "text", "content": "a", "fontWeight": "heavy"})",
         {"warning dropped-value nodes.main.fontWeight"}},
        {"a side",
         R"({"type": "vstack", "alignment": "left", "children": []})",
         {"warning dropped-value nodes.main.alignment"},
         R"({"type": "vstack", "alignment": "leading", "children": []})"},
        {"a corner",
         R"({"type": "spacer", "modifiers": [{"type": "frame", "alignment": "bottomRight"}]})",
         {"warning dropped-value nodes.main.modifiers[0].alignment"},
         R"({"type": "spacer", "modifiers": [{"type": "frame", "alignment": "bottomTrailing"}]})"},
        {"a number with a unit",
         R"({"type": "text", "content": "a", "fontSize": "12px"})",
         {"warning dropped-value nodes.main.fontSize"}},
        {"a truth that is a number",
         R"({"type": "timer", "monospace": 1})",
         {"warning dropped-value nodes.main.monospace"}},
        {"a truth's case",
         R"({"type": "timer", "monospace": "True"})",
         {"warning dropped-value nodes.main.monospace"},
         R"({"type": "timer", "monospace": "true"})"},
        {"half a line",
         R"({"type": "spacer", "modifiers": [{"type": "lineLimit", "number": 1.5}]})",
         {"warning dropped-value nodes.main.modifiers[0].number"}},
        {"readable ones",
         R"({"type": "text", "content": "a", "fontSize": "12", "fontWeight": null, "modifiers": [{"type": "frame",
            "maxWidth": "infinity"}, {"type": "lineLimit", "number": 2.0}]})",
         {}},
        {"from a model",
         R"({"type": "text", "content": "a", "fontWeight": "{{initServerParam.w}}"})",
         {"warning dropped-value nodes.main.fontWeight"},
         nullptr,
         R"({"w": "Bold"})"},
        {"a time zone that is none",
         R"({"type": "spacer", "modifiers": [{"type": "clockHandRotationEffect", "period": 60,
            "timeZone": "Europe/Madird"}]})",
         {"warning dropped-value nodes.main.modifiers[0].timeZone"},
         R"({"type": "spacer", "modifiers": [{"type": "clockHandRotationEffect", "period": 60,
            "timeZone": "Europe/Madrid"}]})"},
        {"a time zone",
         R"({"type": "spacer", "modifiers": [{"type": "clockHandRotationEffect", "period": 60,
            "timeZone": "Europe/Paris"}]})",
         {}},
        {"a model's null is meant",
         R"({"type": "text", "content": "a", "fontSize": "{{initServerParam.w}}"})",
         {},
         nullptr,
         R"({"w": null})"},
    };
    for (const Row& row : rows) judge(row);
}

TEST(Ranges, ThatNumbersLeave) {
    const auto modified = [](const std::string& modifier) {
        return R"({"type": "spacer", "modifiers": [{"type": )" + modifier + "}]}";
    };
    const auto progress = [](const std::string& value) {
        return R"({"type": "progressView", "style": "circular", "lineWidth": 4, "value": )" + value + "}";
    };
    const auto text = [](const std::string& size) {
        return R"({"type": "text", "content": "a", "fontSize": )" + size + "}";
    };
    const auto timer = [](const std::string& seconds) { return R"({"type": "timer", "timestamp": )" + seconds + "}"; };
    const struct {
        const char* why;
        std::string main;
        std::string found;  // where, and how the message ends; empty: nothing
    } rows[] = {
        {"per cent", progress("75"), "nodes.main.value: \"value\" is 75, not from 0 to 1; did you mean 0.75?"},
        {"as a text", progress("\"75\""), "nodes.main.value: \"value\" is 75, not from 0 to 1; did you mean 0.75?"},
        {"too much", progress("1e300"), "nodes.main.value: \"value\" is 1e300, not from 0 to 1"},
        {"a little too much", progress("1.1"), "nodes.main.value: \"value\" is 1.1, not from 0 to 1"},
        {"less than nothing", progress("-0.5"), "nodes.main.value: \"value\" is -0.5, not from 0 to 1"},
        {"the whole", progress("1"), ""},
        {"nothing", progress("-0.0"), ""},
        {"from the model", progress("\"{{initServerParam.a}}\""),
         "nodes.main.value: \"value\" is 80 in the model, not from 0 to 1; did you mean 0.8?"},
        {"opacity", modified(R"("opacity", "opacity": 50)"),
         "nodes.main.modifiers[0].opacity: \"opacity\" is 50, not from 0 to 1; did you mean 0.5?"},
        {"lines", modified(R"("lineLimit", "number": -1)"),
         "nodes.main.modifiers[0].number: \"number\" is -1, not 1 or more"},
        {"a negative width", modified(R"("frame", "width": -4)"),
         "nodes.main.modifiers[0].width: \"width\" is -4, not 0 or more"},
        {"all that is offered", modified(R"("frame", "maxWidth": "infinity")"), ""},
        {"no size", text("0"), "nodes.main.fontSize: \"fontSize\" is 0, so the text is not drawn"},
        {"a negative size", text("-5"), "nodes.main.fontSize: \"fontSize\" is -5, not 0 or more"},
        {"a small size", text("0.5"), ""},
        {"a hand that stands still", modified(R"("clockHandRotationEffect", "period": 0)"),
         "nodes.main.modifiers[0].period: \"period\" is 0, so the hand does not turn"},
        {"a hand that turns backwards", modified(R"("clockHandRotationEffect", "period": -60)"), ""},
        {"milliseconds", timer("1795249105000"),
         "nodes.main.timestamp: \"timestamp\" is 1795249105000 seconds, after the year 5000; "
         "were milliseconds meant?"},
        {"seconds", timer("1795249105"), ""},
        {"what is no number", text("\"large\""), ""},
    };
    DiagnoseOptions options = quietOptions();
    options.rooms = {};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        std::vector<std::string> found;
        for (const Diagnostic& each : diagnose(documentOf(row.main), R"({"a": 80})", options))
            if (each.code == "out-of-range") found.push_back(toText(each.path) + ": " + each.message);
        EXPECT_THAT(found, ElementsAreArray(row.found.empty() ? std::vector<std::string>() : std::vector{row.found}));
    }
}

TEST(Expressions, ThatNoModelHas) {
    const Row rows[] = {
        {"a misspelt store",
         R"({"type": "text", "content": "{{initServerParm.a}}"})",
         {"warning malformed-expression nodes.main.content"},
         R"({"type": "text", "content": "{{initServerParam.a}}"})"},
        {"blanks",
         R"({"type": "text", "content": "{{ initServerParam.a }}"})",
         {"warning malformed-expression nodes.main.content"},
         R"({"type": "text", "content": "{{initServerParam.a}}"})"},
        {"no path",
         R"({"type": "text", "content": "{{initServerParam}}"})",
         {"warning malformed-expression nodes.main.content"}},
        {"nothing", R"({"type": "text", "content": "{{}}"})", {"warning malformed-expression nodes.main.content"}},
        {"another store",
         R"({"type": "text", "content": "{{data.x}}"})",
         {"warning malformed-expression nodes.main.content"}},
        {"two indices",
         R"({"type": "text", "content": "{{initServerParam.a[1][2]}}"})",
         {"warning malformed-expression nodes.main.content"}},
        {"a word for an index",
         R"({"type": "text", "content": "{{initServerParam.a[x]}}"})",
         {"warning malformed-expression nodes.main.content"}},
        {"two expressions",
         R"({"type": "text", "content": "{{initServerParam.a}} {{initServerParam.b}}"})",
         {"warning malformed-expression nodes.main.content"}},
        {"inside a text",
         R"({"type": "text", "content": "Hello {{initServerParam.a}}!"})",
         {"warning embedded-expression nodes.main.content"}},
        {"blanks around",
         R"({"type": "text", "content": "{{initServerParam.a}} "})",
         {"warning embedded-expression nodes.main.content"},
         R"({"type": "text", "content": "{{initServerParam.a}}"})"},
        {"good ones", R"({"type": "hstack", "spacing": "{{initServerParam.a[0].b}}", "children": []})", {}},
        {"brackets the wrong way around",
         R"({"type": "text", "content": "{{initServerParam.a]b[}}"})",
         {"error refused nodes.main.content"},
         nullptr,
         "{}"},
    };
    for (const Row& row : rows) judge(row);
}

TEST(Expressions, ThatTheModelLacks) {
    const Row rows[] = {
        {"all of them",
         R"({"type": "vstack", "children": [{"type": "text", "content": "{{initServerParam.titel}}"},
            {"type": "text", "content": "{{initServerParam.xyz}}"}]})",
         {"error unresolved-expression nodes.main.children[0].content",
          "error unresolved-expression nodes.main.children[1].content"},
         R"({"type": "vstack", "children": [{"type": "text", "content": "{{initServerParam.title}}"},
            {"type": "text", "content": "{{initServerParam.xyz}}"}]})",
         R"({"title": "a"})"},
        {"not a number",
         R"({"type": "spacer", "modifiers": [{"type": "opacity", "opacity": "{{initServerParam.title}}"}]})",
         {"error unresolved-expression nodes.main.modifiers[0].opacity"},
         nullptr,
         R"({"title": "a"})"},
        {"past the end",
         R"({"type": "text", "content": "{{initServerParam.a[3]}}"})",
         {"error unresolved-expression nodes.main.content"},
         nullptr,
         R"({"a": [1]})"},
        {"an environment that is empty",
         R"({"type": "text", "content": "{{initEnvironment.a}}"})",
         {"error unresolved-expression nodes.main.content"},
         nullptr,
         "{}"},
        {"nothing is looked up without a model", R"({"type": "text", "content": "{{initServerParam.titel}}"})", {}},
    };
    for (const Row& row : rows) judge(row);
}

TEST(Expressions, SayHowFarTheyLead) {
    const struct {
        const char* path;
        const char* hint;
    } rows[] = {
        {"titel", "did you mean \"title\"?"},
        {"list[4]", "the list has 2 elements"},
        {"list.1", "an element of a list is written [1]"},
        {"title[0]", "there is no list to take an element of"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        const std::string main =
            R"({"type": "text", "content": "{{initServerParam.)" + std::string(row.path) + R"(}}"})";
        const auto found = diagnose(documentOf(main), R"({"title": "a", "list": [1, 2]})", quietOptions());
        ASSERT_EQ(found.size(), 1u);
        EXPECT_THAT(found.front().message, ::testing::HasSubstr(row.hint));
    }
}

TEST(Expressions, OfNodesThatAreNotDrawnOnlyWarn) {
    const auto found = diagnose(
        R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}, "a": {"type": "text",
            "content": "{{initServerParam.x}}"}}})",
        "{}", quietOptions());
    EXPECT_THAT(linesOf(found),
                ElementsAreArray({"note unused-node nodes.a", "warning unresolved-expression nodes.a.content"}));
}

TEST(Colors, ThatReadOddly) {
    const Row rows[] = {
        {"hexadecimal alpha",
         R"({"type": "color", "value": "#CC112233"})",
         {"warning hex-alpha nodes.main.value"},
         R"({"type": "color", "value": "#80112233"})"},
        {"opaque",
         R"({"type": "color", "value": "#ff112233"})",
         {"warning hex-alpha nodes.main.value"},
         R"({"type": "color", "value": "#112233"})"},
        {"nearly nothing",
         R"({"type": "color", "value": "0A112233"})",
         {"warning hex-alpha nodes.main.value"},
         R"({"type": "color", "value": "04112233"})"},
        {"in a gradient",
         R"({"type": "color", "gradient": true, "start": "top", "end": "bottom", "value": "#112233-#CC112233"})",
         {"warning hex-alpha nodes.main.value"},
         R"({"type": "color", "gradient": true, "start": "top", "end": "bottom", "value": "#112233-#80112233"})"},
        {"a stop that is none",
         R"({"type": "color", "gradient": true, "start": "top", "end": "bottom", "value": "#112233-red"})",
         {"warning odd-color nodes.main.value"}},
        {"seven digits", R"({"type": "color", "value": "#1122334"})", {"warning odd-color nodes.main.value"}},
        {"three digits",
         R"({"type": "color", "value": "#112233", "dark": "#F0a"})",
         {"warning odd-color nodes.main.dark"},
         R"({"type": "color", "value": "#112233", "dark": "#FF00aa"})"},
        {"a dark colour that is none",
         R"({"type": "color", "value": "#112233", "dark": "black"})",
         {"warning odd-color nodes.main.dark"}},
        {"a border's",
         R"({"type": "spacer", "modifiers": [{"type": "border", "width": 1, "color": "red",
            "colorNode": {"value": "#112233"}}]})",
         {"warning odd-color nodes.main.modifiers[0].color"}},
        {"good ones", R"({"type": "color", "value": "#50112233", "dark": " 112233 "})", {}},
        {"refused ones say so themselves", R"({"type": "color", "value": "red"})", {"error refused nodes.main.value"}},
        {"alpha FF in the model",
         R"({"type": "color", "value": "{{initServerParam.c}}"})",
         {"warning model-alpha-ff model:c"},
         nullptr,
         R"({"c": "#FF112233"})"},
        {"alpha that the model may have",
         R"({"type": "color", "value": "{{initServerParam.c}}"})",
         {},
         nullptr,
         R"({"c": "#CC112233"})"},
        {"hexadecimal where a model's colour is not converted",
         R"({"type": "color", "value": "#112233", "dark": "{{initServerParam.c}}"})",
         {"warning hex-alpha model:c"},
         nullptr,
         R"({"c": "#CC112233"})"},
    };
    for (const Row& row : rows) judge(row);
}

TEST(References, ModifiersAreNotApplied) {
    const auto found = diagnose(
        R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "a", "modifiers": [{"type": "clipped"}]},
            "a": {"type": "node", "name": "b", "modifiers": []}, "b": {"type": "spacer"}}})",
        std::nullopt, quietOptions());
    EXPECT_THAT(linesOf(found), ElementsAreArray({"warning reference-modifiers nodes.main.modifiers"}));
}

TEST(Versions, OlderThanWhatTheDocumentUses) {
    const std::string document =
        documentOf(R"({"type": "timer", "modifiers": [{"type": "scaleEffect", "x": 1}]})", "1.0");
    const auto found = diagnose(document, std::nullopt, quietOptions());
    EXPECT_THAT(linesOf(found), ElementsAreArray({"warning newer-feature nodes.main.type",
                                                  "warning newer-feature nodes.main.modifiers[0].type"}));
    const FixedText fixed = applyFixes(document, found);
    EXPECT_EQ(fixed.text, documentOf(R"({"type": "timer", "modifiers": [{"type": "scaleEffect", "x": 1}]})", "1.2"));
    EXPECT_EQ(fixed.fixed.size(), 2u);
    EXPECT_THAT(diagnose(documentOf(R"({"type": "timer"})", "1.1"), std::nullopt, quietOptions()),
                ::testing::IsEmpty());
}

TEST(Versions, ThatCannotBeReadAreOneError) {
    const auto found = diagnose(documentOf(R"({"type": "timer"})", "1"), std::nullopt, quietOptions());
    EXPECT_THAT(linesOf(found), ElementsAreArray({"error unknown-word version"}));
}

TEST(ClipShapes, ThatWillBeRefused) {
    const auto clipped = [](const std::string& shape) {
        return R"({"type": "color", "value": "#112233", "modifiers": [{"type": "clipShape", "view": )" + shape + "}]}";
    };
    const struct {
        const char* why;
        const char* shape;
        bool isRefused;
    } rows[] = {
        {"a circle", R"({"type": "circle"})", false},
        {"a rectangle", R"({"type": "rectangle"})", true},
        {"a text", R"({"type": "text", "content": "a"})", true},
        {"filled", R"({"type": "circle", "fillColor": {"value": "#112233"}})", true},
        {"stroked", R"({"type": "capsule", "stroke": true})", true},
        {"not stroked", R"({"type": "capsule", "stroke": false, "strokeColor": {"value": "#112233"}})", false},
        {"modified", R"({"type": "roundedRectangle", "cornerRadius": 2, "modifiers": [{"type": "clipped"}]})", true},
        {"no modifiers", R"({"type": "roundedRectangle", "cornerRadius": 2, "modifiers": []})", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string document = documentOf(clipped(row.shape));
        const auto found = linesOf(diagnose(document, std::nullopt, quietOptions()));
        // What is drawn fails already, and then the warning is not needed any more.
        const std::vector<std::string> refused{"error refused nodes.main.modifiers[0]"};
        EXPECT_EQ(found, row.isRefused ? refused : std::vector<std::string>());
        const std::string unused =
            R"({"version": "1.2", "nodes": {"main": {"type": "spacer"}, "a": )" + clipped(row.shape) + "}}";
        const auto warned = linesOf(diagnose(unused, std::nullopt, quietOptions()));
        std::vector<std::string> expected{"note unused-node nodes.a"};
        if (row.isRefused) expected.emplace_back("warning clip-shape nodes.a.modifiers[0].view");
        EXPECT_EQ(warned, expected);
    }
}

TEST(Addresses, ThatAreNone) {
    const Row rows[] = {
        {"a picture's",
         R"({"type": "webImage", "url": "not an address:", "alt": "a"})",
         {"warning invalid-url nodes.main.url"}},
        {"a link's",
         R"({"type": "link", "url": "http://ü:b/", "view": {"type": "spacer"}})",
         {"warning invalid-url nodes.main.url"}},
        {"the widget's",
         R"({"type": "spacer", "modifiers": [{"type": "widgetURL", "url": ""}]})",
         {"warning invalid-url nodes.main.modifiers[0].url"}},
        {"from the model",
         R"({"type": "webImage", "url": "{{initServerParam.a}}"})",
         {"warning invalid-url nodes.main.url"},
         nullptr,
         R"({"a": "b c:"})"},
        {"good ones", R"({"type": "link", "url": "app:/a", "view": {"type": "spacer"}})", {}},
        {"what is encoded is good", R"({"type": "link", "url": "http://ü/a b", "view": {"type": "spacer"}})", {}},
    };
    for (const Row& row : rows) judge(row);
}

TEST(Words, ThatAreRefusedAreMended) {
    const Row rows[] = {
        {"a node's type", R"({"type": "vstak"})", {"error unknown-word nodes.main.type"}, R"({"type": "vstack"})"},
        {"a modifier's type",
         R"({"type": "spacer", "modifiers": [{"type": "lineLimits"}]})",
         {"error unknown-word nodes.main.modifiers[0].type"},
         R"({"type": "spacer", "modifiers": [{"type": "lineLimit"}]})"},
        {"an edge",
         R"({"type": "spacer", "modifiers": [{"type": "padding", "length": 1, "edges": ["Top"]}]})",
         {"error unknown-word nodes.main.modifiers[0].edges[0]"},
         R"({"type": "spacer", "modifiers": [{"type": "padding", "length": 1, "edges": ["top"]}]})"},
    };
    for (const Row& row : rows) judge(row);
}

TEST(Words, ThatAreNeverAcceptedAreNotSuggested) {
    const ModifierRegistry& known = registerMonifierType();
    int count = 0;
    for (const ModifierType reserved : enumerators<ModifierType>) {
        if (known[indexOf(reserved)]) continue;
        ++count;
        const std::string word(rawValue(reserved));
        const std::string close = word.substr(0, word.size() - 1);
        for (const Diagnostic& found :
             diagnose(documentOf(R"({"type": "spacer", "modifiers": [{"type": ")" + close + R"("}]})"), {},
                      quietOptions())) {
            EXPECT_EQ(found.message.find(word), std::string::npos) << found.message;
            EXPECT_TRUE(found.fix.empty()) << found.message;
        }
    }
    EXPECT_EQ(count, 3) << "reserved for later versions";
}

}  // namespace
}  // namespace tavrin
