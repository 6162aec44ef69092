// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "cli/snapshot/tree_changes.h"

namespace tavrin::cli {

/// What is kept of one picture: its PNG, and its laid-out tree as JSON.
struct Snapshot {
    std::string png;
    std::string tree;
};

/// The files of a snapshot in a folder: NAME.png and NAME.json.
struct SnapshotFiles {
    std::filesystem::path png;
    std::filesystem::path tree;

    SnapshotFiles(const std::filesystem::path& folder, const std::string& name)
        : png(folder / (name + ".png")), tree(folder / (name + ".json")) {}
};

/// The snapshot kept in these files; none where one of them is missing. Throws `IOError` for one that cannot be read.
[[nodiscard]] std::optional<Snapshot> readSnapshot(const SnapshotFiles& files);

/// In what two snapshots differ.
struct SnapshotDifference {
    /// How the pictures do, in words without a full stop; empty where they are the same.
    std::string picture = {};
    /// Whether they were compared pixel by pixel, and not of two sizes or no pictures.
    bool isOfPixels = false;
    /// A picture of the difference as PNG, where pictures differ and it can be drawn.
    std::string png = {};
    TreeChanges tree = {};

    [[nodiscard]] bool none() const { return picture.empty() && tree.none(); }
};

/// Compares a snapshot with what is drawn now: pictures by pixels, of which channels may be off by `tolerance`; trees
/// by their values.
[[nodiscard]] SnapshotDifference difference(const Snapshot& kept, const Snapshot& drawn, int tolerance);

}  // namespace tavrin::cli
