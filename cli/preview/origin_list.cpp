#include "cli/preview/origin_list.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/json_writer.h"

namespace tavrin::cli {
namespace {

/// The views inside one that layout prints. Of what a composed view holds these are the ones that nodes of the document
/// made; its colours are values.
std::vector<AnyView> printedInside(const AnyView& view, const ViewOrigins& origins) {
    const CodingPath* const own = origins.find(view);
    std::vector<AnyView> inside;
    view.box().forEachInside([&](const AnyView& inner) {
        const CodingPath* const way = origins.find(inner);
        const bool isValue = view.kind() == ViewKind::composed && (!way || (own && *way == *own));
        if (!isValue) inside.push_back(inner);
    });
    return inside;
}

}  // namespace

std::string originList(const AnyView& root, const ViewOrigins& origins) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.beginObject().key("views").beginArray();
    std::vector<AnyView> pending{root};
    while (!pending.empty()) {
        const AnyView view = std::move(pending.back());
        pending.pop_back();
        const CodingPath* const way = origins.find(view);
        writer.beginObject().key("view").value(view.box().name()).key("origin");
        way ? writer.value(toText(*way)) : writer.value(nullptr);
        writer.endObject();
        std::vector<AnyView> inside = printedInside(view, origins);
        std::reverse(inside.begin(), inside.end());
        pending.insert(pending.end(), inside.begin(), inside.end());
    }
    writer.endArray().endObject();
    return std::move(writer).text();
}

}  // namespace tavrin::cli
