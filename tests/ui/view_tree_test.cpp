// SPDX-License-Identifier: MIT
#include "tavrin/platform/ui/view_tree.h"

#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin {
namespace {

struct Gauge {
    static constexpr std::string_view name = "Gauge";
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return Rectangle{}; }
};

/// Without blanks, which are the writer's matter.
std::string printed(const AnyView& view) {
    std::string text = viewTreeText(view);
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

struct Row {
    const char* why;
    AnyView view;
    const char* json;
};

void expectPrinted(const std::vector<Row>& rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(printed(row.view), row.json);
    }
}

TEST(ViewTree, PrintsLeaves) {
    expectPrinted({
        {"nothing", EmptyView{}, R"({"view":"EmptyView"})"},
        {"a spacer", Spacer{}, R"({"view":"Spacer","minLength":null})"},
        {"with a length", Spacer{.minLength = 2.5}, R"({"view":"Spacer","minLength":2.5})"},
        {"a text", Text{.content = "a\"b"}, R"({"view":"Text","text":"a\"b","font":null,"fontWeight":null})"},
        {"with a font and a weight",
         Text{.content = "x", .font = Font::system(30), .fontWeight = Font::Weight::semibold},
         R"({"view":"Text","text":"x","font":{"system":30,"weight":"regular","design":"default"},)"
         R"("fontWeight":"semibold"})"},
        {"a timer, with digits of one width",
         Text{.content = Date{12.5}, .font = Font::monospacedDigitSystem(20, Font::Weight::bold)},
         R"({"view":"Text","timer":12.5,"font":{"monospacedDigitSystem":20,"weight":"bold"},"fontWeight":null})"},
        {"a fixed colour", Color::rgb(1, 0.5, 0, 0.25),
         R"({"view":"Color","red":1,"green":0.5,"blue":0,"opacity":0.25})"},
        {"the platform's own", Color::gray, R"({"view":"Color","name":"gray"})"},
        {"the platform's own", Color::white, R"({"view":"Color","name":"white"})"},
        {"the foreground", Color::primary, R"({"view":"Color","name":"primary"})"},
        {"one of two forms", Color::dynamic({1, 1, 1, 1}, {0, 0, 0, 0.5}),
         R"({"view":"Color","light":{"view":"Color","red":1,"green":1,"blue":1,"opacity":1},)"
         R"("dark":{"view":"Color","red":0,"green":0,"blue":0,"opacity":0.5}})"},
        {"a gradient",
         LinearGradient{.colors = {Color::blue, Color::white},
                        .startPoint = UnitPoint::topLeading,
                        .endPoint = UnitPoint::trailing},
         R"({"view":"LinearGradient","colors":[{"view":"Color","name":"blue"},{"view":"Color","name":"white"}],)"
         R"("startPoint":[0,0],"endPoint":[1,0.5]})"},
        {"a circle", Circle{}, R"({"view":"Circle"})"},
        {"a rectangle", Rectangle{}, R"({"view":"Rectangle"})"},
        {"a rounded one", RoundedRectangle{.cornerRadius = 5, .style = RoundedCornerStyle::continuous},
         R"({"view":"RoundedRectangle","cornerRadius":5,"style":"continuous"})"},
        {"a capsule", Capsule{}, R"({"view":"Capsule","style":"circular"})"},
        {"a filled shape", FilledShape{.shape = Circle{}, .fill = Color::blue},
         R"({"view":"FilledShape","shape":{"view":"Circle"},"fill":{"view":"Color","name":"blue"}})"},
        {"a stroked shape", StrokedShape{.shape = Rectangle{}, .stroke = LinearGradient{}, .lineCap = LineCap::round},
         R"({"view":"StrokedShape","shape":{"view":"Rectangle"},"stroke":{"view":"LinearGradient","colors":[],)"
         R"("startPoint":[0,0],"endPoint":[0,0]},"lineWidth":1,"lineCap":"round","lineJoin":"miter","miterLimit":10})"},
        {"a part of an outline", TrimmedShape{.shape = Circle{}, .from = 0.25},
         R"({"view":"TrimmedShape","shape":{"view":"Circle"},"from":0.25,"to":1})"},
        {"a reader, whose content is not known", GeometryReader{}, R"({"view":"GeometryReader"})"},
        {"a link", Link{.destination = URL::parse("a:b").value(), .label = Circle{}},
         R"({"view":"Link","destination":"a:b","label":{"view":"Circle"}})"},
        {"a host's view by its name", Gauge{}, R"({"view":"Gauge"})"},
    });
}

TEST(ViewTree, PrintsEffects) {
    expectPrinted({
        {"an inset for each edge", InsetPadding{.insets = {1, 2, 3, 4}},
         R"({"modifier":"padding","insets":[1,2,3,4],"content":{"view":"EmptyView"}})"},
        {"a scale", ScaleEffect{.x = 2, .anchor = UnitPoint::bottom},
         R"({"modifier":"scaleEffect","x":2,"y":1,"anchor":[0.5,1],"content":{"view":"EmptyView"}})"},
        {"a turn", RotationEffect{.angle = -1.5},
         R"({"modifier":"rotationEffect","angle":-1.5,"anchor":[0.5,0.5],"content":{"view":"EmptyView"}})"},
        {"a turn in space", Rotation3DEffect{.angle = 1, .axis = {0, 1, 0}},
         R"({"modifier":"rotation3DEffect","angle":1,"axis":[0,1,0],"anchor":[0.5,0.5],"content":{"view":"EmptyView"}})"},
        {"a hand", ClockHandRotationEffect{.period = ClockHandPeriod::custom(90)},
         R"({"modifier":"clockHandRotationEffect","period":{"custom":90},"timeZone":"UTC","anchor":[0.5,0.5],)"
         R"("content":{"view":"EmptyView"}})"},
        {"of a clock", ClockHandRotationEffect{.period = {.hand = ClockHandPeriod::Hand::minute}},
         R"({"modifier":"clockHandRotationEffect","period":"minute","timeZone":"UTC","anchor":[0.5,0.5],)"
         R"("content":{"view":"EmptyView"}})"},
        {"an address", WidgetURL{.url = URL::parse("a:b")},
         R"({"modifier":"widgetURL","url":"a:b","content":{"view":"EmptyView"}})"},
        {"none", WidgetURL{}, R"({"modifier":"widgetURL","url":null,"content":{"view":"EmptyView"}})"},
    });
}

