// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/text_painter.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <thread>
#include <vector>

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/paint/text/emoji_pictures.h"
#include "tavrin/platform/paint/text/glyph_masks.h"
#include "tests/paint/colors.h"

namespace tavrin::paint {
namespace {

/// A transparent picture with `scale` pixels for each point.
class InkPicture {
public:
    InkPicture(int width, int height, double scale)
        : surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
          cairo_(cairo_create(surface_.get())) {
        cairo_scale(cairo_.get(), scale, scale);
    }

    [[nodiscard]] cairo_t* cairo() const { return cairo_.get(); }
    [[nodiscard]] cairo_status_t status() const { return cairo_status(cairo_.get()); }

    [[nodiscard]] std::vector<std::uint32_t> pixels() const {
        cairo_surface_flush(surface_.get());
        const auto* data = reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface_.get()));
        const int count =
            cairo_image_surface_get_stride(surface_.get()) / 4 * cairo_image_surface_get_height(surface_.get());
        return {data, data + count};
    }
    [[nodiscard]] double ink() const {
        double sum = 0;
        for (const std::uint32_t pixel : pixels()) sum += static_cast<double>(pixel >> 24) / 255;
        return sum;
    }
    [[nodiscard]] bool hasColor() const {
        for (const std::uint32_t pixel : pixels())
            if ((pixel & 0xFF) != ((pixel >> 8) & 0xFF)) return true;
        return false;
    }

private:
    Handle<cairo_surface_t, cairo_surface_destroy> surface_;
    Handle<cairo_t, cairo_destroy> cairo_;
};

void draw(TextPainter& painter, cairo_t* cairo, std::string_view text, const Font& font, Point origin, double width,
          RGBA color = black, const text::TextRoom& room = {}) {
    text::TextEngine& engine = painter.engine();
    painter.draw(cairo, engine.fit(engine.shape(text, font), room), origin, width, color);
}

void draw(const InkPicture& picture, std::string_view text, const Font& font, RGBA color = black) {
    draw(TextPainter::ofThisThread(), picture.cairo(), text, font, {5, 5}, 90, color);
}

TEST(TextPainter, InkGrowsWithWeightAndFadesWithOpacity) {
    InkPicture regular(300, 120, 3);
    InkPicture bold(300, 120, 3);
    InkPicture faded(300, 120, 3);
    draw(regular, "Reykjavik", Font::system(17));
    draw(bold, "Reykjavik", Font::system(17, Font::Weight::bold));
    draw(faded, "Reykjavik", Font::system(17), {0, 0, 0, 0.5});
    EXPECT_GT(regular.ink(), 500);
    EXPECT_GT(bold.ink(), regular.ink() * 1.2);
    EXPECT_NEAR(faded.ink(), regular.ink() / 2, regular.ink() * 0.02);
}

TEST(TextPainter, EmojiAreColoredAndFadeWithTheText) {
    InkPicture solid(100, 100, 2);
    InkPicture faded(100, 100, 2);
    InkPicture text(100, 100, 2);
    draw(solid, "☀️", Font::system(20));
    draw(faded, "☀️", Font::system(20), {0, 0, 0, 0.25});
    draw(text, "☀︎", Font::system(20));
    EXPECT_TRUE(solid.hasColor());
    EXPECT_FALSE(text.hasColor());
    EXPECT_GT(text.ink(), 10);
    EXPECT_NEAR(faded.ink(), solid.ink() / 4, solid.ink() * 0.02);
}

TEST(TextPainter, WhatIsInvisibleDrawsNothing) {
    for (const char* text : {"", "   ", "\u200B\u200D\u2060\uFE0F\u202E", "\t", "\x01\x02", "\u00AD"}) {
        InkPicture picture(300, 100, 3);
        draw(picture, text, Font::system(17));
        EXPECT_EQ(picture.ink(), 0) << text;
    }
    InkPicture picture(300, 100, 3);
    draw(picture, "a", Font::system(17), {0, 0, 0, 0});
    draw(picture, "a", Font::system(0));
    draw(picture, "a", Font::system(std::nan("")));
    EXPECT_EQ(picture.ink(), 0);
}

