// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstdlib>
#include <ostream>
#include <string>
#include <string_view>

#include "tavrin/tavrin.h"

// What the tests of whole documents' pictures share: from JSON text to pixels.

namespace tavrin {

// Pixels as they are in pictures.
inline constexpr std::uint32_t white = 0xFFFFFFFF;
inline constexpr std::uint32_t black = 0xFF000000;
inline constexpr std::uint32_t red = 0xFFFF0000;
inline constexpr std::uint32_t green = 0xFF00FF00;
inline constexpr std::uint32_t blue = 0xFF0000FF;
inline constexpr std::uint32_t systemBlue = 0xFF0088FF;

/// How a document is drawn; white lies behind.
struct Page {
    Size size = {100, 60};
    double scale = 1;
    Appearance appearance = Appearance::light;
};

/// Draws one node as "main".
inline PixelBuffer drawn(std::string_view main, const Page& page = {}) {
    Context context;
    RenderOptions options;
    options.size = page.size;
    options.scale = page.scale;
    options.environment.appearance = page.appearance;
    options.background = {WidgetBackground::Kind::color, Color::white};
    const AnyView view = TavrinEngine().loadView(R"({"version": "1.2", "nodes": {"main": )" + std::string(main) + "}}",
                                                 std::nullopt, context);
    return ImageRenderer(view, options).pixels();
}

/// A node with its own members and modifiers: `node("circle", "", "{…}, {…}")`.
inline std::string node(std::string_view type, std::string_view members = {}, std::string_view modifiers = {}) {
    std::string text = "{\"type\": \"" + std::string(type) + "\"";
    if (!members.empty()) text += ", " + std::string(members);
    if (!modifiers.empty()) text += ", \"modifiers\": [" + std::string(modifiers) + "]";
    return text + "}";
}
inline std::string color(std::string_view value, std::string_view modifiers = {}) {
    return node("color", "\"value\": \"" + std::string(value) + "\"", modifiers);
}
inline std::string frame(double width, double height, std::string_view alignment = "center") {
    return "{\"type\": \"frame\", \"width\": " + std::to_string(width) + ", \"height\": " + std::to_string(height) +
           ", \"alignment\": \"" + std::string(alignment) + "\"}";
}
inline std::string offset(double x, double y) {
    return "{\"type\": \"offset\", \"x\": " + std::to_string(x) + ", \"y\": " + std::to_string(y) + "}";
}
inline std::string opacity(double value) {
    return "{\"type\": \"opacity\", \"opacity\": " + std::to_string(value) + "}";
}

/// The pixel in which a place of the page lies, given in points, as 0xAARRGGBB.
inline std::uint32_t at(const PixelBuffer& picture, const Page& page, double x, double y) {
    return picture.row(static_cast<int>(y * page.scale))[static_cast<int>(x * page.scale)];
}

inline int channel(std::uint32_t pixel, unsigned shift) { return static_cast<int>(pixel >> shift & 0xFF); }

/// The largest difference of two pixels' channels.
inline int distance(std::uint32_t a, std::uint32_t b) {
    int largest = 0;
    for (const unsigned shift : {0U, 8U, 16U, 24U})
        largest = std::max(largest, std::abs(channel(a, shift) - channel(b, shift)));
    return largest;
}

/// The largest difference of two pictures' channels; 256 when their sizes differ.
inline int distance(const PixelBuffer& a, const PixelBuffer& b) {
    if (a.width() != b.width() || a.height() != b.height()) return 256;
    int largest = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) largest = std::max(largest, distance(a.row(y)[x], b.row(y)[x]));
    return largest;
}

inline constexpr double scales[] = {1, 2, 3, 2.75};

}  // namespace tavrin
