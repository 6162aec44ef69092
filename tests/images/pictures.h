// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

// The pictures that scripts/make_pictures.py made.

namespace tavrin {

inline std::string pictureFile(const std::string& name) {
    std::ifstream file(TAVRIN_SOURCE_DIR "/tests/images/pictures/" + name, std::ios::binary);
    if (!file) throw std::runtime_error("no picture " + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The picture with exact pixels: its size, and the number of the colour at a place.
constexpr int patternWidth = 13;
constexpr int patternHeight = 9;
constexpr std::size_t patternColor(int x, int y, int colors) { return static_cast<std::size_t>((x + 3 * y) % colors); }

}  // namespace tavrin
