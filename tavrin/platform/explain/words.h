// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tavrin/platform/layout/proposal.h"

// Numbers and sizes as explanations write them: points, rounded to hundredths.

namespace tavrin::explain {

/// "20.33", "8", "infinite".
[[nodiscard]] std::string inWords(double length);
/// "88 × 20.33".
[[nodiscard]] std::string inWords(Size size);
/// "88 × ideal": where nothing is proposed, the view's ideal is asked for.
[[nodiscard]] std::string inWords(const layout::Proposal& proposal);
/// "16, 20.33".
[[nodiscard]] std::string inWords(Point point);
/// "1st", "2nd", "11th".
[[nodiscard]] std::string ordinal(std::size_t number);
/// "1 child", "2 children".
[[nodiscard]] std::string counted(std::size_t count, std::string_view one, std::string_view many);
/// A text in quotation marks, on one line and shortened to so many characters.
[[nodiscard]] std::string excerpt(std::string_view text, std::size_t characters);
/// "width" or "height".
[[nodiscard]] std::string_view lengthAlong(layout::Axis axis);
/// Adds a part to a list that `separator` divides; nothing where the part is empty.
void append(std::string& list, std::string_view separator, std::string_view part);

}  // namespace tavrin::explain
