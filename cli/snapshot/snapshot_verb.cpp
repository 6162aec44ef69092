// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <exception>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
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
#include "cli/snapshot/snapshot_results.h"
#include "cli/verbs.h"

namespace tavrin::cli {
namespace {

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
    result.cell = arguments.matrix.cells[index];
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

/// Whether a file's name is one that a picture of a matrix has: "systemMedium-dark@2x".
bool looksLikeSnapshot(const std::filesystem::path& file) {
    std::error_code error;
    return file.extension() == ".png" && file.stem().string().find('@') != std::string::npos &&
           std::filesystem::exists(std::filesystem::path(file).replace_extension(".json"), error);
}

/// The snapshots in a folder, but for those in the folder of failures, that none of the names is that of.
std::vector<std::string> orphansIn(const SnapshotOptions& options, const std::set<std::string>& names) {
    namespace fs = std::filesystem;
    std::vector<std::string> orphans;
    std::error_code error;
    fs::recursive_directory_iterator at(options.folder, fs::directory_options::skip_permission_denied, error);
    for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
        if (at->is_directory(error) && fs::equivalent(at->path(), options.failures, error))
            at.disable_recursion_pending();
        error.clear();
        if (!looksLikeSnapshot(at->path())) continue;
        std::string name = at->path().lexically_relative(options.folder).replace_extension().string();
        if (!names.contains(name)) orphans.push_back(std::move(name));
    }
    std::ranges::sort(orphans);
    return orphans;
}

std::string orphansInWords(const std::vector<std::string>& orphans, const std::filesystem::path& folder) {
    constexpr std::size_t mostNamed = 5;
    std::string text = std::to_string(orphans.size()) + (orphans.size() == 1 ? " snapshot in " : " snapshots in ") +
                       folder.string() + (orphans.size() == 1 ? " belongs" : " belong") +
                       " to no picture of this run: ";
    for (std::size_t i = 0; i < orphans.size() && i < mostNamed; ++i) text += (i == 0 ? "" : ", ") + orphans[i];
    if (orphans.size() > mostNamed) text += " and " + std::to_string(orphans.size() - mostNamed) + " more";
    return text;
}

/// Records, updates and reports snapshots, one after the other.
class SnapshotKeeper {
public:
    SnapshotKeeper(const SnapshotArguments& arguments, CellReport& report)
        : matrix_(arguments.matrix), options_(arguments.snapshot), report_(report) {}

    void take(Compared result) {
        SnapshotResult told{nameOf(matrix_, result.cell), displayName(matrix_.documents[result.cell.document].path),
                            SnapshotVerdict::failed};
        try {
            if (!result.outcome.failure) judge(told, result);
        } catch (const IOError&) {
            result.outcome.failure = describe(std::current_exception());
            told.verdict = SnapshotVerdict::failed;
        }
        report_.add(matrix_, result.cell, result.outcome);
        if (result.outcome.failure) told.message = result.outcome.failure->message;
        ++counts_[indexOf(told.verdict)];
        results_.snapshots.push_back(std::move(told));
    }

    /// Looks for snapshots that nothing was compared with, and tells about the pictures of what differs. Whether that
    /// makes the run fail.
    [[nodiscard]] bool finish(const Reporter& reporter) {
        std::set<std::string> names;
        for (const SnapshotResult& one : results_.snapshots) names.insert(one.name);
        results_.orphans = orphansIn(options_, names);
        writePage();
        if (results_.orphans.empty()) return false;
        const std::string words = orphansInWords(results_.orphans, options_.folder);
        if (!options_.isStrict) {
            reporter.hint("note: " + words);
            return false;
        }
        results_.orphansMessage = words + "; delete them, or draw what they show";
        reporter.report(Failure{{"SnapshotDifference", results_.orphansMessage}});
        return true;
    }

    /// "3 snapshots: 2 the same, 1 new", or what other programs read.
    [[nodiscard]] std::string summary() const {
        if (options_.format != SnapshotFormat::text) return resultsText(results_, options_.format);
        const std::size_t count = matrix_.count();
        std::string text = std::to_string(count) + (count == 1 ? " snapshot: " : " snapshots: ");
        bool isFirst = true;
        for (std::size_t at = 0; at < counts_.size(); ++at) {
            if (counts_[at] == 0) continue;
            text += (isFirst ? "" : ", ") + std::to_string(counts_[at]) + " " + std::string(snapshotVerdictWords[at]);
            isFirst = false;
        }
        return text + "\n";
    }

private:
    void judge(SnapshotResult& told, Compared& result) {
        const std::string picture = told.name + ".png";
        const std::filesystem::path failure = options_.failures / picture;
        if (!result.isKept && options_.isStrict)
            return fail(result, told.name + " has no snapshot in " + options_.folder.string() +
                                    "; run without --strict to record it");
        if (result.isKept && result.difference.words.empty()) {
            removeStale(failure);
            told.verdict = SnapshotVerdict::same;
            return;
        }
        if (!result.isKept || options_.updates) {
            write(SnapshotFiles(options_.folder, told.name), result.drawn);
            removeStale(failure);
            told.verdict = result.isKept ? SnapshotVerdict::updated : SnapshotVerdict::added;
            return;
        }
        std::string message = told.name + " differs: " + result.difference.words;
        if (!result.difference.png.empty()) {
            makeFolder(failure.parent_path());
            writeFile(failure, result.difference.png);
            message += "; see " + failure.string();
            told.picture = picture;
        }
        fail(result, message);
        told.verdict = SnapshotVerdict::different;
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

    /// Puts a page of all pictures of what differs beside them, and keeps them out of repositories. Where there are
    /// none takes the page away, and what keeps nothing else out.
    void writePage() const {
        const std::filesystem::path page = options_.failures / "index.html";
        const std::filesystem::path ignored = options_.failures / ".gitignore";
        const auto hasPicture = [](const SnapshotResult& one) { return !one.picture.empty(); };
        std::error_code error;
        if (std::ranges::any_of(results_.snapshots, hasPicture)) {
            writeFile(page, failuresPage(results_));
            if (!std::filesystem::exists(ignored, error)) writeFile(ignored, "*\n");
            return;
        }
        std::filesystem::remove(page, error);
        const std::filesystem::directory_iterator rest(options_.failures, error);
        if (!error && std::distance(begin(rest), end(rest)) == 1 && std::filesystem::remove(ignored, error))
            std::filesystem::remove(options_.failures, error);
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
    SnapshotResults results_;
    std::array<std::size_t, snapshotVerdictWords.size()> counts_{};
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
    const bool orphansFail = keeper.finish(reporter);
    writeStandardOutput(keeper.summary());
    return report.failed() || orphansFail ? 1 : 0;
}

}  // namespace tavrin::cli
