#pragma once

#include <memory>
#include <string>
#include <variant>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/text/text_engine.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/platform/ui/environment.h"

namespace tavrin {

using paint::PixelBuffer;
using paint::PngCompression;

/// What a rendered picture is written as.
enum class PictureFormat : unsigned char { png, svg, pdf };

/// What lies behind a widget.
struct WidgetBackground {
    enum class Kind : unsigned char {
        automatic,  ///< the platform's own: white in light, nearly black in dark appearance
        none,       ///< nothing: transparent
        color,
    };
    Kind kind = Kind::automatic;
    Color color = Color::primary;
};

/// How a view is laid out and drawn.
struct RenderOptions {
    /// The widget's size in points: what the view is proposed, and what of it is seen.
    Size size = {338, 158};
    /// Pixels for each point; positive. Pictures of more than 100 megapixels are refused.
    double scale = 3;
    /// Appearance, moment, time zone and the host's own values. Its `displayScale` is taken from `scale`.
    EnvironmentValues environment = {};
    WidgetBackground background = {};
    /// Whether to cut the home screen's rounded corners; outside them the picture is transparent.
    bool rounded = false;
    PngCompression compression = PngCompression::fast;
    /// The fonts to draw with; null is the system library.
    std::shared_ptr<const text::FontLibrary> fonts = nullptr;
    /// Hears what is doubtful in the view but no error.
    layout::Diagnostics diagnostics = {};
};

/// Lays out one view and draws it. Not thread-safe; several threads use a renderer each.
///
///     tavrin::ImageRenderer renderer(view, {.size = {338, 158}, .scale = 3});
///     std::string png = renderer.encode(tavrin::PictureFormat::png);
class ImageRenderer {
public:
    ImageRenderer(AnyView view, RenderOptions options);
    ~ImageRenderer();

    /// The laid-out tree, computed on first use and kept. Throws what `layout::layOut` does.
    [[nodiscard]] const layout::LayoutTree& layoutTree();
    /// The laid-out tree as JSON: every view with its frame in points.
    [[nodiscard]] std::string layoutText();
    /// Draws the picture. Throws `TavrinError` of kind "Render" for a size or scale that makes none.
    [[nodiscard]] PixelBuffer pixels();
    /// Draws the picture and writes it. SVG and PDF are drawn by the same walk, with text as glyphs.
    [[nodiscard]] std::string encode(PictureFormat format);

private:
    [[nodiscard]] text::TextEngine& texts();

    AnyView view_;
    RenderOptions options_;
    std::unique_ptr<text::TextEngine> ownTexts_;  // only with fonts of the host's own
    std::unique_ptr<layout::LayoutTree> layout_;
};

}  // namespace tavrin
