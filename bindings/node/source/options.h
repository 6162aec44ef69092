// SPDX-License-Identifier: MIT
#pragma once

#include <napi.h>

#include "tavrin/doors/option_reader.h"

namespace tavrin::addon {

// What an object of a script says. Members that are undefined are not given; a budget is a profile's name, or an object
// of a profile and bounds. Throws `OptionError`, also for an option that the call does not have.

/// Of a widget, and of its picture.
[[nodiscard]] DrawingOptions readOptions(const Napi::Object& options);
/// Of what decoding may cost, and of nothing else.
[[nodiscard]] RenderBudget readBudget(const Napi::Object& options);
/// Of how a picture is written; the format stands by itself, and may be undefined.
[[nodiscard]] PictureOptions readPictureOptions(const Napi::Value& format, const Napi::Object& options);

}  // namespace tavrin::addon
