// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tavrin/dsl/view_origins.h"
#include "tavrin/json/json_outline.h"
#include "tavrin/platform/foundation/coding_path.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {

/// Leads from places in a widget's laid-out tree, as it is printed, to those in its document.
class ViewPlaces {
public:
    /// The widget must have been bound with `WidgetTrace::origins`. Throws what laying it out does.
    explicit ViewPlaces(Widget& widget);
    ViewPlaces(const ViewPlaces&) = delete;
    ViewPlaces& operator=(const ViewPlaces&) = delete;

    /// The way to what made the view at a place, or the nearest one around it that the document made; none where there
    /// is none.
    [[nodiscard]] std::optional<CodingPath> originOf(const CodingPath& way);

private:
    std::shared_ptr<const ViewOrigins> known_;
    std::vector<const AnyView*> shown_;
    std::string tree_;
    JSONOutline outline_;
    OutlinePaths paths_;
    std::vector<const CodingPath*> origins_;  // of the values in the outline; null where none is known
};

}  // namespace tavrin::cli
