// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include <fmt/format.h>

#include "tavrin/diagnostics/drawn_rules.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/text/block_contents.h"
#include "tavrin/platform/ui/views.h"

// Contrast as the Web Content Accessibility Guidelines 2.1 measure it.

namespace tavrin {
namespace {

using paint::PixelBuffer;

constexpr double enough = 4.5;
/// Of texts from 24 pixels on, bold ones from 18.66 on, the guidelines want less.
constexpr double enoughForLarge = 3;
constexpr double largeSize = 24;
constexpr double largeBoldSize = 18.66;
/// A text is judged by the tenth of its pixels where it is read worst.
constexpr std::size_t worstShare = 10;
/// How many pixels are looked at in one drawing, those of texts on top of each other counted each time.
constexpr double mostPixels = 32e6;

/// The light that a gamma-encoded channel stands for.
double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(double red, double green, double blue) {
    return 0.2126 * linear(red) + 0.7152 * linear(green) + 0.0722 * linear(blue);
}

double contrast(double a, double b) { return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05); }

std::array<double, 3> channels(std::uint32_t pixel) {
    return {(pixel >> 16 & 0xFF) / 255.0, (pixel >> 8 & 0xFF) / 255.0, (pixel & 0xFF) / 255.0};
}

/// The contrast of a text's colour with what it is drawn on.
double contrastOn(const RGBA& color, std::uint32_t pixel) {
    const auto [red, green, blue] = channels(pixel);
    const double share = std::clamp(color.opacity, 0.0, 1.0);
    const auto mixed = [&](double over, double under) {
        return std::clamp(over, 0.0, 1.0) * share + under * (1 - share);
    };
    return contrast(luminance(mixed(color.red, red), mixed(color.green, green), mixed(color.blue, blue)),
                    luminance(red, green, blue));
}

class ContrastRule {
public:
    explicit ContrastRule(const DrawnSubject& subject)
        : subject_(subject), drawn_(subject.widget.pixels()), behind_(subject.widget.pixelsWithoutTexts()) {}

    /// The contrast of a text where it is read worst; none for one that nobody sees.
    [[nodiscard]] std::optional<double> measure(const DrawnView& text) const {
        const Appearance appearance = subject_.tree.environment().appearance;
        RGBA color = subject_.tree.inherited(text.index).foregroundColor.resolved(appearance);
        color.opacity *= text.opacity;
        if (!(color.opacity > 0)) return std::nullopt;
        const Rect seen = layout::commonRect(textBounds(subject_, text), text.clip);
        std::vector<double> ofGlyphs = contrasts(seen, color, true);
        if (!ofGlyphs.empty()) return worst(ofGlyphs);
        // Either it has the colour of what is behind it, or it is behind something.
        std::vector<double> ofAll = contrasts(seen, color, false);
        const auto least = ofAll.empty() ? std::nullopt : std::optional(worst(ofAll));
        constexpr double indistinguishable = 1.1;
        return least && *least < indistinguishable ? least : std::nullopt;
    }

private:
    [[nodiscard]] std::vector<double> contrasts(const Rect& place, const RGBA& color, bool onlyGlyphs) const {
        const auto pixel = [&](double points, int most) {
            return static_cast<int>(
                std::clamp(points * subject_.widget.options().scale, 0.0, static_cast<double>(most)));
        };
        const int left = pixel(place.origin.x, behind_.width());
        const int right = pixel(place.origin.x + place.size.width, behind_.width());
        const int bottom = pixel(place.origin.y + place.size.height, behind_.height());
        std::vector<double> contrasts;
        std::uint32_t last = 0;  // neighbours are mostly alike
        double lastContrast = contrastOn(color, last);
        for (int y = pixel(place.origin.y, behind_.height()); y < bottom; ++y) {
            Meter::ofThisThread().paint(static_cast<std::uint64_t>(std::max(0, right - left)));
            for (int x = left; x < right; ++x) {
                const std::uint32_t under = behind_.row(y)[x];
                if (onlyGlyphs && under == drawn_.row(y)[x]) continue;
                if (under != last) lastContrast = contrastOn(color, last = under);
                contrasts.push_back(lastContrast);
            }
        }
        return contrasts;
    }

    static double worst(std::vector<double>& contrasts) {
        const auto place = contrasts.begin() + static_cast<std::ptrdiff_t>(contrasts.size() / worstShare);
        std::nth_element(contrasts.begin(), place, contrasts.end());
        return *place;
    }

    const DrawnSubject& subject_;
    PixelBuffer drawn_;
    PixelBuffer behind_;
};

bool isLarge(const DrawnSubject& subject, const DrawnView& drawn) {
    const auto* const text = subject.tree.node(drawn.index).view->as<Text>();
    const AffineTransform& t = drawn.transform;
    const double size =
        text::contentsOf(subject.tree.textBlock(drawn.index)).size * std::sqrt(std::abs(t.xx * t.yy - t.xy * t.yx));
    const Font::Weight weight = text->fontWeight.value_or(text->font ? text->font->weight : Font::Weight::regular);
    return size >= largeSize || (weight == Font::Weight::bold && size >= largeBoldSize);
}

}  // namespace

void findLowContrast(const DrawnSubject& subject, DrawnFindings& findings) {
    std::vector<const DrawnView*> texts = seenTexts(subject);
    std::erase_if(texts, [&](const DrawnView* text) {
        return !text::contentsOf(subject.tree.textBlock(text->index)).takesColor;
    });
    constexpr double largestPicture = 16e6;
    const WidgetOptions& options = subject.widget.options();
    const double pixels = options.room.size.width * options.room.size.height * options.scale * options.scale;
    if (texts.empty() || !(pixels <= largestPicture)) return;
    const ContrastRule rule(subject);
    double looked = 0;
    for (const DrawnView* const text : texts) {
        const Rect seen = layout::commonRect(textBounds(subject, *text), text->clip);
        looked += seen.size.width * seen.size.height * options.scale * options.scale;
        if (looked > mostPixels) break;
        const std::optional<double> measured = rule.measure(*text);
        if (!measured) continue;
        const double wanted = isLarge(subject, *text) ? enoughForLarge : enough;
        if (*measured >= wanted) continue;
        findings.add(Rule::lowContrast, text->origin,
                     fmt::format("{} has a contrast of {:.1f}:1 with what lies behind it; {}:1 is wanted",
                                 excerptOf(subject, text->index), std::floor(*measured * 10) / 10, wanted),
                     enough / *measured, true);
    }
}

}  // namespace tavrin
