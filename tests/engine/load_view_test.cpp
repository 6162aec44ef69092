// SPDX-License-Identifier: MIT
#include <thread>

#include <gtest/gtest.h>

#include "tavrin/modifiers/layout_modifiers.h"
#include "tavrin/nodes/text_nodes.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tests/dsl/rendered.h"

namespace tavrin {
namespace {

constexpr const char* greeting =
    R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}"}}})";

std::string textOf(const AnyView& view) { return std::string(std::get<SharedText>(view.as<Text>()->content)); }

std::string failureOfLoad(Context& context, std::string_view json,
                          std::optional<std::string_view> model = std::nullopt) {
    return failureOf([&] { return TavrinEngine().loadView(json, model, context); });
}

TEST(LoadView, AcceptsEveryVersion) {
    for (const std::string version : {"1.0", "1.1", "1.2"}) {
        SCOPED_TRACE(version);
        const AnyView view = rendered("{\"version\": \"" + version + R"(", "nodes": {"main": {"type": "timer"}}})");
        EXPECT_NE(view.as<Text>(), nullptr) << "a record's version is not enforced";
    }
    EXPECT_EQ(TavrinEngine::supporedVersion, DSLVersion::v1_2);
}

TEST(LoadView, BindsAndDraws) {
    Context context;
    const TavrinEngine engine;
    EXPECT_EQ(textOf(engine.loadView(greeting, R"({"name": "Ann"})", context)), "Ann");
    EXPECT_EQ(textOf(engine.loadView(greeting, R"({"name": 5})", context)), "5") << "one document, another model";
    EXPECT_EQ(textOf(engine.loadView(greeting, std::nullopt, context)), "{{initServerParam.name}}")
        << "no model: unbound";
}

TEST(LoadView, TheEnvironmentIsEmpty) {
    Context context;
    EXPECT_EQ(failureOfLoad(context, documentOf(R"({"type": "text", "content": "{{initEnvironment.name}}"})"), "{}"),
              "ResolveExpression: Environment Variable not exist for key: name");
}

TEST(LoadView, AnyJSONCanBeTheModel) {
    for (const char* model : {"[]", "5", "null", "\"text\"", "{}"}) {
        SCOPED_TRACE(model);
        EXPECT_EQ(textOf(rendered(documentOf(R"({"type": "text", "content": "plain"})"), model)), "plain");
        Context context;
        EXPECT_EQ(failureOfLoad(context, greeting, model),
                  "ResolveExpression: key path not found in model: [\"name\"]");
    }
}

TEST(LoadView, Fails) {
    const struct {
        const char* why;
        const char* json;
        std::optional<std::string_view> model;
        const char* failure;
    } rows[] = {
        {"not JSON", "{", std::nullopt,
         "dataCorrupted at : The given data was not valid JSON: unexpected end of the document, expected a key in "
         "quotes or '}'"},
        {"empty", "", std::nullopt, "dataCorrupted at : The given data was not valid JSON: the document is empty"},
        {"no version", R"({"nodes": {}})", std::nullopt, "keyNotFound at : the key \"version\" is missing"},
        {"no nodes", R"({"version": "1.0"})", std::nullopt, "keyNotFound at : the key \"nodes\" is missing"},
        {"no main node", R"({"version": "1.0", "nodes": {}})", std::nullopt, "Engine: view must have main node"},
        {"nodes but no main one", R"({"version": "1.0", "nodes": {"Main": {"type": "spacer"}}})", std::nullopt,
         "Engine: view must have main node"},
        {"a reserved modifier anywhere",
         R"({"version": "1.0", "nodes": {"main": {"type": "spacer"}, "x": {"type": "spacer", "modifiers": [{"type": "transition"}]}}})",
         std::nullopt, "dataCorrupted at nodes.x.modifiers[0].type: Type unsupported"},
        {"the model is not JSON", greeting, "{'",
         "model: dataCorrupted at : The given data was not valid JSON: expected a key in quotes or '}', found '''"},
        {"the document is looked at before the model", "[", "[",
         "dataCorrupted at : The given data was not valid JSON: unexpected end of the document, expected a value"},
        {"the model before the main node", R"({"version": "1.0", "nodes": {}})", "",
         "model: dataCorrupted at : The given data was not valid JSON: the document is empty"},
        {"a path that is not there", greeting, "{}", "ResolveExpression: key path not found in model: [\"name\"]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        Context context;
        EXPECT_EQ(failureOfLoad(context, row.json, row.model), row.failure);
    }
    Context context;
    const std::string unknown = failureOfLoad(context, R"({"version": "1.3", "nodes": {}})");
    EXPECT_TRUE(unknown.starts_with(
        "dataCorrupted at version: \"1.3\" is not a document version; there are \"1.0\", \"1.1\", \"1.2\""))
        << unknown;
}

TEST(LoadView, KnowsWhereATextIsNoJSON) {
    Context context;
    try {
        static_cast<void>(TavrinEngine().loadView(greeting, "[1, x]", context));
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.role, TextRole::model);
        EXPECT_EQ(error.offset, 4u);
    }
}

