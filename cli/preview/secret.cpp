// SPDX-License-Identifier: MIT
#include "cli/preview/secret.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <sys/random.h>
#include <sys/types.h>

#include "cli/io_error.h"

namespace tavrin::cli {

std::string newSecret() {
    constexpr std::string_view digits = "0123456789abcdef";
    std::array<unsigned char, 16> bytes{};
    while (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        if (errno != EINTR) throw IOError("cannot get random bytes", errno);
    std::string secret;
    for (const unsigned char byte : bytes) {
        secret += digits[byte >> 4U];
        secret += digits[byte & 15U];
    }
    return secret;
}

bool isSecret(std::string_view text, std::string_view secret) {
    if (text.size() != secret.size()) return false;
    int difference = 0;
    for (std::size_t i = 0; i < secret.size(); ++i) difference |= text[i] ^ secret[i];
    return difference == 0;
}

}  // namespace tavrin::cli
