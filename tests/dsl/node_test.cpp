// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tavrin/dsl/structure.h"
#include "tavrin/engine/registries.h"
#include "tavrin/modifiers/layout_modifiers.h"
#include "tavrin/nodes/text_nodes.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

/// The tags that no record is registered for.
template <class Tag, class Registry>
std::vector<std::string_view> missingTags(const Registry& registry) {
    std::vector<std::string_view> missing;
    for (std::size_t i = 0; i < registry.size(); ++i)
        if (registry[i] == nullptr) missing.push_back(rawValue(static_cast<Tag>(i)));
    return missing;
}

TEST(Registries, KnowEveryTag) {
    const std::vector<std::string_view> reserved{"animation", "transition", "contentTransition"};
    EXPECT_EQ(missingTags<NodeType>(registerNodeType()), std::vector<std::string_view>());
    EXPECT_EQ(missingTags<ModifierType>(registerMonifierType()), reserved);
    EXPECT_EQ(&registerNodeType(), &registerNodeType()) << "built once";
}

static_assert(keyOf<&TextNode::fontSize> == "fontSize");
static_assert(keyOf<&TimerNode::fontSize> == "fontSize");
static_assert(keyOf<&VStackNode::modifiers> == "modifiers");

TEST(Node, DecodesItsRecordFromTheSameObject) {
    const Node node = nodeFrom(R"({"content": "Hi", "type": "text", "unknown": [1], "fontSize": 3})");
    EXPECT_EQ(node.type(), NodeType::text);
    EXPECT_EQ(node.version(), DSLVersion::v1);
    ASSERT_NE(node.as<TextNode>(), nullptr);
    EXPECT_EQ(node.as<TextNode>()->content.wrappedValue(), "Hi");
    EXPECT_EQ(node.as<TextNode>()->fontSize.wrappedValue(), 3.0f);
    EXPECT_TRUE(node.modifiers().empty());
    EXPECT_EQ(node.as<SpacerNode>(), nullptr);
    EXPECT_EQ(nodeFrom(R"({"type": "timer"})").version(), DSLVersion::v1_1);
    EXPECT_EQ(nodeFrom(R"({"type": "spacer", "type": "text"})").type(), NodeType::spacer) << "the first of equal keys";
}

TEST(Node, EachTagGivesItsRecord) {
    EXPECT_NE(nodeFrom(R"({"type": "vstack"})").as<VStackNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "hstack"})").as<HStackNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "zstack"})").as<ZStackNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "spacer"})").as<SpacerNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "emptyView"})").as<EmptyViewNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "node", "name": "a"})").as<RefNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "text", "content": ""})").as<TextNode>(), nullptr);
    EXPECT_NE(nodeFrom(R"({"type": "timer"})").as<TimerNode>(), nullptr);
}