/// What a failed or successful call leaves in its context.
TEST(Context, KeepsTheModelOfAFailedCallOnly) {
    const char* const noMain = R"({"version": "1.0", "nodes": {"other": {"type": "spacer"}}})";
    const struct {
        const char* why;
        const char* json;
        std::optional<std::string_view> model;
        bool fails;
        bool hasModel;
        std::size_t rootNodes;
    } rows[] = {
        {"a document that is not decoded leaves everything", "{", R"({"name": "Ann"})", true, false, 0},
        {"a model that is not decoded leaves the nodes", greeting, "{", true, false, 1},
        {"no main node leaves the model", noMain, "{}", true, true, 1},
        {"a failed drawing leaves the model", greeting, "{}", true, true, 1},
        {"a successful drawing clears it", greeting, R"({"name": "Ann"})", false, false, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        Context context;
        EXPECT_EQ(!failureOfLoad(context, row.json, row.model).empty(), row.fails);
        EXPECT_EQ(RenderState::of(context).modelContext != nullptr, row.hasModel);
        EXPECT_EQ(RenderState::of(context).rootNodes->size(), row.rootNodes);
    }
}

TEST(Context, AModelThatIsLeftIsUsedAndThenCleared) {
    Context context;
    const std::string needsMore = documentOf(R"({"type": "text", "content": "{{initServerParam.missing}}"})");
    EXPECT_NE(failureOfLoad(context, needsMore, R"({"name": "left"})"), "");
    EXPECT_EQ(textOf(TavrinEngine().loadView(greeting, std::nullopt, context)), "left");
    EXPECT_EQ(RenderState::of(context).modelContext, nullptr);
    EXPECT_EQ(textOf(TavrinEngine().loadView(greeting, std::nullopt, context)), "{{initServerParam.name}}");

    EXPECT_NE(failureOfLoad(context, needsMore, R"({"name": "left"})"), "");
    EXPECT_NE(failureOfLoad(context, greeting, "{"), "") << "a model that is not decoded";
    EXPECT_EQ(textOf(TavrinEngine().loadView(greeting, std::nullopt, context)), "left") << "the earlier one stays";

    EXPECT_NE(failureOfLoad(context, needsMore, R"({"name": "old"})"), "");
    EXPECT_EQ(textOf(TavrinEngine().loadView(greeting, R"({"name": "new"})", context)), "new")
        << "a new model replaces it";
}

TEST(Context, EachCallReplacesTheNodes) {
    Context context;
    const auto load = [&](std::string_view json) { return failureOfLoad(context, json); };
    EXPECT_EQ(load(R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "a"}, "a": {"type": "spacer"}}})"),
              "");
    EXPECT_EQ(load(R"({"version": "1.0", "nodes": {"main": {"type": "node", "name": "a"}}})"),
              "RefNode: node for name: a not found");
    EXPECT_EQ(load("nonsense").substr(0, 13), "dataCorrupted");
    EXPECT_EQ(RenderState::of(context).rootNodes->size(), 1u) << "a document that is not decoded replaces nothing";
}

TEST(Context, StartsEmpty) {
    Context context;
    EXPECT_EQ(context.logger(), nullptr);
    EXPECT_FALSE(context.linkConverter);
    EXPECT_EQ(context.imageCacheDir, std::nullopt);
    EXPECT_FALSE(context.maxImageSize.has_value());
    EXPECT_EQ(context.fetchPolicy, FetchPolicy::all);
    EXPECT_EQ(context.widgetURL(), std::nullopt);
    EXPECT_FALSE(context.date.has_value());
    EXPECT_EQ(context.maximumNodes, 1'000'000u);
    EXPECT_EQ(context.maximumNesting, 512u);
    const RenderState& state = RenderState::of(context);
    EXPECT_TRUE(state.webImageURLs.empty());
    EXPECT_TRUE(state.rootNodes->empty());
    EXPECT_EQ(state.modelContext, nullptr);
}

TEST(Context, RecordsAddressesOfImages) {
    Context context;
    context.fetchPolicy = FetchPolicy::none;  // they would be fetched by the next call
    RenderState& state = RenderState::of(context);
    for (const char* url :
         {"https://example.com/a.png", "", "not a url:", "http://[bad", "relative/path", "https://example.com/a.png"})
        state.cacheImage(url);
    ASSERT_EQ(state.webImageURLs.size(), 3u) << "what is no address is left out, what comes twice is kept";
    EXPECT_EQ(state.webImageURLs[0].string(), "https://example.com/a.png");
    EXPECT_EQ(state.webImageURLs[1].string(), "relative/path");
    EXPECT_EQ(state.webImageURLs[2].string(), "https://example.com/a.png");
    EXPECT_EQ(failureOfLoad(context, documentOf(R"({"type": "spacer"})")), "");
    EXPECT_EQ(state.webImageURLs.size(), 3u) << "a call never clears them";
}

