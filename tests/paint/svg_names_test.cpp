// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/svg_names.h"

#include <gtest/gtest.h>

namespace tavrin::paint {
namespace {

TEST(SvgNames, AreCountedAnew) {
    const struct {
        const char* why;
        const char* svg;
        const char* stable;
    } rows[] = {
        {"nothing", "", ""},
        {"no names", "<svg width=\"3\"/>", "<svg width=\"3\"/>"},
        {"a group and its use", R"(<g id="surface17"/><use href="#surface17"/>)",
         R"(<g id="surface1"/><use href="#surface1"/>)"},
        {"an image and its use", R"(<image id="image905"/><use href="#image905"/>)",
         R"(<image id="image1"/><use href="#image1"/>)"},
        {"used before it is given", R"(url(#surface9) "surface4" "surface9")",
         R"(url(#surface1) "surface2" "surface1")"},
        {"of both kinds", R"("image7" "surface7" "image7")", R"("image1" "surface2" "image1")"},
        {"an image's bytes", R"(href="data:image/png;base64,image7surface8==")",
         R"(href="data:image/png;base64,image7surface8==")"},
        {"a word without a number", R"("surface" "image")", R"("surface" "image")"},
        {"other names", R"("glyph0-1" "clip3" "mask2")", R"("glyph0-1" "clip3" "mask2")"},
        {"at the very end", R"("image7)", R"("image1)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        const std::string_view svg = row.svg;
        for (std::size_t cut = 0; cut <= svg.size(); ++cut) {
            SVGNames names;
            std::string text;
            names.append(svg.substr(0, cut), text);
            names.append(svg.substr(cut), text);
            names.finish(text);
            EXPECT_EQ(text, row.stable) << "in pieces, the first one of " << cut;
        }
        SVGNames names;
        std::string text;
        for (std::size_t at = 0; at < svg.size(); ++at) names.append(svg.substr(at, 1), text);
        names.finish(text);
        EXPECT_EQ(text, row.stable) << "byte by byte";
    }
}

}  // namespace
}  // namespace tavrin::paint
