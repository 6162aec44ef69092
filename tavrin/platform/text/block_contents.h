// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/platform/text/text_engine.h"

namespace tavrin::text {

/// What was shaped for a block, for those who judge texts.
struct BlockContents {
    /// All of the text, without line breaks, also what did not fit. Lives as long as the block.
    std::string_view text;
    /// Of its font, in points.
    double size = 0;
    /// Whether something of it takes the text's colour; emoji have colours of their own.
    bool takesColor = false;
};

[[nodiscard]] BlockContents contentsOf(const TextBlock& block);

}  // namespace tavrin::text
