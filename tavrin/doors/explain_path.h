// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/platform/explain/explanation.h"

namespace tavrin {

/// The places in an explanation of the views that come from a path of the document, as errors write it. Throws
/// `TavrinError` of kind "Explain" for a path that names nothing that is drawn.
[[nodiscard]] std::vector<std::size_t> viewsAtPath(const Explanation& explanation, const std::string& path,
                                                   std::string_view document);

}  // namespace tavrin
