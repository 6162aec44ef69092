// SPDX-License-Identifier: MIT
#include "cli/stream/kept_pairings.h"

#include <algorithm>
#include <sys/stat.h>
#include <utility>

namespace tavrin::cli {
namespace {

std::vector<std::optional<FileStamp>> stampsOf(const std::vector<std::filesystem::path>& places) {
    std::vector<std::optional<FileStamp>> stamps;
    stamps.reserve(places.size());
    for (const std::filesystem::path& place : places) {
        struct stat status {};
        stamps.push_back(::stat(place.c_str(), &status) == 0 ? std::optional(FileStamp(status)) : std::nullopt);
    }
    return stamps;
}

bool areSettled(const std::vector<std::optional<FileStamp>>& stamps) {
    return std::ranges::all_of(stamps, [](const auto& stamp) { return !stamp || stamp->isSettled(); });
}

}  // namespace

Pairing KeptPairings::find(const std::string& document) {
    static const auto noSettings = std::make_shared<const WidgetSettings>();
    const std::shared_ptr<const WidgetFiles> files = filesOf(document);
    if (!files->settings) return {files, noSettings};
    const std::string path = files->settings->string();
    auto settings = settings_.find(path, [&] {
        Source source{path, readFound(path)};
        const std::size_t bytes = source.text.size();
        return std::pair(std::make_shared<const WidgetSettings>(readSettings(std::move(source))), bytes);
    });
    return {files, std::move(settings)};
}

std::shared_ptr<const Source> KeptPairings::model(const std::string& path) {
    return models_.find(path, [&] {
        auto source = std::make_shared<const Source>(Source{path, readInput(path, budget_)});
        const std::size_t bytes = source->text.size();
        return std::pair(std::move(source), bytes);
    });
}

/// 1. What is kept, while all that was looked for is as it was.
/// 2. Or else looks again; the stamps are taken before, so that what is changed meanwhile is looked for next time.
std::shared_ptr<const WidgetFiles> KeptPairings::filesOf(const std::string& document) {
    std::shared_ptr<const Kept> known;
    {
        const std::lock_guard lock(mutex_);
        if (const auto* const kept = kept_.find(document)) known = *kept;
    }
    if (known && stampsOf(known->places) == known->stamps) return known->files;
    auto fresh = std::make_shared<Kept>();
    fresh->places = placesBeside(document);
    fresh->stamps = stampsOf(fresh->places);
    const bool isKept = areSettled(fresh->stamps);
    fresh->files = std::make_shared<const WidgetFiles>(pairedWith(document));
    if (!isKept) return fresh->files;
    LRUCache<std::string, std::shared_ptr<const Kept>>::Dropped dropped;  // destroyed when the lock is gone
    const std::lock_guard lock(mutex_);
    dropped = kept_.insert(document, fresh, 1 + fresh->files->models.size());
    return fresh->files;
}

}  // namespace tavrin::cli
