// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string_view>

namespace tavrin::cli {

/// Writes a file whole or not at all: the bytes go to a new file beside it, which then takes its name. A device or pipe
/// is written straight to. Throws `IOError`, and then leaves no file behind.
///
/// Only the main thread may call it: signals wait until the file is whole.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

/// Makes a folder, and those it stands in, where they are missing. Throws `IOError`.
void makeFolder(const std::filesystem::path& folder);

/// Writes to standard output. Throws `IOError`, or `ClosedOutput` when no one reads it any more.
void writeStandardOutput(std::string_view bytes);

}  // namespace tavrin::cli
