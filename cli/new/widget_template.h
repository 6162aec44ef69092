// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <string_view>

namespace tavrin::cli {

/// A widget to begin with.
struct WidgetTemplate {
    std::string_view name;
    std::string_view summary;
    std::string_view document;
    std::string_view model;
    std::string_view settings;
};

/// All templates; the first is the usual one.
[[nodiscard]] std::span<const WidgetTemplate> widgetTemplates();

/// The template of that name; null where there is none.
[[nodiscard]] const WidgetTemplate* findTemplate(std::string_view name);

}  // namespace tavrin::cli
