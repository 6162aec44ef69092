// SPDX-License-Identifier: MIT
#include "cli/project/widget_files.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#include "cli/input.h"
#include "cli/io_error.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t mostDocuments = 2000;
constexpr int deepestFolder = 8;

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool isFolder(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

bool isThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error);
}

bool isHidden(const fs::path& name) { return name.native().starts_with('.'); }

bool isSkippedFolder(const fs::path& name) { return isHidden(name) || name == "node_modules"; }

/// A document's path with another ending: "a/b.model.json" of "a/b.json".
fs::path withEnding(const fs::path& document, const std::string& ending) {
    return document.parent_path() / (document.stem().string() + "." + ending);
}

/// The file or folder of the document's own name, or else the one that is shared, if it is there.
template <class Exists>
std::optional<fs::path> ownOrShared(const fs::path& document, const std::string& name, Exists exists) {
    for (fs::path path : {withEnding(document, name), document.parent_path() / name})
        if (path != document && exists(path)) return path;
    return std::nullopt;
}

std::vector<fs::path> jsonFilesIn(const fs::path& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error))
        if (entry->path().extension() == ".json" && isFile(entry->path())) files.push_back(entry->path());
    std::ranges::sort(files);
    return files;
}

bool hasOwnFiles(const fs::path& document) {
    return document.filename() == "document.json" || isFile(withEnding(document, "model.json")) ||
           isFile(withEnding(document, "widget.toml")) || isFolder(withEnding(document, "models"));
}

bool isSchema(const fs::path& file) { return file.filename().native().ends_with(".schema.json"); }

/// A file that cannot be read counts, so that whoever reads it says why.
bool mayBeDocument(const fs::path& file) {
    if (isSchema(file)) return false;
    if (!isCalledModel(file) && hasOwnFiles(file)) return true;
    try {
        return looksLikeDocument(readFound(file.string()));
    } catch (const IOError&) {
        return !isCalledModel(file);
    }
}

/// A document in a folder that has no files of its own with an ending, and so takes those that are shared.
std::optional<fs::path> documentThatShares(const fs::path& folder, const std::string& ending) {
    for (const fs::path& other : jsonFilesIn(folder))
        if (!isCalledModel(other) && !isThere(withEnding(other, ending)) && mayBeDocument(other))
            return other.lexically_normal();
    return std::nullopt;
}

/// Which documents files are models of. Remembers what it found, since there are many models in a folder.
class Owners {
public:
    [[nodiscard]] std::optional<fs::path> of(const fs::path& file) {
        if (!isCalledModel(file) || !isFile(file)) return std::nullopt;
        const fs::path folder = file.parent_path();
        const std::string name = file.filename().string();
        const std::string place = folder.filename().string();
        if (name.ends_with(ownModel)) return own(folder, name.substr(0, name.size() - ownModel.size()));
        if (place.ends_with(ownModels))
            return own(folder.parent_path(), place.substr(0, place.size() - ownModels.size()));
        return name == sharedModel ? sharing(folder, sharedModel) : sharing(folder / "..", sharedModels);
    }

private:
    static constexpr std::string_view ownModel = ".model.json";
    static constexpr std::string_view ownModels = ".models";
    static constexpr const char* sharedModel = "model.json";
    static constexpr const char* sharedModels = "models";

    static std::optional<fs::path> own(const fs::path& folder, const std::string& name) {
        const fs::path document = folder / (name + ".json");
        return isFile(document) ? std::optional(document) : std::nullopt;
    }
    std::optional<fs::path> sharing(const fs::path& folder, const std::string& ending) {
        const fs::path real = folder.lexically_normal();
        const auto [known, isNew] = sharing_.try_emplace({real, ending});
        if (isNew) known->second = documentThatShares(real.empty() ? fs::path(".") : real, ending);
        return known->second;
    }

    std::map<std::pair<fs::path, std::string>, std::optional<fs::path>> sharing_;
};

}  // namespace

