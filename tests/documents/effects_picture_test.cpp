// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tests/documents/drawn.h"
#include "tests/golden/png_pixels.h"

namespace tavrin {
namespace {

/// A red box of some size in the middle of a page of 100 x 60, with modifiers behind its frame.
std::string box(double width, double height, std::string_view modifiers) {
    return color("#FF0000", frame(width, height) + (modifiers.empty() ? "" : ", ") + std::string(modifiers));
}
std::string effect(std::string_view type, std::string_view members) {
    return "{\"type\": \"" + std::string(type) + "\"" + (members.empty() ? "" : ", ") + std::string(members) + "}";
}

TEST(EffectsPicture, ReplaceBoxesByOthers) {
    const struct {
        const char* why;
        std::string effected;
        std::string like;
    } rows[] = {
        {"a quarter turn swaps the sides", box(40, 20, effect("rotationEffect", "\"angle\": 90")), box(20, 40, "")},
        {"half a turn changes nothing", box(40, 20, effect("rotationEffect", "\"angle\": 180")), box(40, 20, "")},
        {"nor a whole one", box(40, 20, effect("rotationEffect", "\"angle\": -720")), box(40, 20, "")},
        {"around an end", box(20, 4, effect("rotationEffect", "\"angle\": 90, \"anchor\": \"leading\"")),
         box(4, 20, offset(-10, 10))},
        {"around a corner", box(20, 10, effect("rotationEffect", "\"angle\": 180, \"anchor\": \"topLeading\"")),
         box(20, 10, offset(-20, -10))},
        {"twice as wide", box(20, 10, effect("scaleEffect", "\"x\": 2")), box(40, 10, "")},
        {"from the bottom", box(20, 10, effect("scaleEffect", "\"y\": 2, \"anchor\": \"bottom\"")),
         box(20, 20, offset(0, -5))},
        {"mirrored", box(20, 10, effect("scaleEffect", "\"x\": -1, \"anchor\": \"trailing\"")),
         box(20, 10, offset(20, 0))},
        {"no size", box(20, 10, effect("scaleEffect", "\"x\": 0")), node("spacer")},
        {"no angle", box(20, 10, effect("rotationEffect", "\"angle\": \"nan\"")), node("spacer")},
        {"an endless scale", box(20, 10, effect("scaleEffect", "\"y\": \"inf\"")), node("spacer")},
        {"an effect after another",
         box(10, 20, effect("scaleEffect", "\"x\": 2") + ", " + effect("rotationEffect", "\"angle\": 90")),
         box(20, 20, "")},
        {"layout does not see it",
         node("hstack", "\"spacing\": 0, \"children\": [" + box(20, 20, effect("scaleEffect", "\"x\": 0.5")) + ", " +
                            box(20, 20, "") + "]"),
         node("hstack", "\"spacing\": 5, \"children\": [" + box(10, 20, "") + ", " + box(20, 20, "") + "]",
              offset(2.5, 0))},
        {"no hand without a period", box(20, 4, effect("clockHandRotationEffect", "\"period\": 0")), box(20, 4, "")},
    };
    for (const auto& row : rows)
        for (const double scale : {1.0, 2.0, 3.0}) {
            SCOPED_TRACE(row.why + std::string(" at ") + std::to_string(scale));
            const Page page{{100, 60}, scale};
            EXPECT_LE(distance(drawn(row.effected, page), drawn(row.like, page)), 1);
        }
}

TEST(EffectsPicture, ObliqueEdgesAreSmooth) {
    const Page page{{100, 60}, 2};
    const PixelBuffer picture = drawn(box(40, 20, effect("rotationEffect", "\"angle\": 30")), page);
    EXPECT_EQ(at(picture, page, 50, 30), red);
    EXPECT_EQ(at(picture, page, 50 + 18 * 0.866, 30 + 18 * 0.5), red);
    EXPECT_EQ(at(picture, page, 50 + 18 * 0.866, 30 - 18 * 0.5), white);
    std::size_t between = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) between += picture.row(y)[x] != red && picture.row(y)[x] != white;
    EXPECT_GT(between, 150U) << "about one pixel along an outline of 240";
    EXPECT_LT(between, 400U);
}

TEST(EffectsPicture, TurnedTextsAndGradientsAreTheTurnedPictures) {
    const std::pair<const char*, std::string> rows[] = {
        {"text", node("text", R"("content": "Hg8 🎈", "fontSize": 15)", "{}")},
        {"a gradient",
         node("color", R"("value": "#FF0000-#0000FF", "gradient": true, "start": "top", "end": "bottom")", "{}")},
        {"a clip", color("#00AA00", R"({"type": "clipShape", "view": {"type": "capsule"}}, {})")},
    };
    const Page page{{60, 60}, 3};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.first);
        const auto turned = [&](const char* angle) {
            std::string text = row.second;
            const std::string modifiers =
                frame(48, 24) + ", " + effect("rotationEffect", "\"angle\": " + std::string(angle));
            return drawn(text.replace(text.rfind("{}"), 2, modifiers), page);
        };
        const PixelBuffer upright = turned("0");
        const PixelBuffer standing = turned("90");
        double sum = 0;
        const int side = upright.width();
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) sum += distance(upright.row(y)[x], standing.row(x)[side - 1 - y]);
        EXPECT_LT(sum / (side * side), 3) << "levels of 255 on average";
    }
}

