// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/memory/lru_cache.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

struct TextHash {
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};
using Cache = LRUCache<std::string, int, TextHash>;

std::string keysThatAreKept(const Cache& cache, std::string_view asked) {
    std::string kept;
    for (const char key : asked)
        if (cache.contains(std::string_view(&key, 1))) kept += key;
    return kept;
}

TEST(LRUCache, LetsGoWhatWasNotAskedForTheLongestTime) {
    Cache cache(3);
    for (const char* key : {"a", "b", "c"}) cache.insert(key, key[0]);
    ASSERT_THAT(cache.find("a"), testing::Pointee('a'));
    cache.insert("d", 'd');
    EXPECT_EQ(keysThatAreKept(cache, "abcd"), "acd");
    EXPECT_EQ(cache.find("b"), nullptr);
    EXPECT_EQ(cache.count(), 3U);
}

TEST(LRUCache, LooksWithoutAsking) {
    Cache cache(2);
    cache.insert("a", 1);
    cache.insert("b", 2);
    EXPECT_TRUE(cache.contains("a"));
    cache.insert("c", 3);
    EXPECT_EQ(keysThatAreKept(cache, "abc"), "bc");
}

TEST(LRUCache, CountsWhatValuesCost) {
    Cache cache(10);
    cache.insert("a", 1, 4);
    cache.insert("b", 2, 4);
    EXPECT_EQ(cache.cost(), 8U);
    cache.insert("a", 3, 5);  // in place of the other
    EXPECT_EQ(cache.cost(), 9U);
    EXPECT_THAT(cache.find("a"), testing::Pointee(3));
    cache.insert("c", 4, 6);
    EXPECT_EQ(keysThatAreKept(cache, "abc"), "c");
    EXPECT_EQ(cache.cost(), 6U);
}

TEST(LRUCache, DoesNotKeepWhatCostsMoreThanAll) {
    Cache cache(10);
    cache.insert("a", 1, 4);
    EXPECT_EQ(cache.insert("b", 2, 11).size(), 0U);
    EXPECT_EQ(keysThatAreKept(cache, "ab"), "a");
    EXPECT_EQ(cache.insert("a", 2, 11).size(), 1U) << "what it was is no longer its value";
    EXPECT_EQ(cache.count(), 0U);
    EXPECT_EQ(cache.cost(), 0U);
}

TEST(LRUCache, BoundsTheirNumber) {
    Cache cache(Cache::unlimited, 2);
    for (const char* key : {"a", "b", "c"}) cache.insert(key, 0, 1000);
    EXPECT_EQ(keysThatAreKept(cache, "abc"), "bc");
}

TEST(LRUCache, ShrinksAndHandsOutWhatWent) {
    LRUCache<int, std::shared_ptr<int>> cache(3);
    const auto value = std::make_shared<int>(7);
    for (int key = 0; key < 3; ++key) cache.insert(key, value);
    {
        const auto dropped = cache.setMaximumCost(1);
        EXPECT_EQ(dropped.size(), 2U);
        EXPECT_EQ(value.use_count(), 4) << "destroyed by whom they are handed to";
    }
    EXPECT_EQ(value.use_count(), 2);
    EXPECT_EQ(cache.maximumCost(), 1U);
}

}  // namespace
}  // namespace tavrin
