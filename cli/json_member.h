// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tavrin/json/json_text.h"

namespace tavrin::cli {

/// A member of an object that is a JSON text: of a string what it holds, of another value how it is written in the
/// object's own text. None where it is missing or null.
[[nodiscard]] std::optional<std::string> textMember(std::string_view object, std::string_view name,
                                                    const JSONElement& value);

}  // namespace tavrin::cli