/// Counts what it hears.
class CountingLogger : public Logger {
public:
    void info(std::string_view) override { ++calls; }
    void error(std::string_view, std::string_view) override { ++calls; }
    void debug(std::string_view) override { ++calls; }
    void metric(std::string_view) override { ++calls; }
    void usertrack(std::string_view, std::string_view, std::string_view) override { ++calls; }
    int calls = 0;
};

TEST(Context, FailuresGoToTheCallerNotToTheLogger) {
    const auto logger = std::make_shared<CountingLogger>();
    Context context(logger);
    EXPECT_EQ(context.logger(), logger);
    for (const char* json : {"{", greeting, R"({"version": "1.0", "nodes": {}})"})
        EXPECT_NE(failureOfLoad(context, json, "{}"), "");
    EXPECT_EQ(logger->calls, 0);
}

TEST(LoadView, CountsTimersFromTheMomentOfTheCall) {
    const char* const timer = R"({"version": "1.1", "nodes": {"main": {"type": "timer"}}})";
    Context context;
    context.date = Date{1234.5};
    EXPECT_EQ(std::get<Date>(TavrinEngine().loadView(timer, std::nullopt, context).as<Text>()->content), Date{1234.5});
    context.date.reset();
    const double before = Date::now().secondsSince1970;
    const AnyView view = TavrinEngine().loadView(timer, std::nullopt, context);
    const double shown = std::get<Date>(view.as<Text>()->content).secondsSince1970;
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, Date::now().secondsSince1970);
    const Node node = TimerNode{};
    EXPECT_GE(std::get<Date>(node.render(context).as<Text>()->content).secondsSince1970, shown)
        << "also when a node is drawn by itself";
}

TEST(LoadView, ReadsHostileTexts) {
    const std::string longText(1 << 20, 'a');
    EXPECT_EQ(textOf(rendered(documentOf("{\"type\": \"text\", \"content\": \"" + longText + "\"}"))), longText);
    EXPECT_EQ(textOf(rendered(greeting, "{\"name\": \"" + longText + "\"}")), longText);

    Context context;
    EXPECT_EQ(failureOfLoad(context, documentOf("{\"type\": \"text\", \"content\": \"\xff\"}")).substr(0, 13),
              "dataCorrupted");
    EXPECT_EQ(failureOfLoad(context, greeting, "{\"name\": \"\xff\"}").substr(0, 20), "model: dataCorrupted");
    const std::string zero = R"({"version": "1.0", "nodes": {"main": {"type": "text", "content": "a\u0000b"}}})";
    EXPECT_EQ(textOf(rendered(zero)), std::string("a\0b", 3));

    std::string deep = R"({"type": "spacer"})";
    for (int i = 0; i < 1000; ++i) deep = R"({"type":"zstack","children":[)" + deep + "]}";
    EXPECT_EQ(failureOfLoad(context, documentOf(deep)), "Engine: nodes are nested deeper than 512")
        << "decoded, not drawn";
    for (int i = 0; i < 100; ++i) deep = R"({"type":"zstack","children":[)" + deep + "]}";
    EXPECT_EQ(failureOfLoad(context, documentOf(deep)), "Engine: nodes are nested deeper than 2048 levels of JSON")
        << "not even decoded";
    const auto repeated = [](std::string_view part, int times) {
        std::string text;
        for (int i = 0; i < times; ++i) text += part;
        return text;
    };
    for (const int levels : {100'000, 1'000'001}) {
        const std::string opening = repeated(R"({"type":"zstack","children":[)", levels / 2);
        const std::string text = opening + R"({"type":"spacer"})" + repeated("]}", levels / 2);
        EXPECT_EQ(failureOfLoad(context, documentOf(text)),
                  levels > 1'000'000
                      ? "dataCorrupted at : The given data was not valid JSON: nested deeper than 1000000 levels"
                      : "Engine: nodes are nested deeper than 2048 levels of JSON");
        EXPECT_EQ(textOf(rendered(documentOf(R"({"type": "text", "content": "hi", "unknown": )" +
                                             repeated("[", levels / 2) + "1" + repeated("]", levels / 2) + "}"))),
                  "hi");
    }

    std::string model;
    for (int i = 0; i < 2000; ++i) model += "[";
    model += "1";
    for (int i = 0; i < 2000; ++i) model += "]";
    EXPECT_EQ(textOf(rendered(documentOf(R"({"type": "text", "content": "{{initServerParam.name}}"})"),
                              "{\"name\": " + model + "}")),
              model);
}

TEST(LoadViewThread, ContextsAreIndependent) {
    std::vector<std::thread> threads;
    std::array<bool, 4> right{};
    for (std::size_t i = 0; i < right.size(); ++i) {
        threads.emplace_back([i, &right] {
            right[i] = true;
            for (int round = 0; round < 100; ++round) {
                const std::string name = std::to_string(i) + "-" + std::to_string(round);
                right[i] = right[i] && textOf(rendered(greeting, "{\"name\": \"" + name + "\"}")) == name;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const bool all : right) EXPECT_TRUE(all);
}

}  // namespace
}  // namespace tavrin
