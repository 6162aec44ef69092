// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/failure.h"
#include "cli/input.h"
#include "cli/snapshot/snapshot.h"

namespace tavrin::cli {

/// What has changed some snapshots of a document.
struct SnapshotCause {
    std::string document = {};
    /// What it is, in words without a full stop: "the Text: font.system was 22 and is 24".
    std::string words = {};
    /// The way in the document to what made the view that has changed, and where that is written; none where the cause
    /// is not to be seen in the document.
    std::optional<CodingPath> path = std::nullopt;
    std::optional<TextPlace> place = std::nullopt;
    std::optional<Excerpt> excerpt = std::nullopt;
    /// The snapshots, by their places in the run.
    std::vector<std::size_t> snapshots = {};

    /// Where it is: "agenda.json:12:8", or the document's name alone.
    [[nodiscard]] std::string where() const;
    /// "2 snapshots differ: " and the words.
    [[nodiscard]] std::string message() const;
};

/// Puts differences of snapshots together that have one cause: those of views that one place of a document has made,
/// and else those of the same words.
class SnapshotCauses {
public:
    /// More causes than these are told as one.
    static constexpr std::size_t mostCauses = 1000;

    /// Adds what differs in a snapshot, which has its place in the run, of a document.
    void add(const Source& document, const SnapshotDifference& difference, std::size_t snapshot);

    /// In the order in which they were first met.
    [[nodiscard]] const std::vector<SnapshotCause>& all() const { return causes_; }

private:
    void add(const Source& document, const ViewChange& change, std::size_t snapshot);
    void add(const Source& document, const std::string& words, std::size_t snapshot);
    /// The cause of a key, new and without snapshots where it is not known. Where there is no room for it, the one that
    /// stands for all such.
    SnapshotCause& causeOf(const std::string& document, const std::string& key);

    std::vector<SnapshotCause> causes_;
    std::map<std::pair<std::string, std::string>, std::size_t> places_;  // by the document, and the way or the words
};

}  // namespace tavrin::cli
