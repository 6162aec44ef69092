// SPDX-License-Identifier: MIT
#include <string>

#include <gtest/gtest.h>

#include "tavrin/platform/text/shape_cache.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {
namespace {

std::shared_ptr<const ShapedText> shapeOf(std::size_t units) {
    auto shaped = std::make_shared<ShapedText>();
    shaped->units.resize(units);
    return shaped;
}

TEST(TextCache, AnUnchangedTextIsNotShapedAgain) {
    auto& engine = TextEngine::ofThisThread();
    const auto shaped = engine.shape("unchanged", Font::system(17));
    EXPECT_EQ(engine.shape("unchanged", Font::system(17)), shaped);
    EXPECT_NE(engine.shape("changed", Font::system(17)), shaped);
    EXPECT_NE(engine.shape("unchanged", Font::system(18)), shaped);
    EXPECT_NE(engine.shape("unchanged", Font::system(17, Font::Weight::bold)), shaped);
    EXPECT_NE(engine.shape("unchanged", Font::monospacedDigitSystem(17, Font::Weight::regular)), shaped);
}

TEST(TextCache, BrokenLinesAreRemembered) {
    auto& engine = TextEngine::ofThisThread();
    const auto shaped = engine.shape("remembered lines", Font::system(17));
    const TextRoom narrow{60, {}, {}, 3};
    const auto broken = engine.fit(shaped, narrow).lines()->broken;
    EXPECT_EQ(engine.fit(shaped, narrow).lines()->broken, broken);
    EXPECT_NE(engine.fit(shaped, {61, {}, {}, 3}).lines()->broken, broken);
    EXPECT_EQ(engine.fit(shaped, narrow).lines()->broken, broken);
}

TEST(TextCache, ForgetsTheLeastRecentlyUsed) {
    ShapeCache cache(40000);
    const Font font = Font::system(17);
    const auto a = shapeOf(100);
    cache.keep("a", font, a);
    cache.keep("b", font, shapeOf(100));
    EXPECT_EQ(cache.find("a", font), a);
    for (int i = 0; cache.count() == static_cast<std::size_t>(i) + 2; ++i)
        cache.keep(std::to_string(i), font, shapeOf(100));
    EXPECT_EQ(cache.find("b", font), nullptr);
    EXPECT_EQ(cache.find("a", font), a);
    EXPECT_LE(cache.bytes(), 40000U);
}

TEST(TextCache, IsBoundedWhateverItIsGiven) {
    ShapeCache cache(50000);
    const Font font = Font::system(17);
    for (int i = 0; i < 1000; ++i) cache.keep(std::to_string(i), font, shapeOf(static_cast<std::size_t>(i % 50)));
    EXPECT_LE(cache.bytes(), 50000U);
    EXPECT_GT(cache.count(), 1U);
    const std::size_t before = cache.count();
    cache.keep("huge", font, shapeOf(100000));
    EXPECT_EQ(cache.find("huge", font), nullptr);
    EXPECT_EQ(cache.count(), before);
}

TEST(TextCache, ABlockOutlivesTheCache) {
    TextBlock block;
    {
        TextEngine engine(FontLibrary::system());
        block = engine.fit(engine.shape("outlives", Font::system(17)), {});
    }
    EXPECT_EQ(block.lineCount(), 1U);
    EXPECT_GT(block.size().width, 0);
}

}  // namespace
}  // namespace tavrin::text
