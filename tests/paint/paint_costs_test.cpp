// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/painter.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tests/growth.h"
#include "tests/layout/laid_out.h"
#include "tests/paint/colors.h"

// What drawing costs, as it is counted.

namespace tavrin::paint {
namespace {

using layout::framed;

constexpr Size page{60, 40};

enum class Medium : unsigned char { raster, svg, pdf };

std::string paintedOn(Medium medium, const layout::LayoutTree& tree) {
    Canvas canvas = medium == Medium::raster ? Canvas::raster(page, 2)
                    : medium == Medium::svg  ? Canvas::svg(page)
                                             : Canvas::pdf(page);
    paintTree(tree, canvas, TextPainter::ofThisThread());
    if (medium == Medium::raster) return encodePng(canvas.finishRaster(), PngCompression::fast);
    return canvas.finishDocument();
}

/// Draws on a budget, and says what it has cost; its bytes exactly.
Cost costOf(const std::function<void()>& draw, const RenderBudget& budget = {}) {
    Cost cost;
    {
        const Metering metering(budget, cost, std::make_shared<SharedBytes>(budget.bytes));
        draw();
    }
    return cost;
}

AnyView wrapped(int times, AnyView view, const std::function<AnyView(AnyView)>& wrap) {
    for (int i = 0; i < times; ++i) view = wrap(std::move(view));
    return view;
}

AnyView heaped(int count, const std::function<AnyView(int)>& make) {
    ViewList children;
    for (int i = 0; i < count; ++i) children.push_back(make(i));
    return ZStack{.children = std::move(children)};
}

LinearGradient colorful(int count) {
    LinearGradient gradient;
    for (int i = 0; i < count; ++i) gradient.colors.push_back(i % 2 == 0 ? Color::primary : Color::blue);
    gradient.startPoint = UnitPoint::topLeading;
    gradient.endPoint = UnitPoint::bottomTrailing;
    return gradient;
}

AnyView pair() { return ZStack{.children = {Rectangle{}, Circle{}}}; }

/// Another one for each number.
std::string emoji(int number) {
    return fmt::format("\xF0\x9F{}{}", static_cast<char>(0x90 + number / 64 % 4),
                       static_cast<char>(0x80 + number % 64));
}

std::shared_ptr<const Bitmap> plainBitmap() {
    return std::make_shared<const Bitmap>(40, 40, std::vector<std::uint32_t>(1600, 0xFF336699));
}

TEST(PaintCosts, GrowWithWhatIsDrawn) {
    const auto bitmap = plainBitmap();
    const struct {
        const char* why;
        std::function<AnyView(int)> view;
        int least = 16;
    } rows[] = {
        {"clips within each other",
         [](int n) {
             return wrapped(n, Rectangle{}, [](AnyView v) { return ClipShape{.shape = Circle{}, .content = v}; });
         }},
        {"smaller and smaller clips",
         [](int n) {
             return wrapped(n, Rectangle{}, [](AnyView v) {
                 return ClipShape{.shape = Circle{}, .content = Padding{.length = 0.01, .content = v}};
             });
         }},
        {"clips on a turned page",
         [](int n) {
             return RotationEffect{.angle = 1, .content = wrapped(n, Rectangle{}, [](AnyView v) {
                                                   return ClipShape{.shape = Circle{}, .content = v};
                                               })};
         }},
        {"opacities within each other",
         [](int n) {
             return wrapped(n, pair(), [](AnyView v) {
                 return Opacity{.value = 0.9, .content = ZStack{.children = {Circle{}, v}}};
             });
         }},
        {"opacities side by side",
         [](int n) { return heaped(n, [](int) { return Opacity{.value = 0.5, .content = pair()}; }); }},
        {"colours of one gradient", [](int n) { return AnyView(colorful(n)); }, 80},
        {"gradients", [](int n) { return heaped(n, [](int) { return AnyView(colorful(3)); }); }},
        {"emoji", [](int n) { return heaped(n, [](int i) { return Text{.content = emoji(i)}; }); }},
        {"texts", [](int n) { return heaped(n, [](int i) { return Text{.content = std::to_string(i)}; }); }},
        {"turned texts",
         [](int n) {
             return heaped(n, [](int) { return RotationEffect{.angle = 1, .content = Text{.content = "text"}}; });
         }},
        {"borders", [](int n) { return wrapped(n, Rectangle{}, [](AnyView v) { return Border{.content = v}; }); }},
        {"strokes",
         [](int n) {
             return heaped(
                 n, [](int) { return StrokedShape{.shape = Circle{}, .stroke = Color::primary, .lineWidth = 2}; });
         }},
        {"strokes of gradients",
         [](int n) {
             return heaped(n,
                           [](int) { return StrokedShape{.shape = Circle{}, .stroke = colorful(2), .lineWidth = 2}; });
         }},
        {"pictures", [&](int n) { return heaped(n, [&](int) { return Image{.bitmap = bitmap}; }); }},
        {"turned pictures",
         [&](int n) {
             return heaped(n, [&](int) { return RotationEffect{.angle = 1, .content = Image{.bitmap = bitmap}}; });
         }},
    };
    for (const auto& row : rows) {
        for (const Medium medium : {Medium::raster, Medium::svg, Medium::pdf}) {
            SCOPED_TRACE(fmt::format("{}, {}", row.why, static_cast<int>(medium)));
            std::vector<double> work;
            std::vector<double> bytes;
            for (const int times : {1, 2, 4}) {
                const layout::LayoutTree tree = layout::laidOut(row.view(times * row.least), page);
                const auto draw = [&] { EXPECT_FALSE(paintedOn(medium, tree).empty()); };
                const Cost cost = costOf(draw);
                EXPECT_GE(cost.steps + cost.pixels, static_cast<std::uint64_t>(times * row.least));
                work.push_back(static_cast<double>(cost.steps) + static_cast<double>(cost.pixels));
                bytes.push_back(static_cast<double>(cost.peakBytes));
            }
            expectLinear("work", work, 1000);
            expectLinear("bytes", bytes, bytes[2] / 16);
        }
    }
}

TEST(PaintCosts, GrowWithTheLinksOfADocument) {
    for (const bool isSVG : {false, true}) {
        std::vector<double> steps;
        std::vector<double> bytes;
        for (const int count : {50, 100, 200}) {
            const auto draw = [&] {
                Canvas canvas = isSVG ? Canvas::svg(page) : Canvas::pdf(page);
                for (int i = 0; i < count; ++i)
                    canvas.link({{}, page}, *URL::parse(fmt::format("https://example.com/{}", i)));
                EXPECT_FALSE(canvas.finishDocument().empty());
            };
            const Cost cost = costOf(draw);
            steps.push_back(static_cast<double>(cost.steps));
            bytes.push_back(static_cast<double>(cost.peakBytes));
        }
        EXPECT_GE(steps[0], 50);
        expectLinear("steps", steps, 0);
        expectLinear("bytes", bytes, bytes[2] / 16);
    }
}

/// Of two gradients no two neighbouring colours are alike.
LinearGradient unlike(int number, int count) {
    LinearGradient gradient;
    for (int i = 0; i < count; ++i) {
        const double place = number * count + i;
        gradient.colors.push_back(Color::rgb(std::fmod(place * 0.377, 1), std::fmod(place * 0.618, 1), i % 2));
    }
    gradient.endPoint = UnitPoint::trailing;
    return gradient;
}

TEST(PaintCosts, CountWhatCairoComparesOfThePDFsGradients) {
    const auto steps = [](Medium medium, int count, bool areAlike) {
        const layout::LayoutTree tree =
            layout::laidOut(heaped(count, [&](int i) { return unlike(areAlike ? 0 : i, 100); }), page);
        return static_cast<double>(costOf([&] { EXPECT_FALSE(paintedOn(medium, tree).empty()); }).steps);
    };
    for (const Medium medium : {Medium::svg, Medium::pdf}) {
        const bool isPDF = medium == Medium::pdf;
        for (const bool areAlike : {true, false}) {
            SCOPED_TRACE(testing::Message() << (isPDF ? "PDF" : "SVG") << (areAlike ? ", alike" : ""));
            const double four = steps(medium, 4, areAlike);
            const double eight = steps(medium, 8, areAlike);
            const double sixteen = steps(medium, 16, areAlike);
            const double growth = (sixteen - eight) / (eight - four);
            if (isPDF && !areAlike) {
                EXPECT_GT(growth, 3) << "each is compared with all before";
            } else {
                EXPECT_LT(growth, 2.2);
            }
        }
    }
    const layout::LayoutTree tree = layout::laidOut(heaped(200, [](int i) { return unlike(i, 500); }), page);
    try {
        costOf([&] { paintedOn(Medium::pdf, tree); });
        ADD_FAILURE() << "that would take half a minute";
    } catch (const TavrinError& error) {
        EXPECT_EQ(error.message, "the work takes more than 200000000 steps");
    }
}

TEST(PaintCosts, AreTheSameWhateverIsKept) {
    const auto bitmap = plainBitmap();
    const AnyView view = VStack{
        .children = {Text{.content = "kept \xF0\x9F\x98\x80"}, framed(11, 9, Image{.bitmap = bitmap}), unlike(1, 5)}};
    const layout::LayoutTree tree = layout::laidOut(view, page);
    for (const Medium medium : {Medium::raster, Medium::svg, Medium::pdf}) {
        const auto draw = [&] { EXPECT_FALSE(paintedOn(medium, tree).empty()); };
        const Cost first = costOf(draw);
        const Cost second = costOf(draw);
        EXPECT_EQ(first.steps, second.steps);
        EXPECT_EQ(first.pixels, second.pixels);
    }
}

TEST(PaintCosts, OfAnSVGAreTheSameWhateverWasDrawnBefore) {
    const layout::LayoutTree tree = layout::laidOut(
        heaped(40,
               [](int i) {
                   return Opacity{.value = 0.5, .content = ZStack{.children = {Circle{}, Text{.content = emoji(i)}}}};
               }),
        page);
    const auto draw = [&] { EXPECT_FALSE(paintedOn(Medium::svg, tree).empty()); };
    const Cost before = costOf(draw);
    for (int i = 0; i < 30; ++i) draw();
    const Cost after = costOf(draw);
    EXPECT_EQ(after.steps, before.steps);
    EXPECT_EQ(after.bytes, before.bytes);
    EXPECT_EQ(after.peakBytes, before.peakBytes) << "after more than a thousand groups";
}

TEST(PaintCosts, ClipsAlikeHoldWhatOneHolds) {
    const auto bytes = [](int depth) {
        const layout::LayoutTree tree = layout::laidOut(
            wrapped(depth, Rectangle{}, [](AnyView v) { return ClipShape{.shape = Circle{}, .content = v}; }), page);
        return costOf([&] { EXPECT_FALSE(paintedOn(Medium::raster, tree).empty()); }).peakBytes;
    };
    EXPECT_LE(static_cast<double>(bytes(100)), 1.1 * static_cast<double>(bytes(2)));
}

TEST(PaintCosts, ALayerIsAsLargeAsWhatItHolds) {
    const auto pixels = [](AnyView content) {
        const layout::LayoutTree tree = layout::laidOut(Opacity{.value = 0.5, .content = std::move(content)}, page);
        return costOf([&] {
                   Canvas canvas = Canvas::raster(page, 1);
                   paintTree(tree, canvas, TextPainter::ofThisThread());
               })
            .pixels;
    };
    EXPECT_GE(pixels(pair()), 3U * 60 * 40) << "the picture, and the layer twice";
    EXPECT_LE(pixels(framed(9, 9, pair())), 60U * 40 + 2 * 13 * 13 + 3 * 81);
    EXPECT_LE(pixels(ScaleEffect{.x = 0.1, .y = 0.1, .content = pair()}), 60U * 40 + 4 * 10 * 8);
}

TEST(PaintCosts, LimitedLayersShowWhatWholeOnesDo) {
    const AnyView text = Text{.content = "fj\xC3\x84y a\xCC\x8A\xCC\x8A\xCC\x8A\xCC\x8A \xF0\x9F\x98\x80"};
    const AnyView stroke = StrokedShape{.shape = Rectangle{}, .stroke = Color::primary, .lineWidth = 5};
    const auto beside = [](AnyView first, AnyView second) {
        return ZStack{.children = {std::move(first), std::move(second)}};
    };
    const struct {
        const char* why;
        AnyView content;
    } rows[] = {
        {"strokes reach out", beside(framed(20.3, 9.7, stroke), framed(7, 7))},
        {"texts reach out", beside(framed(9, 5, text), framed(3.5, 3.5, Circle{}))},
        {"gradients", beside(framed(33.3, 20.2, colorful(3)), framed(3, 3))},
        {"moved", beside(Offset{.x = 11.3, .y = -7.6, .content = framed(9, 9)}, framed(5, 5, Circle{}))},
        {"turned", RotationEffect{.angle = 0.7, .content = beside(framed(20, 9, stroke), text)}},
        {"mirrored and scaled", ScaleEffect{.x = -2.5, .y = 0.3, .content = beside(framed(9, 20, stroke), text)}},
        {"clipped", ClipShape{.shape = Circle{}, .content = beside(framed(30, 90, colorful(2)), stroke)}},
        {"bordered", Border{.width = 0.2, .content = framed(9.4, 9.4, beside(Circle{}, text))}},
        {"behind and before",
         Background{.background = framed(40, 3), .content = framed(5, 5, Overlay{.overlay = text, .content = stroke})}},
        {"a reader", GeometryReader{[](const GeometryProxy&) -> AnyView { return pair(); }}},
        {"nothing", beside(framed(0, 0), Spacer{})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        for (const double scale : {1.0, 1.7, 3.0}) {
            const auto drawn = [&](bool limits) {
                const AnyView view = limits ? AnyView(Opacity{.value = 0.6, .content = row.content}) : row.content;
                const layout::LayoutTree tree = layout::laidOut(view, page, {.displayScale = scale});
                Canvas canvas = Canvas::raster(page, scale);
                canvas.fill(Rect{{}, page}, yellow);
                if (!limits) canvas.beginLayer();
                paintTree(tree, canvas, TextPainter::ofThisThread());
                if (!limits) canvas.endLayer(0.6);
                return canvas.finishRaster();
            };
            EXPECT_TRUE(drawn(true) == drawn(false)) << scale;
        }
    }
}

TEST(PaintCosts, DocumentsEmbedEachEmojiOnce) {
    constexpr int distinct = 150;  // more than are kept
    const AnyView view = heaped(3 * distinct, [](int i) { return Text{.content = emoji(i % distinct)}; });
    const layout::LayoutTree tree = layout::laidOut(view, page);
    const std::string svg = paintedOn(Medium::svg, tree);
    std::size_t count = 0;
    for (std::size_t at = 0; (at = svg.find("<image ", at)) != std::string::npos; ++at) ++count;
    EXPECT_GT(count, std::size_t{distinct} / 2);
    EXPECT_LE(count, std::size_t{distinct});
}

TEST(PaintCosts, WhatCairoWritesIsRefusedAsABudget) {
    const layout::LayoutTree tree = layout::laidOut(heaped(50, [](int) { return Circle{}; }), page);
    for (const Medium medium : {Medium::svg, Medium::pdf}) {
        const auto draw = [&] { EXPECT_FALSE(paintedOn(medium, tree).empty()); };
        const auto enough = static_cast<std::uint64_t>(costOf(draw).peakBytes);
        EXPECT_NO_THROW(costOf(draw, {.bytes = enough}));
        try {
            costOf(draw, {.bytes = enough - 1});
            ADD_FAILURE();
        } catch (const TavrinError& error) {
            EXPECT_EQ(error.kind, "Budget");
            EXPECT_EQ(error.message, fmt::format("more than {} bytes are held at once", enough - 1));
        }
    }
}

}  // namespace
}  // namespace tavrin::paint
