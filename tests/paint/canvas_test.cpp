// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/canvas.h"

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tests/paint/colors.h"
#include "tests/paint/drawn.h"

namespace tavrin::paint {
namespace {

void drawText(Canvas& canvas, const Rect& frame) {
    TextPainter& painter = TextPainter::ofThisThread();
    text::TextEngine& engine = painter.engine();
    canvas.draw(engine.fit(engine.shape("text", Font::system(10)), {}), frame, black, painter);
}

bool blank(const PixelBuffer& picture) { return picture == PixelBuffer(picture.width(), picture.height()); }

TEST(Canvas, BeginsTransparentWhateverIsDrawnFirst) {
    ::mallopt(M_PERTURB, 0x5A);  // new memory holds anything but zeros
    const auto rect = [](double side) { return Rect{{1, 1}, {side, side}}; };
    const struct {
        const char* why;
        std::function<void(Canvas&)> draw;
    } rows[] = {
        {"nothing", [](Canvas&) {}},
        {"all of it",
         [&](Canvas& canvas) {
             canvas.fill(Rect{{0, 0}, {30, 20}}, red);
         }},
        {"all of it, translucent",
         [&](Canvas& canvas) {
             canvas.fill(Rect{{0, 0}, {30, 20}}, RGBA{1, 0, 0, 0.5});
         }},
        {"all of it, with round corners",
         [&](Canvas& canvas) {
             canvas.fill(Shape(RoundedRectangle{5}), Rect{{0, 0}, {30, 20}}, red);
         }},
        {"a part", [&](Canvas& canvas) { canvas.fill(rect(9), red); }},
        {"a circle", [&](Canvas& canvas) { canvas.fill(Shape(Circle{}), rect(9), red); }},
        {"what is hidden",
         [&](Canvas& canvas) {
             canvas.fill(Rect{{50, 50}, {9, 9}}, red);
         }},
        {"a stroke", [&](Canvas& canvas) { canvas.stroke(Shape(Circle{}), rect(9), red, Pen{}); }},
        {"a border", [&](Canvas& canvas) { canvas.border(rect(9), red, 1); }},
        {"a text", [&](Canvas& canvas) { drawText(canvas, rect(9)); }},
        {"a picture",
         [&](Canvas& canvas) {
             canvas.draw(std::make_shared<const Bitmap>(1, 1, std::vector<std::uint32_t>{0xFF00FF00}), rect(9), 1);
         }},
        {"a layer",
         [&](Canvas& canvas) {
             canvas.beginLayer();
             canvas.fill(Rect{{0, 0}, {30, 20}}, red);
             canvas.endLayer(0.5);
         }},
        {"in an outline",
         [&](Canvas& canvas) {
             canvas.save();
             canvas.clip(Shape(Circle{}), rect(9));
             canvas.fill(rect(9), red);
             canvas.restore();
         }},
        {"in an outline around all of it",
         [&](Canvas& canvas) {
             canvas.save();
             canvas.clip(Shape(RoundedRectangle{5}), Rect{{0, 0}, {30, 20}});
             canvas.fill(Rect{{0, 0}, {30, 20}}, red);
             canvas.restore();
         }},
        {"in a turned one",
         [&](Canvas& canvas) {
             canvas.save();
             canvas.transform({0.8, 0.6, -0.6, 0.8, 0, 0});
             canvas.clip(rect(9));
             canvas.fill(rect(9), red);
             canvas.restore();
         }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const PixelBuffer once = drawn({30, 20}, 1, row.draw);
        Canvas cleared = Canvas::raster(PixelBuffer(30, 20), 1, {0, 0, 30, 20});
        row.draw(cleared);
        EXPECT_TRUE(once == cleared.finishRaster());
    }
    ::mallopt(M_PERTURB, 0);
}

int distance(std::uint32_t a, std::uint32_t b) {
    int largest = 0;
    for (const unsigned shift : {0U, 8U, 16U, 24U})
        largest =
            std::max(largest, std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF)));
    return largest;
}

TEST(Canvas, AbuttingRectanglesNeitherGapNorOverlap) {
    for (const double scale : {1.0, 2.0, 3.0, 2.75}) {
        SCOPED_TRACE(scale);
        const PixelBuffer picture = drawn({100, 10}, scale, [](Canvas& canvas) {
            double x = 0;
            for (int i = 0; i < 40; ++i, x += 2.5) canvas.fill(Rect{{x, 0}, {2.5, 10}}, RGBA{0, 0, 0, 0.5});
        });
        for (int x = 0; x < picture.width(); ++x) ASSERT_EQ(picture.row(picture.height() / 2)[x], 0x80000000) << x;
    }
}

TEST(Canvas, EdgesAreRoundedNotSizes) {
    const PixelBuffer picture = drawn({10, 4}, 1, [](Canvas& canvas) { canvas.fill(Rect{{0.4, 0}, {2.2, 4}}, red); });
    EXPECT_EQ(picture.row(0)[2], 0xFFFF0000);
    EXPECT_EQ(picture.row(0)[3], 0U);
}

TEST(Canvas, TextsBeginAtWholePixels) {
    const auto raster = [](double x) {
        return drawn({40, 20}, 2, [x](Canvas& canvas) { drawText(canvas, {{x, 2.2}, {30, 12}}); });
    };
    EXPECT_FALSE(blank(raster(5)));
    EXPECT_TRUE(raster(5.2) == raster(5));
    EXPECT_FALSE(raster(5.3) == raster(5));

    const auto svg = [](double x) {
        Canvas canvas = Canvas::svg({40, 20});
        drawText(canvas, {{x, 2.2}, {30, 12}});
        return canvas.finishDocument();
    };
    EXPECT_EQ(svg(5), svg(5));
    EXPECT_NE(svg(5.2), svg(5));
}

TEST(Canvas, TextsWithoutAPlaceAreNotDrawn) {
    for (const double number : {nan, infinity, -infinity}) {
        EXPECT_TRUE(blank(drawn({40, 20}, 2, [&](Canvas& canvas) { drawText(canvas, {{number, 0}, {30, 12}}); })));
        EXPECT_TRUE(blank(drawn({40, 20}, 2, [&](Canvas& canvas) { drawText(canvas, {{5, 0}, {30, number}}); })));
    }
}

TEST(Canvas, ColoursAreClampedAndRoundedAlikeOnEveryPath) {
    const struct {
        const char* why;
        RGBA color;
        std::uint32_t pixel;
    } rows[] = {
        {"a plain colour", {0.2, 0.4, 0.6, 1}, 0xFF336699},
        {"halves are rounded up", {0.5, 0.5, 0.5, 1}, 0xFF808080},
        {"channels out of range", {-1, 2, infinity, 7}, 0xFF00FFFF},
        {"half opaque", {1, 0, 1, 0.5}, 0x80800080},
        {"a third", {1, 0.5, 0, 1.0 / 3}, 0x55552B00},
        {"NaN draws nothing", {nan, 0, 0, 1}, 0},
        {"NaN opacity too", {1, 0, 0, nan}, 0},
        {"and no opacity", {1, 0, 0, -1}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const auto centre = [&](auto fill) {
            return drawn({40, 40}, 1, [&](Canvas& canvas) { fill(canvas, Rect{{0, 0}, {40, 40}}); }).row(20)[20];
        };
        EXPECT_EQ(centre([&](Canvas& c, Rect r) { c.fill(r, row.color); }), row.pixel);
        EXPECT_EQ(centre([&](Canvas& c, Rect r) { c.fill(Circle{}, r, row.color); }), row.pixel);
        EXPECT_EQ(centre([&](Canvas& c, Rect r) {
                      c.fill(Circle{}, r, Gradient{{row.color}, {0, 0}, {9, 9}});
                  }),
                  row.pixel);
        EXPECT_EQ(centre([&](Canvas& c, Rect r) { c.stroke(Rectangle{}, r, row.color, {45}); }), row.pixel);
    }
}

TEST(Canvas, GradientsRunThroughTheirColours) {
    const struct {
        const char* why;
        Gradient gradient;
        Point place;
        std::uint32_t pixel;
    } rows[] = {
        {"before the start", {{red, blue}, {20, 0}, {80, 0}}, {5, 5}, 0xFFFF0000},
        {"after the end", {{red, blue}, {20, 0}, {80, 0}}, {95, 5}, 0xFF0000FF},
        {"in the middle", {{red, blue}, {0, 0}, {100, 0}}, {50, 5}, 0xFF8C53A2},
        {"downwards", {{black, white}, {0, 0}, {0, 100}}, {5, 25}, 0xFF222222},
        {"across", {{black, white}, {0, 0}, {100, 100}}, {75, 75}, 0xFFAEAEAE},
        {"the other way", {{black, white}, {100, 100}, {0, 0}}, {75, 75}, 0xFF222222},
        {"slanted", {{black, white}, {0, 0}, {100, 50}}, {80, 20}, 0xFFA4A4A4},
        {"the second of three", {{black, RGBA{0.5, 0.5, 0.5, 1}, white}, {0, 0}, {100, 0}}, {50, 5}, 0xFF808080},
        {"premultiplied", {{red, RGBA{0, 0, 1, 0}}, {0, 0}, {100, 0}}, {50, 5}, 0x80800000},
        {"without length", {{red, blue}, {50, 50}, {50, 50}}, {50, 5}, 0xFF0000FF},
        {"a NaN colour", {{red, RGBA{0, nan, 0, 1}}, {0, 0}, {100, 0}}, {50, 5}, 0},
        {"no colours", {{}, {0, 0}, {100, 0}}, {50, 5}, 0},
        {"an infinite end", {{red, blue}, {0, 0}, {infinity, 0}}, {50, 5}, 0},
        {"a hair's breadth, before", {{red, blue}, {50, 0}, {50 + 1e-9, 0}}, {49, 5}, 0xFFFF0000},
        {"a hair's breadth, after", {{red, blue}, {50, 0}, {50 + 1e-9, 0}}, {51, 5}, 0xFF0000FF},
        {"nearly endless", {{red, blue}, {0, 0}, {1e30, 0}}, {50, 5}, 0xFFFF0000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        for (const double scale : {1.0, 3.0}) {
            const PixelBuffer picture = drawn({100, 100}, scale, [&](Canvas& canvas) {
                canvas.fill(RoundedRectangle{1}, Rect{{0, 0}, {100, 100}}, row.gradient);
            });
            const auto x = static_cast<int>(row.place.x * scale);
            const auto y = static_cast<int>(row.place.y * scale);
            EXPECT_LE(distance(picture.row(y)[x], row.pixel), 3) << std::hex << picture.row(y)[x];
        }
    }
}

TEST(Canvas, GradientsAreTheSameWhateverTheyFill) {
    const Gradient gradient{{red, RGBA{0, 1, 0, 0.5}, blue}, {3, 7}, {81, 60}};
    const PixelBuffer whole = drawn({90, 70}, 2, [&](Canvas& c) { c.fill(Rect{{0, 0}, {90, 70}}, gradient); });
    const PixelBuffer round = drawn({90, 70}, 2, [&](Canvas& c) {
        c.fill(RoundedRectangle{12}, Rect{{0, 0}, {90, 70}}, gradient);
    });
    const PixelBuffer clipped = drawn({90, 70}, 2, [&](Canvas& c) {
        c.clip(RoundedRectangle{12}, {{0, 0}, {90, 70}});
        c.fill(Rect{{0, 0}, {90, 70}}, gradient);
    });
    for (int y = 0; y < whole.height(); ++y)
        for (int x = 0; x < whole.width(); ++x) {
            ASSERT_LE(distance(round.row(y)[x], clipped.row(y)[x]), 2) << x << ", " << y;
            if (round.row(y)[x] >> 24 == whole.row(y)[x] >> 24) {
                ASSERT_LE(distance(round.row(y)[x], whole.row(y)[x]), 2) << x << ", " << y;
            }
        }
    EXPECT_EQ(round.row(0)[0], 0U);
    EXPECT_EQ(clipped.row(0)[0], 0U);
}

TEST(Canvas, ContinuousCornersCutOffMore) {
    const auto area = [](RoundedCornerStyle style) {
        const PixelBuffer picture = drawn({100, 100}, 1, [&](Canvas& canvas) {
            canvas.fill(RoundedRectangle{30, style}, Rect{{0, 0}, {100, 100}}, black);
        });
        double sum = 0;
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x) sum += (picture.row(y)[x] >> 24) / 255.0;
        return sum;
    };
    EXPECT_NEAR(area(RoundedCornerStyle::circular), 1e4 - (4 - std::numbers::pi) * 900, 5);
    EXPECT_LT(area(RoundedCornerStyle::continuous), area(RoundedCornerStyle::circular) - 10);
}

TEST(Canvas, OutlineClipsCutWhatIsDrawnWithinThem) {
    const PixelBuffer picture = drawn({60, 60}, 1, [](Canvas& canvas) {
        canvas.fill(Rect{{0, 0}, {60, 60}}, white);
        canvas.save();
        canvas.clip(Circle{}, {{0, 0}, {60, 60}});
        canvas.clip(Rect{{0, 0}, {60, 30}});
        canvas.fill(Rect{{-100, -100}, {300, 300}}, red);
        canvas.restore();
        canvas.fill(Rect{{0, 59}, {1, 1}}, blue);
    });
    EXPECT_EQ(picture.row(15)[30], 0xFFFF0000);
    EXPECT_EQ(picture.row(0)[0], 0xFFFFFFFF);
    EXPECT_EQ(picture.row(45)[30], 0xFFFFFFFF);
    EXPECT_EQ(picture.row(59)[0], 0xFF0000FF);
}

TEST(Canvas, ClipsWithoutAntialiasingHaveNoMixedPixels) {
    for (const double turn : {0.0, 0.3}) {
        const PixelBuffer picture = drawn({60, 60}, 1, [&](Canvas& canvas) {
            canvas.translate(30, 30);
            canvas.transform({std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 0, 0});
            canvas.clip(Circle{}, {{-20, -20}, {40, 40}}, false);
            canvas.fill(Rect{{-100, -100}, {300, 300}}, black);
        });
        int inside = 0;
        for (int y = 0; y < 60; ++y)
            for (int x = 0; x < 60; ++x) {
                const std::uint32_t pixel = picture.row(y)[x];
                ASSERT_TRUE(pixel == 0 || pixel == 0xFF000000) << x << ", " << y;
                inside += pixel != 0;
            }
        EXPECT_NEAR(inside, std::numbers::pi * 400, 25);
    }
}

TEST(Canvas, StripsAreTheWhole) {
    const auto scene = [](Canvas& canvas) {
        canvas.clip(Circle{}, {{3, 2}, {37, 40}});
        canvas.beginLayer();
        canvas.fill(Rect{{0, 0}, {30, 50}}, Gradient{{red, blue}, {0, 0}, {30, 50}});
        canvas.translate(20, 20);
        canvas.transform({0.8, 0.6, -0.6, 0.8, 0, 0});
        canvas.fill(RoundedRectangle{5}, Rect{{-9, -9}, {30, 18}}, black);
        canvas.endLayer(0.5);
    };
    const PixelBuffer whole = drawn({50, 50}, 2, scene);
    for (const std::int64_t pixels : {1'000'000, 2'000, 500, 1, 0}) {
        int strips = 0;
        const PixelBuffer picture = drawn({50, 50}, 2, [&](Canvas& canvas) {
            canvas.inStrips(pixels, [&] {
                ++strips;
                canvas.save();
                scene(canvas);
                canvas.restore();
            });
        });
        EXPECT_EQ(strips, pixels >= 10'000 ? 1 : pixels == 2'000 ? 5 : pixels == 500 ? 20 : 100);
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x) ASSERT_LE(distance(picture.row(y)[x], whole.row(y)[x]), 1) << x << ", " << y;
    }
}

TEST(Canvas, LayersFadeAsOne) {
    const auto both = [](double opacity) {
        return drawn({30, 10}, 1, [&](Canvas& canvas) {
            canvas.fill(Rect{{0, 0}, {30, 10}}, white);
            canvas.save();
            canvas.clip(Rect{{0, 0}, {25, 10}});
            canvas.beginLayer();
            canvas.fill(Rect{{0, 0}, {20, 10}}, red);
            canvas.fill(Rect{{10, 0}, {20, 10}}, black);
            canvas.endLayer(opacity);
            canvas.restore();
        });
    };
    EXPECT_LE(distance(both(0.5).row(5)[5], 0xFFFF7F7F), 1);
    EXPECT_LE(distance(both(0.5).row(5)[15], 0xFF7F7F7F), 1);
    EXPECT_EQ(both(0.5).row(5)[27], 0xFFFFFFFF);
    EXPECT_EQ(both(9).row(5)[15], 0xFF000000);
    EXPECT_EQ(both(-1).row(5)[15], 0xFFFFFFFF);
    EXPECT_EQ(both(nan).row(5)[15], 0xFFFFFFFF);
}

TEST(Canvas, BordersLieInside) {
    const PixelBuffer picture = drawn({20, 20}, 3, [](Canvas& canvas) {
        canvas.border({{0, 0}, {20, 20}}, {0, 0, 0, 0.5}, 2);
    });
    for (const int inside : {0, 5, 54, 59}) {
        EXPECT_EQ(picture.row(30)[inside], 0x80000000);
        EXPECT_EQ(picture.row(inside)[30], 0x80000000);
        EXPECT_EQ(picture.row(inside)[inside], 0x80000000);
    }
    EXPECT_EQ(picture.row(6)[6], 0U);
    EXPECT_EQ(picture.row(53)[53], 0U);
    const auto bordered = [](double width) {
        return drawn({20, 20}, 1, [&](Canvas& canvas) { canvas.border({{0, 0}, {20, 20}}, black, width); });
    };
    EXPECT_EQ(bordered(0.1).row(0)[10], 0xFF000000) << "a hairline is a pixel wide";
    EXPECT_EQ(bordered(infinity).row(10)[10], 0xFF000000);
    EXPECT_TRUE(blank(bordered(0)));
    EXPECT_TRUE(blank(bordered(-3)));
    EXPECT_TRUE(blank(bordered(nan)));
}

TEST(Canvas, StrokesAreCentredOnTheOutline) {
    for (const Paint& paint : {Paint{black}, Paint{Gradient{{black, black}, {0, 0}, {1, 1}}}}) {
        const PixelBuffer picture = drawn({40, 40}, 1, [&](Canvas& canvas) {
            canvas.stroke(Rectangle{}, {{10, 10}, {20, 20}}, paint, {4});
        });
        EXPECT_EQ(picture.row(20)[7], 0U);
        EXPECT_EQ(picture.row(20)[8], 0xFF000000);
        EXPECT_EQ(picture.row(20)[11], 0xFF000000);
        EXPECT_EQ(picture.row(20)[12], 0U);
        EXPECT_EQ(picture.row(8)[8], 0xFF000000) << "corners are mitred";
    }
}

TEST(Canvas, HostileNumbersNeverHurt) {
    const double numbers[] = {0, 1, -1, nan, infinity, -infinity, 1e30, -1e30, 1e308, 1e-300, 2e9, -3e5};
    Canvas canvas = Canvas::raster({20, 20}, 3);
    const Shape shapes[] = {Circle{}, Rectangle{}, RoundedRectangle{1e30}, RoundedRectangle{nan},
                            Capsule{RoundedCornerStyle::continuous}};
    for (const double turn : {0.0, 0.4})
        for (const double a : numbers)
            for (const double b : numbers) {
                canvas.save();
                canvas.transform({std::cos(turn), std::sin(turn), -std::sin(turn), std::cos(turn), 0, 0});
                for (const Shape& shape : shapes) {
                    const Rect bounds{{a, b}, {b, std::abs(a)}};
                    canvas.fill(shape, bounds, red);
                    canvas.fill(shape, bounds, Gradient{{red, blue, white}, {a, 0}, {b, a}});
                    canvas.stroke(shape, {{0, 0}, {10, 10}}, Gradient{{red, blue}, {0, 0}, {a, b}},
                                  {a, LineCap::round, {}, b});
                    canvas.stroke(shape, bounds, blue, {1, LineCap::butt, {}, a});
                    canvas.border(bounds, red, b);
                }
                canvas.save();
                canvas.clip(RoundedRectangle{a}, {{-5, b}, {1e30, 1e30}});
                canvas.beginLayer();
                canvas.fill(Rect{{0, 0}, {5, 5}}, blue);
                canvas.endLayer(a);
                canvas.restore();
                canvas.transform({a, 0, b, 1, 0, b});
                canvas.fill(Circle{}, {{0, 0}, {10, 10}}, Gradient{{red, blue}, {0, 0}, {10, 10}});
                canvas.restore();
            }
    EXPECT_NO_THROW((void)canvas.finishRaster());
}

TEST(Canvas, FarEdgesAreOutOfSight) {
    for (const double far : {1e5, 1e9, 1e14}) {
        SCOPED_TRACE(far);
        const PixelBuffer picture = drawn({20, 20}, 2, [&](Canvas& canvas) {
            canvas.fill(RoundedRectangle{5}, {{-far, -far}, {far + 10, 2 * far}}, black);
        });
        EXPECT_EQ(picture.row(0)[0], 0xFF000000);
        EXPECT_EQ(picture.row(39)[19], 0xFF000000);
        EXPECT_EQ(picture.row(20)[20], 0U);
    }
}

TEST(Canvas, CollapsedTransformsHide) {
    const AffineTransform transforms[] = {{0, 0, 0, 1, 0, 0},
                                          {nan, 0, 0, 1, 0, 0},
                                          {1, 0, 0, 1, infinity, 0},
                                          {1, 1, 1, 1, 0, 0},
                                          {1e300, 0, 0, 1e-300, 0, 0}};
    for (const AffineTransform& transform : transforms) {
        const PixelBuffer picture = drawn({10, 10}, 1, [&](Canvas& canvas) {
            canvas.save();
            canvas.transform(transform);
            EXPECT_TRUE(canvas.hidden());
            canvas.fill(Rect{{0, 0}, {10, 10}}, red);
            drawText(canvas, {{0, 0}, {10, 10}});
            canvas.restore();
            EXPECT_FALSE(canvas.hidden());
            canvas.fill(Rect{{0, 0}, {1, 1}}, blue);
        });
        EXPECT_EQ(picture.row(0)[0], 0xFF0000FF);
        EXPECT_EQ(picture.row(5)[5], 0U);
    }
}

TEST(Canvas, MirrorsKeepWholePixels) {
    const PixelBuffer picture = drawn({10, 10}, 1, [](Canvas& canvas) {
        canvas.transform({-1, 0, 0, 1, 10, 0});
        canvas.fill(RoundedRectangle{1}, {{0, 0}, {3, 10}}, Gradient{{red, red}, {0, 0}, {1, 1}});
    });
    EXPECT_EQ(picture.row(5)[6], 0U);
    EXPECT_EQ(picture.row(5)[7], 0xFFFF0000);
    EXPECT_EQ(picture.row(5)[9], 0xFFFF0000);
}

TEST(Canvas, RejectsImpossibleSizes) {
    for (const Size size : {Size{0, 5}, Size{-1, 5}, Size{nan, 5}, Size{5, infinity}, Size{1e30, 1e30}}) {
        EXPECT_THROW((void)Canvas::raster(size, 1), TavrinError);
        EXPECT_THROW((void)Canvas::svg(size), TavrinError);
        EXPECT_THROW((void)Canvas::pdf(size), TavrinError);
    }
    for (const double scale : {0.0, -1.0, nan, infinity, 1e9})
        EXPECT_THROW((void)Canvas::raster({5, 5}, scale), TavrinError);
    EXPECT_EQ(Canvas::raster({338, 158}, 2.75).finishRaster().width(), 930);
}

TEST(Canvas, ReportsWhatCairoReports) {
    Canvas canvas = Canvas::raster({5, 5}, 1);
    canvas.save();
    canvas.endLayer(1);  // which was never begun
    try {
        (void)canvas.finishRaster();
        ADD_FAILURE() << "no error";
    } catch (const TavrinError& error) {
        EXPECT_EQ(error.kind, "Render");
        EXPECT_FALSE(error.message.empty());
    }
    Canvas open = Canvas::raster({5, 5}, 1);
    open.save();
    EXPECT_THROW((void)open.finishRaster(), TavrinError);
}

void drawSome(Canvas& canvas) {
    canvas.fill(RoundedRectangle{9}, {{0, 0}, {100, 50}}, Gradient{{red, RGBA{0, 0, 1, 0.2}}, {0, 0}, {100, 50}});
    canvas.save();
    canvas.clip(Circle{}, {{0, 0}, {50, 50}});
    canvas.beginLayer();
    canvas.fill(Rect{{0, 0}, {30, 30}}, black);
    canvas.endLayer(0.5);
    canvas.restore();
    canvas.border({{0, 0}, {100, 50}}, blue, 2);
}

TEST(Canvas, DocumentsHaveThePagesSizeAndTheSameBytesEachTime) {
    const auto svg = [] {
        Canvas canvas = Canvas::svg({100.5, 50});
        drawSome(canvas);
        return canvas.finishDocument();
    };
    const std::string picture = svg();
    EXPECT_NE(picture.find("<svg "), std::string::npos);
    EXPECT_NE(picture.find("viewBox=\"0 0 100.5 50\""), std::string::npos) << picture.substr(0, 300);
    EXPECT_NE(picture.find("width=\"100.5px\" height=\"50px\""), std::string::npos) << picture.substr(0, 300);
    EXPECT_TRUE(picture.ends_with("</svg>\n"));
    EXPECT_EQ(svg(), picture);

    const auto pdf = [] {
        Canvas canvas = Canvas::pdf({100.5, 50});
        drawSome(canvas);
        return canvas.finishDocument();
    };
    const std::string page = pdf();
    EXPECT_TRUE(page.starts_with("%PDF-"));
    EXPECT_NE(page.find("MediaBox [ 0 0 100.5 50 ]"), std::string::npos);
    EXPECT_TRUE(page.ends_with("%%EOF\n"));
    EXPECT_EQ(pdf(), page);
}

}  // namespace
}  // namespace tavrin::paint
