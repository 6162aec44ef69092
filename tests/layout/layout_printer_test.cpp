// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/layout_printer.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

struct Badge {
    static constexpr std::string_view name = "Badge";
    [[nodiscard]] AnyView body(const EnvironmentValues&) const { return framed(10, 10, Circle{}); }
};

/// Holds a part somewhere inside, in the content of a geometry reader, and a colour as a value.
struct Plate {
    static constexpr std::string_view name = "Plate";

    std::optional<AnyView> part;

    [[nodiscard]] AnyView body(const EnvironmentValues&) const {
        return GeometryReader{[held = part.value_or(AnyView())](const GeometryProxy&) {
            return ZStack{.children = {framed(30, 30), Offset{.x = 9, .content = held}}};
        }};
    }
    void write(ViewWriter& writer) const {
        writer.json().key("part");
        writer.part(part);
        writer.json().key("color");
        writer.viewValue(AnyView(Color::blue));
    }
};

/// Without blanks, which are the writer's matter.
std::string printed(const AnyView& view) {
    std::string text = layoutTreeText(laidOut(view));
    std::erase_if(text, [](char c) { return c == ' ' || c == '\n'; });
    return text;
}

TEST(LayoutPrinter, AddsFrames) {
    const struct {
        const char* why;
        AnyView view;
        const char* json;
    } rows[] = {
        {"to a view", Circle{}, R"({"view":"Circle","frame":[90,0,158,158]})"},
        {"to a modified view and its content", framed(10, 20),
         R"({"modifier":"frame","width":10,"height":20,"alignment":"center",)"
         R"("content":{"view":"Rectangle","frame":[164,69,10,20]},"frame":[164,69,10,20]})"},
        {"to children, null for what is no view", HStack{.children = {EmptyView{}, Rectangle{}}},
         R"({"view":"HStack","alignment":"center","spacing":null,"children":[{"view":"EmptyView","frame":null},)"
         R"({"view":"Rectangle","frame":[0,0,338,158]}],"frame":[0,0,338,158]})"},
        {"to second views, before the content", Background{.background = Circle{}, .content = Rectangle{}},
         R"({"modifier":"background","alignment":"center","background":{"view":"Circle","frame":[90,0,158,158]},)"
         R"("content":{"view":"Rectangle","frame":[0,0,338,158]},"frame":[0,0,338,158]})"},
        {"not to shapes and colours that are values", FilledShape{.shape = Capsule{}, .fill = Color::blue},
         R"({"view":"FilledShape","shape":{"view":"Capsule","style":"circular"},)"
         R"("fill":{"view":"Color","name":"blue"},"frame":[0,0,338,158]})"},
        {"not to what a composed view unfolds into", ZStack{.children = {Badge{}, Rectangle{}}},
         R"({"view":"ZStack","alignment":"center","children":[{"view":"Badge","frame":[164,74,10,10]},)"
         R"({"view":"Rectangle","frame":[0,0,338,158]}],"frame":[0,0,338,158]})"},
        {"to what a composed view names as its part, where that lies",
         ZStack{.children = {framed(40, 40, Plate{framed(10, 10, Circle{})}), Circle{}}},
         R"({"view":"ZStack","alignment":"center","children":[{"modifier":"frame","width":40,"height":40,)"
         R"("alignment":"center","content":{"view":"Plate","part":{"modifier":"frame","width":10,"height":10,)"
         R"("alignment":"center","content":{"view":"Circle","frame":[159,69,10,10]},"frame":[159,69,10,10]},)"
         R"("color":{"view":"Color","name":"blue"},"frame":[149,59,40,40]},"frame":[149,59,40,40]},)"
         R"({"view":"Circle","frame":[90,0,158,158]}],"frame":[90,0,158,158]})"},
        {"to parts of parts", framed(40, 40, Plate{AnyView(Plate{Circle{}})}),
         R"({"modifier":"frame","width":40,"height":40,"alignment":"center","content":{"view":"Plate",)"
         R"("part":{"view":"Plate","part":{"view":"Circle","frame":[149,59,40,40]},)"
         R"("color":{"view":"Color","name":"blue"},"frame":[149,59,40,40]},)"
         R"("color":{"view":"Color","name":"blue"},"frame":[149,59,40,40]},"frame":[149,59,40,40]})"},
        {"null to a part of what is no view", Background{.background = Plate{Circle{}}, .content = EmptyView{}},
         R"({"modifier":"background","alignment":"center","background":{"view":"Plate",)"
         R"("part":{"view":"Circle","frame":null},"color":{"view":"Color","name":"blue"},"frame":null},)"
         R"("content":{"view":"EmptyView","frame":null},"frame":null})"},
        {"before effects", Offset{.x = 50, .content = RotationEffect{.angle = 1, .content = framed(10, 20)}},
         R"({"modifier":"offset","x":50,"y":0,"content":{"modifier":"rotationEffect","angle":1,"anchor":[0.5,0.5],)"
         R"("content":{"modifier":"frame","width":10,"height":20,"alignment":"center",)"
         R"("content":{"view":"Rectangle","frame":[164,69,10,20]},"frame":[164,69,10,20]},)"
         R"("frame":[164,69,10,20]},"frame":[164,69,10,20]})"},
        {"infinite ones as words",
         FlexibleFrame{.minWidth = std::numeric_limits<double>::infinity(), .content = Rectangle{}},
         R"({"modifier":"flexFrame","minWidth":"infinity","maxWidth":null,"minHeight":null,"maxHeight":null,)"
         R"("alignment":"center","content":{"view":"Rectangle","frame":[0,0,"infinity",158]},)"
         R"("frame":[0,0,"infinity",158]})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(printed(row.view), row.json);
    }
}

TEST(LayoutPrinter, TellsTheViewsThatItShows) {
    const struct {
        const char* why;
        AnyView view;
        const char* names;
    } rows[] = {
        {"parts in their place", HStack{.children = {Plate{Circle{}}, Rectangle{}}}, "HStack Plate Circle Rectangle "},
        {"none for a part that is not there", Background{.background = Plate{Circle{}}, .content = EmptyView{}},
         "background Plate - EmptyView "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const LayoutTree tree = laidOut(row.view);
        std::vector<const AnyView*> shown;
        EXPECT_EQ(tracedLayoutText(tree, shown), layoutTreeText(tree));
        std::string names;
        for (const AnyView* const view : shown) names += std::string(view ? view->box().name() : "-") + " ";
        EXPECT_EQ(names, row.names);
    }
}

}  // namespace
}  // namespace tavrin::layout
