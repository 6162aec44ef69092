// SPDX-License-Identifier: MIT
#include "cli/json_member.h"

#include <cstddef>

#include "tavrin/json/json_place.h"
#include "tavrin/json/json_scan.h"

namespace tavrin::cli {
namespace {

/// The value that begins at an offset, as it is written.
std::string_view writtenAt(std::string_view line, std::size_t offset) {
    JSONScanner scanner(line.substr(offset));
    std::size_t depth = 0;
    do {
        if (!scanner.next()) break;
        if (scanner.event() == JSONScanner::Event::end)
            --depth;
        else if (scanner.event() == JSONScanner::Event::beginObject ||
                 scanner.event() == JSONScanner::Event::beginArray)
            ++depth;
    } while (depth > 0);
    return line.substr(offset, scanner.end());
}

}  // namespace

std::optional<std::string> textMember(std::string_view object, std::string_view name, const JSONElement& value) {
    if (!value.exists() || value.isNull()) return std::nullopt;
    if (value.isString()) return std::string(value.string());
    const auto offset = locate(object, {CodingKey(std::string(name))});
    return std::string(writtenAt(object, offset.value_or(0)));
}

}  // namespace tavrin::cli
