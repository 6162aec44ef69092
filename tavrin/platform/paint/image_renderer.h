#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/layout/tap_targets.h"
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
    /// What opens when the widget is tapped where nothing else leads anywhere: `Context::widgetURL` after `loadView`.
    std::optional<URL> widgetURL = std::nullopt;
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
    /// Where the widget can be tapped: the whole widget first, if it leads anywhere, then the links and marked views in
    /// the order in which they are drawn. The last one that contains a point is the one that is tapped there.
    [[nodiscard]] std::vector<TapTarget> targets();
    /// The same as JSON: `{"targets": [{"kind": …, "destination": …, "frame": [x, y, width, height]}, …]}`.
    [[nodiscard]] std::string targetsText();
    /// Draws the picture. Throws `TavrinError` of kind "Render" for a size or scale that makes none.
    [[nodiscard]] PixelBuffer pixels();
    /// The same picture without its texts: what they stand on.
    [[nodiscard]] PixelBuffer pixelsWithoutTexts();
    /// Draws the picture and writes it. SVG and PDF are drawn by the same walk, with text as glyphs, and lead where
    /// `targets` do; not to addresses that a viewer would run (`javascript:`, `vbscript:`, `data:`).
    [[nodiscard]] std::string encode(PictureFormat format);

private:
    [[nodiscard]] text::TextEngine& texts();
    [[nodiscard]] PixelBuffer drawPixels(bool drawsTexts);

    AnyView view_;
    RenderOptions options_;
    std::unique_ptr<text::TextEngine> ownTexts_;  // only with fonts of the host's own
    std::unique_ptr<layout::LayoutTree> layout_;
};

}  // namespace tavrin
