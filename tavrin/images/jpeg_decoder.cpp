// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <bit>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

#include <jerror.h>
#include <jpeglib.h>

#include "tavrin/images/decoders.h"
#include "tavrin/images/exif_orientation.h"
#include "tavrin/platform/foundation/pixels/pixels.h"

namespace tavrin::images {
namespace {

/// A progressive picture is gone through once for each scan that it says it has; common ones have ten.
constexpr std::int64_t mostScans = 100;
constexpr std::int64_t mostScannedPixels = 1'000'000'000;

/// Oddities that leave every pixel as it was meant. Any other warning means damage.
bool isHarmless(int warning) {
    return warning == JWRN_EXTRANEOUS_DATA || warning == JWRN_ADOBE_XFORM || warning == JWRN_JFIF_MAJOR ||
           warning == JWRN_TOO_MUCH_DATA;
}

/// The library's state. It reports errors by a jump to `failed`, which `readHeader` and `readPixels` set: nothing in
/// them has a destructor.
struct Reader {
    Reader(std::string_view bytes, Decoding& decoding);
    ~Reader() { jpeg_destroy_decompress(&info); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    std::jmp_buf failed{};
    std::string_view source;
    Decoding& decoding;
    Orientation orientation = Orientation::upright;
};

Reader& readerOf(j_common_ptr info) { return *static_cast<Reader*>(info->client_data); }

[[noreturn]] void fail(j_common_ptr info) { std::longjmp(readerOf(info).failed, 1); }

void failOnDamage(j_common_ptr info, int level) {
    if (level < 0 && !isHarmless(info->err->msg_code)) fail(info);
}

/// Called before every row of blocks and of pixels.
void monitor(j_common_ptr info) {
    if (readerOf(info).decoding.isStopped()) fail(info);
    const jpeg_decompress_struct& picture = readerOf(info).info;
    const std::int64_t scan = picture.input_scan_number;
    if (scan > mostScans || scan * picture.image_width * picture.image_height > mostScannedPixels) fail(info);
}

Reader::Reader(std::string_view bytes, Decoding& decoding) : source(bytes), decoding(decoding) {
    info.err = jpeg_std_error(&errors);
    errors.error_exit = fail;
    errors.emit_message = failOnDamage;
    errors.output_message = [](j_common_ptr) {};
    progress.progress_monitor = monitor;
    info.client_data = this;
}

/// Reads a segment that may say how the picture is turned; the first that does holds. The library would put all such
/// segments into a list, and go through it for each.
boolean readExif(j_decompress_ptr info) {
    Reader& reader = readerOf(reinterpret_cast<j_common_ptr>(info));
    jpeg_source_mgr& source = *info->src;  // all of the file is in memory
    constexpr std::size_t lengthOfLength = 2;
    if (source.bytes_in_buffer < lengthOfLength) fail(reinterpret_cast<j_common_ptr>(info));
    const std::size_t announced = std::size_t{source.next_input_byte[0]} << 8 | source.next_input_byte[1];
    const std::size_t length = std::max(announced, lengthOfLength);
    if (source.bytes_in_buffer < length) fail(reinterpret_cast<j_common_ptr>(info));
    const std::string_view segment(reinterpret_cast<const char*>(source.next_input_byte), length);
    if (reader.orientation == Orientation::upright)
        reader.orientation = exifOrientation(segment.substr(lengthOfLength));
    source.next_input_byte += length;
    source.bytes_in_buffer -= length;
    return TRUE;
}

bool readHeader(Reader& reader) {
    if (setjmp(reader.failed) != 0) return false;
    jpeg_create_decompress(&reader.info);
    reader.info.progress = &reader.progress;
    jpeg_mem_src(&reader.info, reinterpret_cast<const unsigned char*>(reader.source.data()), reader.source.size());
    jpeg_set_marker_processor(&reader.info, JPEG_APP0 + 1, readExif);
    return jpeg_read_header(&reader.info, TRUE) == JPEG_HEADER_OK;
}

/// What a picture of several scans is put together in: numbers for each sample. Others take some rows.
std::uint64_t workingBytes(jpeg_decompress_struct& info) {
    if (!jpeg_has_multiple_scans(&info)) return 0;
    std::uint64_t blocks = 0;
    for (int i = 0; i < info.num_components; ++i)
        blocks += std::uint64_t{info.comp_info[i].width_in_blocks} * info.comp_info[i].height_in_blocks;
    return blocks * sizeof(JBLOCK);
}

/// Settles the size of the output.
bool start(Reader& reader) {
    if (setjmp(reader.failed) != 0) return false;
    return jpeg_start_decompress(&reader.info) != FALSE;
}

bool readPixels(Reader& reader, std::uint8_t* target, std::size_t rowLength) {
    if (setjmp(reader.failed) != 0) return false;
    while (reader.info.output_scanline < reader.info.output_height) {
        JSAMPROW row = target + reader.info.output_scanline * rowLength;
        jpeg_read_scanlines(&reader.info, &row, 1);
    }
    return jpeg_finish_decompress(&reader.info) != FALSE;
}

/// Words of four inks to pixels. Adobe's programs, which mark their files, store how much of each ink is left out.
void convertInks(const Reader& reader, std::vector<std::uint32_t>& pixels) {
    const std::uint32_t inverted = reader.info.saw_Adobe_marker ? 0 : 0xFFFFFFFF;
    for (std::uint32_t& pixel : pixels) {
        const auto inks = std::bit_cast<std::array<std::uint8_t, 4>>(pixel ^ inverted);
        pixel = 0xFF000000 | scalePixel(packPixel(0, inks[0], inks[1], inks[2]), inks[3]);
    }
}

}  // namespace

Picture decodeJpeg(std::string_view bytes, Decoding& decoding) {
    Reader reader(bytes, decoding);
    jpeg_decompress_struct& info = reader.info;
    if (!readHeader(reader)) return nullptr;
    const Orientation orientation = reader.orientation;
    const std::uint64_t copied =
        orientation == Orientation::upright ? 0 : std::uint64_t{4} * info.image_width * info.image_height;
    if (!decoding.admits(info.image_width, info.image_height, workingBytes(info) + copied)) return nullptr;
    const bool inks = info.num_components == 4;
    if (inks)
        info.out_color_space = JCS_CMYK;
    else
        info.out_color_space = std::endian::native == std::endian::little ? JCS_EXT_BGRA : JCS_EXT_ARGB;
    if (!start(reader)) return nullptr;

    const auto width = static_cast<int>(info.output_width);
    const auto height = static_cast<int>(info.output_height);
    std::vector<std::uint32_t> pixels(std::size_t{info.output_width} * info.output_height);
    if (!readPixels(reader, reinterpret_cast<std::uint8_t*>(pixels.data()), std::size_t{info.output_width} * 4))
        return nullptr;
    if (inks) convertInks(reader, pixels);
    if (orientation == Orientation::upright) return std::make_shared<const Bitmap>(width, height, std::move(pixels));
    pixels = uprightPixels(pixels, width, height, orientation);
    return swapsSides(orientation) ? std::make_shared<const Bitmap>(height, width, std::move(pixels))
                                   : std::make_shared<const Bitmap>(width, height, std::move(pixels));
}

}  // namespace tavrin::images
