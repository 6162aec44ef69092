// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/engine/prepared_document.h"
#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

class AnimationRenderer;
class ViewOrigins;
class Widget;

/// A picture that a document names.
struct NamedPicture {
    URL url;
    /// What it is called in a folder of pictures: see `WidgetOptions::imageCacheDir`.
    std::string fileName;
};

/// A document bound to a model at a moment: a view tree that may be laid out in many rooms. Immutable; several threads
/// may use it at once.
class BoundDocument {
public:
    [[nodiscard]] const AnyView& view() const { return view_; }
    /// The view tree as JSON, or written piece by piece. Throws `TavrinError` of kind "Budget" for a tree that costs
    /// more than it was bound with.
    [[nodiscard]] std::string treeText() const;
    void writeTree(const TextSink& sink) const;
    /// What opens when the widget is tapped where nothing else leads anywhere.
    [[nodiscard]] const std::optional<URL>& widgetURL() const { return widgetURL_; }
    /// Where in the document each view comes from; null unless `WidgetOptions::trace` asked for it.
    [[nodiscard]] const std::shared_ptr<const ViewOrigins>& origins() const { return origins_; }
    /// The pictures that the view tree names, in document order.
    [[nodiscard]] std::vector<NamedPicture> pictures() const;

    /// The widget in a room. What `options` say of binding counts for nothing here.
    [[nodiscard]] Widget widget(WidgetOptions options) const;
    /// The widget at one moment after another; see there.
    [[nodiscard]] AnimationRenderer animation(const WidgetOptions& options) const;

private:
    friend class Document;
    friend class Widget;
    explicit BoundDocument(PreparedDocument document) : document_(std::move(document)) {}
    [[nodiscard]] struct RenderOptions renderOptions(const WidgetOptions& options) const;

    PreparedDocument document_;  // which knows the ways to what made the views
    AnyView view_;
    std::optional<URL> widgetURL_;
    std::shared_ptr<const ViewOrigins> origins_;
    Date date_;
    TimeZone timeZone_;
    RenderBudget budget_;
    Cost cost_;  // of all that led to it
};

/// A document that is decoded once and drawn as often as needed, with many models, on many threads. Immutable.
///
///     const tavrin::Document document(text);
///     std::string png = document.widget(model, {.scale = 2}).encode();
class Document {
public:
    /// Throws `DecodingError` or `ConversionError` for a text that is no document, `TavrinError` of kind "Budget" for
    /// one that costs too much. What it costs counts for all that is made of it, and so does what was `spent` before.
    explicit Document(std::string_view json, const RenderBudget& budget = {}, const Cost& spent = {});

    /// The same, of which the time that decoding took does not count: for one that is kept from call to call.
    [[nodiscard]] Document withoutTime() const;

    /// Binds it to a model. Throws what `TavrinEngine::loadView` does after decoding.
    [[nodiscard]] BoundDocument bind(std::optional<std::string_view> model, const WidgetOptions& options) const;
    /// Binds it and makes the widget that is to be drawn.
    [[nodiscard]] Widget widget(std::optional<std::string_view> model, const WidgetOptions& options) const;

private:
    Cost cost_;
    PreparedDocument prepared_;
};

}  // namespace tavrin
