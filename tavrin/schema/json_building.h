// SPDX-License-Identifier: MIT
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "tavrin/json/json.h"

// Short ways to write JSON values in code.

namespace tavrin {

using JSONMembers = JSONObject::Members;

inline JSON object(JSONMembers members) { return JSON(JSONObject(std::move(members))); }
inline JSON list(std::initializer_list<JSON> elements) { return JSON(JSONArray(elements)); }

inline JSON list(std::span<const std::string_view> words) {
    JSONArray array;
    for (const std::string_view word : words) array.emplace_back(std::string(word));
    return JSON(std::move(array));
}

inline void append(JSONMembers& members, JSONMembers further) {
    for (JSONObject::Member& member : further) members.push_back(std::move(member));
}

}  // namespace tavrin
