// SPDX-License-Identifier: MIT
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/paint/png_file.h"
#include "tavrin/platform/paint/png_small.h"
#include "tests/golden/golden_case.h"
#include "tests/golden/png_pixels.h"

// Documents with the picture and the tree they must give. `TAVRIN_UPDATE_GOLDENS=1` rewrites what is expected; a
// difference leaves what came out beside the tests' programs.

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// A tree names pictures by where they lie, which is another place on each machine: here from the top of the project.
std::string withoutTop(std::string layout) {
    const std::string top = URL::fileURL(TAVRIN_SOURCE_DIR).string() + "/";
    for (std::size_t at = 0; (at = layout.find(top, at)) != std::string::npos;) layout.erase(at, top.size());
    return layout;
}

struct Outcome {
    PixelBuffer pixels;
    std::string png;
    std::string layout;
};

Outcome render(const GoldenCase& golden, Appearance appearance) {
    Widget widget = golden.widget(appearance);
    PixelBuffer pixels = widget.pixels();
    std::string png = paint::encodePng(pixels, PngCompression::small);
    return {std::move(pixels), std::move(png), withoutTop(widget.layoutText()) + "\n"};
}

void expectPicture(const fs::path& expected, const Outcome& outcome, const std::string& leftover) {
    if (updatesGoldens()) return writeFile(expected, outcome.png);
    const std::optional<PixelBuffer> pixels = decodePng(readFile(expected));
    ASSERT_TRUE(pixels.has_value()) << expected << " is missing; `make update-goldens` makes it";
    if (*pixels == outcome.pixels) return;
    const fs::path actual = fs::path("golden-differences") / (leftover + ".png");
    writeFile(actual, outcome.png);
    ADD_FAILURE() << "the picture differs from " << expected << "; see " << fs::absolute(actual);
}

void expectText(const fs::path& expected, const std::string& actual) {
    if (updatesGoldens()) return writeFile(expected, actual);
    EXPECT_EQ(readFile(expected), actual) << expected;
}

TEST(Golden, PicturesAndTrees) {
    const std::vector<GoldenCase> cases = goldenCases();
    ASSERT_GE(cases.size(), 8U);
    for (const GoldenCase& golden : cases) {
        SCOPED_TRACE(golden.name());
        const Outcome light = render(golden, Appearance::light);
        expectPicture(golden.expected() / "picture.png", light, golden.name());
        expectText(golden.expected() / "layout.json", light.layout);
        const Outcome dark = render(golden, Appearance::dark);
        expectPicture(golden.expected() / "picture-dark.png", dark, golden.name() + "-dark");
        EXPECT_EQ(dark.layout, light.layout) << "the appearance changes no place";
    }
}

TEST(Golden, NoFamilyIsLeftOver) {
    for (const GoldenCase& golden : goldenCases()) {
        const std::vector<std::string> families = familiesOf(golden.folder);
        for (const auto& entry : fs::directory_iterator(golden.folder)) {
            const std::string name = entry.path().filename().string();
            if (!entry.is_directory() || name == "pictures") continue;
            EXPECT_THAT(families, testing::Contains(name)) << entry.path() << " is of no family in widget.toml";
        }
    }
}

TEST(Golden, TextOfOneColorIsWrittenWithAPalette) {
    const GoldenCase timers{fs::path(TAVRIN_SOURCE_DIR) / "tests/golden/cases/timers"};
    const Outcome dark = render(timers, Appearance::dark);
    EXPECT_EQ(static_cast<paint::PngColorType>(dark.png[25]), paint::PngColorType::palette);
    EXPECT_LT(dark.png.size() * 10, paint::pngRowsSmall(dark.pixels).size() * 6);
}

TEST(Golden, PicturesAreTheSameBytesEachTime) {
    for (const GoldenCase& golden : goldenCases()) {
        SCOPED_TRACE(golden.name());
        EXPECT_EQ(render(golden, Appearance::light).png, render(golden, Appearance::light).png);
    }
}

}  // namespace
}  // namespace tavrin