TEST(EffectsPicture, HandsStandWhereTheClockSays) {
    const auto hand = [](const char* zone, const char* moment) {
        Context context;
        context.timeZone = TimeZone::named("UTC");
        const std::string main =
            color("#FF0000",
                  frame(4, 25) + ", " +
                      effect("clockHandRotationEffect",
                             "\"period\": 43200, \"anchor\": \"bottom\", \"timeZone\": \"" + std::string(zone) + "\"") +
                      ", " + offset(0, -12.5));
        RenderOptions options;
        options.size = {60, 60};
        options.scale = 2;
        options.background = {WidgetBackground::Kind::color, Color::white};
        options.environment.date = Date::parseRFC3339(moment).value();
        const AnyView view =
            TavrinEngine().loadView(R"({"version": "1.2", "nodes": {"main": )" + main + "}}", std::nullopt, context);
        return ImageRenderer(view, options).pixels();
    };
    const struct {
        const char* why;
        const char* zone;
        const char* moment;
        double x;
        double y;
    } rows[] = {
        {"noon", "UTC", "2026-11-21T12:00:00Z", 30, 12},
        {"three", "UTC", "2026-11-21T15:00:00Z", 48, 30},
        {"half past four", "UTC", "2026-11-21T16:30:00Z", 42.7, 42.7},
        {"nine in Madrid", "Europe/Madrid", "2026-11-21T08:00:00Z", 12, 30},
        {"an hour later in summer", "Europe/Madrid", "2026-07-21T07:00:00Z", 12, 30},
        {"just before the clocks go forward", "Europe/Madrid", "2026-03-29T00:59:59Z", 45.6, 21},
        {"just after", "Europe/Madrid", "2026-03-29T01:00:00Z", 48, 30},
        {"an unknown zone is the device's", "Nowhere", "2026-11-21T15:00:00Z", 48, 30},
    };
    const Page page{{60, 60}, 2};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const PixelBuffer picture = hand(row.zone, row.moment);
        EXPECT_EQ(at(picture, page, row.x, row.y), red);
        EXPECT_EQ(at(picture, page, 60 - row.x, 60 - row.y), white) << "not on the other side";
    }
}

TEST(EffectsPicture, AreFadedAsAWhole) {
    const auto crossed = [](std::string_view modifiers) {
        return node("zstack", "\"children\": [" + box(40, 8, "") + ", " + box(8, 40, "") + "]", modifiers);
    };
    const Page page{{100, 60}, 2};
    const std::string turn = effect("rotationEffect", "\"angle\": 45");
    const PixelBuffer picture = drawn(crossed(turn + ", " + opacity(0.5)), page);
    EXPECT_EQ(at(picture, page, 50, 30), at(picture, page, 50 + 12, 30 + 12)) << "no darker where two meet";
    EXPECT_NE(at(picture, page, 50, 30), red);
}

}  // namespace
}  // namespace tavrin