TEST(Node, FailsToDecode) {
    const struct {
        const char* why;
        const char* json;
        const char* failure;
    } rows[] = {
        {"no type", R"({"content": "Hi"})", "keyNotFound at : the key \"type\" is missing"},
        {"no object", "[]", "typeMismatch at : expected an object, found an array"},
        {"null", "null", "valueNotFound at : expected an object, found null"},
        {"a type that is no string", R"({"type": 1})", "typeMismatch at type: expected a string, found a number"},
        {"a type that is null", R"({"type": null})", "valueNotFound at type: expected a string, found null"},
        {"an unknown type", R"({"type": "txt"})",
         "dataCorrupted at type: \"txt\" is not a node type; did you mean \"text\"?"},
        {"types are case-sensitive", R"({"type": "Text"})",
         "dataCorrupted at type: \"Text\" is not a node type; did you mean \"text\"?"},
        {"a modifier's type", R"({"type": "frame"})", "dataCorrupted at type: \"frame\" is not a node type"},
        {"an expression is no type", R"({"type": "{{initServerParam.type}}"})",
         "dataCorrupted at type: \"{{initServerParam.type}}\" is not a node type"},
        {"a required key", R"({"type": "text"})", "keyNotFound at : the key \"content\" is missing"},
        {"null for a required key", R"({"type": "text", "content": null})",
         "valueNotFound at content: expected a string or an expression, found null"},
        {"the first field in declaration order", R"({"type": "text", "fontWeight": {}, "fontSize": [], "content": {}})",
         "typeMismatch at content: expected a string or an expression, found an object"},
        {"the next one then", R"({"type": "text", "fontWeight": {}, "fontSize": [], "content": ""})",
         "typeMismatch at fontSize: expected a number or an expression, found an array"},
        {"modifiers that are no list", R"({"type": "spacer", "modifiers": {}})",
         "typeMismatch at modifiers: expected an array, found an object"},
        {"a modifier in the list",
         R"({"type": "spacer", "modifiers": [{"type": "zIndex", "zIndex": 1}, {"type": "zIndex"}]})",
         "keyNotFound at modifiers[1]: the key \"zIndex\" is missing"},
        {"a child", R"({"type": "vstack", "children": [{"type": "spacer"}, {"type": "hstack", "children": [{}]}]})",
         "keyNotFound at children[1].children[0]: the key \"type\" is missing"},
        {"null as a child", R"({"type": "vstack", "children": [null]})",
         "valueNotFound at children[0]: expected an object, found null"},
        {"modifiers before children", R"({"type": "vstack", "children": 1, "modifiers": 1})",
         "typeMismatch at modifiers: expected an array, found a number"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(failureOf([&] { return nodeFrom(row.json); }), row.failure);
    }
}

TEST(Modifier, Decodes) {
    const Modifier modifier = modifierFrom(R"({"type": "frame", "width": 10})");
    EXPECT_EQ(modifier.type(), ModifierType::frame);
    EXPECT_EQ(modifier.version(), DSLVersion::v1);
    ASSERT_NE(modifier.as<FrameModifier>(), nullptr);
    EXPECT_EQ(modifier.as<FrameModifier>()->width.wrappedValue(), 10.0f);
    EXPECT_EQ(modifier.as<OffsetModifier>(), nullptr);
}

TEST(Modifier, FailsToDecode) {
    const struct {
        const char* why;
        const char* json;
        const char* failure;
    } rows[] = {
        {"reserved", R"({"type": "animation"})", "dataCorrupted at type: Type unsupported"},
        {"reserved too", R"({"type": "transition", "x": 1})", "dataCorrupted at type: Type unsupported"},
        {"and this", R"({"type": "contentTransition"})", "dataCorrupted at type: Type unsupported"},
        {"no type", R"({"width": 10})", "keyNotFound at : the key \"type\" is missing"},
        {"a type that is no string", R"({"type": true})", "typeMismatch at type: expected a string, found a boolean"},
        {"an unknown type", R"({"type": "frames"})",
         "dataCorrupted at type: \"frames\" is not a modifier type; did you mean \"frame\"?"},
        {"a node's type", R"({"type": "vstack"})", "dataCorrupted at type: \"vstack\" is not a modifier type"},
        {"no object", R"("frame")", "typeMismatch at : expected an object, found a string"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(failureOf([&] { return modifierFrom(row.json); }), row.failure);
    }
    EXPECT_EQ(failureOf([] {
                  return renderedNode(R"({"type": "spacer", "modifiers": [{"type": "frame"}, {"type": "animation"}]})");
              }),
              "dataCorrupted at nodes.main.modifiers[1].type: Type unsupported")
        << "the whole document fails";
}

TEST(Node, BindsItsOwnValuesOnly) {
    Node node = nodeFrom(R"({"type": "vstack", "spacing": "{{initServerParam.s}}",
        "modifiers": [{"type": "zIndex", "zIndex": "{{initServerParam.s}}"}],
        "children": [{"type": "text", "content": "{{initServerParam.s}}"}]})");
    EXPECT_TRUE(node.needsBinding());
    const Node before = node;
    node.bindModel(modelFrom(R"({"s": 4})"));
    EXPECT_EQ(node.as<VStackNode>()->spacing.wrappedValue(), 4.0f);
    EXPECT_FALSE(node.needsBinding());
    EXPECT_FALSE(node.modifiers()[0].as<ZIndexModifier>()->zIndex.resolved());
    EXPECT_FALSE(node.as<VStackNode>()->children.wrappedValue()[0].as<TextNode>()->content.resolved());
    EXPECT_FALSE(before.as<VStackNode>()->spacing.resolved()) << "a copy is a value of its own";
    EXPECT_FALSE(before == node);
}

TEST(Node, AFailedBindingChangesNothing) {
    Node node =
        nodeFrom(R"({"type": "text", "content": "{{initServerParam.a}}", "fontSize": "{{initServerParam.x}}"})");
    const Node before = node;
    EXPECT_EQ(failureOf([&] { return node.bindModel(modelFrom(R"({"a": "b"})")), 0; }),
              "ResolveExpression: key path not found in model: [\"x\"]");
    EXPECT_EQ(node, before);

    Modifier modifier =
        modifierFrom(R"({"type": "offset", "x": "{{initServerParam.a}}", "y": "{{initServerParam.x}}"})");
    const Modifier modifierBefore = modifier;
    EXPECT_EQ(failureOf([&] { return modifier.bindModel(modelFrom(R"({"a": 1})")), 0; }),
              "ResolveExpression: key path not found in model: [\"x\"]");
    EXPECT_EQ(modifier, modifierBefore);
}

TEST(Records, BindInDeclarationOrderUpToTheFirstFailure) {
    TextNode text{.content = Expr{"{{initServerParam.a}}"},
                  .fontSize = Expr{"{{initServerParam.x}}"},
                  .fontWeight = Expr{"{{initServerParam.y}}"}};
    EXPECT_EQ(failureOf([&] { return bindModel(text, modelFrom(R"({"a": "b"})")), 0; }),
              "ResolveExpression: key path not found in model: [\"x\"]");
    EXPECT_TRUE(text.content.resolved());
    EXPECT_FALSE(text.fontSize.resolved());
    EXPECT_FALSE(text.fontWeight.resolved());
}

/// A record of a host that counts how often it is made.
struct CountingNode {
    static constexpr NodeType type = NodeType::text;
    static constexpr DSLVersion version = DSLVersion::v1;

    CountingNode() { ++made; }
    CountingNode(const CountingNode& other) : title(other.title), modifiers(other.modifiers) { ++made; }
    CountingNode(CountingNode&&) = default;
    CountingNode& operator=(const CountingNode&) = delete;
    ~CountingNode() = default;

    LosslessDSLValue<SharedText> title = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};

    static constexpr Fields fields{Field{"title", &CountingNode::title}, Field{"modifiers", &CountingNode::modifiers}};

    AnyView render(Context& context) const {
        ++draws;
        return applyModifiers(modifiers.wrappedValue(), Text{.content = title.wrappedValue()}, context);
    }

    static inline int made = 0;
    static inline int draws = 0;
};

