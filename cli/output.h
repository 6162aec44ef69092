// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <list>
#include <string_view>

#include "cli/temporary_file.h"

namespace tavrin::cli {

/// Files that belong together: all of them are replaced or, when anything fails, none. The bytes go to temporary files
/// beside them, which take their names once the last is written. A device or pipe is written straight to.
class FileTransaction {
public:
    FileTransaction();
    FileTransaction(const FileTransaction&) = delete;
    FileTransaction& operator=(const FileTransaction&) = delete;
    ~FileTransaction();

    /// Writes a file that nobody sees before `commit`. Throws `IOError`.
    void write(const std::filesystem::path& target, std::string_view bytes);

    /// The same for a file that must not be there when it takes its name; `commit` throws `FileExists` where it is.
    void create(const std::filesystem::path& target, std::string_view bytes);

    /// Lets all files take their names. Throws `IOError`, and has then brought back the old ones.
    void commit();

private:
    class StagedFile;
    std::list<StagedFile> files_;
};

/// A file that is written piece by piece under a temporary name and takes its own at the end, in the place of what is
/// called so then. It is one of very many that can be made again, and so not synced: what it replaces may be lost with
/// it when the machine itself fails.
class StreamedFile {
public:
    /// Throws `IOError`, as all of these.
    explicit StreamedFile(std::filesystem::path target);
    void write(std::string_view bytes);
    void commit();

private:
    [[noreturn]] void fail() const;

    std::filesystem::path target_;
    TemporaryFile temporary_;
};

/// Writes one file, whole or not at all. Throws `IOError`, and then leaves no file behind.
void writeFile(const std::filesystem::path& path, std::string_view bytes);

/// Makes a folder, and those it stands in, where they are missing. Throws `IOError`.
void makeFolder(const std::filesystem::path& folder);

/// Writes to standard output. Throws `IOError`, or `ClosedOutput` when no one reads it any more.
void writeStandardOutput(std::string_view bytes);

}  // namespace tavrin::cli
