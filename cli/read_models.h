// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>

#include "cli/input.h"

namespace tavrin::cli {

/// The texts of models, each read once, however many documents have it.
class ReadModels {
public:
    /// Throws as `readInput` does.
    void add(const std::optional<std::string>& path, const RenderBudget& budget) {
        if (path && !sources_.contains(*path))
            sources_.emplace(*path, Source{displayName(*path), readInput(*path, budget)});
    }

    /// Null for no model.
    [[nodiscard]] const Source* find(const std::optional<std::string>& path) const {
        return path ? &sources_.at(*path) : nullptr;
    }

private:
    std::map<std::string, Source> sources_;
};

}  // namespace tavrin::cli
