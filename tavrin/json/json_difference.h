// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <string_view>
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

/// The first differences of two values. They point into both.
struct JSONDifferences {
    std::vector<JSONDifference> first = {};
    /// Whether there are more than those.
    bool areMore = false;
    /// Whether members differ that are skipped, as far as was looked: to the end, where there are no more.
    bool areSkipped = false;
};

/// Where two values differ, in the order of the first one and then of what only the second one has, and at most `most`
/// places of them. Objects are compared by their keys, in whatever order those stand; members whose keys `isSkipped`
/// holds for are skipped wherever they are. Arrays of objects or arrays are compared element by element: where one is
/// longer, first what is the same at the beginning and at the end of both is put aside. So the index of an element that
/// differs is the same in both. An array of scalars is one value. Each value is looked at three times at most.
[[nodiscard]] JSONDifferences differences(const JSON& before, const JSON& after, std::size_t most,
                                          const std::function<bool(std::string_view key)>& isSkipped = {});

}  // namespace tavrin
