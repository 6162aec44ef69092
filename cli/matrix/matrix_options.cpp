// SPDX-License-Identifier: MIT
#include "cli/matrix/matrix_options.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "cli/io_error.h"
#include "cli/project/widget_files.h"
#include "cli/several_options.h"
#include "cli/usage_error.h"
#include "tavrin/doors/option_values.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

constexpr OptionPair scales{"--scales", "--scale"};
constexpr OptionPair models{"--models", "--model"};
constexpr OptionPair dates{"--dates", "--date"};
constexpr std::string_view plurals[] = {"--families", "--appearances", scales.several, models.several, dates.several};

std::vector<double> scalesOf(const Command& command) {
    const auto& [option, words] = wordsOf(command, scales);
    if (words.empty()) return {3};
    std::vector<double> list;
    for (const std::string& word : words) {
        const double scale = readUpTo100(option, word);
        if (std::find(list.begin(), list.end(), scale) == list.end()) list.push_back(scale);
    }
    return list;
}

std::vector<Matrix::Model> namedModelsIn(const std::string& folder) {
    std::vector<Matrix::Model> list;
    for (const fs::path& path : modelsIn(folder)) {
        std::error_code unknown;  // reading it will tell
        if (fs::is_other(path, unknown)) throw IOError("cannot read '" + path.string() + "': Not a regular file", path);
        list.push_back({path.string(), path.stem().string()});
    }
    if (list.empty()) throw IOError("there is no model (*.json) in '" + folder + "'", folder);
    std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return list;
}

std::vector<Matrix::Model> modelsOf(const Command& command) {
    if (findModelLines(command)) return {{std::nullopt, ""}};
    if (const std::string* folder = command.find(models.several)) return namedModelsIn(*folder);
    const std::string* const one = command.find(models.one);
    return {{one ? std::optional(*one) : std::nullopt, ""}};
}

/// What a model is in a room: the one without a name stands back for a family's own, and where there are none but those
/// of a folder.
std::optional<Matrix::Model> modelIn(const WidgetRoom& room, const Matrix::Model& model, const PairedCommand& paired) {
    if (!model.name.empty()) return model;
    const auto own = paired.modelsByFamily.find(familyIn(room));
    if (own != paired.modelsByFamily.end()) return Matrix::Model{own->second, ""};
    return model.path || paired.furtherModels.empty() ? std::optional(model) : std::nullopt;
}

std::vector<Matrix::Moment> momentsOf(const Command& command, Date now) {
    const auto& [option, words] = wordsOf(command, dates);
    if (words.empty()) return {{now, "", ""}};
    std::vector<Matrix::Moment> list;
    for (const std::string& word : words) {
        std::string name = option == dates.several ? word : "";
        std::erase(name, ':');
        list.push_back({readDate(option, word), word, name});
    }
    return list;
}

}  // namespace

bool asksForMatrix(const Command& command) {
    return std::any_of(std::begin(plurals), std::end(plurals),
                       [&](std::string_view option) { return command.find(option) != nullptr; });
}

const std::string* findModelLines(const Command& command) {
    const std::string* const path = command.find(models.several);
    std::error_code error;
    return path && command.verb == Verb::render && !fs::is_directory(*path, error) ? path : nullptr;
}

std::vector<std::vector<std::optional<Matrix::Model>>> readModels(const PairedCommand& paired,
                                                                  const std::vector<WidgetRoom>& rooms) {
    refuseBoth(paired.command, models);
    std::vector<Matrix::Model> list = modelsOf(paired.command);
    for (const std::string& path : paired.furtherModels) list.push_back({path, fs::path(path).stem().string()});
    std::vector<std::vector<std::optional<Matrix::Model>>> inRooms;
    for (const Matrix::Model& model : list) {
        auto& each = inRooms.emplace_back();
        for (const WidgetRoom& room : rooms) each.push_back(modelIn(room, model, paired));
    }
    return inRooms;
}

MatrixLooks readLooks(const PairedCommand& paired, Date now) {
    const Command& command = paired.command;
    std::vector<WidgetRoom> rooms = readRooms(command, paired.screenSizes());
    auto inRooms = readModels(paired, rooms);
    return {.rooms = std::move(rooms),
            .models = std::move(inRooms),
            .moments = momentsOf(command, now),
            .appearances = readAppearances(command, {Appearance::light}),
            .scales = scalesOf(command)};
}

Matrix matrixOf(std::vector<Matrix::Document> documents, const std::vector<MatrixLooks>& looks) {
    std::size_t count = 0;
    for (const MatrixLooks& each : looks) count += each.count();
    if (count > maximumCells)
        throw UsageError("that would be " + std::to_string(count) + " pictures; " + std::to_string(maximumCells) +
                         " are the most at once");
    Matrix matrix;
    matrix.documents = std::move(documents);
    for (std::size_t at = 0; at < looks.size(); ++at) addCells(matrix, at, looks[at]);
    return matrix;
}

}  // namespace tavrin::cli
