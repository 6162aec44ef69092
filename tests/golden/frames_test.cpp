// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "tests/golden/golden_case.h"
#include "tests/golden/png_pixels.h"

// A few moments of examples, drawn one after another by one renderer; `TAVRIN_UPDATE_GOLDENS=1` rewrites the pictures.

namespace tavrin {
namespace {

namespace fs = std::filesystem;

const fs::path top = TAVRIN_SOURCE_DIR;

TEST(Golden, Frames) {
    const struct {
        const char* example;
        const char* first;
        double step;
        std::size_t count;
    } rows[] = {
        {"clock", "2026-11-21T09:09:52Z", 3.5, 4},
        {"countdown", "2026-11-21T12:15:58Z", 1, 4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.example);
        const GoldenCase example{top / "examples" / row.example, "systemSmall"};
        const Date first = *Date::parseRFC3339(row.first);
        const FrameSpan span{first, {first.secondsSince1970 + row.step * static_cast<double>(row.count - 1)}, row.step};
        WidgetOptions options = example.widgetOptions();
        AnimationRenderer renderer = example.bound(options).animation(options);
        std::size_t frame = 0;
        renderer.draw(span, [&](const std::shared_ptr<const PixelBuffer>& picture) {
            SCOPED_TRACE("frame " + std::to_string(frame + 1));
            options.date = span.moment(frame++);
            EXPECT_TRUE(*picture == example.widget(options).pixels()) << "as drawn alone";
            const fs::path expected = top / "tests/golden/frames" / row.example / (std::to_string(frame) + ".png");
            if (updatesGoldens()) return writeFile(expected, paint::encodePng(*picture, PngCompression::small));
            const std::optional<PixelBuffer> pixels = decodePng(readFile(expected));
            ASSERT_TRUE(pixels.has_value()) << expected << " is missing; `make update-goldens` makes it";
            EXPECT_TRUE(*pixels == *picture) << "another picture than " << expected;
        });
        EXPECT_EQ(frame, row.count);
    }
}

}  // namespace
}  // namespace tavrin
