// SPDX-License-Identifier: MIT
#pragma once

#include <set>
#include <string>
#include <utility>

#include "cli/matrix/cell_renderer.h"
#include "cli/progress.h"
#include "cli/reporter.h"

namespace tavrin::cli {

/// Tells people about the notes and failures of a matrix, each once however many cells have it; the first thousands of
/// different ones, that is.
class CellReport {
public:
    CellReport(const Reporter& reporter, Progress& progress) : reporter_(reporter), progress_(progress) {}

    void add(const Matrix& matrix, const Cell& cell, const CellOutcome& outcome);
    [[nodiscard]] bool failed() const { return failed_; }

private:
    const Reporter& reporter_;
    Progress& progress_;
    /// Whether it has not been said; remembers that it is now.
    [[nodiscard]] bool isNew(const std::string& document, const std::string& line);

    std::set<std::pair<std::string, std::string>> said_;  // notes by their documents; failures name theirs
    bool failed_ = false;
};

}  // namespace tavrin::cli
