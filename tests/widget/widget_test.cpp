// SPDX-License-Identifier: MIT
#include "tavrin/widget/widget.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/dsl/view_origins.h"
#include "tavrin/engine/tavrin_engine.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/values/model_context.h"
#include "tavrin/widget/animation_renderer.h"

namespace tavrin {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view greeting =
    R"({"version": "1.2", "nodes": {"main": {"type": "text", "content": "{{initServerParam.name}}",
    "modifiers": [{"type": "widgetURL", "url": "{{initServerParam.url}}"}]}}})";
constexpr std::string_view ada = R"({"name": "Ada", "url": "app:Ada"})";
constexpr std::string_view pictures = R"({"version": "1.2", "nodes": {"main": {"type": "vstack", "children": [
    {"type": "webImage", "url": "https://a.example/1.png", "alt": "https://a.example/2.png"},
    {"type": "webImage", "url": "https://a.example/3.png"}]}}})";

WidgetOptions quiet() {
    WidgetOptions options;
    options.date = Date{1'795'249'105};
    options.timeZone = TimeZone();
    options.fetchPolicy = FetchPolicy::none;
    return options;
}

/// What it is for an options' `notes` to keep lines.
WidgetOptions notingInto(std::vector<std::string>& lines) {
    WidgetOptions options = quiet();
    options.notes = [&lines](const WidgetNote& note) { lines.push_back(note.text()); };
    return options;
}

TEST(Widget, IsWhatAnEngineAndARendererMake) {
    Context context;
    const AnyView view = TavrinEngine().loadView(greeting, ada, context);
    RenderOptions render;
    render.widgetURL = context.widgetURL();
    ImageRenderer renderer(view, render);
    Widget widget = Document(greeting).widget(ada, quiet());
    EXPECT_TRUE(widget.pixels() == renderer.pixels());
    EXPECT_TRUE(widget.pixelsWithoutTexts() == renderer.pixelsWithoutTexts());
    EXPECT_EQ(widget.layoutText(), renderer.layoutText());
    EXPECT_EQ(widget.targetsText(), renderer.targetsText());
    EXPECT_THAT(widget.targetsText(), HasSubstr("app:Ada"));
    for (const PictureFormat format : enumerators<PictureFormat>)
        EXPECT_EQ(widget.encode(format), renderer.encode(format));
}

TEST(Widget, EveryOptionCounts) {
    const struct {
        const char* why;
        std::function<void(WidgetOptions&)> change;
    } rows[] = {
        {"room",
         [](WidgetOptions& options) {
             options.room.size = {100, 100};
         }},
        {"scale", [](WidgetOptions& options) { options.scale = 2; }},
        {"appearance", [](WidgetOptions& options) { options.appearance = Appearance::dark; }},
        {"background", [](WidgetOptions& options) { options.background.kind = WidgetBackground::Kind::none; }},
        {"rounded", [](WidgetOptions& options) { options.rounded = true; }},
        {"date", [](WidgetOptions& options) { options.date = Date{1'795'249'105 + 3600}; }},
        {"time zone", [](WidgetOptions& options) { options.timeZone = TimeZone::named("Asia/Tokyo"); }},
        {"compression", [](WidgetOptions& options) { options.compression = PngCompression::small; }},
    };
    constexpr std::string_view clock = R"({"version": "1.2", "nodes": {"main": {"type": "vstack", "children": [
        {"type": "text", "content": "Now"},
        {"type": "rectangle", "modifiers": [{"type": "frame", "width": 4, "height": 60},
            {"type": "clockHandRotationEffect", "period": 43200}]}]}}})";
    const Document document(clock);
    const std::string usual = document.widget(std::nullopt, quiet()).encode();
    for (const auto& row : rows) {
        WidgetOptions options = quiet();
        row.change(options);
        EXPECT_NE(document.widget(std::nullopt, options).encode(), usual) << row.why;
    }
}

TEST(Widget, BoundsCount) {
    for (const auto& [why, change] : std::vector<std::pair<const char*, std::function<void(WidgetOptions&)>>>{
             {"nodes", [](WidgetOptions& options) { options.maximumNodes = 2; }},
             {"nesting", [](WidgetOptions& options) { options.maximumNesting = 1; }}}) {
        WidgetOptions options = quiet();
        change(options);
        EXPECT_THROW(static_cast<void>(Document(pictures).bind(std::nullopt, options)), TavrinError) << why;
    }
}

TEST(Widget, TextsThatAreNoDocumentOrModel) {
    EXPECT_THROW(Document("{"), DecodingError);
    const Document document(greeting);
    EXPECT_THROW(static_cast<void>(document.bind("[", quiet())), DecodingError);
    EXPECT_THROW(static_cast<void>(document.bind("{}", quiet())), ModelContextError);
    EXPECT_THROW(static_cast<void>(Document(R"({"version": "9.9", "nodes": {}})").bind(std::nullopt, quiet())),
                 std::exception);
    EXPECT_EQ(document.bind(ada, quiet()).widgetURL()->string(), "app:Ada") << "after all that";
}

