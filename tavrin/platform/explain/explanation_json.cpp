// SPDX-License-Identifier: MIT
#include <numeric>
#include <utility>

#include "tavrin/platform/explain/explanation.h"
#include "tavrin/platform/foundation/strings/json_writer.h"

namespace tavrin {
namespace {

void writeFrame(JSONWriter& writer, const ViewExplanation& view) {
    if (!view.frame) {
        writer.key("proposed").value(nullptr).key("frame").value(nullptr);
        return;
    }
    writer.key("proposed").beginArray().value(view.proposal.width).value(view.proposal.height).endArray();
    const auto& [origin, size] = *view.frame;
    writer.key("frame").beginArray().value(origin.x).value(origin.y);
    writer.value(size.width).value(size.height).endArray();
}

void writeShare(JSONWriter& writer, const std::optional<layout::StackShare>& share) {
    writer.key("share");
    if (!share) {
        writer.value(nullptr);
        return;
    }
    writer.beginObject().key("turn").value(share->turn).key("of").value(share->count);
    writer.key("yields").value(share->yields).key("setAside").value(share->setAside);
    writer.key("remainder").value(share->remainder).key("flexibility").value(share->flexibility).endObject();
}

void write(JSONWriter& writer, const ViewExplanation& view) {
    writer.beginObject().key("view").value(view.name).key("title").value(view.title);
    writer.key("depth").value(view.depth).key("origin");
    writer.value(view.origin ? std::optional(toText(*view.origin)) : std::nullopt);
    writeFrame(writer, view);
    writeShare(writer, view.share);
    writer.key("summary").value(view.summary).key("because").beginArray();
    for (const std::string* sentence : {&view.whyProposed, &view.whyAnswered, &view.whyPlaced})
        if (!sentence->empty()) writer.value(*sentence);
    writer.endArray().endObject();
}

}  // namespace

std::string explanationJSON(const Explanation& explanation, std::span<const std::size_t> chosen) {
    JSONWriter writer(JSONWriter::Style::pretty);
    writer.beginObject().key("views").beginArray();
    for (const std::size_t at : chosen) write(writer, explanation[at]);
    writer.endArray().endObject();
    return std::move(writer).text() + "\n";
}

std::string explanationJSON(const Explanation& explanation) {
    std::vector<std::size_t> all(explanation.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    return explanationJSON(explanation, all);
}

}  // namespace tavrin
