// SPDX-License-Identifier: MIT
#include <random>

#include <gtest/gtest.h>

#include "tavrin/dsl/dsl_root.h"
#include "tavrin/dsl/structure.h"
#include "tavrin/modifiers/layout_modifiers.h"
#include "tavrin/nodes/text_nodes.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

DSLRoot rootFrom(std::string_view json) { return JSONDecoder().decode<DSLRoot>(json); }
std::string textOf(const DSLRoot& root) { return DSLJSONEncoder().encode(root); }

TEST(Encoding, WritesNodes) {
    const struct {
        const char* why;
        const char* json;
        const char* encoded;
    } rows[] = {
        {"the type first, absent values left out, lists always", R"({"content": "Hi", "type": "text"})",
         R"({"type":"text","content":"Hi","modifiers":[]})"},
        {"values in their own form", R"({"type": "text", "content": 5, "fontSize": "12", "fontWeight": "bold"})",
         R"({"type":"text","content":"5","fontSize":12,"fontWeight":"bold","modifiers":[]})"},
        {"single precision in its fewest digits", R"({"type": "vstack", "spacing": 0.1})",
         R"({"type":"vstack","spacing":0.1,"modifiers":[],"children":[]})"},
        {"a required expression", R"({"type": "text", "content": "{{initServerParam.a}}"})",
         R"({"type":"text","content":"{{initServerParam.a}}","modifiers":[]})"},
        {"an optional expression is written as it reads: not at all",
         R"({"type": "text", "content": "", "fontSize": "{{initServerParam.a}}", "fontWeight": "{{initServerParam.b}}"})",
         R"({"type":"text","content":"","modifiers":[]})"},
        {"a value that reads as absent", R"({"type": "vstack", "spacing": "wide", "alignment": "up"})",
         R"({"type":"vstack","modifiers":[],"children":[]})"},
        {"modifiers and children in their order",
         R"({"type": "hstack", "children": [{"type": "spacer"}, {"type": "emptyView"}], "modifiers": [
             {"type": "zIndex", "zIndex": "{{initServerParam.z}}"}, {"type": "offset", "x": 1.5, "y": "2"}]})",
         R"({"type":"hstack","modifiers":[{"type":"zIndex","zIndex":"{{initServerParam.z}}"},)"
         R"({"type":"offset","x":1.5,"y":2}],"children":[{"type":"spacer","modifiers":[]},{"type":"emptyView","modifiers":[]}]})"},
        {"a reference", R"({"type": "node", "name": "a \"b\""})", R"({"type":"node","name":"a \"b\"","modifiers":[]})"},
        {"a timer", R"({"type": "timer", "monospace": "true", "timestamp": 1700000100})",
         R"({"type":"timer","timestamp":1700000100,"monospace":true,"modifiers":[]})"},
        {"unknown keys are gone", R"({"type": "spacer", "more": 1})", R"({"type":"spacer","modifiers":[]})"},
        {"numbers that JSON has no form for", R"({"type": "vstack", "spacing": "-inf"})",
         R"({"type":"vstack","spacing":"-infinity","modifiers":[],"children":[]})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(DSLJSONEncoder().encode(nodeFrom(row.json)), row.encoded);
    }
}

