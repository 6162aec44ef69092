// SPDX-License-Identifier: MIT
#include "tavrin/widget/document.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "tavrin/images/web_image.h"
#include "tavrin/images/web_image_hasher.h"
#include "tavrin/platform/ui/view_tree.h"
#include "tavrin/widget/animation_renderer.h"
#include "tavrin/widget/note_logger.h"
#include "tavrin/widget/widget.h"

namespace tavrin {

std::string BoundDocument::treeText() const {
    Cost cost = cost_;
    const Metering metering(budget_, cost);
    return viewTreeText(view_);
}

void BoundDocument::writeTree(const TextSink& sink) const {
    Cost cost = cost_;
    const Metering metering(budget_, cost);
    writeViewTree(view_, sink);
}

std::vector<NamedPicture> BoundDocument::pictures() const {
    std::vector<NamedPicture> pictures;
    std::vector<AnyView> pending{view_};
    while (!pending.empty()) {
        const AnyView view = std::move(pending.back());
        pending.pop_back();
        if (const auto* image = view.as<WebImage>()) {
            if (image->url) pictures.push_back({*image->url, WebImageHasher(image->written)});
            if (image->alt) pictures.push_back({*image->alt, WebImageHasher(image->writtenAlt)});
        }
        const auto first = static_cast<std::ptrdiff_t>(pending.size());
        view.box().forEachInside([&](const AnyView& inside) { pending.push_back(inside); });
        std::reverse(pending.begin() + first, pending.end());
    }
    return pictures;
}

Widget BoundDocument::widget(WidgetOptions options) const { return Widget(*this, std::move(options)); }

AnimationRenderer BoundDocument::animation(const WidgetOptions& options) const {
    return AnimationRenderer(view_, renderOptions(options), options.notes);
}

RenderOptions BoundDocument::renderOptions(const WidgetOptions& options) const {
    RenderOptions render;
    render.setRoom(options.room);
    render.scale = options.scale;
    render.environment.appearance = options.appearance;
    render.environment.date = date_;
    render.environment.timeZone = timeZone_;
    render.background = options.background;
    render.rounded = options.rounded;
    render.compression = options.compression;
    render.quality = options.quality;
    render.fonts = options.fonts;
    render.widgetURL = widgetURL_;
    render.budget = options.budget;
    render.spent = cost_;
    render.place = [document = document_](TavrinError& error) { document.place(error); };
    if (options.trace == WidgetTrace::reasons) render.recording = layout::Recording::placements;
    if (options.notes)
        render.diagnostics = [notes = options.notes](std::string_view message) { notes({{}, std::string(message)}); };
    return render;
}

Document::Document(std::string_view json, const RenderBudget& budget, const Cost& spent)
    : cost_(spent), prepared_([&] {
          const Metering metering(budget, cost_);
          return PreparedDocument(json);
      }()) {}

Document Document::withoutTime() const {
    Document same = *this;
    same.cost_.seconds = 0;
    return same;
}

BoundDocument Document::bind(std::optional<std::string_view> model, const WidgetOptions& options) const {
    BoundDocument bound(prepared_);
    bound.date_ = options.date.value_or(Date::now());
    bound.timeZone_ = options.timeZone ? *options.timeZone : TimeZone::current();
    Context context(std::make_shared<NoteLogger>(options.notes));
    context.date = bound.date_;
    context.timeZone = bound.timeZone_;
    context.linkConverter = options.linkConverter;
    context.imageCacheDir = options.imageCacheDir;
    context.maxImageSize = options.maxImageSize;
    context.fetchPolicy = options.fetchPolicy;
    context.maximumNodes = options.maximumNodes;
    context.maximumNesting = options.maximumNesting;
    context.recordsOrigins = options.trace != WidgetTrace::none;
    bound.budget_ = options.budget;
    bound.cost_ = cost_;
    {
        const Metering metering(options.budget, bound.cost_);
        bound.view_ = prepared_.bind(model, context);
    }
    bound.widgetURL_ = context.widgetURL();
    bound.origins_ = context.origins();
    return bound;
}

Widget Document::widget(std::optional<std::string_view> model, const WidgetOptions& options) const {
    return bind(model, options).widget(options);
}

}  // namespace tavrin
