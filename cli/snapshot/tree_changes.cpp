// SPDX-License-Identifier: MIT
#include "cli/snapshot/tree_changes.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <utility>
#include <variant>

#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_difference.h"

namespace tavrin::cli {
namespace {

/// The name of a view or modifier of a tree; empty for any other value.
std::string viewName(const JSON& value) {
    for (const char* key : {"view", "modifier"})
        if (const JSON* word = value.find(key)) return word->description();
    return {};
}

/// The innermost view around a place of a tree, and the way from there.
struct PlaceInView {
    std::string view;
    CodingPath wayToView;
    CodingPath wayInside;
};

PlaceInView placeInView(const JSON& tree, const CodingPath& path) {
    PlaceInView place{"the root", {}, path};
    const JSON* at = &tree;
    for (std::size_t step = 0; at && step < path.size(); ++step) {
        const auto here = path.begin() + static_cast<std::ptrdiff_t>(step);
        if (const std::string name = viewName(*at); !name.empty())
            place = {"the " + name, {path.begin(), here}, {here, path.end()}};
        const auto* key = std::get_if<std::string>(&*here);
        at = key ? at->find(*key) : at->find(static_cast<std::int64_t>(std::get<std::size_t>(*here)));
    }
    return place;
}

/// A value in a few words; of a whole view only its name.
std::string valueInWords(const JSON& value) {
    constexpr std::size_t most = 120;
    if (const std::string name = viewName(value); !name.empty()) return "a " + name;
    std::string text = value.description();
    if (std::holds_alternative<SharedText>(value.object())) text = "\"" + text + "\"";
    return text.size() <= most ? text : "another value";
}

ViewChange changeOf(const JSONDifference& difference, const JSON& before) {
    PlaceInView place = placeInView(before, difference.path);
    ViewChange change{std::move(place.wayToView), std::move(place.view)};
    const std::string subject = place.wayInside.empty() ? "it" : tavrin::toText(place.wayInside);
    if (!difference.before) {
        change.what = subject + " is new, " + valueInWords(*difference.after);
        // A new view has a place of its own.
        if (!viewName(*difference.after).empty()) change.way = difference.path;
    } else if (!difference.after) {
        change.what = subject + " was removed, " + valueInWords(*difference.before);
    } else {
        change.what =
            subject + " was " + valueInWords(*difference.before) + " and is " + valueInWords(*difference.after);
    }
    return change;
}

/// Gathers differences by the views that they are in.
class ChangedViews {
public:
    void add(const JSONDifference& difference, const JSON& before) {
        ViewChange change = changeOf(difference, before);
        const auto [known, isNew] = places_.emplace(tavrin::toText(change.way), changes_.views.size());
        if (!isNew) {
            if (known->second < changes_.views.size()) ++changes_.views[known->second].more;
        } else if (changes_.views.size() < TreeChanges::mostViews) {
            changes_.views.push_back(std::move(change));
        } else {
            known->second = SIZE_MAX;
            changes_.areMore = true;
        }
    }

    [[nodiscard]] TreeChanges changes() && { return std::move(changes_); }

private:
    TreeChanges changes_;
    std::map<std::string, std::size_t> places_;  // in the list, by the ways to the views
};

}  // namespace

std::string ViewChange::words() const {
    std::string words = view;
    if (!origin && !way.empty()) words += " at " + tavrin::toText(way);
    words += ": " + what;
    if (more > 0) words += ", and " + std::to_string(more) + " more difference" + (more == 1 ? "" : "s");
    return words;
}

TreeChanges treeChanges(const std::string& kept, const std::string& drawn) {
    if (kept == drawn) return {};
    constexpr std::size_t mostDifferences = 1000;
    try {
        const JSON before = JSON::parse(kept);
        const JSON after = JSON::parse(drawn);
        const JSONDifferences found =
            differences(before, after, mostDifferences, [](std::string_view key) { return key == "frame"; });
        ChangedViews changed;
        for (const JSONDifference& difference : found.first) changed.add(difference, before);
        TreeChanges changes = std::move(changed).changes();
        changes.areMore = changes.areMore || found.areMore;
        changes.areMoved = changes.views.empty() && found.areSkipped;
        return changes;
    } catch (const DecodingError&) {
        return {.isUnread = true};
    }
}

}  // namespace tavrin::cli