TEST(Encoding, WritesModifiers) {
    const struct {
        const char* why;
        const char* json;
        const char* encoded;
    } rows[] = {
        {"a frame of nothing", R"({"type": "frame"})", R"({"type":"frame"})"},
        {"a frame in declaration order", R"({"alignment": "top", "maxHeight": 2, "width": 1, "type": "frame"})",
         R"({"type":"frame","width":1,"maxHeight":2,"alignment":"top"})"},
        {"no edges", R"({"type": "padding", "length": 1})", R"({"type":"padding","length":1})"},
        {"an empty list of edges stays", R"({"type": "padding", "edges": [], "length": 1})",
         R"({"type":"padding","edges":[],"length":1})"},
        {"edges", R"({"type": "padding", "edges": ["top", "all"], "length": "{{a}}"})",
         R"({"type":"padding","edges":["top","all"],"length":"{{a}}"})"},
        {"a required keyword as an expression",
         R"({"type": "aspectRatio", "contentMode": "{{a}}", "aspectRatio": "{{b}}"})",
         R"({"type":"aspectRatio","contentMode":"{{a}}"})"},
        {"a line limit", R"({"type": "lineLimit", "number": "9223372036854775807"})",
         R"({"type":"lineLimit","number":9223372036854775807})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(DSLJSONEncoder().encode(modifierFrom(row.json)), row.encoded);
    }
}

TEST(Encoding, WritesDocuments) {
    EXPECT_EQ(
        textOf(rootFrom(R"({"nodes": {"main": {"type": "spacer"}, "a b": {"type": "emptyView"}}, "version": "1.1"})")),
        R"({"version":"1.1","nodes":{"a b":{"type":"emptyView","modifiers":[]},"main":{"type":"spacer","modifiers":[]}}})");
    EXPECT_EQ(textOf({}), R"({"version":"1.0","nodes":{}})");
}

TEST(Encoding, KeepsOptionalStringExpressions) {
    using Name = LosslessDSLValue<std::optional<SharedText>>;
    EXPECT_EQ(FieldCoding<Name>::isLeftOut(Name()), true);
    const Name expression(Expr{"{{initServerParam.a}}"});
    EXPECT_FALSE(FieldCoding<Name>::isLeftOut(expression));
    JSONWriter writer(JSONWriter::Style::compact);
    FieldCoding<Name>::encode(expression, writer);
    EXPECT_EQ(writer.text(), "\"{{initServerParam.a}}\"");
}

/// Documents by chance, as text.
class RandomDocument {
public:
    RandomDocument(unsigned seed, bool optionalExpressions)
        : random_(seed), optionalExpressions_(optionalExpressions) {}

    std::string text() {
        std::string nodes;
        for (int i = 0, count = below(4); i <= count; ++i)
            nodes += (i > 0 ? ",\"n" + std::to_string(i) : "\"main") + std::string("\":") + node(4);
        return "{\"version\":" + oneOf({"\"1.0\"", "\"1.1\"", "\"1.2\""}) + ",\"nodes\":{" + nodes + "}}";
    }

private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<unsigned>(bound)); }
    std::string oneOf(const std::vector<std::string>& words) {
        return words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
    }

    std::string expression() { return "\"{{initServerParam.a" + std::to_string(below(9)) + "}}\""; }
    std::string number() {
        switch (below(6)) {
            case 0: return std::to_string(below(1000) - 500);
            case 1: return std::to_string(below(100000)) + "e-" + std::to_string(below(9));
            case 2: return "\"" + std::to_string(below(100)) + "." + std::to_string(below(1000)) + "\"";
            case 3:
                return toText(
                    static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(random_()) & 0x7F00'FFFF)));
            case 4: return "1234567890123456789012345";
            default: return "-0.0";
        }
    }
    std::string string() {
        return oneOf(
            {"\"\"", "\"a\\\"\\n\\u0000\"", "\"\u00e9\U0001F600\"", "true", "2.50", "1e3", "\"{{a\"", "\" {{a}}\""});
    }
    std::string required(const std::string& literal) { return below(4) == 0 ? expression() : literal; }
    /// A member with a comma before it, or nothing.
    std::string optional(const std::string& key, const std::string& literal) {
        if (below(2) == 0) return "";
        if (optionalExpressions_ && below(2) == 0) return ",\"" + key + "\":" + expression();
        return ",\"" + key + "\":" + (below(5) == 0 ? "null" : literal);
    }
    template <class Make>
    std::string list(Make make) {
        std::string text;
        for (int i = 0, count = below(4); i < count; ++i) text += (i > 0 ? "," : "") + make();
        return "[" + text + "]";
    }
    std::string modifiers() {
        return optionalList("modifiers", [this] { return modifier(); });
    }
    template <class Make>
    std::string optionalList(const std::string& key, Make make) {
        return below(2) == 0 ? "" : ",\"" + key + "\":" + list(make);
    }
    std::string alignment() {
        return oneOf({"\"leading\"", "\"top\"", "\"center\"", "\"bottomTrailing\"", "\"nowhere\""});
    }

    std::string modifier() {
        switch (below(6)) {
            case 0:
                return "{\"type\":\"frame\"" + optional("width", number()) + optional("minHeight", number()) +
                       optional("maxWidth", number()) + optional("alignment", alignment()) + "}";
            case 1:
                return "{\"type\":\"padding\"" +
                       optionalList("edges",
                                    [this] {
                                        return oneOf({"\"top\"", "\"all\"", "\"leading\""});
                                    }) +
                       ",\"length\":" + required(number()) + "}";
            case 2: return "{\"type\":\"offset\",\"x\":" + required(number()) + ",\"y\":" + required(number()) + "}";
            case 3:
                return "{\"type\":\"aspectRatio\",\"contentMode\":" + required(oneOf({"\"fit\"", "\"fill\""})) +
                       optional("aspectRatio", number()) + "}";
            case 4:
                return "{\"type\":\"lineLimit\"" + optional("number", oneOf({"2", "\"3\"", "2.5", "\"two\""})) + "}";
            default: return "{\"type\":\"zIndex\",\"zIndex\":" + required(number()) + "}";
        }
    }
    std::string node(int depth) {
        const auto children = [&] { return optionalList("children", [&] { return node(depth - 1); }); };
        switch (below(depth > 0 ? 8 : 5)) {
            case 0: return "{\"type\":\"spacer\"" + modifiers() + "}";
            case 1: return "{\"type\":\"emptyView\"" + modifiers() + "}";
            case 2: return "{\"type\":\"node\",\"name\":" + oneOf({"\"n1\"", "\"\"", "\"main\""}) + modifiers() + "}";
            case 3:
                return "{\"type\":\"text\",\"content\":" + required(string()) + optional("fontSize", number()) +
                       optional("fontWeight", oneOf({"\"bold\"", "\"Bold\"", "1"})) + modifiers() + "}";
            case 4:
                return "{\"type\":\"timer\"" + optional("timestamp", number()) + optional("fontSize", number()) +
                       optional("monospace", oneOf({"true", "\"false\"", "\"yes\"", "0"})) + modifiers() + "}";
            case 5:
                return "{\"type\":\"vstack\"" + optional("spacing", number()) + optional("alignment", alignment()) +
                       modifiers() + children() + "}";
            case 6:
                return "{\"type\":\"hstack\"" + optional("spacing", number()) + optional("alignment", alignment()) +
                       modifiers() + children() + "}";
            default:
                return "{\"type\":\"zstack\"" + optional("alignment", alignment()) + modifiers() + children() + "}";
        }
    }

    std::mt19937 random_;
    bool optionalExpressions_;
};

