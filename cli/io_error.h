// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace tavrin::cli {

/// Something that cannot be read or written; its message names it and says why.
struct IOError : std::runtime_error {
    /// The file or folder it is about; empty where it is about none.
    std::string file;

    explicit IOError(const std::string& message, const std::filesystem::path& file = {})
        : std::runtime_error(message), file(file.string()) {}
    /// "cannot read weather.json: No such file or directory" for an `errno`.
    IOError(const std::string& what, int code, const std::filesystem::path& file = {})
        : IOError(what + ": " + std::strerror(code), file) {}
};

/// A file that is to be new, and is there already.
struct FileExists : IOError {
    explicit FileExists(const std::filesystem::path& file)
        : IOError("'" + file.string() + "' is there already, and is left as it is; give another name", file) {}
};

/// Standard output's reader has gone: nothing is left to do, and no one to tell.
struct ClosedOutput : std::exception {};

}  // namespace tavrin::cli
