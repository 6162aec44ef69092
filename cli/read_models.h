// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "cli/arguments.h"
#include "cli/input.h"
#include "cli/io_error.h"

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
        } catch (const std::exception& error) {
            if (arguments_.modelsEndRun) throw;
            const bool isNamed = dynamic_cast<const IOError*>(&error) != nullptr;
            model.error = isNamed ? std::current_exception()
                                  : std::make_exception_ptr(
                                        IOError("cannot read '" + model.source.name + "': " + error.what(), *path));
        }
        models_.emplace(*path, std::move(model));
    }

    /// Null for no model. Throws `IOError`, each time, for one that could not be read.
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
