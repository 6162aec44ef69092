// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>

namespace tavrin::cli {

/// A command line that is wrong; its message says what to write instead.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace tavrin::cli
