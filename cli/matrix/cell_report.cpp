// SPDX-License-Identifier: MIT
#include "cli/matrix/cell_report.h"

#include "cli/failure_text.h"

namespace tavrin::cli {

bool CellReport::isNew(const std::string& document, const std::string& line) {
    constexpr std::size_t mostRemembered = 10'000;
    if (said_.size() < mostRemembered) return said_.emplace(document, line).second;
    return !said_.contains({document, line});
}

void CellReport::add(const Matrix& matrix, const Cell& cell, const CellOutcome& outcome) {
    const std::string& document = matrix.documents[cell.document].path;
    for (const std::string& note : outcome.notes) {
        if (!isNew(document, note)) continue;
        progress_.hide();
        reporter_.note(displayName(document), {note});
    }
    if (!outcome.failure) return;
    failed_ = true;
    if (!isNew("", toJSONLine(*outcome.failure, true))) return;
    progress_.hide();
    reporter_.report(*outcome.failure);
}

}  // namespace tavrin::cli
