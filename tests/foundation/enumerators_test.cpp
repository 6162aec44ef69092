// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/enumerators.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tavrin {
namespace {

enum class Fruit : unsigned char { apple, pear_2, quince };  // NOLINT(readability-identifier-naming): with a digit
enum class Market : unsigned char { quince, apple, fish, pear_2 };  // NOLINT(readability-identifier-naming)

struct Basket {
    enum class Size : unsigned char { small, large };
};

TEST(Enumerators, HaveTheNamesOfTheSource) {
    EXPECT_THAT(enumeratorNames<Fruit>, testing::ElementsAre("apple", "pear_2", "quince"));
    EXPECT_THAT(enumeratorNames<Basket::Size>, testing::ElementsAre("small", "large"));
    EXPECT_EQ(name(Fruit::quince), "quince");
    EXPECT_EQ(enumeratorCount<Market>, 4u);
    EXPECT_THAT(enumerators<Fruit>, testing::ElementsAre(Fruit::apple, Fruit::pear_2, Fruit::quince));
}

TEST(Enumerators, AreFoundByName) {
    EXPECT_EQ(enumeratorNamed<Fruit>("pear_2"), Fruit::pear_2);
    EXPECT_EQ(enumeratorNamed<Fruit>("pear"), std::nullopt);
    EXPECT_EQ(enumeratorNamed<Fruit>(""), std::nullopt);
    EXPECT_EQ(namesake<Market>(Fruit::apple), Market::apple);
    EXPECT_EQ(namesake<Market>(Fruit::quince), Market::quince);
}

TEST(EnumeratorTable, HoldsAValueForEach) {
    constexpr EnumeratorTable<Fruit, int> prices{{{Fruit::apple, 3}, {Fruit::pear_2, 5}, {Fruit::quince, 7}}};
    static_assert(prices[Fruit::pear_2] == 5);
    EXPECT_THAT(prices.values(), testing::ElementsAre(3, 5, 7));
}

}  // namespace
}  // namespace tavrin
