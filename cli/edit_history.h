// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "tavrin/diagnostics/diagnostic.h"

namespace tavrin::cli {

/// The edits that were made in a text, round after round, each in what the one before had left.
class EditHistory {
public:
    /// Notes the edits of a round: those of the fixes that were made, which may share some.
    void add(const std::vector<Diagnostic>& fixes);

    /// A diagnostic of the text as it is now, with the places in `original`, the text as it was before all edits. What
    /// lies within a replaced stretch is placed at its beginning.
    [[nodiscard]] Diagnostic inOriginal(Diagnostic diagnostic, std::string_view original) const;

private:
    [[nodiscard]] std::size_t originalOffset(std::size_t offset) const;

    std::vector<std::vector<TextEdit>> rounds_;  // each in the order of the text
};

}  // namespace tavrin::cli
