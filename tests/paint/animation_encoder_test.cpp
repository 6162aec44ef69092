// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/animation/animation_encoder.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"

// What the files say; `scripts/frames_suite.py` decodes them.

namespace tavrin::paint {
namespace {

using ::testing::ElementsAre;
using Picture = std::shared_ptr<const PixelBuffer>;

/// A white picture with one red pixel.
Picture dotAt(int x, int y, int width = 9, int height = 7) {
    PixelBuffer picture(width, height);
    for (int row = 0; row < height; ++row) std::fill_n(picture.row(row), width, 0xFFFFFFFF);
    picture.row(y)[x] = 0xFFFF0000;
    return std::make_shared<const PixelBuffer>(std::move(picture));
}

std::uint64_t bigEndian(std::string_view bytes) {
    std::uint64_t value = 0;
    for (const char byte : bytes) value = value << 8 | static_cast<std::uint8_t>(byte);
    return value;
}
std::uint64_t littleEndian(std::string_view bytes) { return bigEndian(std::string(bytes.rbegin(), bytes.rend())); }

/// A frame as a file has it: x, y, width, height; the time is numerator and denominator, or milliseconds and 1000.
struct Shown {
    std::vector<std::uint64_t> area;
    std::uint64_t time, parts;
    bool isBlended;

