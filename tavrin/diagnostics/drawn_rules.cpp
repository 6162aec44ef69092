// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/drawn_rules.h"

#include <algorithm>
#include <set>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/strings/utf8.h"
#include "tavrin/platform/text/block_contents.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {
namespace {

void addOnce(std::vector<std::string>& list, const std::string& word) {
    if (std::ranges::find(list, word) == list.end()) list.push_back(word);
}

std::string joined(const std::vector<std::string>& words, std::string_view last) {
    std::string text;
    for (const std::string& word : words)
        text.append(text.empty() ? "" : &word == &words.back() ? std::string(last) : ", ").append(word);
    return text;
}

}  // namespace

DrawnFindings::Found& DrawnFindings::put(Rule rule, const CodingPath* origin, std::string message, double badness,
                                         std::string_view what) {
    CodingPath path = origin ? *origin : CodingPath{};
    Meter::ofThisThread().step(1 + path.size());
    const auto [known, isNew] = known_.try_emplace({rule, toText(path), std::string(what)}, found_.size());
    if (isNew) {
        hold(2 * (sizeof(Found) + path.size() * sizeof(CodingKey) + message.size()));
        found_.push_back({rule, std::move(path), message, badness});
    }
    Found& found = found_[known->second];
    if (badness > found.badness) {
        found.badness = badness;
        found.message = std::move(message);
    }
    addOnce(found.families, family_);
    addOnce(found.appearances, appearance_);
    return found;
}

void DrawnFindings::hold(std::size_t bytes) {
    held_.grow(bytes);
    bytes_ += static_cast<std::int64_t>(bytes);
}

void DrawnFindings::add(Rule rule, const CodingPath* origin, std::string message, double badness,
                        bool dependsOnAppearance) {
    Found& found = put(rule, origin, std::move(message), badness);
    found.dependsOnAppearance = dependsOnAppearance;
    found.isNote = false;
}

void DrawnFindings::addNote(Rule rule, const CodingPath* origin, std::string message) {
    const std::size_t before = found_.size();
    Found& found = put(rule, origin, std::move(message), -1);
    if (found_.size() > before) found.isNote = true;
}

void DrawnFindings::addOneOf(Rule rule, const CodingPath* origin, std::string_view what, std::string message) {
    put(rule, origin, std::move(message), 0, what);
}

void DrawnFindings::addUnlessSeen(Rule rule, const CodingPath* origin, std::string message) {
    put(rule, origin, std::move(message), 0).onlyUnseen = true;
}

void DrawnFindings::moveTo(Findings& findings, const JSONOutline& outline) const {
    const bool maySkip = std::ranges::any_of(found_, [](const Found& found) { return found.onlyUnseen; });
    std::set<std::string> seen;
    if (maySkip)
        for (const CodingPath* const origin : seen_) seen.insert(origin ? toText(*origin) : std::string());
    OutlinePaths paths(outline);
    for (const Found& found : found_) {
        if (found.onlyUnseen && seen.contains(toText(found.path))) continue;
        std::string message = found.message + " (" + joined(found.families, ", ");
        if (found.dependsOnAppearance) message += "; " + joined(found.appearances, " and ");
        message += ")";
        Diagnostic& added = found.path.empty()
                                ? findings.add(found.rule, std::move(message))
                                : findings.add(found.rule, outline, paths.nearest(found.path), std::move(message));
        if (found.isNote) added.severity = Severity::note;
    }
}

void applyDrawnRules(const DrawnSubject& subject, DrawnFindings& findings) {
    for (const auto rule : {findUntappableLinks, findMissingImages, findMissingGlyphs, findContradictoryFrames,
                            findTruncatedTexts, findClippedTexts, findUnseenTexts, findLowContrast}) {
        Meter::ofThisThread().step(subject.views.size());
        rule(subject, findings);
    }
}

Rect textBounds(const DrawnSubject& subject, const DrawnView& text) {
    const Rect& frame = subject.tree.node(text.index).frame;
    const Size block = subject.tree.textBlock(text.index).size();
    return boundingBox(text.transform, {frame.origin, {std::min(frame.size.width, block.width), frame.size.height}});
}

bool isInSight(const DrawnSubject& subject, const DrawnView& text) {
    return !layout::isEmpty(layout::commonRect(textBounds(subject, text), text.clip));
}

std::vector<const DrawnView*> seenTexts(const DrawnSubject& subject) {
    std::vector<const DrawnView*> texts;
    for (const DrawnView& view : subject.views)
        if (subject.tree.node(view.index).kind == ViewKind::text && isInSight(subject, view)) texts.push_back(&view);
    return texts;
}

std::string excerptOf(const DrawnSubject& subject, layout::LayoutTree::Index text) {
    constexpr std::size_t shown = 24;
    const std::string_view whole = text::contentsOf(subject.tree.textBlock(text)).text;
    const std::size_t end = skipCodePoints(whole, 0, shown);
    return inQuotes(std::string(whole.substr(0, end)) + (end < whole.size() ? "…" : ""));
}

}  // namespace tavrin
