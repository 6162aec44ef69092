// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "cli/command_line.h"

namespace tavrin::cli {

/// What only `tavrin snapshot` is told.
struct SnapshotOptions {
    /// Where snapshots are kept, and where pictures of differences go.
    std::filesystem::path folder = {};
    std::filesystem::path failures = {};
    /// Whether what differs becomes the snapshot.
    bool updates = false;
    /// Whether a snapshot that is missing is a failure, which otherwise is recorded, and one that belongs to no
    /// picture.
    bool isStrict = false;
    SnapshotFormat format = SnapshotFormat::text;
    /// How far a channel of a pixel may be off, 0…255.
    int tolerance = 0;
};

/// Judges the values that only `tavrin snapshot` takes. Throws `UsageError`.
[[nodiscard]] SnapshotOptions readSnapshotOptions(const Command& command);

}  // namespace tavrin::cli
