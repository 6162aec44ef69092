// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

namespace tavrin::cli {

/// A widget as it lies in a folder: a document `NAME.json`, and what belongs to it because of its name. What has the
/// document's own name goes before what all documents of the folder share.
struct WidgetFiles {
    std::filesystem::path document = {};
    /// `NAME.model.json`, or else `model.json`, or else the first of `models`.
    std::optional<std::filesystem::path> model = std::nullopt;
    /// The JSON files of the folder `NAME.models`, or else `models`, sorted by name.
    std::vector<std::filesystem::path> models = {};
    /// That folder.
    std::optional<std::filesystem::path> modelsFolder = std::nullopt;
    /// The folder `pictures`.
    std::optional<std::filesystem::path> pictures = std::nullopt;
    /// `NAME.widget.toml`, or else `widget.toml`.
    std::optional<std::filesystem::path> settings = std::nullopt;

    /// Whether the model is only the first of several, and not one of its own.
    [[nodiscard]] bool takesFirstModel() const { return model && !models.empty() && *model == models.front(); }
};

/// How many models a folder of them may have.
inline constexpr std::size_t mostModels = 2000;

/// The JSON files of a folder of models, sorted by name. Throws `IOError` for more than `mostModels`, and for a folder
/// that cannot be read.
[[nodiscard]] std::vector<std::filesystem::path> modelsIn(const std::filesystem::path& folder);

/// Whether the models of a folder are looked for, which takes time and fails where there are too many.
enum class ModelsFolder : bool { unlisted, listed };

/// What lies beside a document, which need not be there itself. Looks at names only, and reads no file. Throws as
/// `modelsIn` does where models are listed.
[[nodiscard]] WidgetFiles pairedWith(const std::filesystem::path& document, ModelsFolder models = ModelsFolder::listed);

/// The files and folders that `pairedWith` looks for: while none of them is changed, its answer stays the same.
[[nodiscard]] std::vector<std::filesystem::path> placesBeside(const std::filesystem::path& document);

/// The documents in a folder and below, sorted: JSON files with nodes that are no model by their name, and those that
/// have files of their own beside them. Hidden files and folders, `node_modules` and symbolic links are left out.
/// Throws `IOError` for a folder that cannot be read, and for more than 2,000 documents.
[[nodiscard]] std::vector<std::filesystem::path> documentsIn(const std::filesystem::path& folder);

/// The plain files in a folder and below that have one of some suffixes, in no order, at most `mostFiles`; left out is
/// what `documentsIn` leaves out. What cannot be read is skipped.
[[nodiscard]] std::vector<std::filesystem::path> filesBelow(const std::filesystem::path& folder,
                                                            std::initializer_list<std::string_view> suffixes,
                                                            std::size_t mostFiles);

/// Whether `filesBelow` would find a file at a path from its folder: not too deep, nothing hidden on the way.
[[nodiscard]] bool isLookedAt(const std::filesystem::path& path);

/// Whether a file is called as a model is: `model.json`, `NAME.model.json`, or any name in a folder of models.
[[nodiscard]] bool isCalledModel(const std::filesystem::path& file);

/// A document that a file is the model of by its name; none where it may be a document itself.
[[nodiscard]] std::optional<std::filesystem::path> documentOfModel(const std::filesystem::path& file);

/// Whether a text is a document or is to become one, also while it is no JSON.
[[nodiscard]] bool looksLikeDocument(std::string_view text);

}  // namespace tavrin::cli
