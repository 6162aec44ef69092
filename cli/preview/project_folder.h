// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/new/new_widget.h"

namespace tavrin::cli {

/// One JSON file, or one of settings, of a folder.
struct ProjectFile {
    std::string path;      ///< from the folder, with "/"
    std::string revision;  ///< changes with the file

    friend bool operator==(const ProjectFile&, const ProjectFile&) = default;
};

/// A file's text as it was at a revision.
struct ProjectText {
    std::string text;  ///< UTF-8, where need be with U+FFFD for what is none
    std::string revision;
    bool isUtf8 = true;  ///< whether the text is all of the file, so that it may be edited and saved
};

/// The folder that a preview shows, and the only one it reads or writes. Names come from outside: a path that leads out
/// of it, by ".." or by a symbolic link, is refused, as is all that is no plain file. Safe to use from several threads.
class ProjectFolder {
public:
    static constexpr std::size_t maximumFiles = 2000;
    static constexpr std::size_t maximumBytes = std::size_t{8} << 20;

    /// Throws `IOError` where there is no such folder.
    explicit ProjectFolder(const std::filesystem::path& folder);

    [[nodiscard]] const std::filesystem::path& root() const { return root_; }
    /// The JSON files and settings (*.toml) in it and below, sorted, at most `maximumFiles`. Hidden files and folders,
    /// `node_modules` and symbolic links are left out.
    [[nodiscard]] std::vector<ProjectFile> files() const;
    /// Throws `FolderError`, like `save`.
    [[nodiscard]] ProjectText read(const std::string& path) const;
    /// Replaces the text of a JSON file that is there, whole or not at all, unless it has changed since `revision`.
    /// Returns its new revision. A file that is not UTF-8 is left as it is: who has read it has not seen all of it.
    std::string save(const std::string& path, std::string_view text, const std::string& revision);
    /// Makes files that are not there yet, all or none, and the folders that they stand in; their paths are from the
    /// folder, their names those of JSON files or settings that `files` would list. Nothing on the way may be a
    /// symbolic link. Returns them. Throws `FolderError`, and `IOError` where they cannot be written.
    std::vector<ProjectFile> create(const std::vector<NewFile>& files);
    /// Waits for the file that is being saved; none is saved any more. For the end of the process.
    void stopSaving() { saving_.lock(); }
    /// The folder "pictures" beside a document, where there is one that holds plain files only.
    [[nodiscard]] std::optional<std::filesystem::path> picturesBeside(const std::string& document) const;
    /// A message with the paths in it as they are from the folder: where that lies is nobody else's affair.
    [[nodiscard]] std::string fromHere(std::string message) const;

private:
    [[nodiscard]] std::filesystem::path inside(const std::string& path) const;
    [[nodiscard]] std::filesystem::path placeFor(const std::filesystem::path& path) const;

    std::filesystem::path root_;
    std::mutex saving_;
};

}  // namespace tavrin::cli
