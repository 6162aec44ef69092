// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "tavrin/diagnostics/drawn_views.h"
#include "tavrin/diagnostics/findings.h"
#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/widget/widget.h"

// The rules that look at a document as it is drawn, in one room and appearance after the other. They stand in rules/,
// those of one theme in one file.

namespace tavrin {

/// What is found in the drawings of a document. What is found at one place in several of them is one finding.
class DrawnFindings {
public:
    /// Says what is drawn from now on.
    void enter(std::string family, std::string_view appearance) {
        family_ = std::move(family);
        appearance_ = appearance;
    }

    /// Notes something about the view of a node. `badness` decides whose message is kept. What depends on the
    /// appearance says in which ones it was found.
    void add(Rule rule, const CodingPath* origin, std::string message, double badness = 0,
             bool dependsOnAppearance = false);
    void addNote(Rule rule, const CodingPath* origin, std::string message);
    /// Notes one of several things about the view of a node, each of which is a finding of its own.
    void addOneOf(Rule rule, const CodingPath* origin, std::string_view what, std::string message);

    /// Says that something of a node is seen.
    void setSeen(const CodingPath* origin) { seen_.insert(origin); }
    /// Notes something about the view of a node that is true only where the node is seen in none of the drawings.
    void addUnlessSeen(Rule rule, const CodingPath* origin, std::string message);

    /// Puts everything among the other findings.
    void moveTo(Findings& findings, const JSONOutline& outline) const;

    /// What they hold.
    [[nodiscard]] std::int64_t bytes() const { return bytes_; }

private:
    struct Found {
        Rule rule;
        CodingPath path;
        std::string message;
        double badness = 0;
        bool dependsOnAppearance = false;
        bool isNote = false;
        bool onlyUnseen = false;
        std::vector<std::string> families = {};
        std::vector<std::string> appearances = {};
    };

    void hold(std::size_t bytes);
    Found& put(Rule rule, const CodingPath* origin, std::string message, double badness, std::string_view what = {});

    std::string family_;
    std::string appearance_;
    std::vector<Found> found_;
    std::map<std::tuple<Rule, std::string, std::string>, std::size_t> known_;  // by rule, path and what it is about
    std::unordered_set<const CodingPath*> seen_;
    HeldBytes held_;
    std::int64_t bytes_ = 0;
};

/// One drawing of a document.
struct DrawnSubject {
    Widget& widget;
    const layout::LayoutTree& tree;
    const pool::Vector<DrawnView>& views;
    /// Whether pictures that may not be fetched are missing, too.
    bool missesUnasked = false;
};

void findUntappableLinks(const DrawnSubject& subject, DrawnFindings& findings);
void findMissingImages(const DrawnSubject& subject, DrawnFindings& findings);
void findMissingGlyphs(const DrawnSubject& subject, DrawnFindings& findings);
void findContradictoryFrames(const DrawnSubject& subject, DrawnFindings& findings);
void findTruncatedTexts(const DrawnSubject& subject, DrawnFindings& findings);
void findClippedTexts(const DrawnSubject& subject, DrawnFindings& findings);
void findUnseenTexts(const DrawnSubject& subject, DrawnFindings& findings);
void findLowContrast(const DrawnSubject& subject, DrawnFindings& findings);

/// All of the above.
void applyDrawnRules(const DrawnSubject& subject, DrawnFindings& findings);

/// Whether something of a text may be seen: it does not lie wholly outside what clips it.
[[nodiscard]] bool isInSight(const DrawnSubject& subject, const DrawnView& text);
/// The texts among the views that are seen at all.
[[nodiscard]] std::vector<const DrawnView*> seenTexts(const DrawnSubject& subject);
/// Where a text's lines stand, in points, effects counted.
[[nodiscard]] Rect textBounds(const DrawnSubject& subject, const DrawnView& text);
/// How a text begins, in quotes.
[[nodiscard]] std::string excerptOf(const DrawnSubject& subject, layout::LayoutTree::Index text);

}  // namespace tavrin
