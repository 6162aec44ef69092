// SPDX-License-Identifier: MIT
#include "cli/preview/project_folder.h"

#include <algorithm>
#include <cstdint>
#include <sys/stat.h>
#include <system_error>
#include <utility>

#include "cli/excerpt.h"
#include "cli/http/http_status.h"
#include "cli/io_error.h"
#include "cli/output.h"
#include "cli/preview/folder_error.h"
#include "cli/project/widget_files.h"
#include "tavrin/platform/foundation/file_contents.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#include "tavrin/platform/foundation/strings/utf8.h"

namespace tavrin::cli {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestName = 255;

std::string quoted(const std::string& path) { return "'" + printable(path) + "'"; }

bool isHidden(const fs::path& name) { return name.native().starts_with('.'); }

/// When it was last changed, its size, and which file it is: two changes may come within one tick of the clock.
std::string revisionOf(const struct stat& status) {
    const auto text = [](auto number) { return tavrin::toText(static_cast<std::int64_t>(number)); };
    return text(status.st_mtim.tv_sec) + "." + text(status.st_mtim.tv_nsec) + "-" + text(status.st_size) + "-" +
           text(status.st_ino);
}

struct stat statusOf(const fs::path& file, const std::string& path) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) throw FolderError(http_status::notFound, "there is no " + quoted(path));
    if (!S_ISREG(status.st_mode)) throw FolderError(http_status::forbidden, quoted(path) + " is no plain file");
    return status;
}

/// Whether the names of a path only lead down, and to nothing hidden.
bool leadsDown(const fs::path& path) {
    return !path.empty() && path.is_relative() && path.native().find('\0') == std::string::npos &&
           std::none_of(path.begin(), path.end(), [](const fs::path& name) { return name.empty() || isHidden(name); });
}

bool isProjectFile(const fs::path& path) { return path.extension() == ".json" || path.extension() == ".toml"; }

bool standsIn(const fs::path& path, const fs::path& folder) {
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

}  // namespace

ProjectFolder::ProjectFolder(const fs::path& folder) {
    std::error_code error;
    root_ = fs::canonical(folder, error);
    if (!error && !fs::is_directory(root_, error) && !error) error = std::make_error_code(std::errc::not_a_directory);
    // The one folder that must be readable; those in it may be others'.
    if (!error) static_cast<void>(fs::directory_iterator(root_, error));
    if (!error) static_cast<void>(fs::status(root_ / ".", error));
    if (error) throw IOError("cannot open the folder '" + folder.string() + "'", error.value());
}

fs::path ProjectFolder::inside(const std::string& path) const {
    if (!leadsDown(path)) throw FolderError(http_status::forbidden, quoted(path) + " is no path in the folder");
    std::error_code error;
    fs::path real = fs::canonical(root_ / path, error);
    if (error) throw FolderError(http_status::notFound, "there is no " + quoted(path));
    if (!standsIn(real, root_)) throw FolderError(http_status::forbidden, quoted(path) + " leads out of the folder");
    return real;
}

std::vector<ProjectFile> ProjectFolder::files() const {
    std::vector<ProjectFile> found;
    for (const fs::path& path : filesBelow(root_, {".json", ".toml"}, maximumFiles)) {
        struct stat status {};
        if (::stat(path.c_str(), &status) == 0)
            found.push_back({path.lexically_relative(root_).generic_string(), revisionOf(status)});
    }
    std::sort(found.begin(), found.end(),
              [](const ProjectFile& a, const ProjectFile& b) { return fs::path(a.path) < fs::path(b.path); });
    return found;
}

