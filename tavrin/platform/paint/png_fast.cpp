#include "tavrin/platform/paint/png_fast.h"

#include <algorithm>
#include <bit>
#include <cstring>
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
/// `packRGB` for all but the last pixels, 16 bytes written for four; returns how many it did.
[[gnu::target("ssse3")]] std::size_t packMostRGB(const std::uint32_t* pixels, std::uint8_t* bytes, std::size_t count) {
    const __m128i order = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    std::size_t i = 0;
    for (; i + 6 <= count; i += 4, bytes += 12) {
        const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm_shuffle_epi8(four, order));
    }
    return i;
}
const bool canPackMost = __builtin_cpu_supports("ssse3") != 0;
#else
std::size_t packMostRGB(const std::uint32_t*, std::uint8_t*, std::size_t) { return 0; }
constexpr bool canPackMost = false;
#endif

/// Writes pixels as bytes R, G, B.
void packRGB(const std::uint32_t* pixels, std::uint8_t* bytes, std::size_t count) {
    const auto rgb = [&](std::size_t i) {
        const std::uint32_t pixel = pixels[i];
        return (pixel >> 16 & 0xFF) | (pixel & 0xFF00) | (pixel & 0xFF) << 16;
    };
    std::size_t i = canPackMost ? packMostRGB(pixels, bytes, count) : 0;
    for (bytes += 3 * i; i < count; ++i, bytes += 3) {
        const std::uint32_t word = rgb(i);
        std::memcpy(bytes, &word, 3);
    }
}

/// Turns one row after the other into a PNG row: the filter's number and the differences to the row above.
class UpFilter {
public:
    explicit UpFilter(const PixelBuffer& picture)
        : picture_(picture), opaque_(picture.isOpaque()), above_(width(), 0), row_(width()) {}

    [[nodiscard]] PngColorType colorType() const { return opaque_ ? PngColorType::rgb : PngColorType::rgba; }
    [[nodiscard]] std::size_t rowSize() const { return 1 + width() * (opaque_ ? 3 : 4); }

    void write(int y, std::uint8_t* out) {
        *out++ = filterUp;
        if (opaque_) {
            const std::uint32_t* above = y > 0 ? picture_.row(y - 1) : above_.data();
            subtractBytes(bytesOf(picture_.row(y)), bytesOf(above), bytesOf(row_.data()), 4 * width());
            packRGB(row_.data(), out, width());
        } else {
            straightenPixels(picture_.row(y), bytesOf(row_.data()), width());
            subtractBytes(bytesOf(row_.data()), bytesOf(above_.data()), out, 4 * width());
            row_.swap(above_);
        }
    }

private:
    static std::uint8_t* bytesOf(std::uint32_t* pixels) { return reinterpret_cast<std::uint8_t*>(pixels); }
    static const std::uint8_t* bytesOf(const std::uint32_t* pixels) {
        return reinterpret_cast<const std::uint8_t*>(pixels);
    }
    [[nodiscard]] std::size_t width() const { return static_cast<std::size_t>(picture_.width()); }

    const PixelBuffer& picture_;
    bool opaque_;
    std::vector<std::uint32_t> above_;
    std::vector<std::uint32_t> row_;
};

/// A zlib stream, appended to a string.
class Deflater {
public:
    Deflater(std::string& out, std::size_t expectedSize)
        : out_(out),
          levelBuffer_(std::make_unique_for_overwrite<std::uint8_t[]>(levelSize)),
          stream_(std::make_unique_for_overwrite<isal_zstream>()) {
        isal_deflate_init(stream_.get());
        stream_->avail_out = 0;
        stream_->level = 1;
        stream_->level_buf = levelBuffer_.get();
        stream_->level_buf_size = levelSize;
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
    static constexpr std::uint32_t levelSize = ISAL_DEF_LVL1_LARGE;

    void grow(std::size_t extra) {
        const std::size_t used = out_.size() - stream_->avail_out;
        const std::size_t room = std::min<std::size_t>(extra, std::size_t{1} << 30);
        out_.resize(used + room);
        stream_->next_out = reinterpret_cast<std::uint8_t*>(out_.data() + used);
        stream_->avail_out = static_cast<std::uint32_t>(room);
    }

    std::string& out_;
    std::unique_ptr<std::uint8_t[]> levelBuffer_;
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
