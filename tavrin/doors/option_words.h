// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/paint/png_encoder.h"
#include "tavrin/platform/ui/color.h"
#include "tavrin/widget/image_renderer.h"

namespace tavrin {

// The words of options that take nothing else.
inline constexpr const auto& appearanceWords = enumeratorNames<Appearance>;
inline constexpr const auto& budgetWords = enumeratorNames<BudgetProfile>;
inline constexpr const auto& compressionWords = enumeratorNames<paint::PngCompression>;
inline constexpr const auto& pictureFormatWords = enumeratorNames<PictureFormat>;
inline constexpr EnumeratorTable<FetchPolicy, std::string_view> fetchTable{
    {{FetchPolicy::none, "none"}, {FetchPolicy::publicOnly, "public"}, {FetchPolicy::all, "all"}}};
inline constexpr const auto& fetchWords = fetchTable.values();

}  // namespace tavrin
