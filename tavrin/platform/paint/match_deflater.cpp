// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/match_deflater.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <utility>
#include <vector>

#include <libdeflate.h>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/paint/deflate_header.h"
#include "tavrin/platform/paint/pixel_matcher.h"

namespace tavrin::paint {
namespace {

constexpr std::size_t tokensInBlock = std::size_t{1} << 15;
constexpr std::size_t distanceCount = 30;
/// No token takes more bytes: neither the codes of four bytes nor a length and a distance with the bits that follow.
constexpr std::size_t bytesOfToken = 6;

/// The symbol of a distance of `1 + over` bytes, and how many bits follow it.
struct DistanceSymbol {
    unsigned symbol;
    unsigned extraBits;
};
constexpr DistanceSymbol distanceSymbol(std::uint32_t over) {
    if (over < 4) return {over, 0};
    const unsigned extraBits = static_cast<unsigned>(std::bit_width(over)) - 2;
    return {2 * extraBits + (over >> extraBits), extraBits};
}

/// What deflate writes: a pixel or the number of a filter as it is, where `length` is 0 or 1, or a match.
struct MatchToken {
    std::uint32_t value;  ///< the pixel or the filter, or the distance less 1
    std::uint32_t length;
};

/// Writes the bytes R, G, B of pixels, and at most four more. Four pixels at once are three words.
void writeRGB(const std::uint32_t* pixels, std::size_t count, std::uint8_t* out) {
    constexpr std::size_t atOnce = 4;
    const auto reversed = [](std::uint32_t pixel) {
        return std::uint64_t{(pixel & 0xFF) << 16 | (pixel & 0xFF00) | (pixel >> 16 & 0xFF)};
    };
    std::size_t i = 0;
    for (; i + atOnce <= count; i += atOnce, out += 3 * atOnce) {
        const std::uint64_t third = reversed(pixels[i + 2]);
        const std::uint64_t first = reversed(pixels[i]) | reversed(pixels[i + 1]) << 24 | third << 48;
        const std::uint64_t second = third >> 16 | reversed(pixels[i + 3]) << 8;
        std::memcpy(out, &first, sizeof first);
        std::memcpy(out + sizeof first, &second, sizeof second);
    }
    for (; i < count; ++i, out += 3) {
        const std::uint64_t one = reversed(pixels[i]);
        std::memcpy(out, &one, sizeof(std::uint32_t));
    }
}

template <std::size_t channels>
class MatchDeflater {
public:
    MatchDeflater(std::span<const std::uint32_t> pixels, std::size_t width, std::uint8_t filter, int mostLooks)
        : pixels_(pixels),
          width_(width),
          filter_(filter),
          matcher_(pixels, width, mostLooks),
          bytes_(channels * width + 1 + sizeof(std::uint32_t)) {
        tokens_.reserve(tokensInBlock + width + 1);
    }

    std::string deflate() {
        const std::size_t height = pixels_.size() / width_;
        for (std::size_t y = 0; y < height; ++y) {
            Meter::ofThisThread().paint(2 * width_);
            addToSum(y);
            addRow(y);
            if (tokens_.size() >= tokensInBlock || y + 1 == height) writeBlock(y + 1 == height);
        }
        if (pendingCount_ > 0) out_ += static_cast<char>(pendingBits_);
        for (const unsigned shift : {24U, 16U, 8U, 0U}) out_ += static_cast<char>(sum_ >> shift & 0xFF);
        return std::move(out_);
    }

private:
    void addToSum(std::size_t y) {
        const std::uint32_t* const row = pixels_.data() + y * width_;
        // The same bytes as those of the row above are there already.
        if (y == 0 || !std::equal(row, row + width_, row - width_)) {
            bytes_[0] = filter_;
            if constexpr (channels == 3)
                writeRGB(row, width_, bytes_.data() + 1);
            else
                writeRGBA(row, bytes_.data() + 1, width_);
        }
        sum_ = libdeflate_adler32(sum_, bytes_.data(), channels * width_ + 1);
    }

