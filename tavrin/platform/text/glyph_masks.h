// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

#include "tavrin/platform/text/font_faces.h"

namespace tavrin::text {

/// A glyph's coverage of pixels.
struct GlyphMask {
    int left = 0;  ///< of the first column, from the pen
    int top = 0;   ///< of the first row, from the baseline, downwards
    int width = 0;
    int height = 0;
    std::unique_ptr<std::uint8_t[]> coverage;  ///< rows without padding
};

/// How finely pens are placed between two pixels.
constexpr int phasesOfPixel = 4;

/// The masks of one font at one size.
class SizedMasks {
public:
    SizedMasks(FontFace& face, FT_Library freeType, double pixelsPerEm)
        : face_(face), freeType_(freeType), pixelsPerEm_(pixelsPerEm) {}

    /// The mask of a glyph whose pen stands `phase` quarters past a pixel's left edge. `bytes` grows when it is new.
    const GlyphMask& mask(std::uint32_t glyph, unsigned phase, std::size_t& bytes);

private:
    [[nodiscard]] GlyphMask render(std::uint32_t glyph, unsigned phase) const;

    FontFace& face_;
    FT_Library freeType_;
    double pixelsPerEm_;
    std::unordered_map<std::uint64_t, GlyphMask> masks_;
};

/// Rendered glyphs of one engine. Forgets all when they take too much memory.
class GlyphMasks {
public:
    explicit GlyphMasks(FontFaces& faces) : faces_(faces) {}

    SizedMasks& sized(FontId font, double pixelsPerEm);
    /// To be called when no mask is in use: frees them if they have become too many.
    void trim();
    std::size_t& bytes() { return bytes_; }

private:
    FontFaces& faces_;
    std::map<std::pair<FontId, double>, SizedMasks> sizes_;
    std::size_t bytes_ = 0;
};

}  // namespace tavrin::text
