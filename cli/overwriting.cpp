// SPDX-License-Identifier: MIT
#include "cli/overwriting.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "cli/input.h"
#include "cli/project/widget_files.h"
#include "cli/snapshot/snapshot.h"
#include "cli/usage_error.h"

namespace tavrin::cli {
namespace {

/// What tells a file from all others, whatever it is called.
using Identity = std::pair<dev_t, ino_t>;

std::optional<Identity> identityOf(const std::string& input) {
    struct stat status {};
    const int failed = input == "-" ? ::fstat(STDIN_FILENO, &status) : ::stat(input.c_str(), &status);
    if (failed != 0 || !S_ISREG(status.st_mode)) return std::nullopt;  // a device or pipe may be both
    return Identity{status.st_dev, status.st_ino};
}

/// The files that are read.
class Inputs {
public:
    Inputs(const DocumentArguments& arguments, std::string option) : option_(std::move(option)) {
        for (const DocumentInput& document : arguments.documents) {
            add(document.path, "document");
            if (document.model) add(*document.model, "model");
            if (document.path == "-") continue;
            const WidgetFiles beside = pairedWith(document.path, ModelsFolder::unlisted);
            if (beside.model) add(beside.model->string(), "model");
            if (beside.settings) add(beside.settings->string(), "settings");
        }
    }

    void add(const Matrix& matrix) {
        for (const Matrix::Model& model : matrix.models)
            if (model.path) add(*model.path, "model");
    }

    void refuse(const std::filesystem::path& output) const {
        const auto identity = identityOf(output.string());
        const auto input = identity ? inputs_.find(*identity) : inputs_.end();
        if (input == inputs_.end()) return;
        throw UsageError("'" + output.string() + "' would be written over the " + input->second + "; give another " +
                         option_);
    }

    /// Refuses inputs that may be called as one of the pictures in a folder or below, whatever these will be called.
    void refusePictures(const std::filesystem::path& folder) const {
        std::error_code error;
        const std::filesystem::path top = std::filesystem::weakly_canonical(folder, error);
        for (const std::string& path : paths_) {
            const std::filesystem::path input = std::filesystem::weakly_canonical(path, error);
            const std::filesystem::path inside = input.lexically_relative(top);
            if (input.extension() == ".png" && !inside.empty() && *inside.begin() != "..")
                throw UsageError("'" + path + "' could be written over by a picture; give another " + option_);
        }
    }

    void add(const std::string& path, const char* role) {
        paths_.push_back(path);
        if (const auto identity = identityOf(path))
            inputs_.emplace(*identity, std::string(role) + " '" + displayName(path) + "'");
    }

private:
    std::string option_;  // that says where outputs go
    std::vector<std::string> paths_;
    std::map<Identity, std::string> inputs_;
};

void forEachCell(const Matrix& matrix, const std::function<void(const std::string& name)>& visit) {
    for (std::size_t index = 0; index < matrix.count(); ++index) visit(nameOf(matrix, matrix.cells[index]));
}

void refuseFrames(const Inputs& inputs, const Frames& frames) {
    if (frames.kind == Frames::Kind::file) inputs.refuse(frames.path);
    if (frames.kind != Frames::Kind::numberedFiles) return;
    for (std::size_t frame = 1; frame <= frames.span.count(); ++frame) inputs.refuse(frames.pathOf(frame));
}

}  // namespace

void refuseToOverwriteInputs(const RenderArguments& arguments) {
    const Inputs inputs(arguments, "--output");
    if (arguments.frames) return refuseFrames(inputs, *arguments.frames);
    if (arguments.destination.kind == Destination::Kind::standardOutput) return;
    for (const DocumentInput& document : arguments.documents)
        inputs.refuse(arguments.destination.pathFor(document.namedAs));
}

void refuseToOverwriteInputs(const MatrixArguments& arguments) {
    Inputs inputs(arguments, "--output");
    inputs.add(arguments.matrix);
    for (const char* name : {"index.json", "index.html"}) inputs.refuse(arguments.folder / name);
    forEachCell(arguments.matrix, [&](const std::string& name) { inputs.refuse(arguments.folder / (name + ".png")); });
}

void refuseToOverwriteInputs(const LinesArguments& arguments) {
    Inputs inputs(arguments, "--output");
    inputs.add(arguments.lines, "models");
    inputs.refuse(arguments.folder / "index.json");
    inputs.refusePictures(arguments.folder);
}

void refuseToOverwriteInputs(const SnapshotArguments& arguments) {
    Inputs inputs(arguments, "--dir");
    inputs.add(arguments.matrix);
    forEachCell(arguments.matrix, [&](const std::string& name) {
        const SnapshotFiles files(arguments.snapshot.folder, name);
        inputs.refuse(files.png);
        inputs.refuse(files.tree);
    });
}

}  // namespace tavrin::cli
