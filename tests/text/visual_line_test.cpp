// SPDX-License-Identifier: MIT
#include "tavrin/platform/text/visual_line.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {
namespace {

TEST(VisualLine, PiecesStandInVisualOrder) {
    const struct {
        const char* why;
        const char* text;
        std::vector<std::string> pieces;  // from left to right, each in logical order
    } rows[] = {
        {"Latin", "abc", {"abc"}},
        {"Hebrew in Latin", "a שלום b", {"a ", "שלום", " ", "b"}},
        {"Latin in Hebrew", "שלום abc עולם", {"עולם", " ", "abc", "שלום "}},
        {"a number in Hebrew", "שלום 12 ש", {"ש", " ", "12", "שלום "}},
    };
    auto& engine = TextEngine::ofThisThread();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const TextBlock block = engine.fit(engine.shape(row.text, Font::system(17)), {});
        std::vector<Piece> pieces;
        placePieces(*block.lines()->text, block.lines()->broken->lines[0], pieces);
        std::vector<std::string> found;
        for (const auto& piece : pieces) found.emplace_back(piece.utf8);
        EXPECT_EQ(found, row.pieces);
    }
}

TEST(VisualLine, TheEllipsisStandsAtTheParagraphsEnd) {
    auto& engine = TextEngine::ofThisThread();
    TextRoom room;
    room.width = 60;
    room.lineLimit = 1;
    std::vector<Piece> pieces;
    const auto place = [&](std::string_view text) {
        const TextBlock block = engine.fit(engine.shape(text, Font::system(17)), room);
        ASSERT_TRUE(block.truncated());
        placePieces(*block.lines()->text, block.lines()->broken->lines[0], pieces);
    };
    place("left to right text");
    EXPECT_EQ(pieces.back().utf8, "…");
    place("שלום עולם שלום עולם");
    EXPECT_EQ(pieces.front().utf8, "…");
}

}  // namespace
}  // namespace tavrin::text
