// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/coding_path.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/strings/ascii.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin {
namespace {

bool isPlain(char c) { return isLetter(c) || isDigit(c) || c == '_' || c == '-'; }

std::string inJSONQuotes(std::string_view key) {
    JSONWriter writer(JSONWriter::Style::compact);
    writer.value(key);
    return std::move(writer).text();
}

}  // namespace

std::string toText(const CodingPath& path) {
    std::string text;
    for (const CodingKey& step : path) {
        if (const auto* index = std::get_if<std::size_t>(&step)) {
            text += "[" + toText(*index) + "]";
            continue;
        }
        const std::string& key = std::get<std::string>(step);
        if (key.empty() || !std::ranges::all_of(key, isPlain))
            text += "[" + inJSONQuotes(key) + "]";
        else
            text += (text.empty() ? "" : ".") + key;
    }
    return text;
}

}  // namespace tavrin
