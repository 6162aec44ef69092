// SPDX-License-Identifier: MIT
#include "cli/snapshot/orphans.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace tavrin::cli {
namespace {

/// Whether a file's name is one that a picture of a matrix has: "systemMedium-dark@2x".
bool looksLikeSnapshot(const std::filesystem::path& file) {
    std::error_code error;
    return file.extension() == ".png" && file.stem().string().find('@') != std::string::npos &&
           std::filesystem::exists(std::filesystem::path(file).replace_extension(".json"), error);
}

}  // namespace

std::vector<std::string> orphansIn(const SnapshotOptions& options, const std::set<std::string>& names,
                                   const std::set<std::string>& unknown) {
    namespace fs = std::filesystem;
    std::vector<std::string> orphans;
    std::error_code error;
    fs::recursive_directory_iterator at(options.folder, fs::directory_options::skip_permission_denied, error);
    for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
        if (at->is_directory(error) && fs::equivalent(at->path(), options.failures, error))
            at.disable_recursion_pending();
        error.clear();
        if (!looksLikeSnapshot(at->path())) continue;
        std::string name = at->path().lexically_relative(options.folder).replace_extension().string();
        const bool isKnown = names.contains(name) || unknown.contains(name.substr(0, name.rfind('/')));
        if (!isKnown) orphans.push_back(std::move(name));
    }
    std::ranges::sort(orphans);
    return orphans;
}

std::string orphansInWords(const std::vector<std::string>& orphans, const std::filesystem::path& folder) {
    constexpr std::size_t mostNamed = 5;
    std::string text = std::to_string(orphans.size()) + (orphans.size() == 1 ? " snapshot in " : " snapshots in ") +
                       folder.string() + (orphans.size() == 1 ? " belongs" : " belong") +
                       " to no picture of this run: ";
    for (std::size_t i = 0; i < orphans.size() && i < mostNamed; ++i) text += (i == 0 ? "" : ", ") + orphans[i];
    if (orphans.size() > mostNamed) text += " and " + std::to_string(orphans.size() - mostNamed) + " more";
    return text;
}

}  // namespace tavrin::cli
