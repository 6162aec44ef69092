// SPDX-License-Identifier: MIT
#pragma once

namespace tavrin {

/// The versions of the document language.
enum class DSLVersion : unsigned char { v1, v1_1, v1_2 };

}  // namespace tavrin
