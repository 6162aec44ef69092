// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/paint/widget_look.h"
#include "tavrin/platform/text/text_engine.h"
#include "tavrin/platform/ui/widget_family.h"

namespace tavrin {

using paint::PngCompression;

/// Something doubtful that was met while a widget was made, but no error.
struct WidgetNote {
    /// Of a failure that did not end the work, such as a picture that could not be had: what kind; else empty.
    std::string code;
    std::string message;

    /// "error CODE: message" or "warning: message".
    [[nodiscard]] std::string text() const { return (code.empty() ? "warning: " : "error " + code + ": ") + message; }
};

/// Hears what is doubtful.
using NoteSink = std::function<void(const WidgetNote&)>;

/// What is kept of how a widget came about.
enum class WidgetTrace : unsigned char {
    none,
    origins,  ///< where in the document each view comes from
    reasons,  ///< that, and why each view lies where it does
};

/// How a document becomes a widget. Everything that works on documents takes these, and they mean the same everywhere.
struct WidgetOptions {
    // What a document is bound with.

    /// The moment that is drawn; absent: now.
    std::optional<Date> date = std::nullopt;
    /// The device's time zone; absent: the one the process runs in.
    std::optional<TimeZone> timeZone = std::nullopt;
    /// Where pictures are looked for instead of on the network, each under the name that `WebImageHasher` gives.
    std::optional<URL> imageCacheDir = std::nullopt;
    /// Larger pictures are scaled down to this size, in points.
    std::optional<Size> maxImageSize = std::nullopt;
    /// What may be fetched for the addresses that a document names.
    FetchPolicy fetchPolicy = FetchPolicy::all;
    /// Changes every address that the document names before it is used.
    std::function<URL(const URL&)> linkConverter = {};
    /// How many nodes may be drawn, and how deeply they may be nested; see `Context`.
    std::size_t maximumNodes = 1'000'000;
    std::size_t maximumNesting = 512;

    // How it is laid out and drawn; this may differ from one widget of a bound document to the next.

    /// The room that it has, in points; by default that of systemMedium on a screen of 390 x 844.
    WidgetRoom room = {};
    /// Pixels for each point; positive. Pictures of more than 100 megapixels are refused.
    double scale = 3;
    Appearance appearance = Appearance::light;
    WidgetBackground background = {};
    /// Whether to cut the home screen's rounded corners; outside them the picture is transparent.
    bool rounded = false;
    PngCompression compression = PngCompression::fast;
    /// Of a JPEG (absent: 85), or of a WebP that is not to be lossless: 1 to 100.
    std::optional<int> quality = std::nullopt;
    /// The fonts to draw with; null is the system library.
    std::shared_ptr<const text::FontLibrary> fonts = nullptr;

    // What it may cost, what is kept and what is heard, by binding as well as by laying out.

    /// What each answer of a widget may cost, all that led to it included: decoding the document, binding it, laying it
    /// out. Of an animation, each of its pictures, but for the seconds, which are those of all.
    RenderBudget budget = {};
    WidgetTrace trace = WidgetTrace::none;
    /// Hears what is doubtful, on the thread that works; it must live as long as what is made with it.
    NoteSink notes = {};
};

}  // namespace tavrin
