// SPDX-License-Identifier: MIT
#include "tavrin/widget/kept_pictures.h"

#include <string>

#include <gtest/gtest.h>

#include "cli/preview/drawing.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

Drawing drawingOf(const std::string& content, const std::string& family = "tiny", double scale = 2) {
    Drawing drawing{
        .path = "a.json",
        .document = R"({"version": "1.2", "nodes": {"main": {"type": "text", "content": ")" + content + R"("}}})"};
    drawing.options.date = Date{1'795'262'400};
    drawing.options.timeZone = TimeZone();
    drawing.options.room = {.name = family, .size = {120, 40}};
    drawing.options.scale = scale;
    return drawing;
}

std::string fromScratch(const Drawing& drawing) {
    return Document(drawing.document).widget(std::nullopt, drawing.options).encode();
}

class KeptPicturesTest : public ::testing::Test {
protected:
    void SetUp() override { kept().forget(); }
    void TearDown() override { kept().forget(); }

    static KeptPictures& kept() { return KeptPictures::ofThisThread(); }
};

TEST_F(KeptPicturesTest, AnEditCostsWhatItChanges) {
    const Drawing first = drawingOf("ab");
    EXPECT_EQ(draw(first).picture, fromScratch(first));
    const auto whole = kept().before(first.path, first.options).work().pixels;
    EXPECT_EQ(whole, 240U * 80U);
    for (const char* content : {"ac", "ab"}) {
        const Drawing next = drawingOf(content);
        EXPECT_EQ(draw(next).picture, fromScratch(next));
    }
    EXPECT_LT(kept().before(first.path, first.options).work().pixels, whole * 3 / 2);
    EXPECT_EQ(kept().count(), 1U);
}

TEST_F(KeptPicturesTest, EachPictureHasItsPlace) {
    Drawing dark = drawingOf("a");
    dark.options.appearance = Appearance::dark;
    Drawing other = drawingOf("a");
    other.path = "b.json";
    Drawing wide = drawingOf("a");
    wide.options.room.size.width += 1;
    for (const Drawing& drawing :
         {drawingOf("a"), drawingOf("b"), drawingOf("a", "other"), drawingOf("a", "tiny", 3), dark, other, wide})
        EXPECT_EQ(draw(drawing).picture, fromScratch(drawing));
    EXPECT_EQ(kept().count(), 6U);
}

TEST_F(KeptPicturesTest, WhatFailsIsNotKept) {
    EXPECT_FALSE(draw(drawingOf("a")).failure);
    EXPECT_TRUE(draw(drawingOf("a\"")).failure);
    const Drawing next = drawingOf("b");
    EXPECT_EQ(draw(next).picture, fromScratch(next));
}

TEST_F(KeptPicturesTest, AreFewAndSmall) {
    for (std::size_t i = 0; i < KeptPictures::maximumCount + 10; ++i)
        static_cast<void>(draw(drawingOf("a", "family " + std::to_string(i))));
    EXPECT_EQ(kept().count(), KeptPictures::maximumCount);
    for (int i = 0; i < 20; ++i) {
        Drawing large = drawingOf("a", "large " + std::to_string(i), 3);
        large.options.room.size = {700, 700};
        EXPECT_TRUE(draw(large).picture.starts_with("\x89PNG"));
        EXPECT_LE(kept().byteCount(), KeptPictures::usualBytes);
    }
    EXPECT_GT(kept().byteCount(), KeptPictures::usualBytes / 2);
    kept().forget();
    EXPECT_EQ(kept().byteCount(), 0U);
}

}  // namespace
}  // namespace tavrin::cli
