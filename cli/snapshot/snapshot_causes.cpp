// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot_causes.h"

#include <string_view>

namespace tavrin::cli {
namespace {

constexpr std::string_view onlyPixels = "only pixels do, no view, as other fonts or pictures make them";
constexpr std::string_view onlyPlaces = "no view has changed, but where they lie, as other fonts make it";
constexpr std::string_view moreViews = "more views have changed than are told one by one";
constexpr std::string_view unreadTree = "the kept tree cannot be read as one";
constexpr std::string_view alike = ", or the like";

void addSnapshot(SnapshotCause& cause, std::size_t snapshot) {
    if (cause.snapshots.empty() || cause.snapshots.back() != snapshot) cause.snapshots.push_back(snapshot);
}

}  // namespace

std::string SnapshotCause::where() const {
    if (!place) return document;
    return document + ":" + std::to_string(place->line) + ":" + std::to_string(place->column);
}

std::string SnapshotCause::message() const {
    const std::size_t count = snapshots.size();
    return std::to_string(count) + (count == 1 ? " snapshot differs: " : " snapshots differ: ") + words;
}

void SnapshotCauses::add(const Source& document, const SnapshotDifference& difference, std::size_t snapshot) {
    const TreeChanges& tree = difference.tree;
    for (const ViewChange& change : tree.views) add(document, change, snapshot);
    if (tree.areMore) add(document, std::string(moreViews), snapshot);
    if (tree.areMoved) add(document, std::string(onlyPlaces), snapshot);
    if (tree.isUnread) add(document, std::string(unreadTree), snapshot);
    if (tree.none()) add(document, difference.isOfPixels ? std::string(onlyPixels) : difference.picture, snapshot);
}

void SnapshotCauses::add(const Source& document, const ViewChange& change, std::size_t snapshot) {
    const std::string words = change.words();
    if (!change.origin) return add(document, words, snapshot);
    SnapshotCause& cause = causeOf(document.name, toText(*change.origin));
    const bool isNew = cause.words.empty();
    if (isNew) {
        cause.words = words;
        cause.path = *change.origin;
        if (const auto offset = locate(document.text, *change.origin)) {
            cause.place = placeAt(document.text, *offset);
            cause.excerpt = excerptAt(document.text, *offset);
        }
    } else if (cause.path && cause.words != words && !cause.words.ends_with(alike)) {
        cause.words += alike;
    }
    addSnapshot(cause, snapshot);
}

void SnapshotCauses::add(const Source& document, const std::string& words, std::size_t snapshot) {
    SnapshotCause& cause = causeOf(document.name, words);
    if (cause.words.empty()) cause.words = words;
    addSnapshot(cause, snapshot);
}

SnapshotCause& SnapshotCauses::causeOf(const std::string& document, const std::string& key) {
    const auto known = places_.find({document, key});
    if (known != places_.end()) return causes_[known->second];
    if (causes_.size() > mostCauses) return causes_.back();
    const bool isLast = causes_.size() == mostCauses;
    places_.emplace(std::pair(document, key), causes_.size());
    causes_.push_back({.document = isLast ? "" : document, .words = isLast ? std::string(moreViews) : ""});
    return causes_.back();
}

}  // namespace tavrin::cli
