// SPDX-License-Identifier: MIT
#include "cli/matrix/cell_report.h"

#include "cli/failure_text.h"

namespace tavrin::cli {

void CellReport::add(const Matrix& matrix, const Cell& cell, const CellOutcome& outcome) {
    const std::string& document = matrix.documents[cell.document].path;
    for (const std::string& note : outcome.notes) {
        if (!said_.emplace(document, note).second) continue;
        progress_.hide();
        reporter_.note(displayName(document), {note});
    }
    if (!outcome.failure) return;
    failed_ = true;
    if (!said_.emplace("", toJSONLine(*outcome.failure, true)).second) return;
    progress_.hide();
    reporter_.report(*outcome.failure);
}

}  // namespace tavrin::cli
