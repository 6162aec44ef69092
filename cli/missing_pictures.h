// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "tavrin/widget/widget.h"

namespace tavrin::cli {

/// The addresses of each picture that a widget shows and that could not be had, in words, in the order of drawing:
/// `'https://pictures.test/sun.png'`, with its second address behind " or " where it has one.
[[nodiscard]] std::vector<std::string> missingPictures(Widget& widget);

/// Throws `TavrinError` of kind "MissingPicture", which names them, where there are any.
void refuseMissingPictures(Widget& widget);

}  // namespace tavrin::cli
