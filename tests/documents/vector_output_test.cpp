// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/documents/drawn.h"
#include "tests/golden/golden_case.h"
#include "tests/golden/png_pixels.h"

// SVG and PDF against the raster picture: other programs turn them into pixels again (Debian's `librsvg2-bin` and
// `poppler-utils`; without them these tests fail).

namespace tavrin {
namespace {

namespace fs = std::filesystem;

/// A folder of one test's own.
class Folder {
public:
    Folder() {
        std::string name = (fs::temp_directory_path() / "tavrin-vector-XXXXXX").string();
        path_ = ::mkdtemp(name.data());
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(path_); }
    [[nodiscard]] fs::path operator/(const char* name) const { return path_ / name; }

private:
    fs::path path_;
};

/// How far two pictures of one size are apart, in levels of 255.
struct Apart {
    /// The mean of all channels' differences.
    double mean = 0;
    /// The largest difference of the means of two squares of 12 x 12 pixels: smoothing differs from program to program
    /// and evens out there, a view that is missing or has the wrong colour doesn't.
    double square = 0;
    friend std::ostream& operator<<(std::ostream& out, const Apart& apart) {
        return out << "mean " << apart.mean << ", square " << apart.square;
    }
};

/// A program that turns documents into pixels, and how far its pictures may be from the raster's. More where there are
/// texts or edges between pixels, which the raster moves to whole ones; `pdftoppm` also makes glyphs darker.
struct Rasteriser {
    const char* name;
    PictureFormat format;
    Apart rounded;
    Apart exact;