TEST(ViewTree, PrintsStacks) {
    expectPrinted({
        {"a column", VStack{.alignment = HorizontalAlignment::leading, .spacing = 4, .children = {Circle{}, Circle{}}},
         R"({"view":"VStack","alignment":"leading","spacing":4,"children":[{"view":"Circle"},{"view":"Circle"}]})"},
        {"a row", HStack{.alignment = VerticalAlignment::bottom},
         R"({"view":"HStack","alignment":"bottom","spacing":null,"children":[]})"},
        {"layers", ZStack{.alignment = Alignment::topTrailing, .children = {Circle{}}},
         R"({"view":"ZStack","alignment":"topTrailing","children":[{"view":"Circle"}]})"},
    });
}

TEST(ViewTree, PrintsModifiers) {
    const AnyView inner = Circle{};
    expectPrinted({
        {"a fixed frame", FixedFrame{.width = 10, .alignment = Alignment::bottom, .content = inner},
         R"({"modifier":"frame","width":10,"height":null,"alignment":"bottom","content":{"view":"Circle"}})"},
        {"a flexible frame",
         FlexibleFrame{.minWidth = -1, .maxWidth = std::numeric_limits<double>::infinity(), .content = inner},
         R"({"modifier":"flexFrame","minWidth":-1,"maxWidth":"infinity","minHeight":null,"maxHeight":null,)"
         R"("alignment":"center","content":{"view":"Circle"}})"},
        {"padding on some edges, in a fixed order",
         Padding{.edges = {.top = true, .trailing = true}, .length = 3, .content = inner},
         R"({"modifier":"padding","edges":["top","trailing"],"length":3,"content":{"view":"Circle"}})"},
        {"padding on all edges", Padding{.content = inner},
         R"({"modifier":"padding","edges":["top","leading","bottom","trailing"],"length":0,)"
         R"("content":{"view":"Circle"}})"},
        {"an offset", Offset{.x = std::numeric_limits<double>::quiet_NaN(), .y = 2, .content = inner},
         R"({"modifier":"offset","x":"nan","y":2,"content":{"view":"Circle"}})"},
        {"a ratio", AspectRatio{.contentMode = ContentMode::fill, .content = inner},
         R"({"modifier":"aspectRatio","ratio":null,"contentMode":"fill","content":{"view":"Circle"}})"},
        {"a line limit", LineLimit{.number = 2, .content = inner},
         R"({"modifier":"lineLimit","number":2,"content":{"view":"Circle"}})"},
        {"a depth", ZIndex{.value = -std::numeric_limits<double>::infinity(), .content = inner},
         R"({"modifier":"zIndex","value":"-infinity","content":{"view":"Circle"}})"},
        {"a foreground", ForegroundColor{.color = Color::blue, .content = inner},
         R"({"modifier":"foregroundColor","color":{"view":"Color","name":"blue"},"content":{"view":"Circle"}})"},
        {"a background", Background{.background = Rectangle{}, .content = inner},
         R"({"modifier":"background","alignment":"center","background":{"view":"Rectangle"},)"
         R"("content":{"view":"Circle"}})"},
        {"an overlay", Overlay{.alignment = Alignment::leading, .overlay = Rectangle{}, .content = inner},
         R"({"modifier":"overlay","alignment":"leading","overlay":{"view":"Rectangle"},"content":{"view":"Circle"}})"},
        {"a border", Border{.color = Color::gray, .width = 2, .content = inner},
         R"({"modifier":"border","color":{"view":"Color","name":"gray"},"width":2,"content":{"view":"Circle"}})"},
        {"a clip", ClipShape{.shape = Capsule{}, .content = inner},
         R"({"modifier":"clipShape","shape":{"view":"Capsule","style":"circular"},"antialiased":true,)"
         R"("content":{"view":"Circle"}})"},
        {"clipped", Clipped{.content = inner},
         R"({"modifier":"clipped","antialiased":false,"content":{"view":"Circle"}})"},
        {"a corner radius", CornerRadius{.radius = 9, .content = inner},
         R"({"modifier":"cornerRadius","radius":9,"antialiased":true,"content":{"view":"Circle"}})"},
        {"opacity", Opacity{.value = 1.5, .content = inner},
         R"({"modifier":"opacity","value":1.5,"content":{"view":"Circle"}})"},
    });
}

TEST(ViewTree, PrintsDeepTrees) {
    AnyView view = Circle{};
    for (std::uint32_t level = 1; level < AnyView::maximumNesting; ++level) {
        if (level % 2 == 0) {
            view = Opacity{.content = view};
        } else {
            view = VStack{.children = {view}};
        }
    }
    const std::string text = viewTreeText(view);
    EXPECT_NE(text.find(R"("view": "Circle")"), std::string::npos);
    EXPECT_EQ(std::count(text.begin(), text.end(), '{'), AnyView::maximumNesting);
    EXPECT_EQ(std::count(text.begin(), text.end(), '}'), AnyView::maximumNesting);
}

}  // namespace
}  // namespace tavrin
