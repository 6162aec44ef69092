// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/placed_error.h"

namespace tavrin {

void PlacedError::enclose(CodingKey step) {
    if (!isRooted) codingPath.insert(codingPath.begin(), std::move(step));
}

}  // namespace tavrin
