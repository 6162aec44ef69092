// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin {

/// The name of a picture's file in a cache directory: the djb2 hash of the address's UTF-8 bytes, its low 32 bits in
/// lower-case hexadecimal without leading zeros. "a" is 2b606.
[[nodiscard]] std::string WebImageHasher(std::string_view url);  // NOLINT(readability-identifier-naming)

}  // namespace tavrin
