// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/io_error.h"
#include "cli/matrix/cell_renderer.h"
#include "cli/matrix/cell_report.h"
#include "cli/ordered_work.h"
#include "cli/output.h"
#include "cli/progress.h"
#include "cli/snapshot/snapshot.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

/// What became of a snapshot.
enum class Verdict : unsigned char { same, added, updated, different, failed };
constexpr std::array<std::string_view, 5> verdictWords{"the same", "new", "updated", "different", "failed"};

/// A cell beside its snapshot.
struct Compared {
    Cell cell;
    Snapshot drawn;
    bool isKept = false;  ///< whether there was a snapshot
    SnapshotDifference difference;
    CellOutcome outcome;
};

/// Trees name local pictures by where they lie; from the working directory that is the same on each machine.
std::string withoutWorkingDirectory(std::string tree) {
    const std::string top = URL::fileURL(std::filesystem::current_path()).string() + "/";
    for (std::size_t at = 0; (at = tree.find(top, at)) != std::string::npos;) tree.erase(at, top.size());
    return tree + "\n";
}

Compared compared(CellRenderer& renderers, const SnapshotArguments& arguments, std::size_t index) {
    const SnapshotOptions& options = arguments.snapshot;
    Compared result;
    result.cell = cellAt(arguments.matrix, index);
    const SnapshotFiles files(options.folder, nameOf(arguments.matrix, result.cell));
    result.outcome = renderers.draw(result.cell, [&](Widget& widget) {
        result.drawn.png = widget.png(widget.pixels(), paint::PngCompression::small);
        result.drawn.tree = withoutWorkingDirectory(widget.layoutText());
        const std::optional<Snapshot> kept = readSnapshot(files);
        result.isKept = kept.has_value();
        if (kept) result.difference = difference(*kept, result.drawn, options.tolerance);
    });
    return result;
}

/// Records, updates and reports snapshots, one after the other.
class SnapshotKeeper {
public:
    SnapshotKeeper(const SnapshotArguments& arguments, CellReport& report)
        : matrix_(arguments.matrix), options_(arguments.snapshot), report_(report) {}

    void take(Compared result) {
        const std::string name = nameOf(matrix_, result.cell);
        Verdict verdict = Verdict::failed;
        try {
            if (!result.outcome.failure) verdict = judge(name, result);
        } catch (const IOError&) {
            result.outcome.failure = describe(std::current_exception());
            verdict = Verdict::failed;
        }
        report_.add(matrix_, result.cell, result.outcome);
        ++counts_[static_cast<std::size_t>(verdict)];
    }

    /// "3 snapshots: 2 the same, 1 new".
    [[nodiscard]] std::string summary() const {
        const std::size_t count = matrix_.count();
        std::string text = std::to_string(count) + (count == 1 ? " snapshot: " : " snapshots: ");
        bool isFirst = true;
        for (std::size_t at = 0; at < counts_.size(); ++at) {
            if (counts_[at] == 0) continue;
            text += (isFirst ? "" : ", ") + std::to_string(counts_[at]) + " " + std::string(verdictWords[at]);
            isFirst = false;
        }
        return text + "\n";
    }

private:
    Verdict judge(const std::string& name, Compared& result) {
        const std::filesystem::path failure = options_.failures / (name + ".png");
        if (!result.isKept && options_.isStrict) {
            fail(result, name + " has no snapshot in " + options_.folder.string());
            return Verdict::failed;
        }
        if (result.isKept && result.difference.words.empty()) {
            removeStale(failure);
            return Verdict::same;
        }
        if (!result.isKept || options_.updates) {
            write(SnapshotFiles(options_.folder, name), result.drawn);
            removeStale(failure);
            return result.isKept ? Verdict::updated : Verdict::added;
        }
        std::string message = name + " differs: " + result.difference.words;
        if (!result.difference.png.empty()) {
            makeFolder(failure.parent_path());
            writeFile(failure, result.difference.png);
            message += "; see " + failure.string();
        }
        fail(result, message);
        return Verdict::different;
    }

    void fail(Compared& result, const std::string& message) const {
        result.outcome.failure = Failure{{"SnapshotDifference", message}};
        result.outcome.failure->file = displayName(matrix_.documents[result.cell.document].path);
    }

    static void write(const SnapshotFiles& files, const Snapshot& snapshot) {
        makeFolder(files.png.parent_path());
        FileTransaction both;
        both.write(files.png, snapshot.png);
        both.write(files.tree, snapshot.tree);
        both.commit();
    }

    /// Takes the picture of a difference away that is there no more, and the folders that it leaves empty.
    void removeStale(const std::filesystem::path& failure) const {
        std::error_code error;
        const std::filesystem::path last = (options_.failures / "").parent_path();
        bool isRemoved = std::filesystem::remove(failure, error);
        for (std::filesystem::path folder = failure.parent_path(); isRemoved; folder = folder.parent_path()) {
            isRemoved = std::filesystem::remove(folder, error);
            if (folder == last) return;
        }
    }

    const Matrix& matrix_;
    const SnapshotOptions& options_;
    CellReport& report_;
    std::array<std::size_t, verdictWords.size()> counts_{};
};

}  // namespace

int run(const SnapshotArguments& arguments, const Reporter& reporter) {
    const std::size_t count = arguments.matrix.count();
    CellRenderer renderers(arguments, arguments.matrix);
    Progress progress(count);
    CellReport report(reporter, progress);
    SnapshotKeeper keeper(arguments, report);
    inOrder<Compared>(
        count, [&](std::size_t index) { return compared(renderers, arguments, index); },
        [&](std::size_t, Compared result) {
            const std::string name = nameOf(arguments.matrix, result.cell);
            keeper.take(std::move(result));
            progress.advance(name);
        });
    progress.hide();
    writeStandardOutput(keeper.summary());
    return report.failed() ? 1 : 0;
}

}  // namespace tavrin::cli
