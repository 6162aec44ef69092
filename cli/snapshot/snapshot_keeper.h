// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/matrix/cell_report.h"
#include "cli/snapshot/snapshot.h"
#include "cli/snapshot/snapshot_causes.h"
#include "cli/snapshot/snapshot_results.h"

namespace tavrin::cli {

/// A cell beside its snapshot.
struct ComparedCell {
    Cell cell;
    Snapshot drawn;
    bool isKept = false;  ///< whether there was a snapshot
    SnapshotDifference difference;
    CellOutcome outcome;
};

/// Records, updates and reports snapshots, one after the other.
class SnapshotKeeper {
public:
    /// Keeps references to both.
    SnapshotKeeper(const SnapshotArguments& arguments, CellReport& report)
        : documents_(arguments.documents), matrix_(arguments.matrix), options_(arguments.snapshot), report_(report) {}

    /// Takes the next cell, of a document with that text.
    void take(ComparedCell compared, const Source& document);

    /// Tells what differs, by its causes, and looks for snapshots that nothing was compared with. Whether either makes
    /// the run fail.
    [[nodiscard]] bool finish(const Reporter& reporter);

    /// "3 snapshots: 2 the same, 1 new", or what other programs read.
    [[nodiscard]] std::string summary() const;

private:
    void judge(SnapshotResult& told, ComparedCell& compared, const Source& document);
    void noteDifference(SnapshotResult& told, const ComparedCell& compared, const Source& document);
    [[nodiscard]] bool tellOrphans(const Reporter& reporter);
    [[nodiscard]] bool hasPictures() const;
    [[nodiscard]] std::filesystem::path page() const { return options_.failures / "index.html"; }
    void writePage() const;
    void removeStale(const std::filesystem::path& failure) const;

    const std::vector<DocumentInput>& documents_;
    const Matrix& matrix_;
    const SnapshotOptions& options_;
    CellReport& report_;
    SnapshotResults results_;
    SnapshotCauses causes_;
    std::array<std::size_t, snapshotVerdictWords.size()> counts_{};
};

}  // namespace tavrin::cli
