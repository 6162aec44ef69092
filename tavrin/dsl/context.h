// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/logger.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/foundation/time/time_zone.h"

namespace tavrin {

struct RenderState;
class ViewOrigins;

/// What a host hands to `loadView`, and what rendering leaves for the host; hosts know it as `TavrinEngine::Context`.
/// It may serve many calls, one at a time: it is not locked.
class Context {
public:
    explicit Context(std::shared_ptr<Logger> logger = nullptr);
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;
    ~Context();

    /// Changes every address that a document names before it is used.
    std::function<URL(const URL&)> linkConverter;
    /// Where pictures are looked for instead of on the network, each under the name that `WebImageHasher` gives.
    std::optional<URL> imageCacheDir;
    /// Larger pictures are scaled down to this size, in points.
    std::optional<Size> maxImageSize;
    /// What may be fetched for the addresses that documents name; each refusal is logged. Pictures in the process's
    /// memory are drawn under every policy, since no request is made for them.
    FetchPolicy fetchPolicy = FetchPolicy::all;

    /// The moment that counts as now while rendering: where a timer without a timestamp counts from. Absent: the
    /// moment of the call.
    std::optional<Date> date;
    /// The device's time zone, in which clock hands turn that name none. Absent: the one the process runs in.
    std::optional<TimeZone> timeZone;
    /// How many nodes one call may draw, each use of a referenced one counted. Eight times as many modifiers may be
    /// applied.
    std::size_t maximumNodes = 1'000'000;
    /// How deeply nodes may be nested while drawing, references counted.
    std::size_t maximumNesting = 512;
    /// What each call may cost; bytes are those of the document, the model and the views.
    RenderBudget budget;
    /// Whether renders note where in the document each view comes from.
    bool recordsOrigins = false;

    [[nodiscard]] const std::shared_ptr<Logger>& logger() const { return logger_; }
    /// The address that opens when the widget is tapped: the first one that a render with this context met.
    [[nodiscard]] const std::optional<URL>& widgetURL() const;
    /// Where in the document the views of the last successful render come from; null unless `recordsOrigins`.
    [[nodiscard]] const std::shared_ptr<const ViewOrigins>& origins() const;

private:
    friend struct RenderState;

    std::shared_ptr<Logger> logger_;
    std::unique_ptr<RenderState> state_;
};

}  // namespace tavrin
