// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/diagnostics/diagnostic.h"

namespace tavrin {

/// A text in which fixes are made.
struct FixedText {
    std::string text;
    /// Which of the diagnostics are fixed in it, by their index.
    std::vector<std::size_t> fixed;
};

/// Makes the fixes of a document's diagnostics that don't contradict each other, the first ones first; what stands
/// around them stays as it is. The same edit may be a part of several fixes.
[[nodiscard]] FixedText applyFixes(std::string_view document, const std::vector<Diagnostic>& diagnostics);

}  // namespace tavrin
