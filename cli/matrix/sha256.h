// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace tavrin::cli {

/// The SHA-256 digest of some bytes, as `sha256sum` prints it: 64 hexadecimal digits.
[[nodiscard]] std::string sha256(std::string_view bytes);

}  // namespace tavrin::cli
