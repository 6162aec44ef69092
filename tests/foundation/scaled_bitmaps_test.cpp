// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/pixels/scaled_bitmaps.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace tavrin {
namespace {

std::shared_ptr<const Bitmap> bitmap(int width, int height) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = 0xFF000000 | static_cast<std::uint32_t>(i * 77);
    return std::make_shared<const Bitmap>(width, height, pixels);
}

TEST(ScaledBitmaps, MakeEachOnce) {
    ScaledBitmaps scaled(1U << 20);
    const auto icon = bitmap(64, 64);
    const auto small = scaled.scaled(icon, 16, 24);
    EXPECT_EQ(small->width(), 16);
    EXPECT_EQ(small->height(), 24);
    EXPECT_TRUE(small->isOpaque());
    EXPECT_EQ(scaled.scaled(icon, 16, 24), small);
    EXPECT_NE(scaled.scaled(icon, 24, 16), small) << "another size";
    EXPECT_NE(scaled.scaled(bitmap(64, 64), 16, 24), small) << "another picture";
    const auto part = scaled.scaled(icon, 16, 24, {4, 5, 8, 6});
    EXPECT_EQ(part->width(), 4);
    EXPECT_EQ(part->row(0)[0], small->row(5)[4]);
    EXPECT_EQ(scaled.scaled(icon, 16, 24, {4, 5, 8, 6}), part);
}

TEST(ScaledBitmaps, GiveBackWhatHasTheSize) {
    ScaledBitmaps scaled(1U << 20);
    const auto icon = bitmap(8, 8);
    EXPECT_EQ(scaled.scaled(icon, 8, 8), icon);
    EXPECT_EQ(scaled.scaled(icon, 8, 8, {1, 1, 3, 3})->row(0)[0], icon->row(1)[1]);
}

TEST(ScaledBitmaps, ForgetWhatWasNotAskedForTheLongest) {
    constexpr std::size_t most = 10'000;
    ScaledBitmaps scaled(most);
    const auto icon = bitmap(64, 64);
    const std::uint64_t first = scaled.scaled(icon, 20, 20)->identity();
    const std::uint64_t second = scaled.scaled(icon, 21, 20)->identity();
    for (int height = 1; height <= 40; ++height) {
        scaled.scaled(icon, 22, height);
        EXPECT_EQ(scaled.scaled(icon, 20, 20)->identity(), first) << "asked for all the time";
        EXPECT_LE(scaled.byteCount(), most);
    }
    EXPECT_NE(scaled.scaled(icon, 21, 20)->identity(), second);
}

TEST(ScaledBitmaps, DoNotKeepWhatIsTooLarge) {
    ScaledBitmaps scaled(1000);
    const auto icon = bitmap(64, 64);
    const auto kept = scaled.scaled(icon, 8, 8);
    EXPECT_EQ(scaled.scaled(icon, 60, 60)->width(), 60);
    EXPECT_EQ(scaled.scaled(icon, 8, 8), kept) << "and lose nothing for it";
}

TEST(ScaledBitmapsThreads, ShareWhatOneMade) {
    ScaledBitmaps scaled(20'000);
    const auto icon = bitmap(64, 64);
    const auto other = bitmap(32, 32);
    const std::uint32_t corner = ScaledBitmaps(0).scaled(icon, 16, 16)->row(0)[0];
    std::vector<std::thread> threads;
    std::vector<int> wrong(4);
    for (int& mistakes : wrong)
        threads.emplace_back([&] {
            for (int i = 0; i < 300; ++i) {
                const auto& picture = i % 3 == 0 ? other : icon;
                const auto small = scaled.scaled(picture, 16, 10 + i % 40);
                mistakes += small->width() != 16 || small->height() != 10 + i % 40;
                mistakes += scaled.scaled(icon, 16, 16)->row(0)[0] != corner;
            }
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4));
    EXPECT_LE(scaled.byteCount(), 20'000U);
}

}  // namespace
}  // namespace tavrin
