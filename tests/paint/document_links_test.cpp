// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/document_links.h"

#include <gtest/gtest.h>

#include "tavrin/platform/paint/canvas.h"

namespace tavrin::paint {
namespace {

URL url(std::string_view text) { return URL::parse(text).value(); }

TEST(DocumentLinks, AreEscaped) {
    constexpr Rect area{{1, 2.5}, {30, 4}};
    EXPECT_EQ(svgLink(area, url("https://a.example/?b=c&d='e'")),
              "<a href=\"https://a.example/?b=c&amp;d='e'\"><rect x=\"1\" y=\"2.5\" width=\"30\" height=\"4\" "
              "fill=\"none\" pointer-events=\"all\"/></a>\n");
    EXPECT_EQ(pdfLinkAttributes(area, url("a:(b'c)")), "rect=[1 2.5 30 4] uri='a:\\\\(b\\'c\\\\)'");
}

TEST(DocumentLinks, DoNotLeadToWhatAViewerWouldRun) {
    const struct {
        const char* destination;
        bool may;
    } rows[] = {
        {"https://example.com", true},  {"app:home", true},
        {"weather/oslo", true},         {"javascript:alert(1)", false},
        {"JavaScript:alert(1)", false}, {"vbscript:x", false},
        {"data:text/html,x", false},    {"javascript/page", true},
    };
    for (const auto& row : rows) EXPECT_EQ(mayLeadTo(url(row.destination)), row.may) << row.destination;
}

TEST(DocumentLinks, StandInDocuments) {
    for (Canvas (*const make)(Size) : {&Canvas::svg, &Canvas::pdf}) {
        Canvas canvas = make({100, 50});
        canvas.fill(Rect{{0, 0}, {100, 50}}, RGBA{1, 1, 1, 1});  // Cairo writes no links on an empty page
        canvas.translate(50, 50);                                // counts for nothing
        canvas.link({{10, 20}, {30, 20}}, url("https://a.example/(x'y"));
        canvas.link({{0, 0}, {5, 5}}, url("javascript:alert(1)"));
        const std::string document = canvas.finishDocument();
        const bool isSVG = document.find("<svg") != std::string::npos;
        const std::string link =
            isSVG ? "<a href=\"https://a.example/(x'y\"><rect x=\"10\" y=\"20\"" : "/URI (https://a.example/\\(x'y)";
        EXPECT_NE(document.find(link), std::string::npos);
        EXPECT_EQ(document.find("javascript"), std::string::npos);
        const bool isPlaced = document.find("/Rect [ 10 10 40 30 ]") != std::string::npos;  // from the page's bottom
        EXPECT_TRUE(isSVG ? document.ends_with("</svg>\n") : isPlaced);
    }
}

}  // namespace
}  // namespace tavrin::paint
