#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

namespace tavrin {

/// Whether two texts are the same; made for keys and keywords, where a call to `memcmp` costs more than the comparison.
[[nodiscard]] inline bool equalText(std::string_view a, std::string_view b) {
    const std::size_t size = a.size();
    if (size != b.size()) return false;
    const auto wordsDiffer = [&]<class Word>(Word, std::size_t offset) {
        Word x;
        Word y;
        std::memcpy(&x, a.data() + offset, sizeof x);
        std::memcpy(&y, b.data() + offset, sizeof y);
        return x != y;
    };
    // Two words that overlap cover every size between one and two of them.
    if (size > 2 * sizeof(std::uint64_t)) return std::memcmp(a.data(), b.data(), size) == 0;
    if (size >= sizeof(std::uint64_t))
        return !wordsDiffer(std::uint64_t{}, 0) && !wordsDiffer(std::uint64_t{}, size - sizeof(std::uint64_t));
    if (size >= sizeof(std::uint32_t))
        return !wordsDiffer(std::uint32_t{}, 0) && !wordsDiffer(std::uint32_t{}, size - sizeof(std::uint32_t));
    for (std::size_t i = 0; i < size; ++i)
        if (a[i] != b[i]) return false;
    return true;
}

}  // namespace tavrin