    void addRow(std::size_t y) {
        std::size_t x = 0;
        // The filter's number and the pixels above it are one match; what is a run is shorter as one.
        if (std::size_t same = matcher_.asAbove(y); same > 0) {
            if (matcher_.isOne(y, same)) same = 1;
            tokens_.push_back(
                {static_cast<std::uint32_t>(channels * width_), static_cast<std::uint32_t>(1 + channels * same)});
            x = same;
        } else {
            tokens_.push_back({filter_, 1});
        }
        const std::uint32_t* const row = pixels_.data() + y * width_;
        while (x < width_) {
            const PixelMatch match = matcher_.find(y, x);
            if (match.pixels == 0) {
                tokens_.push_back({row[x++], 0});
                continue;
            }
            tokens_.push_back(
                {static_cast<std::uint32_t>(match.distance - 1), static_cast<std::uint32_t>(channels * match.pixels)});
            if (match.distance != channels)
                for (std::size_t i = 1; i < std::min(match.pixels, mostRemembered); ++i) matcher_.remember(y, x + i);
            x += match.pixels;
        }
    }

    void writeBlock(bool last) {
        SymbolCounter counter;
        std::array<std::uint32_t, distanceCount> distances{};
        for (const MatchToken& token : tokens_) {
            if (token.length == 0) {
                counter.template pixel<channels>(token.value);
            } else if (token.length == 1) {
                counter.literal(static_cast<std::uint8_t>(token.value));
            } else {
                counter.match(token.length, 0);
                ++distances[distanceSymbol(token.value).symbol];
            }
        }
        std::array<std::uint32_t, symbolCount> counts{};
        counter.addTo(counts);
        counts[endOfBlock] = 1;
        // A code has two symbols or more.
        for (std::uint32_t& count : std::span(distances).first(2)) count = std::max(count, 1U);
        const std::vector<HuffmanCode> codes = huffmanCodes(counts, longestCode);
        const std::vector<HuffmanCode> distanceCodes = huffmanCodes(distances, longestCode);
        std::array<std::uint8_t, distanceCount> distanceLengths{};
        for (std::size_t i = 0; i < distanceCount; ++i)
            distanceLengths[i] = static_cast<std::uint8_t>(distanceCodes[i].length);

        const std::size_t begin = out_.size();
        const std::size_t room = bytesOfToken * tokens_.size() + mostOfDeflateHeader;
        held_.grow(room);
        out_.resize(begin + room);
        BitWriter bits(out_.data() + begin, pendingBits_, pendingCount_);
        writeDeflateHeader(bits, last, codes, distanceLengths);
        for (const MatchToken& token : tokens_) writeToken(token, codes, distanceCodes, bits);
        bits.put(codes[endOfBlock]);
        pendingBits_ = bits.bits();
        pendingCount_ = bits.count();
        out_.resize(static_cast<std::size_t>(bits.end() - out_.data()));
        tokens_.clear();
    }

    static void writeToken(const MatchToken& token, const std::vector<HuffmanCode>& codes,
                           const std::vector<HuffmanCode>& distanceCodes, BitWriter& bits) {
        if (token.length == 0) {
            bits.add(codes[byteOf<0>(token.value)]);
            bits.add(codes[byteOf<1>(token.value)]);
            bits.add(codes[byteOf<2>(token.value)]);
            if constexpr (channels == 4) bits.add(codes[byteOf<3>(token.value)]);
        } else if (token.length == 1) {
            bits.add(codes[token.value]);
        } else {
            const MatchLength& length = matchLengths[token.length];
            bits.add(codes[length.symbol]);
            bits.add(length.extra, length.extraBits);
            const auto [symbol, extraBits] = distanceSymbol(token.value);
            bits.add(distanceCodes[symbol]);
            bits.add(token.value & ((1U << extraBits) - 1), extraBits);
        }
        bits.flush();
    }

    /// The first pixels of a match may begin others; to remember more of a long one takes time and finds little.
    static constexpr std::size_t mostRemembered = 32;

    std::span<const std::uint32_t> pixels_;
    std::size_t width_;
    std::uint8_t filter_;
    PixelMatcher<channels> matcher_;
    std::vector<std::uint8_t> bytes_;  // of the last row
    std::vector<MatchToken> tokens_;   // of the block that is not written yet
    std::string out_{zlibHeader};
    std::uint32_t sum_ = 1;
    unsigned pendingBits_ = 0;
    unsigned pendingCount_ = 0;
    HeldBytes held_;  // what is written
};

}  // namespace

std::string deflateMatches(std::span<const std::uint32_t> pixels, std::size_t width, std::uint8_t filter,
                           PngColorType colorType, int mostLooks) {
    return colorType == PngColorType::rgb ? MatchDeflater<3>(pixels, width, filter, mostLooks).deflate()
                                          : MatchDeflater<4>(pixels, width, filter, mostLooks).deflate();
}

}  // namespace tavrin::paint
