// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cli/file_stamp.h"
#include "cli/input.h"
#include "cli/project/widget_files.h"
#include "cli/project/widget_settings.h"
#include "cli/stream/kept_files.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"

namespace tavrin::cli {

/// What lies beside a document. Immutable.
struct Pairing {
    std::shared_ptr<const WidgetFiles> files;
    std::shared_ptr<const WidgetSettings> settings;
};

/// What lies beside documents, by their names: looked for once while nothing there is changed, and no file is read
/// again while it stays as it is. Those that were asked for longest ago go first. Any number of threads may ask.
class KeptPairings {
public:
    static constexpr std::size_t maximumCount = 256;
    /// Of all of these documents.
    static constexpr std::size_t maximumModels = 100'000;
    /// Of the texts of models.
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    /// What reading a model may cost.
    explicit KeptPairings(const RenderBudget& budget) : budget_(budget) {}

    /// Throws as `pairedWith` and `readSettings` do.
    [[nodiscard]] Pairing find(const std::string& document);
    /// The text of a model's file. Throws what `readInput` does.
    [[nodiscard]] std::shared_ptr<const Source> model(const std::string& path);

private:
    using Stamps = std::vector<std::optional<FileStamp>>;
    struct Kept {
        std::vector<std::filesystem::path> places;
        Stamps stamps;
        std::shared_ptr<const WidgetFiles> files;
    };

    [[nodiscard]] std::shared_ptr<const WidgetFiles> filesOf(const std::string& document);

    RenderBudget budget_;
    std::mutex mutex_;
    LRUCache<std::string, std::shared_ptr<const Kept>> kept_{maximumModels, maximumCount};
    KeptFiles<WidgetSettings> settings_{maximumBytes, maximumCount};
    KeptFiles<Source> models_{maximumBytes, maximumCount};
};

}  // namespace tavrin::cli
