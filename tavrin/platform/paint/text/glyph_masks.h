// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

#include "tavrin/platform/paint/text/glyph_outlines.h"

namespace tavrin::paint {

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
    SizedMasks(FontOutlines& outlines, FT_Library freeType, double pixelsPerEm)
        : outlines_(outlines), freeType_(freeType), pixelsPerEm_(pixelsPerEm) {}

    /// The mask of a glyph whose pen stands `phase` quarters past a pixel's left edge. `bytes` grows when it is new.
    const GlyphMask& mask(std::uint32_t glyph, unsigned phase, std::size_t& bytes);

private:
    [[nodiscard]] GlyphMask render(std::uint32_t glyph, unsigned phase) const;

    FontOutlines& outlines_;
    FT_Library freeType_;
    double pixelsPerEm_;
    std::unordered_map<std::uint64_t, GlyphMask> masks_;
};

/// Rendered glyphs. Forgets all when they take too much memory.
class GlyphMasks {
public:
    explicit GlyphMasks(GlyphOutlines& outlines) : outlines_(outlines) {}

    SizedMasks& sized(text::FontId font, double pixelsPerEm);
    /// To be called when no mask is in use: frees them if they have become too many.
    void trim();
    std::size_t& bytes() { return bytes_; }

private:
    GlyphOutlines& outlines_;
    std::map<std::pair<text::FontId, double>, SizedMasks> sizes_;
    std::size_t bytes_ = 0;
};

}  // namespace tavrin::paint
