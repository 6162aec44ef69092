// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

#include <gtest/gtest.h>

namespace tavrin {

/// Of three amounts at n, 2n and 4n, whether what twice as many more add grows no faster than n to the power of 1.1,
/// but for a constant and `slack`.
inline void expectLinear(std::string_view what, std::span<const double> amounts, double slack) {
    ASSERT_EQ(amounts.size(), 3U);
    constexpr double most = 2.15;  // 2 to the power of 1.1
    EXPECT_LE(amounts[2] - amounts[1], most * std::max(0.0, amounts[1] - amounts[0]) + slack)
        << what << ": " << amounts[0] << ", " << amounts[1] << ", " << amounts[2];
}

}  // namespace tavrin
