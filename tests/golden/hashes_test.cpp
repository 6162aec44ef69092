// SPDX-License-Identifier: MIT
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "tests/golden/golden_case.h"

// One table of hashes for every build and processor: optimised or not, with or without sanitizers, by either compiler.

namespace tavrin {
namespace {

/// FNV-1a, 64 bits, as hexadecimal digits.
class Hash {
public:
    Hash& add(std::string_view bytes) {
        for (const char byte : bytes) sum_ = (sum_ ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
        return *this;
    }
    [[nodiscard]] std::string text() const {
        std::ostringstream digits;
        digits << std::hex;
        digits.width(16);
        digits.fill('0');
        digits << sum_;
        return digits.str();
    }

private:
    std::uint64_t sum_ = 0xCBF29CE484222325;
};

std::string hashOf(std::string_view bytes) { return Hash().add(bytes).text(); }

std::string hashOf(const PixelBuffer& pixels) {
    Hash hash;
    hash.add(std::to_string(pixels.width()) + "x" + std::to_string(pixels.height()));
    const std::vector<std::uint8_t> bytes = pixels.straightRGBA();
    return hash.add({reinterpret_cast<const char*>(bytes.data()), bytes.size()}).text();
}

std::string hashesOf(const GoldenCase& golden, Appearance appearance) {
    WidgetOptions options = golden.widgetOptions(appearance);
    const BoundDocument bound = golden.bound(options);
    Widget fast = bound.widget(options);
    options.compression = PngCompression::small;
    Widget small = bound.widget(options);
    std::string line = golden.name() + (appearance == Appearance::dark ? " dark" : " light");
    line += " pixels " + hashOf(fast.pixels());
    line += " fast " + hashOf(fast.encode(PictureFormat::png));
    line += " small " + hashOf(small.encode(PictureFormat::png));
    line += " svg " + hashOf(fast.encode(PictureFormat::svg));
    line += " pdf " + hashOf(fast.encode(PictureFormat::pdf));
    return line;
}

TEST(Golden, EveryBuildDrawsTheSameBytes) {
    const std::filesystem::path table = std::filesystem::path(TAVRIN_SOURCE_DIR) / "tests/golden/hashes.txt";
    std::vector<std::string> lines;
    for (const GoldenCase& golden : goldenCases())
        for (const Appearance appearance : {Appearance::light, Appearance::dark})
            lines.push_back(hashesOf(golden, appearance));
    if (updatesGoldens()) {
        std::string text;
        for (const std::string& line : lines) text += line + "\n";
        return writeFile(table, text);
    }
    std::istringstream expected(readFile(table));
    for (const std::string& line : lines) {
        std::string wanted;
        std::getline(expected, wanted);
        EXPECT_EQ(line, wanted) << "`make update-goldens` rewrites " << table;
    }
    std::string rest;
    EXPECT_FALSE(std::getline(expected, rest)) << "no longer drawn: " << rest;
}

}  // namespace
}  // namespace tavrin
