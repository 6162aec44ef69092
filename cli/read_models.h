// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "cli/arguments.h"
#include "cli/input.h"

namespace tavrin::cli {

/// The texts of models, each read once, however many documents have it.
class ReadModels {
public:
    /// Keeps a reference to the arguments.
    explicit ReadModels(const DocumentArguments& arguments) : arguments_(arguments) {}

    /// Throws as `readInput` does, where that is to end the run.
    void add(const std::optional<std::string>& path) {
        if (!path || models_.contains(*path)) return;
        Model model{{displayName(*path)}};
        try {
            model.source.text = readInput(*path, arguments_.budget);
        } catch (...) {
            if (arguments_.modelsEndRun) throw;
            model.error = std::current_exception();
        }
        models_.emplace(*path, std::move(model));
    }

    /// Null for no model. Throws, each time, what reading it threw.
    [[nodiscard]] const Source* find(const std::optional<std::string>& path) const {
        if (!path) return nullptr;
        const Model& model = models_.at(*path);
        if (model.error) std::rethrow_exception(model.error);
        return &model.source;
    }

private:
    struct Model {
        Source source;
        std::exception_ptr error = nullptr;
    };

    const DocumentArguments& arguments_;
    std::map<std::string, Model> models_;
};

}  // namespace tavrin::cli