TEST(Widget, AddressesAreConverted) {
    WidgetOptions options = quiet();
    options.linkConverter = [](const URL& url) { return *URL::parse("other:" + url.string()); };
    EXPECT_EQ(Document(greeting).bind(ada, options).widgetURL()->string(), "other:app:Ada");
}

TEST(Widget, NamesItsPictures) {
    std::vector<std::string> addresses;
    for (const NamedPicture& picture : Document(pictures).bind(std::nullopt, quiet()).pictures()) {
        addresses.push_back(picture.url.string());
        EXPECT_FALSE(picture.fileName.empty());
    }
    EXPECT_THAT(addresses,
                ElementsAre("https://a.example/1.png", "https://a.example/2.png", "https://a.example/3.png"));
}

TEST(Widget, NotesAreThoseOfTheWidgetThatIsLaidOut) {
    std::vector<std::string> bound;
    std::vector<std::string> first;
    std::vector<std::string> second;
    const BoundDocument document = Document(pictures).bind(std::nullopt, notingInto(bound));
    static_cast<void>(document.widget(notingInto(first)).pixels());
    static_cast<void>(document.widget(notingInto(second)).pixels());
    EXPECT_THAT(bound, IsEmpty());
    EXPECT_THAT(first, testing::Each(StartsWith("error ")));
    EXPECT_THAT(first, testing::SizeIs(testing::Ge(2U)));
    EXPECT_EQ(first, second);
}

