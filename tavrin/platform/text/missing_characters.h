// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/shaped_text.h"

namespace tavrin::text {

/// The characters of a text for which an empty box is drawn since no font has them, each once, in their order.
[[nodiscard]] std::vector<char32_t> missingCharacters(const ShapedText& text, FontFaces& faces);

}  // namespace tavrin::text
