// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/matrix/cell_renderer.h"
#include "cli/matrix/cell_report.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/snapshot/snapshot_keeper.h"
#include "cli/snapshot/view_places.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

/// Trees name local pictures by where they lie; from the working directory that is the same on each machine.
std::string withoutWorkingDirectory(std::string tree) {
    const std::string top = URL::fileURL(std::filesystem::current_path()).string() + "/";
    for (std::size_t at = 0; (at = tree.find(top, at)) != std::string::npos;) tree.erase(at, top.size());
    return tree + "\n";
}

/// Puts those views together that one place of the document has made.
void joinByOrigin(std::vector<ViewChange>& changes) {
    std::vector<ViewChange> joint;
    for (ViewChange& change : changes) {
        const auto same = std::ranges::find_if(
            joint, [&](const ViewChange& known) { return known.origin && known.origin == change.origin; });
        if (same == joint.end())
            joint.push_back(std::move(change));
        else
            same->more += 1 + change.more;
    }
    changes = std::move(joint);
}

/// Finds where in the document the views come from that have changed. For that the cell is laid out once more; where
/// that costs too much no place is known.
void findOrigins(CellRenderer& renderers, ComparedCell& compared) {
    std::vector<ViewChange>& changes = compared.difference.tree.views;
    if (changes.empty()) return;
    static_cast<void>(renderers.draw(
        compared.cell,
        [&](Widget& widget) {
            ViewPlaces places(widget);
            for (ViewChange& change : changes) change.origin = places.originOf(change.way);
        },
        WidgetTrace::origins));
    joinByOrigin(changes);
}

ComparedCell comparedCell(CellRenderer& renderers, const SnapshotArguments& arguments, std::size_t index) {
    const SnapshotOptions& options = arguments.snapshot;
    ComparedCell result;
    result.cell = arguments.matrix.cells[index];
    const SnapshotFiles files(options.folder, nameOf(arguments.matrix, result.cell));
    result.outcome = renderers.draw(result.cell, [&](Widget& widget) {
        result.drawn.png = widget.png(widget.pixels(), paint::PngCompression::small);
        result.drawn.tree = withoutWorkingDirectory(widget.layoutText());
        const std::optional<Snapshot> kept = readSnapshot(files);
        result.isKept = kept.has_value();
        if (kept) result.difference = difference(*kept, result.drawn, options.tolerance);
    });
    if (!options.updates) findOrigins(renderers, result);
    return result;
}

}  // namespace

int run(const SnapshotArguments& arguments, const Reporter& reporter) {
    const std::size_t count = arguments.matrix.count();
    CellRenderer renderers(arguments, arguments.matrix);
    Progress progress(count);
    CellReport report(reporter, progress);
    SnapshotKeeper keeper(arguments, report);
    inOrder<ComparedCell>(
        count, [&](std::size_t index) { return comparedCell(renderers, arguments, index); },
        [&](std::size_t, ComparedCell compared) {
            const std::string name = nameOf(arguments.matrix, compared.cell);
            const Source& document = renderers.source(compared.cell.document);
            keeper.take(std::move(compared), document);
            progress.advance(name);
        });
    progress.hide();
    const bool fails = keeper.finish(reporter);
    writeStandardOutput(keeper.summary());
    return report.failed() || fails ? 1 : 0;
}

}  // namespace tavrin::cli
