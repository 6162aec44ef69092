// SPDX-License-Identifier: MIT
#include "cli/output.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <iterator>
#include <set>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include "cli/file_descriptor.h"
#include "cli/io_error.h"
#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin::cli {
namespace {

using std::filesystem::path;

std::string failureText(const path& target) { return "cannot write '" + target.string() + "'"; }

void writeStraight(const path& target, std::string_view bytes) {
    FileDescriptor file(::open(target.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
    if (!file.isOpen() || !writeAll(file.number(), bytes) || !file.close())
        throw IOError(failureText(target), errno, target);
}

/// The file that a chain of symbolic links leads to. Most files are none, and are not looked up step by step.
path withoutLinks(const path& target) {
    struct stat status {};
    if (::lstat(target.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return target;
    std::error_code error;
    const path real = std::filesystem::canonical(target, error);
    return error ? target : real;
}

/// Whether a second name for a file failed because the file system, or the file itself, can have none.
bool allowsNoHardLinks(int error) {
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK || error == EXDEV;
}

/// Brings to the disk which names a folder holds. Where that cannot be done its files are no less whole.
void syncFolder(const path& folder) {
    const FileDescriptor file(::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.isOpen()) static_cast<void>(::fsync(file.number()));
}

}  // namespace

/// The new version of a file, and what is needed to bring the old one back.
class FileTransaction::StagedFile {
public:
    /// Whether the file's name may be taken from another.
    enum class Name : bool { any, free };

    /// `old` is what is known of the file that is replaced, null where there is none.
    StagedFile(const path& target, path real, Name name, const struct stat* old, std::string_view bytes)
        : target_(target),
          real_(std::move(real)),
          name_(name),
          replaces_(old != nullptr),
          temporary_(folder(), old ? S_IRUSR | S_IWUSR : 0666) {
        FileDescriptor& file = temporary_.file();
        if (!file.isOpen()) fail();
        if (old && ::fchmod(file.number(), old->st_mode & 07777) != 0) fail();
        if (!writeAll(file.number(), bytes)) fail();
        if (isSynced() && ::fdatasync(file.number()) != 0 && errno != EINVAL) fail();
        if (!file.close()) fail();
    }
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;
    ~StagedFile() {
        if (!old_.empty()) ::unlink(old_.c_str());
    }

    [[nodiscard]] path folder() const { return real_.parent_path(); }
    /// A crash after the renaming must find the new bytes where the old ones are gone, and where somebody has just
    /// written them. Other new files can be made again.
    [[nodiscard]] bool isSynced() const { return replaces_ || name_ == Name::free; }

    /// Gives the old file, if there is one, a second name; where there are no hard links, another one.
    void keepOld() {
        if (name_ == Name::free) return;
        old_ = freeName(folder());
        if (::link(real_.c_str(), old_.c_str()) == 0) return;
        if (allowsNoHardLinks(errno) && std::rename(real_.c_str(), old_.c_str()) == 0) return;
        old_.clear();
        if (errno != ENOENT) fail();
    }

    void takeName() {
        const bool isFree = name_ == Name::free;
        if (!(isFree ? temporary_.renameToFree(real_) : temporary_.rename(real_))) fail();
        hasName_ = true;
    }

    /// Undoes both.
    void bringBack() {
        if (!old_.empty()) {
            if (std::rename(old_.c_str(), real_.c_str()) != 0) old_.clear();  // not to be removed
        } else if (hasName_) {
            ::unlink(real_.c_str());
        }
    }

private:
    [[noreturn]] void fail() const {
        if (name_ == Name::free && errno == EEXIST) throw FileExists(target_);
        throw IOError(failureText(target_), errno, target_);
    }

    path target_;  // as it was given
    path real_;
    Name name_;
    bool replaces_;
    bool hasName_ = false;
    TemporaryFile temporary_;
    path old_;
};

FileTransaction::FileTransaction() = default;
FileTransaction::~FileTransaction() = default;

void FileTransaction::write(const path& target, std::string_view bytes) {
    path real = withoutLinks(target);
    struct stat status {};
    const bool exists = ::stat(real.c_str(), &status) == 0;
    if (exists && S_ISDIR(status.st_mode)) throw IOError(failureText(target), EISDIR, target);
    if (exists && ::access(real.c_str(), W_OK) != 0) throw IOError(failureText(target), errno, target);
    if (exists && !S_ISREG(status.st_mode)) return writeStraight(real, bytes);
    files_.emplace_back(target, std::move(real), StagedFile::Name::any, exists ? &status : nullptr, bytes);
}

void FileTransaction::create(const path& target, std::string_view bytes) {
    files_.emplace_back(target, target, StagedFile::Name::free, nullptr, bytes);
}

void FileTransaction::commit() {
    std::set<path> changed;
    for (const StagedFile& file : files_)
        if (file.isSynced()) changed.insert(file.folder());
    {
        const BlockedSignals blocked;
        auto file = files_.begin();
        try {
            for (; file != files_.end(); ++file) {
                if (std::next(file) != files_.end()) file->keepOld();  // nothing can fail after the last
                file->takeName();
            }
        } catch (...) {
            for (++file; file != files_.begin();) (--file)->bringBack();
            throw;
        }
        files_.clear();
    }
    for (const path& folder : changed) syncFolder(folder);
}

StreamedFile::StreamedFile(path target) : target_(std::move(target)), temporary_(target_.parent_path(), 0666) {
    if (!temporary_.file().isOpen()) fail();
}

void StreamedFile::write(std::string_view bytes) {
    if (!writeAll(temporary_.file().number(), bytes)) fail();
}

void StreamedFile::commit() {
    if (!temporary_.file().close() || !temporary_.rename(target_)) fail();
}

void StreamedFile::fail() const { throw IOError(failureText(target_), errno, target_); }

void writeFile(const path& target, std::string_view bytes) {
    FileTransaction one;
    one.write(target, bytes);
    one.commit();
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
