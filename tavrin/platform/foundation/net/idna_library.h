// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavrin {

/// The ASCII form of a host's name as UTS 46 makes it for IDNA 2008: lower case, "xn--" before what was not ASCII. None
/// where the name is refused, or libidn2 is not installed: it is opened with the first such name, since every process
/// would begin a tenth later. Thread-safe.
[[nodiscard]] std::optional<std::string> asciiHost(std::string_view host);

}  // namespace tavrin
