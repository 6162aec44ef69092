// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <span>
#include <vector>

#include <isa-l.h>

namespace tavrin::bench {

/// The processor's time that the calling thread has had.
inline double threadSeconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// How many bytes ISA-L makes of others at level 1, as a zlib stream.
inline std::size_t sizeByIgzip(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t expansion = 4096;
    static std::vector<std::uint8_t> levelBuffer(ISAL_DEF_LVL1_DEFAULT);
    static std::vector<std::uint8_t> out;
    out.resize(std::max(out.size(), bytes.size() + expansion));
    isal_zstream stream;
    isal_deflate_init(&stream);
    stream.level = 1;
    stream.level_buf = levelBuffer.data();
    stream.level_buf_size = static_cast<std::uint32_t>(levelBuffer.size());
    stream.gzip_flag = IGZIP_ZLIB;
    stream.end_of_stream = 1;
    stream.flush = NO_FLUSH;
    stream.next_in = const_cast<std::uint8_t*>(bytes.data());
    stream.avail_in = static_cast<std::uint32_t>(bytes.size());
    stream.next_out = out.data();
    stream.avail_out = static_cast<std::uint32_t>(out.size());
    isal_deflate(&stream);
    return stream.total_out;
}

}  // namespace tavrin::bench
