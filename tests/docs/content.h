// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace tavrin {

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(std::filesystem::path(TAVRIN_SOURCE_DIR) / file, std::ios::binary);
    EXPECT_TRUE(stream) << file;
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// What stands between `begin` and the next `end`; empty when there is no such place.
inline std::string between(const std::string& text, std::string_view begin, std::string_view end) {
    const std::size_t found = text.find(begin);
    if (found == std::string::npos) return {};
    const std::size_t first = found + begin.size();
    return text.substr(first, text.find(end, first) - first);
}

}  // namespace tavrin
