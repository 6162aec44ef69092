// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <concepts>
#include <optional>
#include <string_view>

#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// What a progress view's style is told.
struct ProgressViewStyleConfiguration {
    /// How much is done, 0…1; absent when it is not known.
    std::optional<double> fractionCompleted = std::nullopt;
};

/// How a progress view looks: `makeBody` makes the views, `write` prints the style as a value of the view tree, and
/// `forEachInside` calls its argument with each view that the style holds.
template <class Style>
concept ProgressViewStyle = requires(const Style& style, const ProgressViewStyleConfiguration& configuration,
                                     ViewWriter& writer) {
    { style.makeBody(configuration) } -> std::convertible_to<AnyView>;
    style.write(writer);
    style.forEachInside([](const AnyView&) {});
};

/// How much of something is done, `value` of `total`, in the look of a style.
template <ProgressViewStyle Style>
struct ProgressView {
    static constexpr std::string_view name = "ProgressView";
    static constexpr bool readsDate = false;  // a style is told how much is done, and nothing else

    double value = 0;
    double total = 1;
    Style style;

    [[nodiscard]] AnyView body(const EnvironmentValues&) const {
        const double fraction = value / total;
        if (std::isnan(fraction)) return style.makeBody({});
        return style.makeBody({.fractionCompleted = fraction < 0 ? 0 : fraction > 1 ? 1 : fraction});
    }

    void write(ViewWriter& writer) const {
        writer.json().key("value").value(value).key("total").value(total).key("style");
        style.write(writer);
    }
    template <class Visit>
    void forEachInside(const Visit& visit) const {
        style.forEachInside(visit);
    }
};

}  // namespace tavrin
