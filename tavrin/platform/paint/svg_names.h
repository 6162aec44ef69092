// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin::paint {

/// Cairo names an SVG's groups and images by a count that goes on through the process ("image17"); here they are
/// counted anew for each document, so that the same drawing is the same bytes.
[[nodiscard]] std::string withStableNames(std::string_view svg);

}  // namespace tavrin::paint
