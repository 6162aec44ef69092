// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/text/shaped_text.h"

namespace tavrin::text {

/// Breaks a shaped text for a room, in time linear in what is shown of it.
BrokenText breakLines(const ShapedText& text, const TextRoom& room);

}  // namespace tavrin::text
