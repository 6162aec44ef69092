// SPDX-License-Identifier: MIT
#include "tavrin/dsl/view_origins.h"

#include "tavrin/dsl/node.h"
#include "tavrin/dsl/origin_recorder.h"

namespace tavrin {
namespace {

template <class Key, class Value>
using ByAddress = std::unordered_map<const Key*, Value, std::hash<const Key*>, std::equal_to<>,
                                     pool::Allocator<std::pair<const Key* const, Value>>>;

/// Shows `take` the nodes and modifiers of a document, each with the way to it, until it returns false.
template <class Take>
class RecordWalk final : public ContentsVisitor {
public:
    explicit RecordWalk(Take take) : take_(std::move(take)) {}

    void run(const NodeDictionary& nodes) {
        for (const auto& [name, node] : nodes) {
            way = {std::string("nodes"), name};
            visit(node);
        }
    }

    void visit(const Node& node) override { enter(node); }
    void visit(const Modifier& modifier) override { enter(modifier); }

private:
    template <class Tagged>
    void enter(const Tagged& tagged) {
        isOver_ = isOver_ || !take_(tagged.identity(), way);
        if (!isOver_) tagged.showContents(*this);
    }

    Take take_;
    bool isOver_ = false;
};

}  // namespace

std::optional<CodingPath> pathOf(const void* record, const NodeDictionary& nodes) {
    std::optional<CodingPath> path;
    RecordWalk([&](const void* found, const CodingPath& way) {
        if (found == record) path = way;
        return !path;
    }).run(nodes);
    return path;
}

struct ViewOrigins::Paths {
    HeldBytes held = {};
    ByAddress<void, CodingPath> ofRecords = {};
    ByAddress<ViewBox, const CodingPath*> ofViews = {};
};

const CodingPath* ViewOrigins::find(const AnyView& view) const {
    const auto found = paths_->ofViews.find(&view.box());
    return found == paths_->ofViews.end() ? nullptr : found->second;
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
    const auto paths = std::make_shared<ViewOrigins::Paths>();
    RecordWalk([&](const void* record, const CodingPath& way) {
        paths->held.grow(way.size() * sizeof(CodingKey));
        paths->ofRecords.emplace(record, way);
        return true;
    }).run(nodes);
    for (const auto& [box, record] : records_) {
        const auto way = paths->ofRecords.find(record);
        if (way != paths->ofRecords.end()) paths->ofViews.emplace(box, &way->second);
    }
    return {root, paths};
}

}  // namespace tavrin
