// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include "tests/documents/drawn.h"

// Numbers that no one should write, in every modifier and shape: a sensible picture, soon, and never a crash.

namespace tavrin {
namespace {

constexpr const char* numbers[] = {"0",   "-0.0", "-1",   "-1e30", "0.001",   "1e-30",    "1e6",
                                   "2e9", "1e30", "3e38", "1e300", "\"inf\"", "\"-inf\"", "\"nan\""};

bool isBlank(const PixelBuffer& picture) {
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (picture.row(y)[x] != white) return false;
    return true;
}

std::string with(std::string text, std::string_view number) {
    for (std::size_t found; (found = text.find('$')) != std::string::npos;) text.replace(found, 1, number);
    return text;
}

const std::string smallFrame = R"({"type": "frame", "width": 40, "height": 30})";

/// Nodes and modifiers with a number left open.
const std::string open[] = {
    node("roundedRectangle", R"("cornerRadius": $)", smallFrame),
    node("roundedRectangle", R"("cornerRadius": $, "style": "continuous", "fillColor": {"value": "#FF0000"})",
         smallFrame),
    node("roundedRectangle", R"("cornerRadius": $, "stroke": true, "lineWidth": $)", smallFrame),
    node("roundedRectangle", R"("cornerRadius": 8, "stroke": true, "lineWidth": $)", smallFrame),
    node("circle", R"("stroke": true, "lineWidth": $)", smallFrame),
    node("rectangle", R"("stroke": true, "lineWidth": $)", smallFrame),
    node("capsule", R"("style": "continuous", "stroke": true, "lineWidth": $)", smallFrame),
    color("#FF0000", smallFrame + R"(, {"type": "cornerRadius", "radius": $})"),
    color("#FF0000", smallFrame + R"(, {"type": "opacity", "opacity": $})"),
    color("#FF0000",
          smallFrame + R"(, {"type": "border", "color": "#0000FF", "colorNode": {"value": ""}, "width": $})"),
    color(
        "#FF0000",
        smallFrame +
            R"(, {"type": "clipShape", "view": {"type": "roundedRectangle", "cornerRadius": $, "style": "continuous"}})"),
    color("#FF0000", R"({"type": "frame", "width": $, "height": $}, {"type": "clipped"})"),
    color(
        "#FF0000",
        R"({"type": "frame", "width": $, "height": 10}, {"type": "clipShape", "view": {"type": "circle"}}, {"type": "opacity", "opacity": 0.5})"),
    color(
        "#FF0000",
        R"({"type": "padding", "length": $}, {"type": "clipShape", "view": {"type": "capsule"}}, {"type": "border", "color": "#0000FF", "colorNode": {"value": ""}, "width": $})"),
    color("#FF0000",
          smallFrame +
              R"(, {"type": "offset", "x": $, "y": $}, {"type": "clipped"}, {"type": "cornerRadius", "radius": $})"),
    color("#FF0000", smallFrame + R"(, {"type": "zIndex", "zIndex": $})"),
    node("color", R"("gradient": true, "start": "topLeading", "end": "bottomTrailing", "value": "#FF0000-#0000FF")",
         R"({"type": "frame", "width": $, "height": $}, {"type": "cornerRadius", "radius": 3})"),
    node(
        "color", R"("gradient": true, "start": "leading", "end": "trailing", "value": "#FF0000-#0000FF")",
        R"({"type": "frame", "width": $, "height": 20}, {"type": "offset", "x": $, "y": 1}, {"type": "opacity", "opacity": $})"),
    node("text", R"("content": "Rain 🌈", "fontSize": $)",
         R"({"type": "opacity", "opacity": 0.5}, {"type": "cornerRadius", "radius": $})"),
    node(
        "zstack",
        "\"children\": [" + color("#FF0000", smallFrame) + ", " +
            color("#0000FF", R"({"type": "frame", "width": $, "height": 9})") + "]",
        R"({"type": "opacity", "opacity": 0.5}, {"type": "clipped"}, {"type": "background", "view": {"type": "circle"}})"),
};

TEST(HostilePictures, AreDrawnSoon) {
    for (const std::string& main : open)
        for (const char* number : numbers)
            for (const double scale : {1.0, 3.0}) {
                SCOPED_TRACE(main + " with " + number);
                EXPECT_EQ(drawn(with(main, number), {{100, 60}, scale}).height(), 60 * scale);
            }
}

TEST(HostilePictures, AreWrittenAsDocumentsToo) {
    for (const std::string& main : open)
        for (const char* number : numbers)
            for (const PictureFormat format : {PictureFormat::svg, PictureFormat::pdf}) {
                SCOPED_TRACE(main + " with " + number);
                Context context;
                RenderOptions options;
                options.size = {100, 60};
                const AnyView view = TavrinEngine().loadView(
                    R"({"version": "1.2", "nodes": {"main": )" + with(main, number) + "}}", std::nullopt, context);
                EXPECT_NO_THROW((void)ImageRenderer(view, options).encode(format));
            }
}

TEST(HostilePictures, AreSensible) {
    const auto shape = [](const char* members) { return node("roundedRectangle", members, smallFrame); };
    const std::string plain = node("rectangle", "", smallFrame);
    const std::string capsule = node("capsule", "", smallFrame);
    const std::string solid = color("#FF0000", smallFrame);
    const auto modified = [](const char* modifier) { return color("#FF0000", smallFrame + "," + modifier); };
    const auto stroked = [](const char* width) {
        return node("circle",
                    R"("stroke": true, "strokeColor": {"value": "#FF0000"}, "lineWidth": )" + std::string(width),
                    smallFrame);
    };
    const auto bordered = [](const char* width) {
        return color("#FFFFFF",
                     smallFrame + R"(, {"type": "border", "color": "", "colorNode": {"value": "#FF0000"}, "width": )" +
                         width + "}");
    };
    const std::string nothing = color("#00000000");
    const struct {
        const char* why;
        std::string main;
        std::string same;
    } rows[] = {
        {"no radius", shape(R"("cornerRadius": 0)"), plain},
        {"a negative radius", shape(R"("cornerRadius": -7)"), plain},
        {"an infinite negative one", shape(R"("cornerRadius": "-inf")"), plain},
        {"a radius that is no number", shape(R"("cornerRadius": "nan")"), plain},
        {"a radius larger than the shape", shape(R"("cornerRadius": 1e30)"), capsule},
        {"an infinite one", shape(R"("cornerRadius": "inf")"), capsule},
        {"a negative corner", modified(R"({"type": "cornerRadius", "radius": -5})"), solid},
        {"a corner that is no number", modified(R"({"type": "cornerRadius", "radius": "nan"})"), solid},
        {"an infinite corner", modified(R"({"type": "cornerRadius", "radius": "inf"})"),
         modified(R"({"type": "clipShape", "view": {"type": "capsule"}})")},
        {"a negative opacity", modified(R"({"type": "opacity", "opacity": -1})"), nothing},
        {"an opacity that is no number", modified(R"({"type": "opacity", "opacity": "nan"})"), nothing},
        {"an infinite opacity", modified(R"({"type": "opacity", "opacity": "inf"})"), solid},
        {"a stroke without width", stroked("0"), nothing},
        {"of a negative one", stroked("-4"), nothing},
        {"of an infinite one", stroked("\"inf\""), nothing},
        {"of one that is no number", stroked("\"nan\""), nothing},
        {"a stroke as wide as the page", stroked("1e6"), color("#FF0000")},
        {"no border", bordered("0"), color("#FFFFFF", smallFrame)},
        {"a negative border", bordered("-3"), color("#FFFFFF", smallFrame)},
        {"a border that is no number", bordered("\"nan\""), color("#FFFFFF", smallFrame)},
        {"a border wider than its view", bordered("1e9"), solid},
        {"an infinite one", bordered("\"inf\""), solid},
        {"a gradient on a line",
         node("color", R"("gradient": true, "start": "top", "end": "bottom", "value": "#FF0000-#0000FF")",
              frame(0, 30)),
         nothing},
        {"a clip of no size", color("#FF0000", frame(20, 20) + "," + frame(0, 0) + R"(, {"type": "clipped"})"),
         nothing},
        {"a circle of no size as a clip",
         color("#FF0000",
               frame(20, 20) + "," + frame(10, 0) + R"(, {"type": "clipShape", "view": {"type": "circle"}})"),
         nothing},
        {"and as corners",
         color("#FF0000", frame(20, 20) + "," + frame(0, 10) + R"(, {"type": "cornerRadius", "radius": 4})"), nothing},
        {"an offset that is no number", modified(R"({"type": "offset", "x": "nan", "y": 0})"), nothing},
        {"a far one", modified(R"({"type": "offset", "x": 1e30, "y": 0})"), nothing},
    };
    for (const auto& row : rows)
        for (const double scale : {1.0, 3.0}) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            EXPECT_LE(distance(drawn(row.main, {{100, 60}, scale}), drawn(row.same, {{100, 60}, scale})), 1);
        }
    EXPECT_TRUE(isBlank(drawn(nothing)));
    EXPECT_FALSE(isBlank(drawn(solid)));
}

TEST(HostilePictures, HaveStrokesWiderThanTheirShape) {
    // The hole of a ring closes when the stroke is as wide as the circle; nothing is left open in the middle.
    const PixelBuffer disc =
        drawn(node("circle", R"("stroke": true, "strokeColor": {"value": "#FF0000"}, "lineWidth": 40)", frame(20, 20)),
              {{100, 80}, 3});
    for (const double x : {50.0, 42.0, 25.0, 21.0}) EXPECT_EQ(disc.row(120)[static_cast<int>(x * 3)], red) << x;
    EXPECT_EQ(disc.row(120)[3 * 18], white);
    const PixelBuffer slab = drawn(
        node("rectangle", R"("stroke": true, "strokeColor": {"value": "#FF0000"}, "lineWidth": 30)", frame(20, 10)),
        {{100, 80}, 3});
    for (const double x : {50.0, 42.0, 26.0}) EXPECT_EQ(slab.row(120)[static_cast<int>(x * 3)], red) << x;
    EXPECT_EQ(slab.row(120)[3 * 24], white);
}

/// A node with its modifiers nested by the same few, over and over.
std::string nested(std::string_view child, std::string_view modifiers, int times) {
    std::string list(modifiers);
    for (int i = 1; i < times; ++i) list += ", " + std::string(modifiers);
    return node("zstack", "\"children\": [" + std::string(child) + "]", list);
}

TEST(HostilePictures, MayNestAThousandModifiers) {
    const std::string two = color("#FF0000", frame(60, 40)) + "," + color("#FF0000", frame(40, 60));
    const struct {
        const char* why;
        const char* modifiers;
        std::uint32_t middle;
    } rows[] = {
        {"opacities", R"({"type": "opacity", "opacity": 0.999})", 0xFFFFA2A2},
        {"opacities of one", R"({"type": "opacity", "opacity": 1})", red},
        {"opacities of nothing", R"({"type": "opacity", "opacity": 0})", white},
        {"clips", R"({"type": "clipped"})", red},
        {"corners", R"({"type": "cornerRadius", "radius": 9})", red},
        {"circles", R"({"type": "clipShape", "view": {"type": "circle"}})", red},
        {"circles and opacities",
         R"({"type": "opacity", "opacity": 0.9999}, {"type": "clipShape", "view": {"type": "circle"}})", 0xFFFF1818},
        {"backgrounds", R"({"type": "background", "view": {"type": "circle"}})", red},
        {"faded backgrounds",
         R"({"type": "background", "view": {"type": "circle"}}, {"type": "opacity", "opacity": 1})", red},
        {"borders", R"({"type": "border", "color": "#FF0000", "colorNode": {"value": ""}, "width": 1})", red},
        {"foregrounds", R"({"type": "foregroundColor", "color": {"value": "#0000FF"}})", red},
    };
    for (const auto& row : rows)
        for (const double scale : {1.0, 3.0}) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            const Page page{{100, 60}, scale};
            const PixelBuffer picture = drawn(nested(two, row.modifiers, 1000), page);
            EXPECT_LE(distance(at(picture, page, 50, 30), row.middle), 6) << std::hex << at(picture, page, 50, 30);
        }
}

TEST(HostilePictures, MayNestFadedStacks) {
    // Layers within layers, each with something of its own beside them.
    std::string main = color("#000000", frame(60, 40));
    for (int i = 0; i < 200; ++i)
        main = node("zstack", "\"children\": [" + color("#000000", frame(50, 40)) + "," + main + "]",
                    R"({"type": "opacity", "opacity": 0.9})");
    const Page page{{100, 60}, 3};
    const PixelBuffer picture = drawn(main, page);
    EXPECT_NE(at(picture, page, 50, 30), white);
    EXPECT_EQ(at(picture, page, 5, 5), white);
}

}  // namespace
}  // namespace tavrin
