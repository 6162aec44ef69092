#pragma once

#include <string>
#include <string_view>

namespace tavrin::cli {

/// What a path may hold in a URI as it is.
inline constexpr std::string_view plainInPaths = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";

/// `text` with "%" and two hexadecimal digits for each byte that `isKept(byte)` does not hold for.
template <class IsKept>
[[nodiscard]] std::string percentEncoded(std::string_view text, const IsKept& isKept) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (isKept(c))
            encoded += c;
        else
            encoded.append("%").append({digits[byte >> 4], digits[byte & 15]});
    }
    return encoded;
}

}  // namespace tavrin::cli
