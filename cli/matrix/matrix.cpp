// SPDX-License-Identifier: MIT
#include "cli/matrix/matrix.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>

#include <fmt/format.h>

#include "cli/options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

fs::path normalised(const fs::path& path) { return fs::absolute(path).lexically_normal(); }

/// A document's path from a folder that it lies in or the working directory, without its suffix and the way out: "b/c"
/// of "../b/c.json".
std::string documentName(const std::string& path, const std::vector<fs::path>& tops) {
    if (path == "-") return "stdin";
    const fs::path document = normalised(path);
    const auto top = std::find_if(tops.begin(), tops.end(), [&](const fs::path& folder) {
        return *document.lexically_relative(folder).begin() != "..";
    });
    const fs::path way = document.lexically_relative(top == tops.end() ? fs::current_path() : *top);
    fs::path name;
    for (const fs::path& part : way)
        if (part != "..") name /= part;
    return name.replace_extension().string();
}

}  // namespace

Cell cellAt(const Matrix& matrix, std::size_t index) {
    const auto next = [&index](std::size_t count) {
        const std::size_t at = index % count;
        index /= count;
        return at;
    };
    Cell cell;
    cell.scale = next(matrix.scales.size());
    cell.appearance = next(matrix.appearances.size());
    cell.room = next(matrix.rooms.size());
    cell.moment = next(matrix.moments.size());
    cell.model = next(matrix.models.size());
    cell.document = index;
    return cell;
}

std::string nameOf(const Matrix& matrix, const Cell& cell) {
    return nameOf(matrix, cell, matrix.models[cell.model].name);
}

std::string nameOf(const Matrix& matrix, const Cell& cell, const std::string& model) {
    std::string name = matrix.documents[cell.document].name + "/" + matrix.rooms[cell.room].name + "-";
    name += tavrin::name(matrix.appearances[cell.appearance]);
    name += "@" + shortNumber(matrix.scales[cell.scale]) + "x";
    for (const std::string* part : {&model, &matrix.moments[cell.moment].name})
        if (!part->empty()) name += "-" + *part;
    return name;
}

std::vector<Matrix::Document> namedDocuments(const std::vector<std::string>& paths, const std::vector<fs::path>& tops) {
    std::vector<Matrix::Document> documents;
    std::map<std::string, std::string> pathsByName;
    std::vector<fs::path> folders;
    std::transform(tops.begin(), tops.end(), std::back_inserter(folders), normalised);
    for (const std::string& path : paths) {
        const std::string name = documentName(path, folders);
        const auto [other, isNew] = pathsByName.emplace(name, path);
        if (!isNew)
            throw UsageError(fmt::format("'{}' and '{}' would both be drawn to '{}/…'", other->second, path, name));
        documents.push_back({path, name});
    }
    return documents;
}

}  // namespace tavrin::cli