TEST(Encoding, DecodingGivesTheSameDocumentBack) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        const std::string text = RandomDocument(seed, false).text();
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + text);
        const DSLRoot root = rootFrom(text);
        const std::string encoded = textOf(root);
        const DSLRoot again = rootFrom(encoded);
        ASSERT_EQ(again, root) << encoded;
        ASSERT_EQ(textOf(again), encoded);
    }
}

// An unbound optional expression is written as it reads, so the document that comes back reads the same.
TEST(Encoding, OptionalExpressionsComeBackAsTheyRead) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        const std::string text = RandomDocument(seed, true).text();
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + text);
        const std::string encoded = textOf(rootFrom(text));
        ASSERT_EQ(textOf(rootFrom(encoded)), encoded);
    }
    const Node before = nodeFrom(R"({"type": "vstack", "spacing": "{{initServerParam.s}}"})");
    const Node after = nodeFrom(DSLJSONEncoder().encode(before));
    EXPECT_FALSE(after == before);
    EXPECT_EQ(after, Node(VStackNode{}));
}

TEST(Encoding, BoundRecordsAreWrittenWithTheirValues) {
    Node node =
        nodeFrom(R"({"type": "text", "content": "{{initServerParam.t}}", "fontSize": "{{initServerParam.s}}"})");
    node.bindModel(modelFrom(R"({"t": "Rain", "s": "12.5"})"));
    EXPECT_EQ(DSLJSONEncoder().encode(node), R"({"type":"text","content":"Rain","fontSize":12.5,"modifiers":[]})");
}

TEST(Encoding, InfinityIsReadBack) {
    const Node node = nodeFrom(R"({"type": "vstack", "spacing": "1e999"})");
    EXPECT_EQ(nodeFrom(DSLJSONEncoder().encode(node)), node);
}

}  // namespace
}  // namespace tavrin
