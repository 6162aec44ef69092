// SPDX-License-Identifier: MIT
#include "tavrin/dsl/view_origins.h"

#include "tavrin/dsl/node.h"
#include "tavrin/dsl/origin_recorder.h"

namespace tavrin {
namespace {

/// Finds the way to every node and modifier of a document.
class RecordPaths final : public ContentsVisitor {
public:
    explicit RecordPaths(const NodeDictionary& nodes) {
        for (const auto& [name, node] : nodes) {
            way = {std::string("nodes"), name};
            visit(node);
        }
    }

    void visit(const Node& node) override { enter(node); }
    void visit(const Modifier& modifier) override { enter(modifier); }

    [[nodiscard]] const CodingPath* find(const void* record) const {
        const auto found = paths_.find(record);
        return found == paths_.end() ? nullptr : &found->second;
    }

private:
    template <class Tagged>
    void enter(const Tagged& tagged) {
        paths_.emplace(tagged.identity(), way);
        tagged.showContents(*this);
    }

    std::unordered_map<const void*, CodingPath> paths_;
};

/// Finds the way to one of them.
class RecordFinder final : public ContentsVisitor {
public:
    explicit RecordFinder(const void* record) : record_(record) {}

    void visit(const Node& node) override { enter(node); }
    void visit(const Modifier& modifier) override { enter(modifier); }

    std::optional<CodingPath> found;

private:
    template <class Tagged>
    void enter(const Tagged& tagged) {
        if (tagged.identity() == record_)
            found = way;
        else if (!found)
            tagged.showContents(*this);
    }

    const void* record_;
};

}  // namespace

std::optional<CodingPath> pathOf(const void* record, const NodeDictionary& nodes) {
    RecordFinder finder(record);
    for (auto entry = nodes.begin(); entry != nodes.end() && !finder.found; ++entry) {
        finder.way = {std::string("nodes"), entry->first};
        finder.visit(entry->second);
    }
    return std::move(finder.found);
}

struct ViewOrigins::Paths {
    std::unordered_map<const ViewBox*, CodingPath> ofViews;
};

const CodingPath* ViewOrigins::find(const AnyView& view) const {
    const auto found = paths_->ofViews.find(&view.box());
    return found == paths_->ofViews.end() ? nullptr : &found->second;
}

void OriginRecorder::note(const AnyView& view, const void* record) {
    std::vector<AnyView> pending{view};
    while (!pending.empty()) {
        const AnyView next = std::move(pending.back());
        pending.pop_back();
        if (!records_.emplace(&next.box(), record).second) continue;
        kept_.push_back(next);
        next.box().forEachInside([&](const AnyView& inside) { pending.push_back(inside); });
    }
}

ViewOrigins OriginRecorder::origins(const AnyView& root, const NodeDictionary& nodes) const {
    const RecordPaths ways(nodes);
    ViewOrigins::Paths paths;
    for (const auto& [box, record] : records_)
        if (const CodingPath* way = ways.find(record)) paths.ofViews.emplace(box, *way);
    return {root, std::make_shared<const ViewOrigins::Paths>(std::move(paths))};
}

}  // namespace tavrin
