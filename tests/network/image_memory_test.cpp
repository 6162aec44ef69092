// SPDX-License-Identifier: MIT
#include "tavrin/images/image_memory.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

URL urlOf(int number) { return *URL::parse("http://a/" + std::to_string(number)); }

/// A picture of 4,000 bytes.
std::shared_ptr<const Bitmap> picture() {
    return std::make_shared<const Bitmap>(10, 100, std::vector<std::uint32_t>(1000));
}

/// What such a picture takes in memory; addresses of one digit.
std::size_t cost() {
    ImageMemory memory(10'000);
    memory.keep(urlOf(0), picture());
    return memory.bytes();
}

TEST(ImageMemories, DropWhatWasNotAskedForTheLongest) {
    EXPECT_GE(cost(), 4000U);
    ImageMemory memory(3 * cost());
    for (int i = 0; i < 3; ++i) memory.keep(urlOf(i), picture());
    EXPECT_EQ(memory.bytes(), 3 * cost());
    EXPECT_NE(memory.find(urlOf(0)).image, nullptr);
    EXPECT_TRUE(memory.holds(urlOf(1))) << "which is not asking for it";
    memory.keep(urlOf(3), picture());
    EXPECT_EQ(memory.find(urlOf(1)).image, nullptr);
    for (const int i : {0, 2, 3}) EXPECT_NE(memory.find(urlOf(i)).image, nullptr) << i;
    memory.setMaximumBytes(2 * cost());
    EXPECT_EQ(memory.bytes(), 2 * cost());
    EXPECT_FALSE(memory.holds(urlOf(0)));
    memory.setMaximumBytes(0);
    EXPECT_EQ(memory.bytes(), 0U);
}

TEST(ImageMemories, KeepNothingLargerThanTheyMay) {
    ImageMemory memory(cost() - 1);
    memory.keep(urlOf(0), picture());
    EXPECT_EQ(memory.find(urlOf(0)).image, nullptr);
    EXPECT_EQ(memory.bytes(), 0U);
}

TEST(ImageMemories, KeepOnePictureOfAnAddress) {
    ImageMemory memory(10'000);
    memory.keep(urlOf(0), picture());
    const auto second = picture();
    memory.keep(urlOf(0), second, 7);
    EXPECT_EQ(memory.find(urlOf(0)).image, second);
    EXPECT_EQ(memory.find(urlOf(0)).meanwhile, 7U);
    EXPECT_EQ(memory.bytes(), cost());
}

TEST(ImageMemoryThreads, ManyKeepAndFind) {
    ImageMemory memory(10 * cost());
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread)
        threads.emplace_back([&memory, thread] {
            for (int i = 0; i < 2000; ++i) {
                const URL url = urlOf((i * 7 + thread) % 30);
                const auto found = memory.find(url).image;
                if (found) {
                    EXPECT_EQ(found->width(), 10);
                } else {
                    memory.keep(url, picture());
                }
            }
        });
    threads.clear();
    EXPECT_LE(memory.bytes(), 10 * cost());
}

}  // namespace
}  // namespace tavrin
