// SPDX-License-Identifier: MIT
#include "cli/matrix/sha256.h"

#include <array>
#include <cstdint>
#include <sys/types.h>

#include <sha256.h>

namespace tavrin::cli {

std::string sha256(std::string_view bytes) {
    std::array<char, SHA256_DIGEST_STRING_LENGTH> digits{};
    SHA256_CTX state;
    SHA256_Init(&state);
    SHA256_Update(&state, reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    SHA256_End(&state, digits.data());
    return digits.data();
}

}  // namespace tavrin::cli
