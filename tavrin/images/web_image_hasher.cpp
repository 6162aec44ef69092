// SPDX-License-Identifier: MIT
#include "tavrin/images/web_image_hasher.h"

#include <cstdint>

#include <fmt/format.h>

namespace tavrin {

std::string WebImageHasher(std::string_view url) {
    std::uint32_t hash = 5381;  // the low 32 bits never depend on the others
    for (const char byte : url) hash = hash * 33 + static_cast<unsigned char>(byte);
    return fmt::format("{:x}", hash);
}

}  // namespace tavrin
