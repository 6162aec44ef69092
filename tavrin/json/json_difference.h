// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <vector>

#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/coding_path.h"

namespace tavrin {

/// One place in which two JSON values differ. Null where one of them has nothing there.
struct JSONDifference {
    CodingPath path;
    const JSON* before = nullptr;
    const JSON* after = nullptr;
};

/// Where two values differ, in the order of the first one and then of what only the second one has, and at most `most`
/// places of them. Objects are compared by their keys, in whatever order those stand, and arrays of objects or arrays
/// element by element; an array of scalars is one value. The result points into both values.
[[nodiscard]] std::vector<JSONDifference> differences(const JSON& before, const JSON& after, std::size_t most);

}  // namespace tavrin
