// SPDX-License-Identifier: MIT
#include "tavrin/doors/open_document.h"

#include <cstddef>
#include <functional>

#include "tavrin/doors/explain_path.h"
#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/platform/foundation/precondition.h"
#include "tavrin/widget/kept_pictures.h"
#include "tavrin/widget/widget.h"

namespace tavrin {
namespace {

std::optional<std::string_view> viewOf(const std::shared_ptr<const std::string>& text) {
    return text ? std::optional<std::string_view>(*text) : std::nullopt;
}

/// Does some work; what fails is told in the terms of the two texts.
template <class Work>
auto described(std::string_view document, std::optional<std::string_view> model, const Work& work) {
    const ThrowingPreconditions throwing;  // what is malformed must not end the process of a host
    try {
        return work();
    } catch (const OptionError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (...) {
        throw CallError(describeError(std::current_exception(), document, model));
    }
}

KeptPictures& keptByThisThread() {
    constexpr std::size_t mostBytes = std::size_t{32} << 20;
    thread_local KeptPictures kept(mostBytes);
    return kept;
}

}  // namespace

OpenDocument::OpenDocument(std::string text, const RenderBudget& budget)
    : state_(described(text, std::nullopt, [&] {
          Document document = Document(text, budget).withoutTime();
          // The same text opened again goes by the same name. Two that share one only help each other less.
          std::string name = std::to_string(std::hash<std::string>()(text));
          return std::make_shared<const State>(State{std::move(text), std::move(name), std::move(document)});
      })) {}

OpenWidget OpenDocument::widget(std::optional<std::string> model, DrawingOptions options) const {
    // Once for all answers.
    if (!options.widget.date) options.widget.date = Date::now();
    if (!options.widget.timeZone) options.widget.timeZone = TimeZone::current();
    options.widget = described(text(), std::nullopt, [&] { return options.withFonts(); });
    return OpenWidget(state_, std::move(model), std::move(options));
}

OpenWidget::OpenWidget(std::shared_ptr<const OpenDocument::State> document, std::optional<std::string> model,
                       DrawingOptions options)
    : document_(std::move(document)),
      model_(model ? std::make_shared<const std::string>(*std::move(model)) : nullptr),
      options_(std::move(options)),
      bound_(described(document_->text, viewOf(model_),
                       [&] { return document_->document.bind(viewOf(model_), options_.widget); })) {}

DrawnPicture OpenDocument::draw(std::optional<std::string_view> model, const DrawingOptions& options) const {
    KeptPictures& kept = keptByThisThread();
    return described(text(), model, [&] {
        Widget widget = state_->document.widget(model, options.withFonts());
        DrawnPicture drawn{widget.encode(options.format, kept.before(state_->name, widget.options()))};
        kept.trim();
        drawn.size = widget.pictureSize(options.format);
        drawn.validUntil = widget.validUntil();
        return drawn;
    });
}

std::vector<NamedPicture> OpenDocument::pictures(std::optional<std::string_view> model,
                                                 const DrawingOptions& options) const {
    return described(text(), model, [&] { return state_->document.bind(model, options.widget).pictures(); });
}

template <class Work>
auto OpenWidget::answer(const Work& work) const {
    return described(document_->text, viewOf(model_), work);
}

/// Does what draws the widget from what the thread keeps of the document's last picture.
template <class Work>
auto OpenWidget::fromLastPicture(const WidgetOptions& options, const Work& work) const {
    KeptPictures& kept = keptByThisThread();
    return answer([&] {
        auto drawn = work(bound_.widget(options), kept.before(document_->name, options));
        kept.trim();
        return drawn;
    });
}

std::string OpenWidget::encode(const PictureOptions& picture) const {
    WidgetOptions options = options_.widget;
    if (picture.compression) options.compression = *picture.compression;
    if (picture.quality) options.quality = picture.quality;
    return fromLastPicture(options, [&](Widget widget, LastPicture& last) {
        return widget.encode(picture.format.value_or(options_.format), last);
    });
}

std::shared_ptr<const PixelBuffer> OpenWidget::pixels() const {
    return fromLastPicture(options_.widget, [](Widget widget, LastPicture& last) { return widget.pixels(last); });
}

std::string OpenWidget::treeText() const {
    return answer([&] { return bound_.treeText(); });
}

std::string OpenWidget::layoutText() const {
    return answer([&] { return bound_.widget(options_.widget).layoutText(); });
}

std::string OpenWidget::targetsText() const {
    return answer([&] { return bound_.widget(options_.widget).targetsText(); });
}

std::optional<Date> OpenWidget::validUntil() const {
    return answer([&] { return bound_.widget(options_.widget).validUntil(); });
}

std::string OpenWidget::explanation(const std::optional<std::string>& path) const {
    return answer([&] {
        WidgetOptions options = options_.widget;
        options.trace = WidgetTrace::reasons;
        const Explanation explanation =
            document_->document.widget(viewOf(model_), options).explanation();  // bound anew, with origins
        if (!path) return outlineText(explanation);
        return explanationText(explanation, viewsAtPath(explanation, *path, document_->text));
    });
}

OpenWidget OpenWidget::with(std::optional<CancelToken> token) const {
    OpenWidget widget = *this;
    widget.options_.widget.budget.cancel = std::move(token);
    return widget;
}

std::vector<Diagnostic> checkDocument(std::string_view document, std::optional<std::string_view> model,
                                      const DrawingOptions& options, const std::vector<std::string>& families) {
    return described(document, model, [&] {
        DiagnoseOptions diagnosed{options.withFonts()};
        diagnosed.rooms.clear();
        for (const std::string& family : families)
            diagnosed.rooms.push_back(readFamily("families", family, options.screen));
        if (families.empty()) diagnosed.rooms.push_back(options.widget.room);
        return diagnose(document, model, diagnosed);
    });
}

}  // namespace tavrin