    [[nodiscard]] std::optional<PixelBuffer> rasterised(const std::string& document, const PixelBuffer& like) const {
        const Folder folder;
        writeFile(folder / "page", document);
        const std::string width = std::to_string(like.width());
        const std::string height = std::to_string(like.height());
        const std::string page = "'" + (folder / "page").string() + "'";
        const std::string command = format == PictureFormat::svg
                                        ? "rsvg-convert -w " + width + " -h " + height + " -o " + page + ".png " + page
                                        : name + (" -png -singlefile -scale-to-x " + width + " -scale-to-y " + height) +
                                              " " + page + " " + page;
        if (std::system(command.c_str()) != 0) return std::nullopt;
        return decodePng(readFile(folder / "page.png"));
    }
};

constexpr Rasteriser rasterisers[] = {
    {"rsvg-convert", PictureFormat::svg, {2, 24}, {0.5, 3}},
    {"pdftocairo", PictureFormat::pdf, {2.5, 44}, {0.5, 3}},
    {"pdftoppm", PictureFormat::pdf, {6, 55}, {0.9, 5}},
};

Apart apart(const PixelBuffer& a, const PixelBuffer& b) {
    constexpr int side = 12;
    Apart result;
    for (int top = 0; top < a.height(); top += side)
        for (int left = 0; left < a.width(); left += side) {
            double sums[3] = {};
            const int bottom = std::min(top + side, a.height());
            const int right = std::min(left + side, a.width());
            for (int y = top; y < bottom; ++y)
                for (int x = left; x < right; ++x)
                    for (unsigned c = 0; c < 3; ++c) {
                        const int difference = channel(a.row(y)[x], 8 * c) - channel(b.row(y)[x], 8 * c);
                        sums[c] += difference;
                        result.mean += std::abs(difference);
                    }
            // Squares at the edges are judged as if they were whole.
            for (const double sum : sums) result.square = std::max(result.square, std::abs(sum) / (side * side));
        }
    result.mean /= 3.0 * a.width() * a.height();
    return result;
}

bool isWithin(const Apart& apart, const Apart& tolerance) {
    return apart.mean <= tolerance.mean && apart.square <= tolerance.square;
}

RenderOptions optionsFor(Size size, double scale, Appearance appearance = Appearance::light) {
    RenderOptions options;
    options.size = size;
    options.scale = scale;
    options.environment.appearance = appearance;
    return options;
}

AnyView viewOf(const std::string& main) {
    Context context;
    return TavrinEngine().loadView(R"({"version": "1.2", "nodes": {"main": )" + main + "}}", std::nullopt, context);
}

/// How far a document of one view is from the picture of another; nothing when the program is missing or fails.
template <class Renderer>
std::optional<Apart> apartFrom(Renderer written, Renderer pictured, const Rasteriser& rasteriser) {
    const PixelBuffer picture = pictured.pixels();
    const std::optional<PixelBuffer> back = rasteriser.rasterised(written.encode(rasteriser.format), picture);
    if (!back || back->width() != picture.width() || back->height() != picture.height()) return std::nullopt;
    const Apart result = apart(picture, *back);
    if (std::getenv("TAVRIN_PRINT_DISTANCES") != nullptr) std::cout << rasteriser.name << ": " << result << "\n";
    return result;
}

std::optional<Apart> drawnApart(const AnyView& written, const AnyView& pictured, const Rasteriser& rasteriser) {
    const RenderOptions options = optionsFor({100, 60}, 4);
    return apartFrom(ImageRenderer(written, options), ImageRenderer(pictured, options), rasteriser);
}

TEST(VectorOutput, ExamplesAreTheirPictures) {
    for (const GoldenCase& example : exampleCases())
        for (const Appearance appearance : {Appearance::light, Appearance::dark})
            for (const Rasteriser& rasteriser : rasterisers) {
                SCOPED_TRACE(example.name() + (appearance == Appearance::dark ? " dark " : " light ") +
                             rasteriser.name);
                WidgetOptions options = example.widgetOptions(appearance);
                options.scale = 4;
                options.background = {};  // PDF pages are never transparent
                const BoundDocument bound = example.bound(options);
                const std::optional<Apart> result = apartFrom(bound.widget(options), bound.widget(options), rasteriser);
                ASSERT_TRUE(result.has_value()) << "the program is missing or failed";
                EXPECT_TRUE(isWithin(*result, rasteriser.rounded)) << *result;
            }
}

const std::string square = color("#0000FF", frame(30, 30));
const std::string corner = R"("gradient": true, "start": "topLeading", "end": "bottomTrailing", "value": )";

/// Two squares that overlap, with the same faded on top, so many times.
std::string layersInLayers(int depth) {
    std::string main;
    for (int i = 0; i < depth; ++i) {
        const std::string inside = main.empty() ? "" : "," + main;
        const std::string moved = color(i % 2 == 0 ? "#FF0000" : "#00A000", frame(30, 30) + "," + offset(15, 10));
        main = node("zstack", "\"children\": [" + square + "," + moved + inside + "]", opacity(0.9));
    }
    return main;
}

TEST(VectorOutput, ShapesAndAppearancesAreTheirPictures) {
    const struct {
        const char* why;
        std::string main;
        bool isRounded = false;
    } rows[] = {
        {"a gradient", node("color", corner + "\"#FF0000-#00FF00-#0000FF\"")},
        {"a translucent one", node("color", corner + "\"#FF0000-#200000FF\"")},
        {"a ring",
         node("circle", R"("stroke": true, "lineWidth": 9, "strokeColor": {"value": "#FF0000"})", frame(40, 40))},
        {"a translucent square's edge",
         node("rectangle", R"("stroke": true, "lineWidth": 9, "strokeColor": {"value": "#50FF0000"})", frame(40, 30))},
        {"continuous corners",
         node("roundedRectangle", R"("cornerRadius": 20, "style": "continuous", "fillColor": {"value": "#FF0000"})",
              frame(80, 50))},
        {"a capsule", node("capsule", R"("style": "continuous")", frame(80, 30))},
        {"a layer",
         node("zstack", "\"children\": [" + square + "," + color("#FF0000", frame(30, 30) + "," + offset(15, 10)) + "]",
              opacity(0.5))},
        {"layers in layers",
         node("zstack",
              "\"children\": [" + square + "," +
                  node("zstack",
                       "\"children\": [" + square + "," + color("#FF0000", frame(30, 30) + "," + offset(15, 10)) + "]",
                       opacity(0.5)) +
                  "]",
              opacity(0.5))},
        {"many layers in layers", layersInLayers(20), true},
        {"a faded gradient", node("color", corner + "\"#FF0000-#0000FF\"", opacity(0.4))},
        {"a cut gradient",
         node("color", corner + "\"#FF0000-#0000FF\"", R"({"type": "clipShape", "view": {"type": "circle"}})")},
        {"a cut text",
         node("text", R"("content": "WWWW", "fontSize": 50)", R"({"type": "clipShape", "view": {"type": "capsule"}})"),
         true},
        {"cuts in cuts",
         color(
             "#FF0000",
             R"({"type": "clipShape", "view": {"type": "circle"}}, {"type": "frame", "width": 40, "height": 20}, {"type": "clipped"}, {"type": "cornerRadius", "radius": 6})")},
        {"a border",
         color("#FF0000", frame(50, 30) +
                              R"(, {"type": "border", "color": "#500000FF", "colorNode": {"value": ""}, "width": 5})")},
        {"a border on an edge between pixels",
         color("#FF0000", frame(50.3, 30.7) +
                              R"(, {"type": "border", "color": "#0000FF", "colorNode": {"value": ""}, "width": 1.3})"),
         true},
        {"a background and an overlay",
         color("#FF0000", frame(20, 20) + R"(, {"type": "background", "view": )" + color("#00FF00", frame(60, 10)) +
                              R"(}, {"type": "overlay", "view": )" + color("#0000FF", frame(6, 50)) + "}")},
        {"an order of its own",
         node("zstack", "\"children\": [" + color("#FF0000", R"({"type": "zIndex", "zIndex": 2},)" + frame(20, 50)) +
                            "," + square + "]")},
        {"a faded emoji", node("text", R"("content": "🌈", "fontSize": 40)", opacity(0.5)), true},
        {"a faded text",
         node("text", R"("content": "Rain", "fontSize": 40, "fontWeight": "bold")",
              opacity(0.5) + R"(, {"type": "foregroundColor", "color": {"value": "#FF0000"}})"),
         true},
        {"moved out of sight", color("#FF0000", offset(50, 20))},
    };
    for (const auto& row : rows)
        for (const Rasteriser& rasteriser : rasterisers) {
            SCOPED_TRACE(row.why + std::string(" ") + rasteriser.name);
            const AnyView view = viewOf(row.main);
            const std::optional<Apart> result = drawnApart(view, view, rasteriser);
            ASSERT_TRUE(result.has_value()) << "the program is missing or failed";
            EXPECT_TRUE(isWithin(*result, row.isRounded ? rasteriser.rounded : rasteriser.exact)) << *result;
        }
}

/// Six plain tiles with a transparent seam: nothing that smoothing could change much.
Image tiles(int width, int height) {
    constexpr std::uint32_t colors[] = {0xFFC03030, 0xFF30A040, 0xFF3050C0, 0xFFF0D020, 0xFF808080, 0x80402010};
    std::vector<std::uint32_t> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const bool isSeam = y >= height / 2 - height / 16 && y < height / 2 + height / 16;
            pixels.push_back(isSeam ? 0 : colors[x * 3 / width + (y < height / 2 ? 0 : 3)]);
        }
    return {std::make_shared<const Bitmap>(width, height, pixels)};
}

AnyView framed(double width, double height, AnyView content) {
    return FixedFrame{.width = width, .height = height, .content = std::move(content)};
}

TEST(VectorOutput, PicturesAreThePictures) {
    const Image small = tiles(96, 64);
    const Image large = tiles(960, 640);
    const Image opaque{std::make_shared<const Bitmap>(2, 2, std::vector<std::uint32_t>(4, 0xFF3050C0))};
    const struct {
        const char* why;
        AnyView view;
    } rows[] = {
        {"in about its own size", framed(24, 16, small)},
        {"much smaller", framed(60, 40, large)},
        {"larger, in one colour", framed(80, 40, opaque)},
        {"faded", Opacity{.value = 0.5, .content = framed(60, 40, large)}},
        {"cut", ClipShape{.shape = Circle{}, .content = framed(48, 48, large)}},
        {"twice", HStack{.spacing = 4, .children = {framed(48, 32, large), framed(48, 32, large)}}},
        {"over something", Background{.background = Color::blue, .content = framed(60, 40, large)}},
    };
    for (const auto& row : rows)
        for (const Rasteriser& rasteriser : rasterisers) {
            SCOPED_TRACE(row.why + std::string(" ") + rasteriser.name);
            const std::optional<Apart> result = drawnApart(row.view, row.view, rasteriser);
            ASSERT_TRUE(result.has_value()) << "the program is missing or failed";
            EXPECT_TRUE(isWithin(*result, rasteriser.rounded)) << *result;
        }
}

std::size_t countOf(std::string_view text, std::string_view part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string_view::npos; at += part.size()) ++count;
    return count;
}

TEST(VectorOutput, EmbedsEachPictureOnceAndNoLargerThanNeeded) {
    const Image large = tiles(960, 640);
    const AnyView view =
        VStack{.spacing = 0, .children = {framed(45, 30, large), framed(42, 28, large), framed(40, 2, Image{})}};
    ImageRenderer renderer(view, optionsFor({60, 60}, 3));
    const std::string svg = renderer.encode(PictureFormat::svg);
    EXPECT_EQ(countOf(svg, "<image "), 1U);
    EXPECT_EQ(countOf(svg, "width=\"240\" height=\"160\""), 1U) << "at least three pixels for each point";
    EXPECT_EQ(svg, renderer.encode(PictureFormat::svg));
    const std::string pdf = renderer.encode(PictureFormat::pdf);
    EXPECT_EQ(countOf(pdf, "/Subtype /Image"), 2U) << "the colours and their alpha";
    EXPECT_EQ(countOf(pdf, "/Width 240"), 2U);
    EXPECT_EQ(pdf, renderer.encode(PictureFormat::pdf));
    const Image opaque{std::make_shared<const Bitmap>(20, 20, std::vector<std::uint32_t>(400, 0xFF3050C0))};
    EXPECT_EQ(countOf(ImageRenderer(opaque, optionsFor({60, 60}, 3)).encode(PictureFormat::pdf), "/Subtype /Image"), 1U)
        << "no alpha where there is none";
}

/// A document with one place of its text replaced; fails the test where there is none.
std::string replaced(std::string document, std::string_view text, std::string_view by) {
    const std::size_t found = document.find(text);
    EXPECT_NE(found, std::string::npos) << text;
    if (found != std::string::npos) document.replace(found, text.size(), by);
    return document;
}

TEST(VectorOutput, DifferencesAreNoticed) {
    const GoldenCase weather{fs::path(TAVRIN_SOURCE_DIR) / "examples/weather", "systemMedium"};
    const struct {
        const char* why;
        const char* text;
        const char* by;
    } rows[] = {
        {"a missing small text", R"("content": "{{initServerParam.hours[0].time}}")", R"("content": "")"},
        {"a missing picture", R"("url": "{{initServerParam.hours[2].sky}}")", R"("url": "none")"},
        {"another number", R"("content": "{{initServerParam.temperature}}")", R"("content": "88°")"},
        {"another background", "#1F56B8-#2C6BC4-#3676C4", "#1F56B8-#2C6BC4-#5AA5F2"},
        {"a text in the wrong colour", R"({"type": "foregroundColor", "color": {"value": "#FFFFFF"}})",
         R"({"type": "foregroundColor", "color": {"value": "#40FFFFFF"}})"},
        {"a text that is faded", R"({"type": "lineLimit", "number": 1})", R"({"type": "opacity", "opacity": 0.1})"},
    };
    WidgetOptions options = weather.widgetOptions();
    options.scale = 4;
    for (const auto& row : rows)
        for (const Rasteriser& rasteriser : rasterisers) {
            SCOPED_TRACE(row.why + std::string(" ") + rasteriser.name);
            const BoundDocument other = weather.bound(replaced(weather.document(), row.text, row.by), options);
            const std::optional<Apart> result = apartFrom(other.widget(options), weather.widget(options), rasteriser);
            ASSERT_TRUE(result.has_value());
            EXPECT_FALSE(isWithin(*result, rasteriser.rounded)) << *result;
        }
}

TEST(VectorOutput, SmallDifferencesOfShapesAreNoticed) {
    const std::string blank = color("#00000000");
    const struct {
        const char* why;
        std::string pictured;
        std::string written;
    } rows[] = {
        {"a missing hairline", color("#E0E0E0", frame(80, 1)), blank},
        {"a missing dot", color("#FF0000", frame(3, 3)), blank},
        {"a slightly wrong colour", color("#FF0000", frame(30, 30)), color("#F0000F", frame(30, 30))},
        {"a little opacity", color("#FF0000", opacity(0.5)), color("#FF0000", opacity(0.47))},
        {"corners that are not cut", color("#FF0000", R"({"type": "cornerRadius", "radius": 6})"), color("#FF0000")},
        {"half a point to the right", color("#FF0000", frame(30, 30)),
         color("#FF0000", frame(30, 30) + "," + offset(0.5, 0))},
        {"a gradient the other way", node("color", corner + "\"#FF0000-#E00020\""),
         node("color", corner + "\"#E00020-#FF0000\"")},
        {"an order", node("zstack", "\"children\": [" + square + "," + color("#FF0000", frame(20, 50)) + "]"),
         node("zstack", "\"children\": [" + color("#FF0000", frame(20, 50)) + "," + square + "]")},
    };
    for (const auto& row : rows)
        for (const Rasteriser& rasteriser : rasterisers) {
            SCOPED_TRACE(row.why + std::string(" ") + rasteriser.name);
            const std::optional<Apart> result = drawnApart(viewOf(row.written), viewOf(row.pictured), rasteriser);
            ASSERT_TRUE(result.has_value());
            EXPECT_FALSE(isWithin(*result, rasteriser.exact)) << *result;
        }
}

}  // namespace
}  // namespace tavrin
