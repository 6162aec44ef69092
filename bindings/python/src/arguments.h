// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>

#include <nanobind/nanobind.h>

#include "tavrin/doors/option_reader.h"

namespace tavrin::python {

/// A str or bytes, which must live as long as the view. `name` is what messages call it; throws Python's errors.
[[nodiscard]] std::string_view textOf(nanobind::handle value, const char* name);
/// The same; None is no text.
[[nodiscard]] std::optional<std::string_view> optionalText(nanobind::handle value, const char* name);

/// A reader that has read options, given as bool, int, float, str, or a tuple of two numbers; `usual` is what holds
/// without them. Throws `OptionError`.
[[nodiscard]] OptionReader optionReader(const nanobind::dict& options, DrawingOptions usual = {});
/// What options say.
[[nodiscard]] DrawingOptions drawingOptions(const nanobind::dict& options);
/// The same of those that say how a picture is written.
[[nodiscard]] PictureOptions pictureOptions(const nanobind::dict& options);

}  // namespace tavrin::python
