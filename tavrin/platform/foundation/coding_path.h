// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace tavrin {

/// One step into a JSON value: a key of an object or an index of an array.
using CodingKey = std::variant<std::string, std::size_t>;

/// The way from a document's root to a value in it; empty is the root.
using CodingPath = std::vector<CodingKey>;

/// The path as people write it: `nodes.main.children[1].type`. A key that holds anything but letters, digits, "_" and
/// "-" is quoted: `nodes["my node"]`. Empty for the root.
[[nodiscard]] std::string toText(const CodingPath& path);

}  // namespace tavrin
