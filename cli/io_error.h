#pragma once

#include <cstring>
#include <stdexcept>
#include <string>

namespace tavrin::cli {

/// Something that cannot be read or written; its message names it and says why.
struct IOError : std::runtime_error {
    using std::runtime_error::runtime_error;
    /// "cannot read weather.json: No such file or directory" for an `errno`.
    IOError(const std::string& what, int code) : IOError(what + ": " + std::strerror(code)) {}
};

/// Standard output's reader has gone: nothing is left to do, and no one to tell.
struct ClosedOutput : std::exception {};

}  // namespace tavrin::cli
