// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/values/text_conversion.h"

namespace tavrin {

/// The versions of the document language.
enum class DSLVersion : unsigned char { v1, v1_1, v1_2 };

template <>
struct Keywords<DSLVersion> {
    static constexpr std::string_view typeName = "document version";
    static constexpr auto raw = EnumeratorTable<DSLVersion, std::string_view>{
        {{DSLVersion::v1, "1.0"},
         {DSLVersion::v1_1, "1.1"},
         {DSLVersion::v1_2, "1.2"}}}.values();
    static constexpr DSLVersion defaultCase = DSLVersion::v1;
};

/// Versions are ordered by their raw values.
[[nodiscard]] constexpr bool operator<(DSLVersion a, DSLVersion b) { return rawValue(a) < rawValue(b); }

}  // namespace tavrin