TEST(TextPainter, GlyphsStandBetweenPixels) {
    InkPicture at0(40, 40, 1);
    InkPicture atHalf(40, 40, 1);
    auto& painter = TextPainter::ofThisThread();
    draw(painter, at0.cairo(), "l", Font::system(13), {5, 5}, 20);
    draw(painter, atHalf.cairo(), "l", Font::system(13), {5.5, 5}, 20);
    EXPECT_NE(at0.pixels(), atHalf.pixels());
    EXPECT_NEAR(at0.ink(), atHalf.ink(), 0.2);
}

TEST(TextPainter, MasksAndOutlinesAgree) {
    // Past some size glyphs are drawn as outlines: the ink of the same letter grows with the square of the scale.
    InkPicture masks(300, 300, 2);
    InkPicture outlines(1200, 1200, 8);
    auto& painter = TextPainter::ofThisThread();
    draw(painter, masks.cairo(), "g", Font::system(100), {10, 5}, 100);
    draw(painter, outlines.cairo(), "g", Font::system(100), {10, 5}, 100);
    EXPECT_NEAR(outlines.ink() / masks.ink(), 16, 0.05);
}

TEST(TextPainter, TurnedTextIsDrawn) {
    InkPicture straight(300, 300, 2);
    InkPicture turned(300, 300, 2);
    auto& painter = TextPainter::ofThisThread();
    draw(painter, straight.cairo(), "Turned ☀️", Font::system(17), {10, 60}, 100);
    cairo_rotate(turned.cairo(), 0.3);
    draw(painter, turned.cairo(), "Turned ☀️", Font::system(17), {30, 30}, 100);
    EXPECT_TRUE(turned.hasColor());
    EXPECT_NEAR(turned.ink(), straight.ink(), straight.ink() * 0.02);
}

TEST(TextPainter, LinesOfRightToLeftTextEndAtTheRight) {
    const auto leftmostInk = [](std::string_view text) {
        InkPicture picture(200, 40, 1);
        draw(TextPainter::ofThisThread(), picture.cairo(), text, Font::system(17), {0, 0}, 200);
        const auto pixels = picture.pixels();
        for (std::size_t x = 0; x < 200; ++x)
            for (std::size_t y = 0; y < 40; ++y)
                if (pixels[y * 200 + x] != 0) return x;
        return std::size_t{200};
    };
    EXPECT_LT(leftmostInk("abc"), 5U);
    EXPECT_GT(leftmostInk("שלום"), 150U);
}

TEST(TextPainter, OnlyTheClipIsTouched) {
    InkPicture picture(100, 100, 1);
    cairo_rectangle(picture.cairo(), 0, 0, 10, 100);
    cairo_clip(picture.cairo());
    auto& painter = TextPainter::ofThisThread();
    draw(painter, picture.cairo(), std::string(1000, 'm'), Font::system(17), {-500, 10}, 90);
    const auto pixels = picture.pixels();
    EXPECT_GT(picture.ink(), 10);
    for (std::size_t y = 0; y < 100; ++y)
        for (std::size_t x = 10; x < 100; ++x) ASSERT_EQ(pixels[y * 100 + x], 0U);
}