    friend bool operator==(const Shown&, const Shown&) = default;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    for (const std::uint64_t number : shown.area) *out << number << ' ';
    *out << shown.time << '/' << shown.parts << (shown.isBlended ? " over" : "");
}

std::vector<Shown> framesOfPng(std::string_view file) {
    std::vector<Shown> frames;
    for (std::size_t at = 8; at < file.size(); at += 12 + bigEndian(file.substr(at, 4))) {
        const std::string_view body = file.substr(at + 8);
        if (file.substr(at + 4, 4) != "fcTL") continue;
        const auto number = [&](std::size_t from, std::size_t count) { return bigEndian(body.substr(from, count)); };
        EXPECT_EQ(number(24, 1), 0U) << "what is there is kept";
        frames.push_back({{number(12, 4), number(16, 4), number(4, 4), number(8, 4)},
                          number(20, 2),
                          number(22, 2),
                          number(25, 1) == 1});
    }
    return frames;
}

std::vector<Shown> framesOfWebp(std::string_view file) {
    EXPECT_EQ(littleEndian(file.substr(4, 4)), file.size() - 8);
    std::vector<Shown> frames;
    for (std::size_t at = 12; at < file.size();) {
        const std::string_view body = file.substr(at + 8);
        const std::size_t size = littleEndian(file.substr(at + 4, 4));
        const auto number = [&](std::size_t from, std::size_t count) { return littleEndian(body.substr(from, count)); };
        if (file.substr(at, 4) == "ANMF")
            frames.push_back({{2 * number(0, 3), 2 * number(3, 3), number(6, 3) + 1, number(9, 3) + 1},
                              number(12, 3),
                              1000,
                              number(15, 1) == 0});
        at += 8 + size + size % 2;
    }
    return frames;
}

std::string encode(AnimationFormat format, const std::vector<std::pair<Picture, std::uint64_t>>& frames) {
    AnimationEncoder encoder(format, PngCompression::fast);
    for (const auto& [picture, milliseconds] : frames) encoder.add(picture, milliseconds);
    return encoder.finish();
}

TEST(AnimationEncoder, KeepsWhatChanged) {
    const std::vector<std::pair<Picture, std::uint64_t>> frames{
        {dotAt(0, 0), 40}, {dotAt(3, 5), 40}, {dotAt(5, 3), 20}};
    EXPECT_THAT(framesOfPng(encode(AnimationFormat::png, frames)),
                ElementsAre(Shown{{0, 0, 9, 7}, 40, 1000, false}, Shown{{0, 0, 4, 6}, 40, 1000, true},
                            Shown{{3, 3, 3, 3}, 20, 1000, true}));
    EXPECT_THAT(framesOfWebp(encode(AnimationFormat::webp, frames)),
                ElementsAre(Shown{{0, 0, 9, 7}, 40, 1000, false}, Shown{{0, 0, 4, 6}, 40, 1000, true},
                            Shown{{2, 2, 4, 4}, 20, 1000, true}))
        << "which begin at even pixels";
}

TEST(AnimationEncoder, EqualFramesAreOneLonger) {
    const Picture same = dotAt(1, 1);
    for (const auto& [format, compression] : {std::pair{AnimationFormat::png, PngCompression::small},
                                              {AnimationFormat::png, PngCompression::balanced},
                                              {AnimationFormat::webp, PngCompression::small},
                                              {AnimationFormat::webp, PngCompression::balanced}}) {
        AnimationEncoder encoder(format, compression);
        for (const Picture& picture : {same, same, dotAt(1, 1), dotAt(2, 2), dotAt(2, 2)}) encoder.add(picture, 500);
        EXPECT_EQ(encoder.frameCount(), 2U);
        const std::string file = encoder.finish();
        const auto frames = format == AnimationFormat::png ? framesOfPng(file) : framesOfWebp(file);
        EXPECT_EQ(frames.at(0).time, 1500U);
        EXPECT_EQ(frames.at(1).time, 1000U);
    }
}

TEST(AnimationEncoder, TimesAreAsExactAsTheFormatsCanSay) {
    const struct {
        std::uint64_t milliseconds, pngTime, pngParts, webpTime;
    } rows[] = {
        {10, 10, 1000, 10},
        {65'535, 65'535, 1000, 65'535},
        {65'536, 6'554, 100, 65'536},
        {3'600'000, 36'000, 10, 3'600'000},
        {36'000'000, 36'000, 1, 16'777'215},
        {360'000'000, 65'535, 1, 16'777'215},
    };
    for (const auto& [milliseconds, pngTime, pngParts, webpTime] : rows) {
        SCOPED_TRACE(milliseconds);
        const Shown png = framesOfPng(encode(AnimationFormat::png, {{dotAt(0, 0), milliseconds}})).at(0);
        EXPECT_EQ(std::pair(png.time, png.parts), std::pair(pngTime, pngParts));
        EXPECT_EQ(framesOfWebp(encode(AnimationFormat::webp, {{dotAt(0, 0), milliseconds}})).at(0).time, webpTime);
    }
}

TEST(AnimationEncoder, RefusesWhatIsNoAnimation) {
    AnimationEncoder empty(AnimationFormat::png, PngCompression::fast);
    EXPECT_THROW(static_cast<void>(empty.finish()), TavrinError);
    AnimationEncoder encoder(AnimationFormat::png, PngCompression::fast);
    encoder.add(dotAt(0, 0), 10);
    EXPECT_THROW(encoder.add(dotAt(0, 0, 9, 8), 10), TavrinError);
    EXPECT_NO_THROW(encode(AnimationFormat::png, {{dotAt(0, 0, 16'384, 1), 10}}));
    EXPECT_NO_THROW(encode(AnimationFormat::webp, {{dotAt(0, 0, 16'383, 1), 10}}));
    EXPECT_THROW(encode(AnimationFormat::webp, {{dotAt(0, 0, 16'384, 1), 10}}), TavrinError);
}

TEST(AnimationEncoderThreads, BytesAreTheSameEachTime) {
    std::vector<std::pair<Picture, std::uint64_t>> frames;
    for (int i = 0; i < 100; ++i) frames.emplace_back(dotAt(i % 40, i % 30, 40, 30), 10);
    for (const auto format : {AnimationFormat::png, AnimationFormat::webp}) {
        const std::string file = encode(format, frames);
        for (int i = 0; i < 3; ++i) EXPECT_EQ(encode(format, frames), file);
    }
}

}  // namespace
}  // namespace tavrin::paint
