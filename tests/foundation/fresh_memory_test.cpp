// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/memory/fresh_memory.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

TEST(FreshMemory, KeepsWhatIsThere) {
    std::vector<unsigned char> memory(std::size_t{1} << 20, 7);
    for (const std::size_t begin : {0UL, 1UL, 4'095UL, 4'096UL, 900'000UL})
        for (const std::size_t bytes : {0UL, 1UL, 65'535UL, 65'536UL, 100'001UL})
            takeAtOnce(memory.data() + begin, std::min(bytes, memory.size() - begin));
    EXPECT_TRUE(std::ranges::all_of(memory, [](unsigned char byte) { return byte == 7; }));
}

}  // namespace
}  // namespace tavrin