TEST(Node, IsCopiedForBindingOnlyWhereAnExpressionWaits) {
    CountingNode plain;
    plain.title = LosslessDSLValue<SharedText>("plain");
    CountingNode expression;
    expression.title = Expr{"{{initServerParam.t}}"};
    const Node plainNode(std::move(plain));
    const Node expressionNode(std::move(expression));
    CountingNode::made = CountingNode::draws = 0;

    Context context;
    RenderState& state = RenderState::of(context);
    state.modelContext = std::make_shared<const ModelContext>(modelFrom(R"({"t": "bound"})"));
    const Node copy = plainNode;
    EXPECT_EQ(std::get<SharedText>(copy.render(context).as<Text>()->content), "plain");
    EXPECT_EQ(CountingNode::made, 0) << "nothing to bind: drawn as it stands";
    EXPECT_EQ(std::get<SharedText>(expressionNode.render(context).as<Text>()->content), "bound");
    EXPECT_EQ(CountingNode::made, 1);
    EXPECT_TRUE(expressionNode.needsBinding()) << "drawing never changes the node";
    state.modelContext = nullptr;
    EXPECT_EQ(std::get<SharedText>(expressionNode.render(context).as<Text>()->content), "{{initServerParam.t}}");
    EXPECT_EQ(CountingNode::made, 1) << "without a model nothing is bound";
    EXPECT_EQ(CountingNode::draws, 3);
}

/// Can stand in a document, but cannot be drawn.
struct UndrawnNode {
    static constexpr NodeType type = NodeType::circle;
    static constexpr DSLVersion version = DSLVersion::v1;
    LosslessDSLValue<SharedText> label = {};
    DSLValueWithDefault<std::vector<Modifier>> modifiers = {};
    static constexpr Fields fields{Field{"label", &UndrawnNode::label}, Field{"modifiers", &UndrawnNode::modifiers}};
};
static_assert(DSLNodeProtocol<UndrawnNode> && !NodeProtocol<UndrawnNode>);

struct UnappliedModifier {
    static constexpr ModifierType type = ModifierType::animation;
    static constexpr DSLVersion version = DSLVersion::v1_2;
    LosslessDSLValue<float> speed = {};
    static constexpr Fields fields{Field{"speed", &UnappliedModifier::speed}};
};
static_assert(DSLModifierProtocol<UnappliedModifier> && !ModifierProtocol<UnappliedModifier>);

TEST(Node, ARecordThatCannotBeDrawnFails) {
    const char* const failure = "Node: unsupported type: circle {\"label\":\"a\",\"modifiers\":[]})";
    Node undrawn = UndrawnNode{.label = "a"};
    Context context;
    EXPECT_EQ(failureOf([&] { return undrawn.render(context); }), failure);
    EXPECT_EQ(failureOf([&] { return undrawn.bindModel(modelFrom("{}")), 0; }), failure);
    RenderState::of(context).modelContext = std::make_shared<const ModelContext>(modelFrom("{}"));
    EXPECT_EQ(failureOf([&] { return undrawn.render(context); }), failure);
    Node waiting = UndrawnNode{.label = Expr{"{{initServerParam.x}}"}};
    EXPECT_EQ(failureOf([&] { return waiting.render(context); }),
              "Node: unsupported type: circle {\"label\":\"{{initServerParam.x}}\",\"modifiers\":[]})")
        << "refused before its expressions are looked at";
    const VStackNode stack{.children = std::vector<Node>{SpacerNode{}, undrawn}};
    EXPECT_EQ(failureOf([&] { return stack.render(context); }), failure);
}

