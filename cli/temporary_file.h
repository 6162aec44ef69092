// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string_view>
#include <sys/types.h>

#include "cli/file_descriptor.h"

namespace tavrin::cli {

/// A new file in a folder, under a name that no other has. It is removed at the end of its scope unless it has been
/// renamed, and by signals too once `removeTemporaryFilesOnSignals` was called.
class TemporaryFile {
public:
    /// Makes an empty file. Where that fails it is not open, and `errno` says why.
    TemporaryFile(const std::filesystem::path& folder, mode_t mode);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    [[nodiscard]] FileDescriptor& file() { return file_; }
    /// Lets the file take the place of another, or a new one. Returns false, with `errno` set, when that fails.
    [[nodiscard]] bool rename(const std::filesystem::path& target);
    /// The same for a name that no file has: where one has, that stays as it is, and `errno` is EEXIST.
    [[nodiscard]] bool renameToFree(const std::filesystem::path& target);

private:
    void forget();

    std::filesystem::path path_;  // empty once it is renamed
    FileDescriptor file_;
};

/// A name in a folder that no file has.
[[nodiscard]] std::filesystem::path freeName(const std::filesystem::path& folder);

/// From now on a signal that ends the process removes all temporary files first. Only one thread may make them, and
/// only it may let signals through.
void removeTemporaryFilesOnSignals();

}  // namespace tavrin::cli
