#include "tavrin/platform/paint/png_fast.h"

#include <algorithm>
#include <array>
#include <bit>
#include <memory>
#include <span>
#include <vector>

#include <fmt/format.h>
#include <isa-l/igzip_lib.h>
#if defined(__x86_64__)
#include <tmmintrin.h>
#endif

#include "tavrin/platform/foundation/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/png_file.h"

namespace tavrin::paint {
namespace {

static_assert(std::endian::native == std::endian::little, "pixels are written as little-endian words");

constexpr std::uint8_t filterUp = 2;
/// Rows are filtered and compressed in strips that stay in the second-level cache.
constexpr std::size_t stripSize = std::size_t{256} << 10;

#if defined(__x86_64__)
/// `packDifferences` for all but the last pixels, 16 bytes written for four; returns how many it did.
template <std::size_t channels>
[[gnu::target("ssse3")]] std::size_t packMostDifferences(const std::uint32_t* pixels, const std::uint32_t* above,
                                                         std::uint8_t* bytes, std::size_t count) {
    const __m128i order = channels == 3 ? _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1)
                                        : _mm_setr_epi8(2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15);
    std::size_t i = 0;
    for (; i + 6 <= count; i += 4, bytes += 4 * channels) {
        const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
        const __m128i before = _mm_loadu_si128(reinterpret_cast<const __m128i*>(above + i));
        const __m128i difference = _mm_shuffle_epi8(_mm_sub_epi8(here, before), order);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), difference);
    }
    return i;
}
const bool canPackMost = __builtin_cpu_supports("ssse3") != 0;
#else
template <std::size_t channels>
std::size_t packMostDifferences(const std::uint32_t*, const std::uint32_t*, std::uint8_t*, std::size_t) {
    return 0;
}
constexpr bool canPackMost = false;
#endif

/// Writes pixels less those above, byte by byte and without carries, as bytes R, G, B and, of four channels, A.
template <std::size_t channels>
void packDifferences(const std::uint32_t* pixels, const std::uint32_t* above, std::uint8_t* bytes, std::size_t count) {
    constexpr std::array<int, 4> shifts{16, 8, 0, 24};
    std::size_t i = canPackMost ? packMostDifferences<channels>(pixels, above, bytes, count) : 0;
    for (bytes += channels * i; i < count; ++i)
        for (std::size_t channel = 0; channel < channels; ++channel)
            *bytes++ = static_cast<std::uint8_t>((pixels[i] >> shifts[channel]) - (above[i] >> shifts[channel]));
}

/// Turns one row after the other into a PNG row: the filter's number and the differences to the row above.
class UpFilter {
public:
    explicit UpFilter(const PixelBuffer& picture)
        : picture_(picture), opaque_(picture.isOpaque()), first_(width(), 0), above_(first_.data()) {}

    [[nodiscard]] PngColorType colorType() const { return opaque_ ? PngColorType::rgb : PngColorType::rgba; }
    [[nodiscard]] std::size_t rowSize() const { return 1 + width() * (opaque_ ? 3 : 4); }

    void write(int y, std::uint8_t* out) {
        const std::uint32_t* row = straightRow(y);
        *out++ = filterUp;
        if (opaque_)
            packDifferences<3>(row, above_, out, width());
        else
            packDifferences<4>(row, above_, out, width());
        above_ = row;
    }

private:
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(picture_.width()); }

    /// A row with channels that are not premultiplied: the picture's own where all of it is opaque.
    const std::uint32_t* straightRow(int y) {
        const std::uint32_t* row = picture_.row(y);
        if (opaque_ || allOpaque(row, width())) return row;
        std::vector<std::uint32_t>& straight = straight_[static_cast<std::size_t>(y) % 2];
        straight.resize(width());
        straightenPixels(row, straight.data(), width());
        return straight.data();
    }

    const PixelBuffer& picture_;
    bool opaque_;
    std::vector<std::uint32_t> first_;  // what is above the first row
    std::array<std::vector<std::uint32_t>, 2> straight_;
    const std::uint32_t* above_;
};

/// A zlib stream, appended to a string. Level 0: what the levels above find depends, in one picture of a thousand, on
/// where their memory lies, and the same picture must be the same bytes.
class Deflater {
public:
    Deflater(std::string& out, std::size_t expectedSize)
        : out_(out), stream_(std::make_unique_for_overwrite<isal_zstream>()) {
        isal_deflate_init(stream_.get());
        stream_->avail_out = 0;
        stream_->level = 0;
        stream_->gzip_flag = IGZIP_ZLIB;
        grow(expectedSize);
    }

    void write(std::span<std::uint8_t> bytes, bool last) {
        stream_->next_in = bytes.data();
        stream_->avail_in = static_cast<std::uint32_t>(bytes.size());
        stream_->end_of_stream = last ? 1 : 0;
        for (;;) {
            if (const int status = isal_deflate(stream_.get()); status != COMP_OK)
                throw TavrinError{"Render", fmt::format("a picture could not be compressed (status {})", status)};
            if (stream_->avail_out > 0) break;
            grow(out_.size());
        }
        if (last) out_.erase(out_.size() - stream_->avail_out);
    }

private:
    void grow(std::size_t extra) {
        const std::size_t used = out_.size() - stream_->avail_out;
        const std::size_t room = std::min<std::size_t>(extra, std::size_t{1} << 30);
        out_.resize(used + room);
        stream_->next_out = reinterpret_cast<std::uint8_t*>(out_.data() + used);
        stream_->avail_out = static_cast<std::uint32_t>(room);
    }

    std::string& out_;
    std::unique_ptr<isal_zstream> stream_;
};

}  // namespace

std::string encodePngFast(const PixelBuffer& picture) {
    UpFilter filter(picture);
    const int height = picture.height();
    PngFile file(picture.width(), height, 8, filter.colorType());
    file.beginChunk("IDAT");

    const std::size_t size = filter.rowSize();
    const int rowsInStrip = std::clamp(static_cast<int>(stripSize / size), 1, height);
    std::vector<std::uint8_t> strip(size * static_cast<std::size_t>(rowsInStrip));
    Deflater deflater(file.bytes(), size * static_cast<std::size_t>(height) / 8 + 1024);
    for (int y = 0; y < height; y += rowsInStrip) {
        const int rows = std::min(rowsInStrip, height - y);
        for (int i = 0; i < rows; ++i) filter.write(y + i, strip.data() + size * static_cast<std::size_t>(i));
        deflater.write(std::span(strip).first(size * static_cast<std::size_t>(rows)), y + rows == height);
    }
    file.endChunk();
    return file.finish();
}

}  // namespace tavrin::paint
