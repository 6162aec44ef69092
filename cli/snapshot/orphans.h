// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "cli/snapshot/snapshot_options.h"

namespace tavrin::cli {

/// The snapshots in a folder, but for those in the folder of failures, that none of the names is that of, sorted. Those
/// in the folders of `unknown` are left out: what belongs to these documents is not known.
[[nodiscard]] std::vector<std::string> orphansIn(const SnapshotOptions& options, const std::set<std::string>& names,
                                                 const std::set<std::string>& unknown);

/// "2 snapshots in kept belong to no picture of this run: a, b".
[[nodiscard]] std::string orphansInWords(const std::vector<std::string>& orphans, const std::filesystem::path& folder);

}  // namespace tavrin::cli
