// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli/preview/project_folder.h"

namespace tavrin::cli {

/// Looks at a folder four times a second, on a thread of its own, and tells which files have come, changed or gone.
/// Works on every file system, network drives included.
class FolderWatch {
public:
    /// `isWanted` is asked before each look: a folder that no one watches costs nothing.
    FolderWatch(const ProjectFolder& folder, std::function<bool()> isWanted,
                std::function<void(const std::vector<std::string>& paths)> changed);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch();

private:
    void watch();

    const ProjectFolder& folder_;
    std::function<bool()> isWanted_;
    std::function<void(const std::vector<std::string>&)> changed_;
    std::mutex mutex_;
    std::condition_variable ending_;
    bool ends_ = false;
    std::thread thread_;
};

/// The paths of files that are in one list only, or in both with different revisions. Lists are sorted.
[[nodiscard]] std::vector<std::string> changedPaths(const std::vector<ProjectFile>& before,
                                                    const std::vector<ProjectFile>& after);

}  // namespace tavrin::cli