ProjectText ProjectFolder::read(const std::string& path) const {
    const fs::path file = inside(path);
    if (!isProjectFile(file)) throw FolderError(http_status::forbidden, quoted(path) + " is no JSON file");
    const struct stat status = statusOf(file, path);
    if (static_cast<std::size_t>(status.st_size) > maximumBytes)
        throw FolderError(http_status::tooLarge, quoted(path) + " is larger than 8 MiB");
    FileContents contents = readFile(file, maximumBytes);
    if (!contents.error.empty()) throw FolderError(http_status::notFound, contents.error);
    if (isValidUtf8(contents.bytes)) return {std::move(contents.bytes), revisionOf(status)};
    return {sanitizedUtf8(contents.bytes), revisionOf(status), false};
}

std::string ProjectFolder::save(const std::string& path, std::string_view text, const std::string& revision) {
    if (text.size() > maximumBytes) throw FolderError(http_status::tooLarge, "a text of more than 8 MiB is not saved");
    const std::lock_guard lock(saving_);
    const ProjectText present = read(path);
    if (present.revision != revision)
        throw FolderError(http_status::conflict, quoted(path) + " has changed on disk meanwhile");
    if (!present.isUtf8) throw FolderError(http_status::conflict, quoted(path) + " is not UTF-8 and was left as it is");
    const fs::path file = inside(path);
    writeFile(file, text);
    return revisionOf(statusOf(file, path));
}

/// Where a file that is to be new lies; the folders on the way may be new, too.
fs::path ProjectFolder::placeFor(const fs::path& path) const {
    const std::string name = path.generic_string();
    if (!leadsDown(path) || !isLookedAt(path) || printable(name) != name || !isProjectFile(path))
        throw FolderError(http_status::forbidden, "nothing can be called " + quoted(name) + " in the folder");
    if (std::ranges::any_of(path, [](const fs::path& part) { return part.native().size() > longestName; }))
        throw FolderError(http_status::badRequest, "a name of more than 255 bytes is too long");
    fs::path folder = root_;
    for (const fs::path& each : path.parent_path()) {
        std::error_code error;
        const fs::file_type kind = fs::symlink_status(folder /= each, error).type();
        if (kind == fs::file_type::not_found) break;
        if (kind != fs::file_type::directory)
            throw FolderError(http_status::forbidden, quoted(name) + " does not stand in plain folders");
    }
    return root_ / path;
}

std::vector<ProjectFile> ProjectFolder::create(const std::vector<NewFile>& files) {
    const std::lock_guard lock(saving_);
    std::vector<NewFile> placed;
    for (const NewFile& file : files) {
        if (file.text.size() > maximumBytes)
            throw FolderError(http_status::tooLarge, "a text of more than 8 MiB is not saved");
        placed.push_back({placeFor(file.path), file.text});
    }
    try {
        createFiles(placed);
    } catch (const FileExists& error) {
        throw FolderError(http_status::conflict, fromHere(error.what()));
    } catch (const IOError& error) {
        throw FolderError(http_status::internalError, fromHere(error.what()));
    }
    std::vector<ProjectFile> made;
    for (const NewFile& file : files) {
        const std::string path = file.path.generic_string();
        made.push_back({path, revisionOf(statusOf(root_ / path, path))});
    }
    return made;
}

std::string ProjectFolder::fromHere(std::string message) const {
    const std::string root = (root_ / "").string();
    for (std::size_t at = message.find(root); at != std::string::npos; at = message.find(root, at))
        message.erase(at, root.size());
    return message;
}

std::optional<fs::path> ProjectFolder::picturesBeside(const std::string& document) const {
    if (!leadsDown(document)) return std::nullopt;
    std::error_code error;
    const fs::path folder = root_ / fs::path(document).parent_path() / "pictures";
    const fs::path real = fs::canonical(folder, error);
    if (error || !standsIn(real, root_) || !fs::is_directory(real, error)) return std::nullopt;
    for (const fs::directory_entry& entry : fs::directory_iterator(real, error))
        if (!fs::is_regular_file(entry.symlink_status(error))) return std::nullopt;
    return error ? std::nullopt : std::optional(real);
}

}  // namespace tavrin::cli
