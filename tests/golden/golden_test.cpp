#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "tavrin/tavrin.h"

// Documents with the picture and the tree they must give. `TAVRIN_UPDATE_GOLDENS=1` rewrites what is expected; a
// difference leaves what came out beside the tests' programs.

namespace tavrin {
namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

bool updates() { return std::getenv("TAVRIN_UPDATE_GOLDENS") != nullptr; }

/// A folder with `document.json`, perhaps `model.json`, and `options.txt`: the program's options for it.
struct GoldenCase {
    fs::path folder;

    [[nodiscard]] std::string name() const { return folder.filename().string(); }

    [[nodiscard]] std::map<std::string, std::string> options() const {
        std::istringstream words(readFile(folder / "options.txt"));
        std::map<std::string, std::string> options;
        for (std::string key, value; words >> key >> value;) options[key] = value;
        return options;
    }
};

std::vector<GoldenCase> goldenCases() {
    std::vector<GoldenCase> cases;
    for (const char* place : {"examples", "tests/golden/cases"}) {
        for (const auto& entry : fs::directory_iterator(fs::path(TAVRIN_SOURCE_DIR) / place))
            if (fs::exists(entry.path() / "document.json")) cases.push_back({entry.path()});
    }
    std::sort(cases.begin(), cases.end(), [](const auto& a, const auto& b) { return a.folder < b.folder; });
    return cases;
}

struct Outcome {
    PixelBuffer pixels;
    std::string png;
    std::string layout;
};

Outcome render(const GoldenCase& golden, Appearance appearance) {
    const auto options = golden.options();
    Context context;
    RenderOptions render;
    render.environment.appearance = appearance;
    if (const auto date = options.find("--date"); date != options.end()) {
        context.date = Date::parseRFC3339(date->second);
        render.environment.date = *context.date;
    }
    if (const auto family = options.find("--family"); family != options.end())
        render.size = *widgetSize(*widgetFamily(family->second), {390, 844});
    if (const auto scale = options.find("--scale"); scale != options.end()) render.scale = std::stod(scale->second);
    const std::string document = readFile(golden.folder / "document.json");
    const std::string model = readFile(golden.folder / "model.json");
    const AnyView view = TavrinEngine().loadView(
        document, model.empty() ? std::nullopt : std::optional<std::string_view>(model), context);
    ImageRenderer renderer(view, render);
    PixelBuffer pixels = renderer.pixels();
    std::string png = paint::encodePng(pixels, PngCompression::small);
    return {std::move(pixels), std::move(png), renderer.layoutText() + "\n"};
}

/// A PNG file's pixels, premultiplied as the renderer's are.
std::optional<PixelBuffer> decodePng(const std::string& png) {
    struct Reader {
        const std::string& bytes;
        std::size_t at = 0;
    } reader{png};
    const auto read = [](void* closure, unsigned char* data, unsigned int length) {
        auto& from = *static_cast<Reader*>(closure);
        if (from.at + length > from.bytes.size()) return CAIRO_STATUS_READ_ERROR;
        std::memcpy(data, from.bytes.data() + from.at, length);
        from.at += length;
        return CAIRO_STATUS_SUCCESS;
    };
    const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
        cairo_image_surface_create_from_png_stream(read, &reader), &cairo_surface_destroy);
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return std::nullopt;
    const bool opaque = cairo_image_surface_get_format(surface.get()) == CAIRO_FORMAT_RGB24;
    PixelBuffer pixels(cairo_image_surface_get_width(surface.get()), cairo_image_surface_get_height(surface.get()));
    for (int y = 0; y < pixels.height(); ++y) {
        const unsigned char* row =
            cairo_image_surface_get_data(surface.get()) + std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface.get());
        std::memcpy(pixels.row(y), row, static_cast<std::size_t>(pixels.width()) * sizeof(std::uint32_t));
        if (opaque)
            for (int x = 0; x < pixels.width(); ++x) pixels.row(y)[x] |= 0xFF000000U;
    }
    return pixels;
}

void expectPicture(const fs::path& expected, const Outcome& outcome, const std::string& leftover) {
    if (updates()) return writeFile(expected, outcome.png);
    const std::optional<PixelBuffer> pixels = decodePng(readFile(expected));
    ASSERT_TRUE(pixels.has_value()) << expected << " is missing; `make update-goldens` makes it";
    if (*pixels == outcome.pixels) return;
    const fs::path actual = fs::path("golden-differences") / (leftover + ".png");
    writeFile(actual, outcome.png);
    ADD_FAILURE() << "the picture differs from " << expected << "; see " << fs::absolute(actual);
}

void expectText(const fs::path& expected, const std::string& actual) {
    if (updates()) return writeFile(expected, actual);
    EXPECT_EQ(readFile(expected), actual) << expected;
}

TEST(Golden, PicturesAndTrees) {
    const std::vector<GoldenCase> cases = goldenCases();
    ASSERT_GE(cases.size(), 8U);
    for (const GoldenCase& golden : cases) {
        SCOPED_TRACE(golden.name());
        const Outcome light = render(golden, Appearance::light);
        expectPicture(golden.folder / "picture.png", light, golden.name());
        expectText(golden.folder / "layout.json", light.layout);
        const Outcome dark = render(golden, Appearance::dark);
        expectPicture(golden.folder / "picture-dark.png", dark, golden.name() + "-dark");
        EXPECT_EQ(dark.layout, light.layout) << "the appearance changes no place";
    }
}

TEST(Golden, PicturesAreTheSameBytesEachTime) {
    for (const GoldenCase& golden : goldenCases()) {
        SCOPED_TRACE(golden.name());
        EXPECT_EQ(render(golden, Appearance::light).png, render(golden, Appearance::light).png);
    }
}

}  // namespace
}  // namespace tavrin
