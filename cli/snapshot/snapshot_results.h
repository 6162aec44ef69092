// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/failure.h"
#include "cli/options.h"
#include "cli/snapshot/snapshot_causes.h"

namespace tavrin::cli {

/// What became of a snapshot.
enum class SnapshotVerdict : unsigned char { same, added, updated, different, failed };
inline constexpr std::array<std::string_view, 5> snapshotVerdictWords{"the same", "new", "updated", "different",
                                                                      "failed"};

/// A snapshot of a run.
struct SnapshotResult {
    std::string name = {};
    std::string document = {};
    SnapshotVerdict verdict = SnapshotVerdict::same;
    /// Why it failed, if it did.
    std::optional<Failure> failure = std::nullopt;
    /// How its picture differs; empty where it does not.
    std::string difference = {};
    /// The picture of what differs, relative to the folder of these; empty where there is none.
    std::string picture = {};
};

/// What came of a run, in the order of its pictures.
struct SnapshotResults {
    std::vector<SnapshotResult> snapshots = {};
    /// Why those that differ do.
    std::vector<SnapshotCause> causes = {};
    /// Snapshots that are kept, but that no picture of the run belongs to.
    std::vector<std::string> orphans = {};
    /// What is wrong with them; empty where they are no fault.
    std::string orphansMessage = {};
};

/// The results for other programs: JSON, JUnit's XML or workflow commands.
[[nodiscard]] std::string resultsText(const SnapshotResults& results, SnapshotFormat format);

/// A difference for people, with the first of the snapshots that it is seen in.
[[nodiscard]] Failure failureOf(const SnapshotCause& cause, const SnapshotResults& results);

/// A page that shows each picture of what differs, before, after and in red, under what has changed it. It lies in the
/// folder of these.
[[nodiscard]] std::string failuresPage(const SnapshotResults& results);

}  // namespace tavrin::cli
