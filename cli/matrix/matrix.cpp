// SPDX-License-Identifier: MIT
#include "cli/matrix/matrix.h"

#include <algorithm>
#include <filesystem>
#include <functional>
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

/// The place of a value in a list to which it is added if it is not there.
template <class Value, class Same>
std::size_t placeOf(std::vector<Value>& list, const Value& value, Same same) {
    const auto found = std::find_if(list.begin(), list.end(), [&](const Value& other) { return same(other, value); });
    if (found != list.end()) return static_cast<std::size_t>(found - list.begin());
    list.push_back(value);
    return list.size() - 1;
}

template <class Value, class Same>
std::vector<std::size_t> placesOf(std::vector<Value>& list, const std::vector<Value>& values, Same same) {
    std::vector<std::size_t> places;
    places.reserve(values.size());
    for (const Value& value : values) places.push_back(placeOf(list, value, same));
    return places;
}

bool sameMoment(const Matrix::Moment& a, const Matrix::Moment& b) { return a.date == b.date && a.text == b.text; }

bool sameRoom(const WidgetRoom& a, const WidgetRoom& b) { return a.name == b.name && a.size == b.size; }

}  // namespace

std::size_t MatrixLooks::count() const {
    std::size_t modelsInRooms = 0;
    for (const auto& model : models)
        for (const std::optional<Matrix::Model>& inRoom : model)
            if (inRoom) ++modelsInRooms;
    return modelsInRooms * moments.size() * appearances.size() * scales.size();
}

void addCells(Matrix& matrix, std::size_t document, const MatrixLooks& looks) {
    const std::vector<std::size_t> moments = placesOf(matrix.moments, looks.moments, sameMoment);
    const std::vector<std::size_t> rooms = placesOf(matrix.rooms, looks.rooms, sameRoom);
    const std::vector<std::size_t> appearances = placesOf(matrix.appearances, looks.appearances, std::equal_to<>());
    const std::vector<std::size_t> scales = placesOf(matrix.scales, looks.scales, std::equal_to<>());
    for (const auto& modelByRoom : looks.models)
        for (const std::size_t moment : moments)
            for (std::size_t at = 0; at < rooms.size(); ++at) {
                if (!modelByRoom[at]) continue;
                const std::size_t model = placeOf(matrix.models, *modelByRoom[at], std::equal_to<>());
                for (const std::size_t appearance : appearances)
                    for (const std::size_t scale : scales)
                        matrix.cells.push_back({document, model, moment, rooms[at], appearance, scale});
            }
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

std::vector<Matrix::Document> namedDocuments(const std::vector<Operand>& operands, const std::vector<fs::path>& tops) {
    std::vector<Matrix::Document> documents;
    std::map<std::string, std::string> pathsByName;
    std::vector<fs::path> folders;
    std::transform(tops.begin(), tops.end(), std::back_inserter(folders), normalised);
    for (const auto& [path, namedAs] : operands) {
        const std::string name = documentName(namedAs, folders);
        const auto [other, isNew] = pathsByName.emplace(name, path);
        if (!isNew)
            throw UsageError(fmt::format("'{}' and '{}' would both be drawn to '{}/…'", other->second, path, name));
        documents.push_back({path, name});
    }
    return documents;
}

}  // namespace tavrin::cli
