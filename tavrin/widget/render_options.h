// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/layout/layout_tree.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/paint/widget_look.h"
#include "tavrin/platform/text/text_engine.h"
#include "tavrin/platform/ui/environment.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin {

using paint::PngCompression;

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
    /// Of a JPEG (absent: 85), or of a WebP that is not to be lossless: 1 to 100.
    std::optional<int> quality = std::nullopt;
    /// The fonts to draw with; null is the system library.
    std::shared_ptr<const text::FontLibrary> fonts = nullptr;
    /// What opens when the widget is tapped where nothing else leads anywhere: `Context::widgetURL` after `loadView`.
    std::optional<URL> widgetURL = std::nullopt;
    /// Whether anything but `widgetURL` opens; not so in widgets of some families.
    bool linksCanBeTapped = true;
    /// What each answer of a renderer may cost, layout included, and what was spent of it before.
    RenderBudget budget = {};
    Cost spent = {};
    /// Whether layout notes why each view lies where it does, for `explainLayout`.
    layout::Recording recording = layout::Recording::none;
    /// Hears what is doubtful in the view but no error.
    layout::Diagnostics diagnostics = {};
    /// Gives an error of layout or painting its place, by what made the view that it was at; see `AnyView::noteOrigin`.
    std::function<void(TavrinError&)> place = {};

    /// Draws in a room: in its size, with links that lead anywhere only where they can be tapped.
    void setRoom(const WidgetRoom& room) {
        size = room.size;
        linksCanBeTapped = room.linksCanBeTapped;
    }

    /// Does what lays out or paints; errors that come out of it have their place where it is known.
    template <class Work>
    decltype(auto) placing(Work work) const {
        try {
            return work();
        } catch (TavrinError& error) {
            if (error.origin && place) place(error);
            throw;
        }
    }

    [[nodiscard]] paint::WidgetLook look() const { return {size, environment.appearance, background, rounded}; }
};

}  // namespace tavrin
