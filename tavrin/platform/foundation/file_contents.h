// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace tavrin {

/// A file's bytes, or why they cannot be read.
struct FileContents {
    std::string bytes = {};
    /// Empty when the file was read: "cannot read '/tmp/a.png': No such file or directory".
    std::string error = {};
};

/// Reads a whole regular file of at most `maximumBytes`. Anything else (a folder, a pipe, a device) is an error, and
/// never waited for.
[[nodiscard]] FileContents readFile(const std::filesystem::path& path, std::size_t maximumBytes);

}  // namespace tavrin
