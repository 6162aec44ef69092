// SPDX-License-Identifier: MIT
#include "cli/output.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include "cli/file_descriptor.h"
#include "cli/io_error.h"
#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin::cli {
namespace {

using std::filesystem::path;

std::string failureText(const path& target) { return "cannot write '" + target.string() + "'"; }

/// A new file beside a target; removed again unless it took the target's name.
class TemporaryFile {
public:
    explicit TemporaryFile(const path& target) : target_(target), path_(freePath(target)), file_(create(path_)) {
        if (!file_.isOpen()) throw IOError(failureText(target), errno, target);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!renamed_) ::unlink(path_.c_str());
    }

    /// Gives the file the permissions of the one it replaces.
    void keepPermissions(mode_t mode) const {
        if (::fchmod(file_.number(), mode & 07777) != 0) throw IOError(failureText(target_), errno, target_);
    }

    void write(std::string_view bytes) {
        if (!writeAll(file_.number(), bytes) || !file_.close()) throw IOError(failureText(target_), errno, target_);
    }

    void takeName() {
        if (std::rename(path_.c_str(), target_.c_str()) != 0) throw IOError(failureText(target_), errno, target_);
        renamed_ = true;
    }

private:
    static path freePath(const path& target) {
        const path folder = target.parent_path();
        for (int number = 0;; ++number) {
            path candidate = folder / (".tavrin-" + std::to_string(::getpid()) + "-" + std::to_string(number) + ".tmp");
            struct stat status {};
            if (::lstat(candidate.c_str(), &status) != 0) return candidate;
        }
    }
    static FileDescriptor create(const path& name) {
        return FileDescriptor(::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    }

    path target_;
    path path_;
    FileDescriptor file_;
    bool renamed_ = false;
};

void writeStraight(const path& target, std::string_view bytes) {
    FileDescriptor file(::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen() || !writeAll(file.number(), bytes) || !file.close())
        throw IOError(failureText(target), errno, target);
}

/// The file that a chain of symbolic links leads to.
path withoutLinks(const path& target) {
    std::error_code error;
    const path real = std::filesystem::canonical(target, error);
    return error ? target : real;
}

}  // namespace

void writeFile(const path& target, std::string_view bytes) {
    const path real = withoutLinks(target);
    struct stat status {};
    const bool exists = ::stat(real.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) throw IOError(failureText(target), EISDIR, target);
    if (exists && ::access(real.c_str(), W_OK) != 0) throw IOError(failureText(target), errno, target);
    if (exists && !S_ISREG(status.st_mode)) return writeStraight(real, bytes);

    const BlockedSignals blocked;
    TemporaryFile file(real);
    if (exists) file.keepPermissions(status.st_mode);
    file.write(bytes);
    file.takeName();
}

void makeFolder(const path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!error && !std::filesystem::is_directory(folder)) error = std::make_error_code(std::errc::not_a_directory);
    if (error) throw IOError("cannot make the folder '" + folder.string() + "': " + error.message(), folder);
}

void writeStandardOutput(std::string_view bytes) {
    if (writeAll(STDOUT_FILENO, bytes)) return;
    if (errno == EPIPE) throw ClosedOutput();
    throw IOError("cannot write standard output", errno);
}

}  // namespace tavrin::cli
