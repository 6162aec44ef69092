// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/jpeg_encoder.h"

#include <algorithm>
#include <bit>
#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <new>
#include <utility>
#include <vector>

#include <jerror.h>
#include <jpeglib.h>

#include "tavrin/platform/foundation/budget/metering.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin::paint {
namespace {

static_assert(PixelBuffer::maxSide <= JPEG_MAX_DIMENSION, "no picture is too large for a JPEG");

/// What it takes for each pixel: time as a multiple of painting one, and memory for what is transformed, until it is
/// known which codes suit it, and for what is written.
constexpr std::uint64_t jpegWeight = 2;
constexpr std::size_t jpegBytes = 12;

/// The library's state. It reports errors by a jump to `failed`, which `writeJpeg` sets: nothing in it, and in what the
/// library calls, has a destructor.
struct JpegWriter {
    JpegWriter();
    ~JpegWriter() { jpeg_destroy_compress(&info); }
    JpegWriter(const JpegWriter&) = delete;
    JpegWriter& operator=(const JpegWriter&) = delete;

    /// Does work that may throw. What is thrown waits, since it may not leave through the library.
    template <class Work>
    bool attempt(const Work& work) noexcept {
        try {
            work();
            return true;
        } catch (...) {
            failure = std::current_exception();
            return false;
        }
    }
    void grow() {
        const std::size_t written = bytes.size() - target.free_in_buffer;
        bytes.resize(2 * bytes.size());
        target.next_output_byte = reinterpret_cast<JOCTET*>(bytes.data()) + written;
        target.free_in_buffer = bytes.size() - written;
    }

    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    jpeg_destination_mgr target{};
    std::jmp_buf failed{};
    std::string bytes;
    std::exception_ptr failure;
};

JpegWriter& writerOf(j_common_ptr info) { return *static_cast<JpegWriter*>(info->client_data); }

[[noreturn]] void leave(j_common_ptr info) { std::longjmp(writerOf(info).failed, 1); }

/// Called before each row of pixels, and of blocks once all are known.
void lookAtBudget(j_common_ptr info) {
    if (!writerOf(info).attempt(checkBudget)) leave(info);
}

boolean growTarget(j_compress_ptr info) {
    const auto common = reinterpret_cast<j_common_ptr>(info);
    JpegWriter& writer = writerOf(common);
    writer.target.free_in_buffer = 0;  // the library asks when the buffer is full, and leaves it to us to say so
    if (!writer.attempt([&] { writer.grow(); })) leave(common);
    return TRUE;
}

JpegWriter::JpegWriter() {
    constexpr std::size_t firstSize = 1 << 16;
    bytes.resize(firstSize);
    target.next_output_byte = reinterpret_cast<JOCTET*>(bytes.data());
    target.free_in_buffer = bytes.size();
    target.init_destination = [](j_compress_ptr) {};
    target.empty_output_buffer = growTarget;
    target.term_destination = [](j_compress_ptr) {};
    info.err = jpeg_std_error(&errors);
    errors.error_exit = leave;
    errors.output_message = [](j_common_ptr) {};
    progress.progress_monitor = lookAtBudget;
    info.client_data = this;
}

/// `opaque` has room for a row.
bool writeJpeg(JpegWriter& writer, const PixelBuffer& picture, int quality, std::uint32_t* opaque) {
    if (setjmp(writer.failed) != 0) return false;
    jpeg_compress_struct& info = writer.info;
    jpeg_create_compress(&info);
    info.progress = &writer.progress;
    info.dest = &writer.target;
    info.image_width = static_cast<JDIMENSION>(picture.width());
    info.image_height = static_cast<JDIMENSION>(picture.height());
    info.input_components = sizeof(std::uint32_t);
    info.in_color_space = std::endian::native == std::endian::little ? JCS_EXT_BGRX : JCS_EXT_XRGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, quality, TRUE);
    info.comp_info[0].h_samp_factor = info.comp_info[0].v_samp_factor = 1;
    info.optimize_coding = TRUE;  // a tenth smaller
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        const std::uint32_t* const row = picture.row(static_cast<int>(info.next_scanline));
        std::transform(row, row + info.image_width, opaque,
                       [](std::uint32_t pixel) { return over(pixel, 0xFFFFFFFF); });
        auto* samples = reinterpret_cast<JSAMPLE*>(opaque);
        jpeg_write_scanlines(&info, &samples, 1);
    }
    jpeg_finish_compress(&info);
    return true;
}

}  // namespace

std::string encodeJpeg(const PixelBuffer& picture, int quality) {
    if (picture.width() == 0) throw TavrinError("Render", "a picture without pixels cannot be a JPEG");
    const auto width = static_cast<std::size_t>(picture.width());
    const std::size_t count = width * static_cast<std::size_t>(picture.height());
    Meter::ofThisThread().paint(jpegWeight * count);
    const HeldBytes held(jpegBytes * count);
    std::vector<std::uint32_t> opaque(width);
    JpegWriter writer;
    if (!writeJpeg(writer, picture, quality, opaque.data())) {
        if (writer.failure) std::rethrow_exception(writer.failure);
        if (writer.errors.msg_code == JERR_OUT_OF_MEMORY) throw std::bad_alloc();
        throw TavrinError(
            "Render", "a picture could not be compressed (JPEG error " + std::to_string(writer.errors.msg_code) + ")");
    }
    writer.bytes.resize(writer.bytes.size() - writer.target.free_in_buffer);
    return std::move(writer.bytes);
}

}  // namespace tavrin::paint
