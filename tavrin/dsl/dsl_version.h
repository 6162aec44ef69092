// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

#include "tavrin/values/text_conversion.h"

namespace tavrin {

/// The versions of the document language.
enum class DSLVersion : unsigned char { v1, v1_1, v1_2 };

template <>
struct Keywords<DSLVersion> {
    static constexpr std::string_view typeName = "document version";
    static constexpr std::array<std::string_view, 3> raw{"1.0", "1.1", "1.2"};
    static constexpr DSLVersion defaultCase = DSLVersion::v1;
};

/// Versions are ordered by their raw values.
[[nodiscard]] constexpr bool operator<(DSLVersion a, DSLVersion b) { return rawValue(a) < rawValue(b); }

/// The case's name, as messages write it: "v1_2".
[[nodiscard]] constexpr std::string_view caseName(DSLVersion version) {
    constexpr std::array<std::string_view, 3> names{"v1", "v1_1", "v1_2"};
    return names[static_cast<std::size_t>(version)];
}

}  // namespace tavrin
