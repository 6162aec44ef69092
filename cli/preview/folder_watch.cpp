// SPDX-License-Identifier: MIT
#include "cli/preview/folder_watch.h"

#include <chrono>
#include <map>
#include <utility>

namespace tavrin::cli {
namespace {

constexpr std::chrono::milliseconds interval{250};

}  // namespace

std::vector<std::string> changedPaths(const std::vector<ProjectFile>& before, const std::vector<ProjectFile>& after) {
    std::map<std::string_view, std::string_view> revisions;
    for (const ProjectFile& file : before) revisions.emplace(file.path, file.revision);
    std::vector<std::string> changed;
    for (const ProjectFile& file : after) {
        const auto known = revisions.find(file.path);
        if (known == revisions.end() || known->second != file.revision) changed.push_back(file.path);
        if (known != revisions.end()) revisions.erase(known);
    }
    for (const auto& [path, revision] : revisions) changed.emplace_back(path);
    return changed;
}

FolderWatch::FolderWatch(const ProjectFolder& folder, std::function<bool()> isWanted,
                         std::function<void(const std::vector<std::string>&)> changed)
    : folder_(folder), isWanted_(std::move(isWanted)), changed_(std::move(changed)), thread_([this] { watch(); }) {}

FolderWatch::~FolderWatch() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    ending_.notify_all();
    thread_.join();
}

void FolderWatch::watch() {
    std::vector<ProjectFile> known = folder_.files();
    std::unique_lock lock(mutex_);
    while (!ending_.wait_for(lock, interval, [this] { return ends_; })) {
        if (!isWanted_()) continue;
        std::vector<ProjectFile> present = folder_.files();
        const std::vector<std::string> changed = changedPaths(known, present);
        known = std::move(present);
        if (!changed.empty()) changed_(changed);
    }
}

}  // namespace tavrin::cli
