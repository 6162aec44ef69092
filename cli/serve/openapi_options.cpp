// SPDX-License-Identifier: MIT
#include "cli/serve/openapi_options.h"

#include <cmath>
#include <string_view>

#include "cli/serve/request_options.h"

namespace tavrin::cli {
namespace {

void writeWord(const Option& option, JSONWriter& out) {
    out.key("enum").beginArray();
    for (const std::string_view word : option.words) out.value(word);
    out.endArray();
}

/// A count's least value is in its range, a number's is not.
void writeRange(const Option& option, JSONWriter& out) {
    out.key(option.kind == OptionKind::count ? "minimum" : "exclusiveMinimum").value(option.least);
    if (std::isfinite(option.most)) out.key("maximum").value(option.most);
}

void writeProperty(const Option& option, JSONWriter& out) {
    out.key(name(option.name)).beginObject().key("description").value(option.sentence);
    if (option.kind != OptionKind::size) {
        writeOptionSchema(option, out);
        out.endObject();
        return;
    }
    out.key("anyOf").beginArray().beginObject();
    writeOptionSchema(option, out);
    out.endObject().beginObject().key("type").value("array").key("minItems").value(2).key("maxItems").value(2);
    out.key("items").beginObject().key("type").value("number").key("exclusiveMinimum").value(0).endObject();
    out.endObject().endArray().endObject();
}

/// A profile's name, or an object of it and the bounds.
void writeBudget(JSONWriter& out) {
    const Option& profile = describe(OptionName::budget);
    out.key("budget").beginObject().key("description").value(profile.sentence);
    out.key("anyOf").beginArray().beginObject();
    writeWord(profile, out);
    out.endObject().beginObject().key("type").value("object").key("properties").beginObject();
    for (const std::string_view member : {"profile", "steps", "pixels", "bytes", "seconds"}) {
        out.key(member).beginObject();
        writeOptionSchema(describe(budgetMember(member)), out);
        out.endObject();
    }
    out.endObject().key("additionalProperties").value(false).endObject().endArray().endObject();
}

}  // namespace

void writeOptionSchema(const Option& option, JSONWriter& out) {
    switch (option.kind) {
        case OptionKind::word: writeWord(option, out); return;
        case OptionKind::flag: out.key("type").value("boolean"); return;
        case OptionKind::number:
            out.key("type").value("number");
            writeRange(option, out);
            return;
        case OptionKind::count:
            out.key("type").value("integer");
            writeRange(option, out);
            return;
        case OptionKind::size:
            out.key("type").value("string").key("pattern").value("^[0-9.]+x[0-9.]+$").key("example").value("338x158");
            return;
        case OptionKind::moment: out.key("type").value("string").key("format").value("date-time"); return;
        case OptionKind::timeZone: out.key("type").value("string").key("example").value("Europe/Madrid"); return;
        case OptionKind::color:
            out.key("type").value("string").key("pattern").value("^(auto|none|#?[0-9A-Fa-f]{6})$");
            return;
        case OptionKind::folder: out.key("type").value("string");
    }
}

void writeOptionsSchema(JSONWriter& out) {
    out.beginObject().key("type").value("object").key("properties").beginObject();
    for (const Option& option : sharedOptions()) {
        if (!isForRequests(option.name)) continue;
        if (option.name == OptionName::budget)
            writeBudget(out);
        else
            writeProperty(option, out);
    }
    out.endObject().key("additionalProperties").value(false).endObject();
}

}  // namespace tavrin::cli
