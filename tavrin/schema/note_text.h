// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/foundation/note.h"

namespace tavrin {

/// What a number counts and how large it may sensibly be: "points, 0 or more"; empty where there is nothing to say.
[[nodiscard]] std::string unitAndRange(const Note& note);

/// A number as people write it: without a fraction where it is whole.
[[nodiscard]] std::string numberText(double number);

/// How large a number may sensibly be: "from 0 to 1"; empty where there is nothing to say.
[[nodiscard]] std::string sensibleRange(const Note& note);

/// All of a note but its default value and example, as sentences.
[[nodiscard]] std::string sentences(const Note& note);

}  // namespace tavrin
