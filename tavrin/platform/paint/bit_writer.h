// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "tavrin/platform/paint/huffman_code.h"

namespace tavrin::paint {

static_assert(std::endian::native == std::endian::little, "bits are written as little-endian words");

/// Writes bits to memory, the lowest of a byte first. It writes words, so there must be eight bytes more than it will
/// fill; up to `room` bits may be added before they are flushed.
class BitWriter {
public:
    static constexpr unsigned room = 56;

    /// Starts with `count` bits, fewer than eight.
    BitWriter(char* out, unsigned bits, unsigned count) : out_(out), bits_(bits), count_(count) {}

    void add(std::uint64_t bits, unsigned count) {
        bits_ |= bits << count_;
        count_ += count;
    }
    void add(HuffmanCode code) { add(code.bits, code.length); }

    void flush() {
        std::memcpy(out_, &bits_, sizeof bits_);
        out_ += count_ / 8;
        bits_ >>= count_ & ~7U;
        count_ &= 7U;
    }

    void put(std::uint64_t bits, unsigned count) {
        add(bits, count);
        flush();
    }
    void put(HuffmanCode code) { put(code.bits, code.length); }

    /// Behind the last whole byte that was flushed, and the bits that fill none.
    [[nodiscard]] char* end() const { return out_; }
    [[nodiscard]] unsigned bits() const { return static_cast<unsigned>(bits_); }
    [[nodiscard]] unsigned count() const { return count_; }

private:
    char* out_;
    std::uint64_t bits_;
    unsigned count_;
};

}  // namespace tavrin::paint
