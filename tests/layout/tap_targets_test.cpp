// SPDX-License-Identifier: MIT
#include "tavrin/platform/layout/tap_targets.h"

#include <numbers>

#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

using Kind = TapTarget::Kind;

URL url(std::string_view text) { return URL::parse(text).value(); }

AnyView link(std::string_view destination, AnyView label) {
    return Link{.destination = url(destination), .label = std::move(label)};
}

struct Target {
    Kind kind;
    const char* destination;
    Frame frame;
};

TEST(TapTargets, AreWhereTheirViewsAreSeen) {
    const AnyView box = link("a:b", framed(40, 20));  // at 149, 69 in the middle of the widget
    const struct {
        const char* why;
        AnyView view;
        std::vector<Target> targets;
    } rows[] = {
        {"none", Rectangle{}, {}},
        {"a link", box, {{Kind::link, "a:b", {149, 69, 40, 20}}}},
        {"a view that is marked",
         WidgetURL{.url = url("a:c"), .content = framed(40, 20)},
         {{Kind::widgetURL, "a:c", {149, 69, 40, 20}}}},
        {"not one without an address", WidgetURL{.content = box}, {{Kind::link, "a:b", {149, 69, 40, 20}}}},
        {"moved", Offset{.x = 10, .y = -5, .content = box}, {{Kind::link, "a:b", {159, 64, 40, 20}}}},
        {"turned",
         RotationEffect{.angle = std::numbers::pi / 2, .content = box},
         {{Kind::link, "a:b", {159, 59, 20, 40}}}},
        {"turned and then larger",
         ScaleEffect{.x = 2, .content = RotationEffect{.angle = std::numbers::pi / 2, .content = box}},
         {{Kind::link, "a:b", {149, 59, 40, 40}}}},
        {"partly out of the widget", Offset{.x = 160, .content = box}, {{Kind::link, "a:b", {309, 69, 29, 20}}}},
        {"not one that is outside", Offset{.x = 400, .content = box}, {}},
        {"clipped", Clipped{.content = framed(20, 10, box)}, {{Kind::link, "a:b", {159, 74, 20, 10}}}},
        {"by a shape's bounds",
         ClipShape{.shape = Circle{}, .content = framed(20, 10, box)},
         {{Kind::link, "a:b", {159, 74, 20, 10}}}},
        {"not one that is clipped away", Clipped{.content = framed(20, 10, Offset{.x = 50, .content = box})}, {}},
        {"moved out and clipped around",
         Offset{.x = 50, .content = Clipped{.content = framed(20, 10, box)}},
         {{Kind::link, "a:b", {209, 74, 20, 10}}}},
        {"faded", Opacity{.value = 0.1, .content = box}, {{Kind::link, "a:b", {149, 69, 40, 20}}}},
        {"not one that is not drawn", Opacity{.value = 0, .content = box}, {}},
        {"nor one without size", ScaleEffect{.x = 0, .content = box}, {}},
        {"nor one that is no view", link("a:b", EmptyView{}), {}},
        {"a link in a link is in front",
         link("a:outer", FlexibleFrame{.maxWidth = 400, .content = box}),
         {{Kind::link, "a:outer", {0, 69, 338, 20}}, {Kind::link, "a:b", {149, 69, 40, 20}}}},
        {"what is drawn last comes last",
         ZStack{.children = {ZIndex{.value = 1, .content = link("a:1", framed(2, 2))}, link("a:2", framed(2, 2))}},
         {{Kind::link, "a:2", {168, 78, 2, 2}}, {Kind::link, "a:1", {168, 78, 2, 2}}}},
        {"second views behind",
         Background{.background = link("a:1", Rectangle{}), .content = box},
         {{Kind::link, "a:1", {149, 69, 40, 20}}, {Kind::link, "a:b", {149, 69, 40, 20}}}},
        {"and in front",
         Overlay{.overlay = link("a:1", Rectangle{}), .content = box},
         {{Kind::link, "a:b", {149, 69, 40, 20}}, {Kind::link, "a:1", {149, 69, 40, 20}}}},
        {"in a reader",
         GeometryReader{[box](const GeometryProxy&) { return box; }},
         {{Kind::link, "a:b", {0, 0, 40, 20}}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::vector<TapTarget> targets = tapTargets(laidOut(row.view));
        ASSERT_EQ(targets.size(), row.targets.size());
        for (std::size_t i = 0; i < targets.size(); ++i) {
            const auto& [kind, destination, frame] = row.targets[i];
            EXPECT_EQ(targets[i].kind, kind);
            EXPECT_EQ(targets[i].destination.string(), destination);
            EXPECT_NEAR(targets[i].frame.origin.x, frame.x, 1e-9);
            EXPECT_NEAR(targets[i].frame.origin.y, frame.y, 1e-9);
            EXPECT_NEAR(targets[i].frame.size.width, frame.width, 1e-9);
            EXPECT_NEAR(targets[i].frame.size.height, frame.height, 1e-9);
        }
    }
}

}  // namespace
}  // namespace tavrin::layout