cairo_status_t appendTo(void* bytes, const unsigned char* data, unsigned length) {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

TEST(TextPainter, DocumentsEmbedFonts) {
    using Create = cairo_surface_t* (*)(cairo_write_func_t, void*, double, double);
    const struct {
        Create create;
        const char* glyphs;
    } rows[] = {{cairo_pdf_surface_create_for_stream, "/ToUnicode"}, {cairo_svg_surface_create_for_stream, "<symbol"}};
    for (const auto& row : rows) {
        std::string bytes;
        {
            const Handle<cairo_surface_t, cairo_surface_destroy> surface(row.create(appendTo, &bytes, 200, 100));
            const Handle<cairo_t, cairo_destroy> cairo(cairo_create(surface.get()));
            draw(TextPainter::ofThisThread(), cairo.get(), "Hello ☀️ שלום fi …", Font::system(17), {5, 5},
                 190);
            draw(TextPainter::ofThisThread(), cairo.get(), "مرحبا", Font::system(17), {5, 45}, 190, {0, 0, 0, 0.5});
            EXPECT_EQ(cairo_status(cairo.get()), CAIRO_STATUS_SUCCESS);
            cairo_surface_finish(surface.get());
            EXPECT_EQ(cairo_surface_status(surface.get()), CAIRO_STATUS_SUCCESS);
        }
        EXPECT_NE(bytes.find(row.glyphs), std::string::npos);
    }
}

TEST(TextPainter, HostileTextsDoNoHarm) {
    const std::string marks = [] {
        std::string text = "a";
        for (int i = 0; i < 100000; ++i) text += "\u05B0";
        return text;
    }();
    const std::string bytes = [] {
        std::string text;
        for (unsigned i = 0; i < 20000; ++i) text.push_back(static_cast<char>(i * 7919 >> 3));
        return text;
    }();
    std::string embeddings;
    for (int i = 0; i < 20000; ++i) embeddings += i % 2 == 0 ? "\u202E(" : "\u2067a";
    auto& painter = TextPainter::ofThisThread();
    for (const std::string& text : {marks, bytes, embeddings, std::string(200000, 'x'), std::string(50000, '\n'),
                                    std::string(50000, ' '), std::string("\0\0\0", 3), std::string("\u0301")})
        for (const double size : {0.001, 17.0, 500.0, 1e9})
            for (const std::optional<double> width : {std::optional<double>{}, {0.0}, {100.0}}) {
                InkPicture picture(100, 100, 1);
                text::TextRoom room;
                room.width = width;
                draw(painter, picture.cairo(), text, Font::system(size), {5, 5}, 90, black, room);
                ASSERT_EQ(picture.status(), CAIRO_STATUS_SUCCESS);
            }
    InkPicture picture(100, 100, 1);
    draw(painter, picture.cairo(), "a", Font::system(17), {infinity, 0}, 90);
    draw(painter, picture.cairo(), "a", Font::system(17), {1e300, -1e300}, 90);
    draw(painter, picture.cairo(), "ש", Font::system(17), {0, 0}, infinity);
    draw(painter, picture.cairo(), "a", Font::system(17), {0, 0}, std::nan(""));
    draw(painter, picture.cairo(), "a", Font::system(17), {0, 0}, 90, {std::nan(""), 2, -1, 7});
    EXPECT_EQ(picture.status(), CAIRO_STATUS_SUCCESS);
}

TEST(TextPainter, GlyphsAreRenderedOnce) {
    auto& engine = TextPainter::ofThisThread().engine();
    const text::FontId font = engine.faces().catalog().systemFont(Font::Weight::regular);
    const std::uint32_t glyph = engine.faces().face(font).glyphOf(U'g');
    GlyphOutlines outlines(engine.faces());
    GlyphMasks masks(outlines);
    const auto mask = [&](double pixelsPerEm) { return &masks.sized(font, pixelsPerEm).mask(glyph, 0, masks.bytes()); };
    const GlyphMask* const first = mask(50);
    const std::size_t bytes = masks.bytes();
    masks.trim();
    EXPECT_EQ(mask(50), first);
    EXPECT_EQ(masks.bytes(), bytes);
    EXPECT_NE(mask(51), first);
    EXPECT_GT(masks.bytes(), bytes);
}

TEST(TextPainter, EmojiAreScaledOnce) {
    auto& engine = TextPainter::ofThisThread().engine();
    const text::FontId font = engine.faces().catalog().fallbacks().emoji.value();
    const std::uint32_t glyph = engine.faces().face(font).glyphOf(U'😀');
    EmojiPictures pictures(engine.faces());
    const cairo_surface_t* const first = pictures.scaled(font, glyph, 20, 20);
    ASSERT_NE(first, nullptr);
    EXPECT_NE(pictures.scaled(font, glyph, 21, 21), first);
    EXPECT_EQ(pictures.scaled(font, glyph, 20, 20), first);
}

TEST(TextPainterThreads, DrawTheSame) {
    const auto library = text::FontLibrary::make({});
    const auto render = [&](std::vector<std::uint32_t>& pixels) {
        TextPainter painter(library);
        InkPicture picture(600, 300, 2);
        double y = 5;
        for (const char* text :
             {"Hello Reykjavik 21°", "مرحبا Hello", "你好 日本語の", "😀👍🏽 ☀️", "สวัสดี"}) {
            draw(painter, picture.cairo(), text, Font::system(17), {5, y}, 290);
            y += 25;
        }
        pixels = picture.pixels();
    };
    std::vector<std::uint32_t> results[3];
    std::thread first(render, std::ref(results[0]));
    std::thread second(render, std::ref(results[1]));
    first.join();
    second.join();
    render(results[2]);
    EXPECT_EQ(results[0], results[1]);
    EXPECT_EQ(results[0], results[2]);
}

}  // namespace
}  // namespace tavrin::paint
