#include "tavrin/platform/paint/png_fast.h"

#include <algorithm>
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

/// `row` less `above`, byte by byte and without carries.
void subtractBytes(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* difference, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) difference[i] = static_cast<std::uint8_t>(row[i] - above[i]);
}

#if defined(__x86_64__)
/// `packDifferences` for all but the last pixels, 16 bytes written for four; returns how many it did.
[[gnu::target("ssse3")]] std::size_t packMostDifferences(const std::uint32_t* pixels, const std::uint32_t* above,
                                                         std::uint8_t* bytes, std::size_t count) {
    const __m128i order = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    std::size_t i = 0;
    for (; i + 6 <= count; i += 4, bytes += 12) {
        const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
        const __m128i before = _mm_loadu_si128(reinterpret_cast<const __m128i*>(above + i));
        const __m128i difference = _mm_shuffle_epi8(_mm_sub_epi8(here, before), order);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), difference);
    }
    return i;
}
const bool canPackMost = __builtin_cpu_supports("ssse3") != 0;
#else
std::size_t packMostDifferences(const std::uint32_t*, const std::uint32_t*, std::uint8_t*, std::size_t) { return 0; }
constexpr bool canPackMost = false;
#endif

/// Writes pixels less those above, byte by byte and without carries, as bytes R, G, B.
void packDifferences(const std::uint32_t* pixels, const std::uint32_t* above, std::uint8_t* bytes, std::size_t count) {
    std::size_t i = canPackMost ? packMostDifferences(pixels, above, bytes, count) : 0;
    for (bytes += 3 * i; i < count; ++i)
        for (const int shift : {16, 8, 0})
            *bytes++ = static_cast<std::uint8_t>((pixels[i] >> shift) - (above[i] >> shift));
}

/// Turns one row after the other into a PNG row: the filter's number and the differences to the row above.
class UpFilter {
public:
    UpFilter(const PixelBuffer& picture, PngColorType colorType)
        : picture_(picture), opaque_(colorType == PngColorType::rgb), above_(width(), 0), row_(width()) {}

    [[nodiscard]] std::size_t rowSize() const { return 1 + width() * (opaque_ ? 3 : 4); }

    void write(int y, std::uint8_t* out) {
        *out++ = filterUp;
        if (opaque_) {
            const std::uint32_t* above = y > 0 ? picture_.row(y - 1) : above_.data();
            packDifferences(picture_.row(y), above, out, width());
        } else {
            straightenPixels(picture_.row(y), bytesOf(row_.data()), width());
            subtractBytes(bytesOf(row_.data()), bytesOf(above_.data()), out, 4 * width());
            row_.swap(above_);
        }
    }

private:
    static std::uint8_t* bytesOf(std::uint32_t* pixels) { return reinterpret_cast<std::uint8_t*>(pixels); }
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(picture_.width()); }

    const PixelBuffer& picture_;
    bool opaque_;
    std::vector<std::uint32_t> above_;
    std::vector<std::uint32_t> row_;
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

void appendPngRowsFast(const PixelBuffer& picture, PngColorType colorType, std::string& out) {
    UpFilter filter(picture, colorType);
    const int height = picture.height();
    const std::size_t size = filter.rowSize();
    const int rowsInStrip = std::clamp(static_cast<int>(stripSize / size), 1, height);
    std::vector<std::uint8_t> strip(size * static_cast<std::size_t>(rowsInStrip));
    Deflater deflater(out, size * static_cast<std::size_t>(height) / 8 + 1024);
    for (int y = 0; y < height; y += rowsInStrip) {
        const int rows = std::min(rowsInStrip, height - y);
        for (int i = 0; i < rows; ++i) filter.write(y + i, strip.data() + size * static_cast<std::size_t>(i));
        deflater.write(std::span(strip).first(size * static_cast<std::size_t>(rows)), y + rows == height);
    }
}

std::string encodePngFast(const PixelBuffer& picture) {
    const PngColorType colorType = picture.isOpaque() ? PngColorType::rgb : PngColorType::rgba;
    PngFile file(picture.width(), picture.height(), 8, colorType);
    file.beginChunk("IDAT");
    appendPngRowsFast(picture, colorType, file.bytes());
    file.endChunk();
    return file.finish();
}

}  // namespace tavrin::paint
