// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include <cairo.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/memory/handles.h"
#include "tavrin/platform/text/font_faces.h"

namespace tavrin::paint {

using EmojiPicture = Handle<cairo_surface_t, cairo_surface_destroy>;

[[nodiscard]] std::uint64_t pixelCount(cairo_surface_t* picture);

/// Counts what a picture of so many pixels costs that a document embeds: Cairo copies it, and compresses it in the end.
void countEmbedded(std::uint64_t pixels, HeldBytes& held);

/// What the texts of one document keep until it is finished.
struct DocumentTexts {
    struct Emoji {
        const void* painter;
        text::FontId font;
        std::uint32_t glyph;
        double opacity;
        auto operator<=>(const Emoji&) const = default;  // NOLINT(modernize-use-nullptr): there is none
    };
    /// What is drawn again is not embedded again.
    std::map<Emoji, EmojiPicture> emoji;
    HeldBytes bytes;
};

/// Where a glyph's picture stands, in parts of the text's size from the pen on the baseline; y grows downwards.
struct PictureBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

/// The colour glyphs of one engine, decoded when they are first drawn and kept in the sizes they are drawn at. Forgets
/// all when they take too much memory.
class EmojiPictures {
public:
    explicit EmojiPictures(text::FontFaces& faces) : faces_(faces) {}

    [[nodiscard]] PictureBox box(text::FontId font, std::uint32_t glyph);
    /// The picture as the font has it; null when it has none. Valid until the next call.
    cairo_surface_t* original(text::FontId font, std::uint32_t glyph);
    /// The picture in a size in pixels; null when the font has none. Valid until the next call.
    cairo_surface_t* scaled(text::FontId font, std::uint32_t glyph, int width, int height);

private:
    struct Key {
        text::FontId font;
        std::uint32_t glyph;
        int width;  ///< 0: as the font has it
        int height;
        auto operator<=>(const Key&) const = default;  // NOLINT(modernize-use-nullptr): there is no pointer
    };
    struct Kept {
        EmojiPicture picture;
        std::uint64_t cost = 0;  ///< in pixels painted: what is kept costs no less than what is made
    };
    /// The picture with this key, made when there is none.
    template <class Make>
    cairo_surface_t* kept(const Key& key, Make make);

    text::FontFaces& faces_;
    std::map<Key, Kept> pictures_;
    std::size_t bytes_ = 0;
};

}  // namespace tavrin::paint