TEST(Modifier, ARecordThatCannotBeAppliedFails) {
    const char* const failure = "Modifier: unsupported type: animation {\"speed\":2})";
    Modifier unapplied = UnappliedModifier{.speed = 2};
    Context context;
    EXPECT_EQ(failureOf([&] { return unapplied.modify(Spacer{}, context); }), failure);
    EXPECT_EQ(failureOf([&] { return unapplied.bindModel(modelFrom("{}")), 0; }), failure);
    EXPECT_EQ(failureOf([&] { return applyModifiers(std::vector<Modifier>{unapplied}, Spacer{}, context); }), failure);
    RenderState::of(context).modelContext = std::make_shared<const ModelContext>(modelFrom("{}"));
    EXPECT_EQ(failureOf([&] { return applyModifiers(std::vector<Modifier>{unapplied}, Spacer{}, context); }), failure);
}

TEST(ApplyModifiers, TheFirstIsInnermost) {
    const std::vector<Modifier> modifiers{OffsetModifier{.x = 1, .y = 2}, ZIndexModifier{.zIndex = 3}};
    Context context;
    const AnyView view = applyModifiers(modifiers, Spacer{}, context);
    const ZIndex* outer = view.as<ZIndex>();
    ASSERT_NE(outer, nullptr);
    const Offset* inner = outer->content.as<Offset>();
    ASSERT_NE(inner, nullptr);
    EXPECT_NE(inner->content.as<Spacer>(), nullptr);

    const AnyView reversed = applyModifiers(std::vector<Modifier>{modifiers[1], modifiers[0]}, Spacer{}, context);
    ASSERT_NE(reversed.as<Offset>(), nullptr);
    EXPECT_NE(reversed.as<Offset>()->content.as<ZIndex>(), nullptr);

    const AnyView plain = applyModifiers({}, Spacer{}, context);
    EXPECT_NE(plain.as<Spacer>(), nullptr);
}

TEST(ApplyModifiers, BindsACopyOfEach) {
    const Modifier modifier = modifierFrom(R"({"type": "zIndex", "zIndex": "{{initServerParam.z}}"})");
    Context context;
    EXPECT_EQ(applyModifiers(std::vector<Modifier>{modifier}, Spacer{}, context).as<ZIndex>()->value, 0) << "unbound";
    RenderState& state = RenderState::of(context);
    state.modelContext = std::make_shared<const ModelContext>(modelFrom(R"({"z": 7})"));
    EXPECT_EQ(applyModifiers(std::vector<Modifier>{modifier}, Spacer{}, context).as<ZIndex>()->value, 7);
    EXPECT_TRUE(modifier.needsBinding()) << "the modifier in the tree never changes";
    EXPECT_EQ(modifier.modify(Spacer{}, context).as<ZIndex>()->value, 0) << "modify alone does not bind";
    state.modelContext = std::make_shared<const ModelContext>(modelFrom("{}"));
    EXPECT_EQ(failureOf([&] {
                  return applyModifiers(std::vector<Modifier>{OffsetModifier{}, modifier}, Spacer{}, context);
              }),
              "ResolveExpression: key path not found in model: [\"z\"]");
}

TEST(Node, NoModifiersAndEmptyModifiersAreTheSame) {
    EXPECT_NE(renderedNode(R"({"type": "spacer"})").as<Spacer>(), nullptr);
    EXPECT_NE(renderedNode(R"({"type": "spacer", "modifiers": []})").as<Spacer>(), nullptr);
    EXPECT_NE(renderedNode(R"({"type": "spacer", "modifiers": null})").as<Spacer>(), nullptr);
    EXPECT_EQ(nodeFrom(R"({"type": "spacer", "modifiers": null})"), nodeFrom(R"({"type": "spacer"})"));
}

TEST(Node, IsMadeInCode) {
    EXPECT_EQ(Node(), Node(EmptyViewNode{}));
    EXPECT_EQ(node(TextNode{.content = "Hi"}), nodeFrom(R"({"type": "text", "content": "Hi"})"));
    EXPECT_EQ(modifer(ZIndexModifier{.zIndex = 1}), modifierFrom(R"({"type": "zIndex", "zIndex": "1"})"));
    EXPECT_FALSE(Node(SpacerNode{}) == Node(EmptyViewNode{}));
    EXPECT_FALSE(Node(TextNode{.content = "a"}) == Node(TextNode{.content = "b"}));
}

}  // namespace
}  // namespace tavrin
