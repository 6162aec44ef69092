// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/ui/font.h"

namespace tavrin::text {

/// The room that a text is broken for.
struct TextRoom {
    /// Where lines are broken, in points; absent: only at line breaks in the text.
    std::optional<double> width = std::nullopt;
    /// As many whole lines as fit, at least one; absent: any number.
    std::optional<double> height = std::nullopt;
    /// At most so many lines, at least one; absent: any number.
    std::optional<std::int64_t> lineLimit = std::nullopt;
    /// Pixels for each point: width and height of a text are rounded up to whole pixels.
    double scale = 3;

    friend bool operator==(const TextRoom&, const TextRoom&) = default;
};

class FontCatalog;
class FontFaces;
class ShapedText;

/// A text broken into lines for one room. Cheap to copy, immutable; keeps the shaped text it was broken from alive.
class TextBlock {
public:
    struct Lines;

    TextBlock() = default;
    explicit TextBlock(std::shared_ptr<const Lines> lines) : lines_(std::move(lines)) {}

    /// Width of the widest line and height of all lines, each rounded up to whole pixels.
    [[nodiscard]] Size size() const;
    [[nodiscard]] std::size_t lineCount() const;
    /// Whether something did not fit and the text ends in "…".
    [[nodiscard]] bool truncated() const;
    /// Whether no paragraph goes from right to left.
    [[nodiscard]] bool isLeftToRight() const;
    [[nodiscard]] const Lines* lines() const { return lines_.get(); }

    /// Whether two blocks of one engine are drawn alike: the same glyphs in the same places.
    friend bool operator==(const TextBlock& a, const TextBlock& b);

private:
    std::shared_ptr<const Lines> lines_;
};

/// Which fonts texts are drawn with. Immutable once built, shared by all threads.
class FontLibrary {
public:
    struct Options {
        /// The family that stands for the system font.
        std::string systemFamily = "Inter";
        /// Font files of the host's own, which come before the installed fallbacks.
        std::vector<std::string> fontFiles = {};
        /// A folder whose fonts, also those in folders inside it, stand instead of the installed ones; empty: these.
        std::string folder = {};
    };

    /// The library every renderer uses unless it is given another. Throws `TavrinError` of kind "Font" when the
    /// system font is not installed.
    static std::shared_ptr<const FontLibrary> system();
    /// A library of the host's own. Throws `TavrinError` of kind "Font" for a family that is not found or a file that
    /// cannot be read as a font.
    static std::shared_ptr<const FontLibrary> make(const Options& options);
    /// A library of the fonts in a folder, and no others. The last eight are kept, and the fonts as they were then, so
    /// that the next one asked for costs nothing.
    /// Throws as `make` does. Thread-safe.
    static std::shared_ptr<const FontLibrary> inFolder(const std::string& folder);

    explicit FontLibrary(std::unique_ptr<const FontCatalog> catalog);
    ~FontLibrary();
    FontLibrary(const FontLibrary&) = delete;
    FontLibrary& operator=(const FontLibrary&) = delete;

    /// The fonts themselves; only for the text engine.
    [[nodiscard]] const FontCatalog& catalog() const { return *catalog_; }

private:
    std::unique_ptr<const FontCatalog> catalog_;
};

/// Shapes, breaks and measures texts. Not thread-safe: one for each thread, and its texts and blocks stay in that
/// thread. It keeps open fonts and the shapes of recently used texts (some megabytes at most), so that an unchanged
/// text costs next to nothing in the next picture.
class TextEngine {
public:
    /// Null is the system library; it is opened when the first text is shaped.
    explicit TextEngine(std::shared_ptr<const FontLibrary> library);
    ~TextEngine();
    TextEngine(const TextEngine&) = delete;
    TextEngine& operator=(const TextEngine&) = delete;

    /// The calling thread's engine over the system library, made on first use.
    static TextEngine& ofThisThread();

    /// Shapes a text once; break it into lines with `fit`. Invalid UTF-8 is drawn as U+FFFD. A size that is not
    /// positive or not finite takes no room; sizes are limited to 10,000 points. Counts steps by the text's length,
    /// also of a text whose shape is remembered; the memory of the shape is the caller's to count.
    std::shared_ptr<const ShapedText> shape(std::string_view text, const Font& font);

    /// Breaks a shaped text into lines for a room. The lines count as held as long as the block lives; steps are the
    /// caller's to count.
    TextBlock fit(const std::shared_ptr<const ShapedText>& text, const TextRoom& room);

    /// The characters of a block's text, also of what did not fit, for which an empty box is drawn since no font has
    /// them; each once.
    std::vector<char32_t> missingCharacters(const TextBlock& block);

    /// The fonts that its glyphs are of; only for who draws them.
    [[nodiscard]] FontFaces& faces();

private:
    struct State;
    State& state();

    std::shared_ptr<const FontLibrary> library_;
    std::unique_ptr<State> state_;
};

}  // namespace tavrin::text
