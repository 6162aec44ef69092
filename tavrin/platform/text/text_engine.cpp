// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/text_engine.h"

#include <algorithm>
#include <cmath>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/line_breaker.h"
#include "tavrin/platform/text/missing_characters.h"
#include "tavrin/platform/text/shape_cache.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/text/shaper.h"

namespace tavrin::text {
namespace {

constexpr std::size_t mostShapedBytes = 8U << 20;

// What shaping costs, whether a shape is remembered or not.
constexpr std::uint64_t stepsOfText = 16;
constexpr std::uint64_t stepsOfByte = 16;
/// While a text is shaped: its characters with all that is found out about them, and room for units and glyphs.
constexpr std::size_t bytesOfByte = 80;

}  // namespace

struct TextEngine::State {
    explicit State(std::shared_ptr<const FontLibrary> fonts)
        : library(std::move(fonts)), faces(library->catalog()), shaper(faces) {}

    std::shared_ptr<const FontLibrary> library;
    FontFaces faces;
    Shaper shaper;
    ShapeCache shapes{mostShapedBytes};
};

Size TextBlock::size() const { return lines_ ? lines_->broken->size : Size{}; }
std::size_t TextBlock::lineCount() const { return lines_ ? lines_->broken->lines.size() : 0; }
bool TextBlock::truncated() const { return lines_ && lines_->broken->truncated; }
bool TextBlock::isLeftToRight() const {
    return !lines_ || std::ranges::all_of(lines_->text->paragraphs,
                                          [](const ShapedParagraph& paragraph) { return paragraph.level % 2 == 0; });
}

bool operator==(const TextBlock& a, const TextBlock& b) {
    if (a.lines_ == b.lines_) return true;
    if (!a.lines_ || !b.lines_) return false;
    const auto& [text, broken, held] = *a.lines_;
    const auto& [otherText, otherBroken, otherHeld] = *b.lines_;
    // Shapes and the last ways in which they were broken are remembered, and so mostly the same objects.
    const auto isShapedAlike = [](const ShapedText& one, const ShapedText& other) {
        return one.size == other.size && one.lineHeight == other.lineHeight && one.leading == other.leading &&
               one.glyphs == other.glyphs && one.units == other.units && one.runs == other.runs &&
               one.paragraphs == other.paragraphs && one.ellipsisFont == other.ellipsisFont &&
               one.ellipsis == other.ellipsis;
    };
    return (broken == otherBroken || *broken == *otherBroken) &&
           (text == otherText || isShapedAlike(*text, *otherText));
}

TextEngine::TextEngine(std::shared_ptr<const FontLibrary> library) : library_(std::move(library)) {}
TextEngine::~TextEngine() = default;

TextEngine::State& TextEngine::state() {
    if (!state_) {
        if (!library_) library_ = FontLibrary::system();
        state_ = std::make_unique<State>(library_);
    }
    return *state_;
}

TextEngine& TextEngine::ofThisThread() {
    thread_local TextEngine engine(nullptr);
    return engine;
}

std::shared_ptr<const ShapedText> TextEngine::shape(std::string_view text, const Font& font) {
    Font drawn = font;
    if (std::isnan(drawn.size)) drawn.size = 0;  // equal to itself, for the cache
    Meter::ofThisThread().step(stepsOfText + stepsOfByte * text.size());
    const HeldBytes meanwhile(bytesOfByte * text.size());
    State& known = state();
    if (auto kept = known.shapes.find(text, drawn)) return kept;
    auto shaped = known.shaper.shape(text, drawn);
    known.shapes.keep(text, drawn, shaped);
    return shaped;
}

TextBlock TextEngine::fit(const std::shared_ptr<const ShapedText>& text, const TextRoom& room) {
    if (!text) return {};
    auto broken = text->recall(room);
    if (!broken) {
        broken = std::make_shared<const BrokenText>(breakLines(*text, room));
        text->remember(room, broken);
    }
    HeldBytes held(sizeof(TextBlock::Lines) + broken->lines.size() * sizeof(Line));
    return TextBlock(
        std::make_shared<const TextBlock::Lines>(TextBlock::Lines{text, std::move(broken), std::move(held)}));
}

std::vector<char32_t> TextEngine::missingCharacters(const TextBlock& block) {
    const auto* const lines = block.lines();
    return lines && lines->text ? text::missingCharacters(*lines->text, state().faces) : std::vector<char32_t>();
}

FontFaces& TextEngine::faces() { return state().faces; }

}  // namespace tavrin::text
