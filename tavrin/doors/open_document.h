// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tavrin/diagnostics/diagnose.h"
#include "tavrin/doors/error_description.h"
#include "tavrin/doors/option_reader.h"
#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/paint/pixel_buffer.h"
#include "tavrin/widget/document.h"
#include "tavrin/widget/image_renderer.h"
#include "tavrin/widget/widget_options.h"

/// What bindings to other languages hold: a document and a widget that any number of threads may use at once, and that
/// fail with what is easily handed on.
namespace tavrin {

/// A call that failed, told as plain data with its place in the text.
struct CallError : std::exception {
    ErrorDescription description;

    explicit CallError(ErrorDescription description) : description(std::move(description)) {}
    [[nodiscard]] const char* what() const noexcept override { return description.message.c_str(); }
};

class OpenWidget;

/// A picture, and what is told with it.
struct DrawnPicture {
    std::string bytes;
    Size size = {};  ///< in pixels, or in points where it is not made of them
    std::optional<Date> validUntil = std::nullopt;
};

/// A document's text, and what it is decoded to. A value that is cheap to copy; immutable, thread-safe. Its calls throw
/// `CallError`, and `OptionError` where that is said; `std::bad_alloc` leaves as it is.
class OpenDocument {
public:
    explicit OpenDocument(std::string text, const RenderBudget& budget = {});

    [[nodiscard]] const std::string& text() const { return state_->text; }
    /// Binds it to the text of a model.
    [[nodiscard]] OpenWidget widget(std::optional<std::string> model, DrawingOptions options) const;
    /// Binds it to the text of a model and draws that, all at once: neither is kept.
    [[nodiscard]] DrawnPicture draw(std::optional<std::string_view> model, const DrawingOptions& options) const;
    /// The pictures that it names when it is bound to the text of a model.
    [[nodiscard]] std::vector<NamedPicture> pictures(std::optional<std::string_view> model,
                                                     const DrawingOptions& options) const;

private:
    friend class OpenWidget;
    struct State {
        std::string text;
        std::string name;  // by which the last picture of it is known
        Document document;
    };
    std::shared_ptr<const State> state_;
};

/// A bound document and how it is drawn. A value that is cheap to copy; immutable, thread-safe: each answer is worked
/// out on the thread that asks for it, from what that thread keeps of the last picture. Calls throw as
/// `OpenDocument`'s.
class OpenWidget {
public:
    /// As `Widget`'s.
    [[nodiscard]] std::string encode(const PictureOptions& picture = {}) const;
    [[nodiscard]] std::shared_ptr<const PixelBuffer> pixels() const;
    [[nodiscard]] std::string treeText() const;
    [[nodiscard]] std::string layoutText() const;
    [[nodiscard]] std::string targetsText() const;
    [[nodiscard]] std::optional<Date> validUntil() const;
    /// Why each view, or those that come from a path, have their size and place, in words as `tavrin explain` prints.
    [[nodiscard]] std::string explanation(const std::optional<std::string>& path) const;

    /// The same widget; its answers, but for the tree, end with a `CallError` once `token` is cancelled.
    [[nodiscard]] OpenWidget with(std::optional<CancelToken> token) const;

    /// With the moment and zone that it is drawn with.
    [[nodiscard]] const DrawingOptions& options() const { return options_; }

private:
    friend class OpenDocument;
    OpenWidget(std::shared_ptr<const OpenDocument::State> document, std::optional<std::string> model,
               DrawingOptions options);
    template <class Work>
    auto answer(const Work& work) const;
    template <class Work>
    auto fromLastPicture(const WidgetOptions& options, const Work& work) const;

    std::shared_ptr<const OpenDocument::State> document_;
    std::shared_ptr<const std::string> model_;  // null where there is none
    DrawingOptions options_;
    BoundDocument bound_;
};

/// What `diagnose` finds, in the rooms that the options' screen has for families; throws `OptionError` for one that it
/// has not, and `CallError`. Without families the widget is looked at in the options' room.
[[nodiscard]] std::vector<Diagnostic> checkDocument(std::string_view document, std::optional<std::string_view> model,
                                                    const DrawingOptions& options,
                                                    const std::vector<std::string>& families);

}  // namespace tavrin