std::vector<fs::path> modelsIn(const fs::path& folder) {
    std::vector<fs::path> models;
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (entry->path().extension() != ".json") continue;
        if (models.size() == mostModels)
            throw IOError("there are more than " + std::to_string(mostModels) + " models in '" + folder.string() +
                              "'; keep fewer in one folder",
                          folder);
        models.push_back(entry->path());
    }
    if (error) throw IOError("cannot read '" + folder.string() + "': " + error.message(), folder);
    std::ranges::sort(models);
    return models;
}

std::vector<fs::path> placesBeside(const fs::path& document) {
    std::vector<fs::path> places{document.parent_path() / "pictures"};
    for (const char* const name : {"model.json", "models", "widget.toml"}) {
        places.push_back(withEnding(document, name));
        places.push_back(document.parent_path() / name);
    }
    return places;
}

WidgetFiles pairedWith(const fs::path& document, ModelsFolder models) {
    WidgetFiles files{.document = document};
    files.model = ownOrShared(document, "model.json", isFile);
    files.modelsFolder = ownOrShared(document, "models", isFolder);
    if (files.modelsFolder && models == ModelsFolder::listed) {
        files.models = modelsIn(*files.modelsFolder);
        std::erase_if(files.models, [](const fs::path& model) { return !isFile(model); });
    }
    if (!files.model && !files.models.empty()) files.model = files.models.front();
    if (const fs::path pictures = document.parent_path() / "pictures"; isFolder(pictures)) files.pictures = pictures;
    files.settings = ownOrShared(document, "widget.toml", isFile);
    return files;
}

std::vector<fs::path> filesBelow(const fs::path& folder, std::initializer_list<std::string_view> suffixes,
                                 std::size_t mostFiles) {
    std::vector<fs::path> found;
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
    for (; entry != fs::recursive_directory_iterator() && found.size() < mostFiles; entry.increment(error)) {
        if (error) break;
        const fs::path& path = entry->path();
        std::error_code ignored;
        const fs::file_status kind = entry->symlink_status(ignored);
        if (fs::is_directory(kind) && (isSkippedFolder(path.filename()) || entry.depth() + 1 >= deepestFolder))
            entry.disable_recursion_pending();
        const bool hasSuffix = std::ranges::count(suffixes, path.extension().string()) > 0;
        if (fs::is_regular_file(kind) && hasSuffix && !isHidden(path.filename())) found.push_back(path);
    }
    return found;
}

bool isLookedAt(const fs::path& path) {
    const fs::path folders = path.parent_path();
    return std::distance(folders.begin(), folders.end()) < deepestFolder && !isHidden(path.filename()) &&
           std::none_of(folders.begin(), folders.end(), isSkippedFolder);
}

std::vector<fs::path> documentsIn(const fs::path& folder) {
    std::error_code error;
    static_cast<void>(fs::directory_iterator(folder, error));
    if (error) throw IOError("cannot read the folder '" + folder.string() + "'", error.value(), folder);
    constexpr std::size_t mostLookedAt = 10 * mostDocuments;
    std::vector<fs::path> documents = filesBelow(folder, {".json"}, mostLookedAt);
    if (documents.size() >= mostLookedAt)
        throw IOError("there are " + std::to_string(mostLookedAt) + " JSON files or more in '" + folder.string() +
                          "'; give a folder of fewer",
                      folder);
    Owners owners;
    std::erase_if(documents, [&](const fs::path& file) { return owners.of(file) || !mayBeDocument(file); });
    if (documents.size() > mostDocuments)
        throw IOError("there are more than " + std::to_string(mostDocuments) + " documents in '" + folder.string() +
                          "'; give a folder of fewer",
                      folder);
    std::ranges::sort(documents);
    return documents;
}

bool isCalledModel(const fs::path& file) {
    const std::string name = file.filename().string();
    const std::string folder = file.parent_path().filename().string();
    return name == "model.json" || name.ends_with(".model.json") || folder == "models" || folder.ends_with(".models");
}

std::optional<fs::path> documentOfModel(const fs::path& file) { return Owners().of(file); }

bool looksLikeDocument(std::string_view text) { return text.find("\"nodes\"") != std::string_view::npos; }

}  // namespace tavrin::cli
