// SPDX-License-Identifier: MIT
#pragma once

#include <stdexcept>
#include <string>

namespace tavrin::cli {

/// A file that the preview does not read or write; `status` is HTTP's.
struct FolderError : std::runtime_error {
    FolderError(unsigned httpStatus, const std::string& message) : std::runtime_error(message), status(httpStatus) {}
    unsigned status;
};

}  // namespace tavrin::cli
