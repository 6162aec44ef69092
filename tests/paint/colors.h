// SPDX-License-Identifier: MIT
#pragma once

#include <limits>

#include "tavrin/platform/foundation/pixels/rgba.h"

// What the tests of this folder share: colours and numbers that are none.

namespace tavrin::paint {

inline constexpr RGBA black{0, 0, 0, 1};
inline constexpr RGBA white{1, 1, 1, 1};
inline constexpr RGBA red{1, 0, 0, 1};
inline constexpr RGBA green{0, 1, 0, 1};
inline constexpr RGBA blue{0, 0, 1, 1};
inline constexpr RGBA yellow{1, 1, 0, 1};
inline constexpr RGBA clear{0, 0, 0, 0};

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();

}  // namespace tavrin::paint