TEST(Widget, NotesOfAnAnimationAreItsOwn) {
    std::vector<std::string> bound;
    std::vector<std::string> heard;
    const BoundDocument document = Document(pictures).bind(std::nullopt, notingInto(bound));
    AnimationRenderer renderer = document.animation(notingInto(heard));
    static_cast<void>(renderer.pixels(Date{1'795'249'105}));
    EXPECT_THAT(bound, IsEmpty());
    EXPECT_THAT(heard, testing::SizeIs(testing::Ge(2U)));
}

TEST(Widget, TracesOnlyWhatIsAskedFor) {
    const Document document(greeting);
    const auto bind = [&](WidgetTrace trace) {
        WidgetOptions options = quiet();
        options.trace = trace;
        return document.bind(ada, options);
    };
    EXPECT_EQ(bind(WidgetTrace::none).origins(), nullptr);
    EXPECT_NE(bind(WidgetTrace::origins).origins(), nullptr);
    WidgetOptions options = quiet();
    options.trace = WidgetTrace::reasons;
    const Explanation explanation = document.widget(ada, options).explanation();
    ASSERT_FALSE(explanation.empty());
    EXPECT_EQ(toText(explanation.front().origin.value()), "nodes.main.modifiers[0]");
}

TEST(Widget, ExplainsOnTheBudgetOfItsDrawings) {
    WidgetOptions options = quiet();
    options.trace = WidgetTrace::reasons;
    options.budget.cancel = CancelToken();
    const Document document(greeting);
    Widget widget = document.widget(ada, options);
    (void)widget.layoutTree();
    const Cost laidOut = widget.cost();
    const std::size_t views = widget.explanation().size();
    EXPECT_GE(widget.cost().steps, laidOut.steps + views) << "a step for each view";
    const std::uint64_t explained = widget.cost().steps;
    EXPECT_EQ(widget.explanation().size(), views);
    EXPECT_EQ(widget.cost().steps, explained) << "each answer begins anew";

    const auto refusal = [](Widget& asked) -> std::string {
        try {
            (void)asked.explanation();
            return "";
        } catch (const TavrinError& error) {
            return error.kind + ": " + error.message;
        }
    };
    options.budget.cancel->cancel();
    EXPECT_EQ(refusal(widget), "Budget: the call was cancelled");
    options.budget = {.steps = explained};
    Widget enough = document.widget(ada, options);
    EXPECT_EQ(refusal(enough), "");
    options.budget.steps = explained - 1;
    Widget tooFew = document.widget(ada, options);
    EXPECT_NO_THROW((void)tooFew.layoutTree());
    EXPECT_EQ(refusal(tooFew), "Budget: the work takes more than " + std::to_string(explained - 1) + " steps");
}

/// Where in a document an answer fails that may cost each of some amounts, in their order; "nowhere" where no place is
/// known.
std::vector<std::string> placesOfFailures(const std::string& json, const std::vector<RenderBudget>& budgets,
                                          const std::function<void(const BoundDocument&, WidgetOptions)>& ask) {
    std::vector<std::string> places;
    const BoundDocument bound = Document(json).bind(std::nullopt, quiet());
    for (const RenderBudget& budget : budgets) {
        WidgetOptions options = quiet();
        options.room = {"small", {80, 40}};
        options.budget = budget;
        try {
            ask(bound, options);
        } catch (const TavrinError& error) {
            EXPECT_EQ(error.kind, "Budget") << error.message;
            std::string place = error.isRooted ? toText(error.codingPath) : "nowhere";
            if (places.empty() || places.back() != place) places.push_back(std::move(place));
        }
    }
    return places;
}

void drawRaster(const BoundDocument& bound, WidgetOptions options) { (void)bound.widget(std::move(options)).pixels(); }

std::string documentOf(const std::string& main, const std::string& others = "") {
    return R"({"version": "1.2", "nodes": {"main": )" + main + others + "}}";
}

std::string stackOf(const std::string& children) {
    return documentOf(R"({"type": "zstack", "children": [)" + children + "]}");
}

TEST(Widget, TellsWhereInItsDocumentAnAnswerPassesItsBudget) {
    const auto draw = [](PictureFormat format) {
        return [format](const BoundDocument& bound, WidgetOptions options) {
            (void)bound.widget(std::move(options)).encode(format);
        };
    };
    const auto animate = [](const BoundDocument& bound, const WidgetOptions& options) {
        AnimationRenderer renderer = bound.animation(options);
        (void)renderer.pixels(*options.date);
    };
    const auto targets = [](const BoundDocument& bound, WidgetOptions options) {
        (void)bound.widget(std::move(options)).targets();
    };
    const std::string dot = R"({"type": "circle"})";
    const std::string text = R"({"type": "text", "content": ")" + std::string(20'000, 'x') + "\"}";
    const std::string faded = R"({"type": "zstack", "children": [)" + dot + "," + dot +
                              R"(], "modifiers": [{"type": "opacity", "opacity": 0.5}]})";
    const std::string ring = R"({"type": "progressView", "style": "circular", "value": 0.7, "lineWidth": 14,
        "color": {"value": "#FF9500"}, "background": {"value": "#E5E5EA"}})";
    const auto growing = [](auto amount, std::uint64_t by, std::uint64_t most) {
        std::vector<RenderBudget> budgets;
        for (std::uint64_t value = by; value <= most; value += by) budgets.emplace_back().*amount = value;
        return budgets;
    };
    const std::string main = "nodes.main";
    const std::string first = "nodes.main.children[0]";
    const std::string second = "nodes.main.children[1]";
    const std::string overlaid = R"({"type": "circle", "modifiers": [{"type": "overlay", "view": )" + text + "}]}";
    const struct {
        const char* why;
        std::string document;
        std::vector<RenderBudget> budgets;
        std::function<void(const BoundDocument&, WidgetOptions)> ask;
        std::vector<std::string> places;
    } rows[] = {
        {"the tree is built, sizes are asked for, of children twice, and it is drawn",
         stackOf(dot + "," + dot),
         growing(&RenderBudget::steps, 1, 600),
         drawRaster,
         {main, first, second, main, first, second, first, second, main, first, second}},
        {"a text is shaped", stackOf(dot + "," + text), {{.steps = 2'000}}, drawRaster, {second}},
        {"the background is nobody's; a layer is painted as a whole",
         stackOf(dot + "," + faded),
         growing(&RenderBudget::pixels, 1'000, 400'000),
         drawRaster,
         {"nowhere", first, second, second + ".children[0]", second + ".children[1]"}},
        {"what it is composed of is its own",
         documentOf(ring),
         growing(&RenderBudget::steps, 1, 600),
         drawRaster,
         {main}},
        {"a modifier holds it", documentOf(overlaid), {{.steps = 2'000}}, drawRaster, {main + ".modifiers[0].view"}},
        {"it is referred to",
         documentOf(R"({"type": "node", "name": "far"})", R"(, "far": )" + text),
         {{.steps = 2'000}},
         drawRaster,
         {"nodes.far"}},
        {"an SVG is drawn",
         stackOf(dot + "," + text),
         growing(&RenderBudget::steps, 2'000, 200'000),
         draw(PictureFormat::svg),
         {second}},
        {"a moment of many", stackOf(dot + "," + text), {{.steps = 2'000}}, animate, {second}},
        {"links are looked for",
         stackOf(dot + "," + dot),
         growing(&RenderBudget::steps, 1, 600),
         targets,
         {main, first, second, main, first, second, first, second, main, first, second}},
        {"a picture is compressed", stackOf(dot), {{.pixels = 90'000}}, draw(PictureFormat::png), {"nowhere"}},
    };
    for (const auto& row : rows) EXPECT_EQ(placesOfFailures(row.document, row.budgets, row.ask), row.places) << row.why;
}

TEST(WidgetThreads, ShareADocument) {
    const Document document(greeting);
    const auto draw = [&](std::size_t number) {
        const std::string model = R"({"url": "app:reader", "name": "Reader )" + std::to_string(number) + "\"}";
        return document.widget(model, quiet()).encode();
    };
    constexpr std::size_t count = 8;
    std::vector<std::string> expected;
    for (std::size_t i = 0; i < count; ++i) expected.push_back(draw(i));
    EXPECT_NE(expected[0], expected[1]);
    std::vector<std::string> drawn(4 * count);
    {
        std::vector<std::jthread> threads;
        for (std::size_t thread = 0; thread < 4; ++thread)
            threads.emplace_back([&, thread] {
                for (std::size_t i = 0; i < count; ++i) drawn[thread * count + i] = draw(i);
            });
    }
    for (std::size_t i = 0; i < drawn.size(); ++i) EXPECT_EQ(drawn[i], expected[i % count]) << i;
}

}  // namespace
}  // namespace tavrin
