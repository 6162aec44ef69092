// SPDX-License-Identifier: MIT
#pragma once

#include <exception>
#include <optional>
#include <string>

#include <napi.h>

#include "tavrin/doors/option_error.h"

namespace tavrin::addon {

/// Why a call failed, as data that any thread can make.
struct Failure {
    std::optional<OptionError> option;
    /// Where no option is at fault: the error's members as JSON.
    std::string json;
};

[[nodiscard]] Failure failureOf(const std::exception_ptr& error);

/// What a script is thrown: a TypeError or RangeError that names its `option`, or the JSON text, of which the module
/// around the addon makes its own error.
[[nodiscard]] Napi::Value toValue(Napi::Env env, const Failure& failure);

}  // namespace tavrin::addon
