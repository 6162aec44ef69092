// SPDX-License-Identifier: MIT
#include <map>
#include <set>

#include <gtest/gtest.h>

#include "tests/documents/drawn.h"

// Colours, shapes and appearance modifiers in documents, by sampled pixels.

namespace tavrin {
namespace {

/// Red at half opacity over white.
constexpr std::uint32_t pink = 0xFFFF7F7F;

std::string stack(std::string_view type, std::string_view children, std::string_view modifiers = {}) {
    return node(type, "\"spacing\": 0, \"children\": [" + std::string(children) + "]", modifiers);
}

std::string foreground(std::string_view value) {
    return R"({"type": "foregroundColor", "color": {"value": ")" + std::string(value) + "\"}}";
}

std::string repeated(const std::string& child, int count) {
    std::string list = child;
    for (int i = 1; i < count; ++i) list += ", " + child;
    return list;
}

std::set<std::uint32_t> pixelsOf(const PixelBuffer& picture) {
    std::set<std::uint32_t> found;
    for (int y = 0; y < picture.height(); ++y) found.insert(picture.row(y), picture.row(y) + picture.width());
    return found;
}

TEST(AppearancePictures, AbuttingViewsNeitherGapNorOverlap) {
    const struct {
        const char* why;
        std::string child;
    } rows[] = {
        {"colours", color("#50FF0000")},
        {"filled rectangles", node("rectangle", R"("fillColor": {"value": "#50FF0000"})")},
        {"bare rectangles", node("rectangle", "", foreground("#50FF0000"))},
        {"rectangles without corners",
         node("roundedRectangle", R"("cornerRadius": 0, "fillColor": {"value": "#50FF0000"})")},
        {"gradients",
         node("color",
              R"("gradient": true, "start": "topLeading", "end": "bottomTrailing", "value": "#50FF0000-#50FF0000")")},
        {"clipped", color("#50FF0000", R"({"type": "clipped"}, {"type": "cornerRadius", "radius": 0})")},
        {"faded", color("#FF0000", R"({"type": "opacity", "opacity": 0.5})")},
        {"faded in a layer",
         stack("zstack", color("#00FF00") + "," + color("#FF0000"), R"({"type": "opacity", "opacity": 0.5})")},
        {"a background", color("#00000000", R"({"type": "background", "view": )" + color("#50FF0000") + "}")},
        {"a thick border",
         color("#00000000", R"({"type": "border", "color": "#50FF0000", "colorNode": {"value": ""}, "width": 90})")},
    };
    for (const auto& row : rows) {
        for (const double scale : scales) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            for (const int count : {7, 13, 31}) {
                const std::string strip = stack("hstack", repeated(row.child, count));
                const PixelBuffer picture = drawn(stack("vstack", repeated(strip, 7)), {{100, 60}, scale});
                const std::set<std::uint32_t> found = pixelsOf(picture);
                ASSERT_EQ(found.size(), 1U) << count;
                EXPECT_LE(distance(*found.begin(), pink), 1);
            }
        }
    }
}

TEST(AppearancePictures, NeighboursHaveEachTheirOwnPixels) {
    for (const double scale : scales) {
        SCOPED_TRACE(scale);
        const PixelBuffer picture = drawn(
            stack("hstack", color("#FF0000") + "," + color("#00FF00") + "," + color("#0000FF")), {{100, 10}, scale});
        EXPECT_EQ(pixelsOf(picture), (std::set{red, green, blue}));
        std::map<std::uint32_t, int> widths;
        for (int x = 0; x < picture.width(); ++x) ++widths[picture.row(0)[x]];
        for (const auto& [pixel, width] : widths) EXPECT_NEAR(width, picture.width() / 3.0, 1);
    }
}

TEST(AppearancePictures, OpacityHasNoSeams) {
    const std::string square = color("#FF0000", frame(40, 40));
    const std::string moved = color("#FF0000", frame(40, 40) + "," + offset(20, 10));
    const struct {
        const char* why;
        std::string main;
    } rows[] = {
        {"children of a stack", stack("zstack", square + "," + moved, opacity(0.5))},
        {"a background", node("color", R"("value": "#FF0000")",
                              frame(40, 40) + R"(, {"type": "background", "view": )" + moved + "}," + opacity(0.5))},
        {"an overlay", node("color", R"("value": "#FF0000")",
                            frame(40, 40) + R"(, {"type": "overlay", "view": )" + moved + "}," + opacity(0.5))},
        {"a border",
         color("#FF0000", frame(40, 40) +
                              R"(, {"type": "border", "color": "#FF0000", "colorNode": {"value": ""}, "width": 6},)" +
                              opacity(0.5))},
        {"within a clip", stack("zstack", square + "," + moved,
                                R"({"type": "clipped"}, {"type": "padding", "length": 2},)" + opacity(0.5))},
        {"around a clip", stack("zstack", square + "," + moved,
                                opacity(0.5) + R"(, {"type": "clipped"}, {"type": "cornerRadius", "radius": 9})")},
    };
    for (const auto& row : rows) {
        for (const double scale : scales) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            const Page page{{100, 60}, scale};
            const PixelBuffer picture = drawn(row.main, page);
            for (const double x : {35.0, 52.0, 66.0}) EXPECT_LE(distance(at(picture, page, x, 32), pink), 1) << x;
            EXPECT_LE(pixelsOf(picture).size(), row.why == std::string_view("around a clip") ? 200U : 2U);
            EXPECT_EQ(at(picture, page, 5, 5), white);
        }
    }
}

TEST(AppearancePictures, OpacityOfOnePrimitiveIsItsAlpha) {
    const struct {
        const char* why;
        std::string faded;
        std::string translucent;
    } rows[] = {
        {"a colour", color("#FF0000", opacity(0.5)), color("#50FF0000")},
        {"a filled circle", node("circle", R"("fillColor": {"value": "#FF0000"})", opacity(0.5)),
         node("circle", R"("fillColor": {"value": "#50FF0000"})")},
        {"a stroke",
         node("capsule", R"("stroke": true, "lineWidth": 3, "strokeColor": {"value": "#FF0000"})", opacity(0.5)),
         node("capsule", R"("stroke": true, "lineWidth": 3, "strokeColor": {"value": "#50FF0000"})")},
        {"a bare shape", node("circle", "", opacity(0.5) + "," + foreground("#FF0000")),
         node("circle", "", foreground("#50FF0000"))},
        {"a gradient",
         node("color", R"("gradient": true, "start": "top", "end": "trailing", "value": "#FF0000-#0000FF")",
              opacity(0.5)),
         node("color", R"("gradient": true, "start": "top", "end": "trailing", "value": "#50FF0000-#500000FF")")},
        {"a text", node("text", R"("content": "Rain")", opacity(0.5) + "," + foreground("#FF0000")),
         node("text", R"("content": "Rain")", foreground("#50FF0000"))},
        {"twice", color("#FF0000", opacity(0.5) + "," + opacity(0.5)), color("#25FF0000")},
        {"more than one is one", color("#50FF0000", opacity(7)), color("#50FF0000")},
        {"none", color("#FF0000", opacity(0)), color("#00FF0000")},
        {"less than none", color("#FF0000", opacity(-1)), color("#00FF0000")},
        {"in a cut", color("#FF0000", R"({"type": "cornerRadius", "radius": 12},)" + opacity(0.5)),
         color("#50FF0000", R"({"type": "cornerRadius", "radius": 12})")},
        {"a text that overlaps itself",
         node("text", R"("content": "fffjjfV.AVA", "fontSize": 40)", opacity(0.5) + "," + foreground("#FF0000")),
         node("text", R"("content": "fffjjfV.AVA", "fontSize": 40)", foreground("#50FF0000"))},
    };
    for (const auto& row : rows) {
        for (const double scale : scales) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            EXPECT_LE(distance(drawn(row.faded, {{100, 60}, scale}), drawn(row.translucent, {{100, 60}, scale})), 1);
        }
    }
}

TEST(AppearancePictures, EmojiFadeLikeAnythingElse) {
    const auto emoji = [](double value) {
        return drawn(node("text", R"("content": "🌈🍎", "fontSize": 30)", opacity(value)), {{100, 60}, 2});
    };
    const PixelBuffer whole = emoji(1);
    const PixelBuffer half = emoji(0.5);
    int coloured = 0;
    for (int y = 0; y < whole.height(); ++y)
        for (int x = 0; x < whole.width(); ++x) {
            coloured += whole.row(y)[x] != white;
            for (const unsigned shift : {0U, 8U, 16U})
                ASSERT_NEAR(channel(half.row(y)[x], shift), (channel(whole.row(y)[x], shift) + 255) / 2.0, 2)
                    << x << ", " << y;
        }
    EXPECT_GT(coloured, 3000);
}

TEST(AppearancePictures, ColoursFollowTheAppearance) {
    const char* const both = R"({"value": "#FF0000", "dark": "#0000FF"})";
    const struct {
        const char* why;
        std::string main;
    } rows[] = {
        {"a colour", node("color", R"("value": "#FF0000", "dark": "#0000FF")")},
        {"a fill", node("rectangle", R"("fillColor": )" + std::string(both))},
        {"a foreground", node("rectangle", "", R"({"type": "foregroundColor", "color": )" + std::string(both) + "}")},
        {"a border",
         node("spacer", "", R"({"type": "border", "width": 99, "color": "", "colorNode": )" + std::string(both) + "}")},
        {"a stroke", node("rectangle", R"("stroke": true, "lineWidth": 90, "strokeColor": )" + std::string(both))},
        {"a background",
         node("spacer", "",
              R"({"type": "background", "view": {"type": "color", "value": "#FF0000", "dark": "#0000FF"}})")},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto in = [&](Appearance appearance) { return drawn(row.main, {{100, 60}, 1, appearance}); };
        EXPECT_EQ(in(Appearance::light).row(30)[50], red);
        EXPECT_EQ(in(Appearance::dark).row(30)[50], blue);
    }
    EXPECT_EQ(drawn(node("rectangle")).row(30)[50], black);
    EXPECT_EQ(drawn(node("rectangle"), {{100, 60}, 1, Appearance::dark}).row(30)[50], white)
        << "the foreground is white in the dark";
}

TEST(AppearancePictures, ContinuousCornersAreNotCircular) {
    const auto rounded = [](const char* style) {
        return drawn(node("roundedRectangle", R"("cornerRadius": 40, "style": ")" + std::string(style) + "\""),
                     {{200, 200}, 3});
    };
    const PixelBuffer circular = rounded("circular");
    const PixelBuffer continuous = rounded("continuous");
    // From the corner along the edge, in pixels of which the radius has 120: at 160 the circular edge is straight, the
    // continuous one is just leaving; at 122 it lies most of a pixel lower.
    EXPECT_EQ(circular.row(0)[190], black);
    EXPECT_EQ(continuous.row(0)[190], black);
    EXPECT_EQ(circular.row(0)[125], black);
    EXPECT_GT(channel(continuous.row(0)[125], 0), 128);
    EXPECT_EQ(continuous.row(1)[130], black);
    // On the diagonal both lie within a pixel: 120 (1 - 1/sqrt 2) is 35.1.
    for (const PixelBuffer* picture : {&circular, &continuous}) {
        EXPECT_EQ(picture->row(33)[33], white);
        EXPECT_EQ(picture->row(37)[37], black);
    }
    // The continuous curve has a short straight piece on one side of the diagonal only.
    constexpr int ofCircle = 20;
    constexpr int ofCurve = 64;
    int differing = 0;
    for (int y = 0; y < 300; ++y)
        for (int x = 0; x < 300; ++x) {
            differing += distance(circular.row(y)[x], continuous.row(y)[x]) > 32;
            for (const PixelBuffer* picture : {&circular, &continuous}) {
                const int most = picture == &circular ? ofCircle : ofCurve;
                ASSERT_LE(distance(picture->row(y)[x], picture->row(x)[y]), most) << "on both sides of the diagonal";
                ASSERT_LE(distance(picture->row(y)[x], picture->row(y)[599 - x]), most) << "left and right";
                ASSERT_LE(distance(picture->row(y)[x], picture->row(599 - y)[x]), most) << "above and below";
            }
        }
    EXPECT_GT(differing, 50);
    EXPECT_LT(differing, 500);
}

TEST(AppearancePictures, ClippedIsHardAndShapesAreSoft) {
    const std::string wide = color("#FF0000", frame(80, 80));
    const auto cut = [&](const char* modifier) { return stack("zstack", wide, frame(33.3, 31.7) + "," + modifier); };
    for (const double scale : scales) {
        SCOPED_TRACE(scale);
        const Page page{{100, 60}, scale};
        const PixelBuffer hard = drawn(cut(R"({"type": "clipped"})"), page);
        EXPECT_EQ(pixelsOf(hard), (std::set{red, white}));
        int inside = 0;
        for (int y = 0; y < hard.height(); ++y)
            for (int x = 0; x < hard.width(); ++x) inside += hard.row(y)[x] == red;
        EXPECT_NEAR(inside, 33.3 * 31.7 * scale * scale, 66 * scale) << "all of the bounds";
        for (
            const char* shape :
            {R"({"type": "clipShape", "view": {"type": "circle"}})", R"({"type": "cornerRadius", "radius": 12})",
             R"({"type": "clipShape", "view": {"type": "roundedRectangle", "cornerRadius": 9, "style": "continuous"}})",
             R"({"type": "clipShape", "view": {"type": "capsule"}})"}) {
            SCOPED_TRACE(shape);
            const PixelBuffer soft = drawn(cut(shape), page);
            EXPECT_GT(pixelsOf(soft).size(), 5U) << "mixed pixels along the edge";
            EXPECT_EQ(at(soft, page, 50, 30), red);
            EXPECT_EQ(at(soft, page, 34.5, 15.5), white) << "the corner is cut";
            EXPECT_EQ(at(soft, page, 30, 30), white) << "beside the frame";
        }
    }
}

TEST(AppearancePictures, BordersLieWithinTheBounds) {
    const std::string main =
        color("#FF0000",
              frame(40, 30) + R"(, {"type": "border", "color": "", "colorNode": {"value": "#0000FF"}, "width": 2})");
    for (const double scale : scales) {
        SCOPED_TRACE(scale);
        const Page page{{100, 60}, scale};
        const PixelBuffer picture = drawn(main, page);
        EXPECT_EQ(pixelsOf(picture), (std::set{red, blue, white}));
        const double pixel = 1 / scale;
        for (const double y : {15.0, 30.0, 44.9}) {
            EXPECT_EQ(at(picture, page, 30 - pixel, y), white);
            EXPECT_EQ(at(picture, page, 30 + pixel / 2, y), blue);
            EXPECT_EQ(at(picture, page, 70 - pixel, y), blue);
            EXPECT_EQ(at(picture, page, 70 + pixel, y), white);
        }
        EXPECT_EQ(at(picture, page, 31.5, 30), blue);
        EXPECT_EQ(at(picture, page, 32.5, 30), red);
        EXPECT_EQ(at(picture, page, 50, 16.4), blue);
        EXPECT_EQ(at(picture, page, 50, 17.6), red);
    }
}

TEST(AppearancePictures, StrokesAreCentredOnTheOutline) {
    const std::string main =
        node("rectangle", R"("stroke": true, "lineWidth": 4, "strokeColor": {"value": "#FF0000"})", frame(40, 30));
    for (const double scale : {1.0, 2.0, 3.0}) {
        SCOPED_TRACE(scale);
        const Page page{{100, 60}, scale};
        const PixelBuffer picture = drawn(main, page);
        EXPECT_EQ(pixelsOf(picture), (std::set{red, white}));
        const double pixel = 1 / scale;
        EXPECT_EQ(at(picture, page, 28 - pixel, 30), white);
        EXPECT_EQ(at(picture, page, 28, 30), red) << "half of it outside";
        EXPECT_EQ(at(picture, page, 32 - pixel, 30), red) << "half of it inside";
        EXPECT_EQ(at(picture, page, 32, 30), white);
        EXPECT_EQ(at(picture, page, 28, 13), red) << "with sharp corners";
    }
    // A circle's stroke: its outer edge 17 points from the centre, its inner one 13.
    const Page page{{100, 60}, 3};
    const PixelBuffer ring = drawn(
        node("circle", R"("stroke": true, "lineWidth": 4, "strokeColor": {"value": "#FF0000"})", frame(30, 30)), page);
    for (const auto& [distance, pixel] : {std::pair{12.6, white}, {13.4, red}, {16.6, red}, {17.4, white}}) {
        EXPECT_EQ(at(ring, page, 50 + distance, 30), pixel) << distance;
        EXPECT_EQ(at(ring, page, 50, 30 - distance), pixel) << distance;
        EXPECT_EQ(at(ring, page, 50 - 0.6 * distance, 30 + 0.8 * distance), pixel) << distance;
    }
}

TEST(AppearancePictures, TheHighestIndexLiesInFront) {
    const auto index = [](const char* value) { return R"({"type": "zIndex", "zIndex": )" + std::string(value) + "}"; };
    const struct {
        const char* why;
        std::string children;
        std::uint32_t front;
    } rows[] = {
        {"the last of equals", color("#FF0000") + "," + color("#00FF00"), green},
        {"the highest", color("#FF0000", index("2")) + "," + color("#00FF00", index("1")) + "," + color("#0000FF"),
         red},
        {"unset is nought", color("#FF0000") + "," + color("#00FF00", index("-1")), red},
        {"in single steps", color("#FF0000", index("0.5")) + "," + color("#00FF00", index("0.25")), red},
        {"the innermost counts", color("#FF0000", index("1") + "," + index("-9")) + "," + color("#00FF00"), red},
        {"through other modifiers", color("#FF0000", index("1") + "," + opacity(1)) + "," + color("#00FF00"), red},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(drawn(stack("zstack", row.children)).row(30)[50], row.front);
    }
}

TEST(AppearancePictures, TheInnermostForegroundWins) {
    const std::string shape = node("rectangle", "", foreground("#FF0000"));
    EXPECT_EQ(drawn(stack("vstack", shape, foreground("#0000FF"))).row(30)[50], red);
    EXPECT_EQ(drawn(node("rectangle", "", foreground("#FF0000") + "," + foreground("#0000FF"))).row(30)[50], red);
    EXPECT_EQ(drawn(stack("vstack", node("rectangle"), foreground("#0000FF"))).row(30)[50], blue);
    EXPECT_EQ(drawn(stack("vstack", node("rectangle", R"("fillColor": {"value": "#FF0000"})"), foreground("#0000FF")))
                  .row(30)[50],
              red)
        << "a fill is its own";
    EXPECT_EQ(
        drawn(node("spacer", "", R"({"type": "background", "view": {"type": "rectangle"}},)" + foreground("#0000FF")))
            .row(30)[50],
        blue)
        << "also in a background";
    EXPECT_EQ(
        drawn(node("spacer", "", foreground("#FF0000") + R"(, {"type": "background", "view": {"type": "rectangle"}})"))
            .row(30)[50],
        black)
        << "but not in one outside";
    const std::string text = R"("content": "MMMM", "fontSize": 40)";
    EXPECT_TRUE(pixelsOf(drawn(stack("vstack", node("text", text), foreground("#0000FF")))).contains(blue));
    const std::set<std::uint32_t> inner =
        pixelsOf(drawn(stack("vstack", node("text", text, foreground("#FF0000")), foreground("#0000FF"))));
    EXPECT_TRUE(inner.contains(red));
    EXPECT_FALSE(inner.contains(blue));
}

TEST(AppearancePictures, BackgroundsAndOverlaysAreCentredAndNotCut) {
    for (const std::string type : {"background", "overlay"}) {
        for (const double scale : scales) {
            SCOPED_TRACE(type + " at " + std::to_string(scale));
            const Page page{{100, 60}, scale};
            const auto with = [&](const std::string& second) {
                return drawn(
                    color("#FF0000", frame(20, 20) + ", {\"type\": \"" + type + "\", \"view\": " + second + "}"), page);
            };
            const PixelBuffer wide = with(color("#0000FF", frame(60, 10)));
            EXPECT_EQ(at(wide, page, 21, 30), blue) << "a wider one sticks out on the left";
            EXPECT_EQ(at(wide, page, 79, 30), blue) << "and as far on the right";
            EXPECT_EQ(at(wide, page, 19, 30), white);
            EXPECT_EQ(at(wide, page, 81, 30), white);
            EXPECT_EQ(at(wide, page, 50, 22), red);
            EXPECT_EQ(at(wide, page, 50, 30), type == "overlay" ? blue : red);
            const PixelBuffer same = with(color("#0000FF"));
            EXPECT_EQ(at(same, page, 50, 30), type == "overlay" ? blue : red);
            EXPECT_EQ(at(same, page, 38, 30), white) << "it is offered the view's own size";
            const PixelBuffer small = with(color("#0000FF", frame(6, 6)));
            EXPECT_EQ(at(small, page, 50, 30), type == "overlay" ? blue : red);
            EXPECT_EQ(at(small, page, 45, 30), red);
        }
    }
}

}  // namespace
}  // namespace tavrin
