// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>

namespace tavrin {

/// Calls `work(i)` for each i below `count`, on this thread and up to `maximumThreads` - 1 others, and returns when all
/// calls have. Passes on what the first of those that failed, by i, has thrown; the others are made all the same.
void parallelLoop(std::size_t count, std::size_t maximumThreads, const std::function<void(std::size_t)>& work);

}  // namespace tavrin
