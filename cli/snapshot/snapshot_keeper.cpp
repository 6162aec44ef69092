// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot_keeper.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

#include "cli/io_error.h"
#include "cli/output.h"
#include "cli/snapshot/orphans.h"

namespace tavrin::cli {
namespace {

void writePair(const SnapshotFiles& files, const Snapshot& snapshot) {
    makeFolder(files.png.parent_path());
    FileTransaction both;
    both.write(files.png, snapshot.png);
    both.write(files.tree, snapshot.tree);
    both.commit();
}

}  // namespace

void SnapshotKeeper::take(ComparedCell compared, const Source& document) {
    SnapshotResult told{nameOf(matrix_, compared.cell), document.name, SnapshotVerdict::failed};
    try {
        if (!compared.outcome.failure) judge(told, compared, document);
    } catch (const IOError&) {
        compared.outcome.failure = describe(std::current_exception());
        told.verdict = SnapshotVerdict::failed;
    }
    report_.add(matrix_, compared.cell, compared.outcome);
    told.failure = std::move(compared.outcome.failure);
    ++counts_[indexOf(told.verdict)];
    results_.snapshots.push_back(std::move(told));
}

void SnapshotKeeper::judge(SnapshotResult& told, ComparedCell& compared, const Source& document) {
    const std::filesystem::path failure = options_.failures / (told.name + ".png");
    if (!compared.isKept && options_.isStrict) {
        compared.outcome.failure =
            Failure{{"SnapshotDifference", told.name + " has no snapshot in " + options_.folder.string() +
                                               "; run without --strict to record it"}};
        compared.outcome.failure->file = document.name;
        return;
    }
    if (compared.isKept && compared.difference.none()) {
        removeStale(failure);
        told.verdict = SnapshotVerdict::same;
    } else if (!compared.isKept || options_.updates) {
        writePair(SnapshotFiles(options_.folder, told.name), compared.drawn);
        removeStale(failure);
        told.verdict = compared.isKept ? SnapshotVerdict::updated : SnapshotVerdict::added;
    } else {
        noteDifference(told, compared, document);
    }
}

void SnapshotKeeper::noteDifference(SnapshotResult& told, const ComparedCell& compared, const Source& document) {
    const std::string picture = told.name + ".png";
    if (!compared.difference.png.empty()) {
        const std::filesystem::path failure = options_.failures / picture;
        makeFolder(failure.parent_path());
        writeFile(failure, compared.difference.png);
        told.picture = picture;
    }
    told.difference = compared.difference.picture;
    told.verdict = SnapshotVerdict::different;
    causes_.add(document, compared.difference, results_.snapshots.size());
}

bool SnapshotKeeper::finish(const Reporter& reporter) {
    results_.causes = causes_.all();
    for (const SnapshotCause& cause : results_.causes) reporter.report(failureOf(cause, results_));
    if (hasPictures()) reporter.hint("note: what differs is shown in " + page().string());
    writePage();
    const bool orphansFail = tellOrphans(reporter);
    return orphansFail || !results_.causes.empty();
}

bool SnapshotKeeper::tellOrphans(const Reporter& reporter) {
    std::set<std::string> names;
    for (const SnapshotResult& one : results_.snapshots) names.insert(one.name);
    std::set<std::string> unknown;
    for (std::size_t at = 0; at < documents_.size(); ++at)
        if (documents_[at].fault) unknown.insert(matrix_.documents[at].name);
    results_.orphans = orphansIn(options_, names, unknown);
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

std::string SnapshotKeeper::summary() const {
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

bool SnapshotKeeper::hasPictures() const {
    return std::ranges::any_of(results_.snapshots, [](const SnapshotResult& one) { return !one.picture.empty(); });
}

/// Puts a page of all pictures of what differs beside them, and keeps them out of repositories. Where there are none
/// takes the page away, and what keeps nothing else out.
void SnapshotKeeper::writePage() const {
    const std::filesystem::path ignored = options_.failures / ".gitignore";
    std::error_code error;
    if (hasPictures()) {
        writeFile(page(), failuresPage(results_));
        if (!std::filesystem::exists(ignored, error)) writeFile(ignored, "*\n");
        return;
    }
    std::filesystem::remove(page(), error);
    const std::filesystem::directory_iterator rest(options_.failures, error);
    if (!error && std::distance(begin(rest), end(rest)) == 1 && std::filesystem::remove(ignored, error))
        std::filesystem::remove(options_.failures, error);
}

/// Takes the picture of a difference away that is there no more, and the folders that it leaves empty.
void SnapshotKeeper::removeStale(const std::filesystem::path& failure) const {
    std::error_code error;
    const std::filesystem::path last = (options_.failures / "").parent_path();
    bool isRemoved = std::filesystem::remove(failure, error);
    for (std::filesystem::path folder = failure.parent_path(); isRemoved; folder = folder.parent_path()) {
        isRemoved = std::filesystem::remove(folder, error);
        if (folder == last) return;
    }
}

}  // namespace tavrin::cli
