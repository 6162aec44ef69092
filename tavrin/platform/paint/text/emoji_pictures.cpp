// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/text/emoji_pictures.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include <hb-ot.h>

#include "tavrin/platform/foundation/pixels/scaling.h"

namespace tavrin::paint {
namespace {

constexpr std::size_t mostEmojiBytes = 8U << 20;

struct PngReader {
    const char* rest;
    unsigned length;

    static cairo_status_t read(void* self, unsigned char* bytes, unsigned count) {
        auto& reader = *static_cast<PngReader*>(self);
        if (count > reader.length) return CAIRO_STATUS_READ_ERROR;
        std::memcpy(bytes, reader.rest, count);
        reader.rest += count;
        reader.length -= count;
        return CAIRO_STATUS_SUCCESS;
    }
};

/// The glyph's picture in premultiplied colours; null when it has none.
EmojiPicture decode(hb_font_t* font, std::uint32_t glyph) {
    const Handle<hb_blob_t, hb_blob_destroy> png(hb_ot_color_glyph_reference_png(font, glyph));
    PngReader reader{nullptr, 0};
    reader.rest = hb_blob_get_data(png.get(), &reader.length);
    if (reader.length == 0) return nullptr;
    EmojiPicture decoded(cairo_image_surface_create_from_png_stream(&PngReader::read, &reader));
    if (cairo_surface_status(decoded.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    constexpr std::uint64_t weight = 4;  // decompressing takes longer than painting
    Meter::ofThisThread().paint(weight * pixelCount(decoded.get()));
    if (cairo_image_surface_get_format(decoded.get()) == CAIRO_FORMAT_ARGB32) return decoded;

    EmojiPicture picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, cairo_image_surface_get_width(decoded.get()),
                                                    cairo_image_surface_get_height(decoded.get())));
    const Handle<cairo_t, cairo_destroy> cairo(cairo_create(picture.get()));
    cairo_set_source_surface(cairo.get(), decoded.get(), 0, 0);
    cairo_paint(cairo.get());
    return picture;
}

EmojiPicture scaledPicture(cairo_surface_t* picture, int width, int height) {
    EmojiPicture scaled(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
    if (cairo_surface_status(scaled.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    cairo_surface_flush(picture);
    constexpr int pixel = sizeof(std::uint32_t);
    const PixelRows rows{reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(picture)),
                         cairo_image_surface_get_width(picture), cairo_image_surface_get_height(picture),
                         cairo_image_surface_get_stride(picture) / pixel};
    const std::vector<std::uint32_t> pixels = scaledPixels(rows, width, height, {0, 0, width, height});
    cairo_surface_flush(scaled.get());
    // A row of 32-bit pixels has no gap behind it.
    std::memcpy(cairo_image_surface_get_data(scaled.get()), pixels.data(), pixels.size() * sizeof(pixels[0]));
    cairo_surface_mark_dirty(scaled.get());
    return scaled;
}

}  // namespace

std::uint64_t pixelCount(cairo_surface_t* picture) {
    return static_cast<std::uint64_t>(cairo_image_surface_get_width(picture)) *
           static_cast<std::uint64_t>(cairo_image_surface_get_height(picture));
}

void countEmbedded(std::uint64_t pixels, HeldBytes& held) {
    constexpr std::uint64_t weight = 8;
    constexpr std::size_t copies = 3;
    Meter::ofThisThread().paint(weight * pixels);
    held.grow(copies * pixels * sizeof(std::uint32_t));
}

PictureBox EmojiPictures::box(text::FontId font, std::uint32_t glyph) {
    const text::FontFace& face = faces_.face(font);
    hb_glyph_extents_t extents{};
    if (!hb_font_get_glyph_extents(face.shaper(), glyph, &extents)) return {};
    const double em = face.unitsPerEm();
    return {extents.x_bearing / em, -extents.y_bearing / em, extents.width / em, -extents.height / em};
}

cairo_surface_t* EmojiPictures::original(text::FontId font, std::uint32_t glyph) {
    return kept({font, glyph, 0, 0}, [&] { return decode(faces_.face(font).shaper(), glyph); });
}

cairo_surface_t* EmojiPictures::scaled(text::FontId font, std::uint32_t glyph, int width, int height) {
    return kept({font, glyph, width, height}, [&] {
        // Not the original that is kept: scaled once, a surface is no longer embedded as the font's own PNG.
        const EmojiPicture picture = decode(faces_.face(font).shaper(), glyph);
        return picture ? scaledPicture(picture.get(), width, height) : nullptr;
    });
}

template <class Make>
cairo_surface_t* EmojiPictures::kept(const Key& key, Make make) {
    Meter& meter = Meter::ofThisThread();
    if (const auto found = pictures_.find(key); found != pictures_.end()) {
        meter.paint(found->second.cost);
        return found->second.picture.get();
    }
    const std::uint64_t before = meter.pixels;
    Kept made{make()};
    made.cost = meter.pixels - before;
    if (bytes_ > mostEmojiBytes) {
        pictures_.clear();
        bytes_ = 0;
    }
    constexpr std::size_t overhead = 128;
    bytes_ += overhead;
    if (made.picture) bytes_ += pixelCount(made.picture.get()) * sizeof(std::uint32_t);
    return (pictures_[key] = std::move(made)).picture.get();
}

}  // namespace tavrin::paint
