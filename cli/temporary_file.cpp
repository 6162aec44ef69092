// SPDX-License-Identifier: MIT
#include "cli/temporary_file.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "tavrin/platform/foundation/threads/blocked_signals.h"

namespace tavrin::cli {
namespace {

/// The names of all temporary files, for signals. Changed only while these are blocked.
std::set<std::string>& temporaryNames() {
    static std::set<std::string>& names = *new std::set<std::string>;  // a signal may come while the process ends
    return names;
}

std::filesystem::path nextName(const std::filesystem::path& folder) {
    static std::atomic<unsigned> next = 0;
    return folder / (".tavrin-" + std::to_string(::getpid()) + "-" + std::to_string(next++) + ".tmp");
}

/// Gives a file a name that no other has. Where the file system cannot do that in one step, a second name comes first.
bool moveToFree(const char* from, const char* to) {
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    if (::link(from, to) != 0) return false;
    ::unlink(from);
    return true;
}

void removeAndEnd(int signal) {
    for (const std::string& name : temporaryNames()) ::unlink(name.c_str());
    std::raise(signal);     // now with its usual effect
    ::_exit(128 + signal);  // which the first process of a container does not have
}

}  // namespace

TemporaryFile::TemporaryFile(const std::filesystem::path& folder, mode_t mode) : file_(-1) {
    const BlockedSignals blocked;
    int descriptor = -1;
    do {
        path_ = nextName(folder);
        descriptor = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EEXIST);
    file_ = FileDescriptor(descriptor);
    if (file_.isOpen()) temporaryNames().insert(path_);
}

TemporaryFile::~TemporaryFile() {
    if (path_.empty()) return;
    const BlockedSignals blocked;
    if (temporaryNames().erase(path_) > 0) ::unlink(path_.c_str());
}

bool TemporaryFile::rename(const std::filesystem::path& target) {
    const BlockedSignals blocked;
    if (std::rename(path_.c_str(), target.c_str()) != 0) return false;
    forget();
    return true;
}

bool TemporaryFile::renameToFree(const std::filesystem::path& target) {
    const BlockedSignals blocked;
    if (!moveToFree(path_.c_str(), target.c_str())) return false;
    forget();
    return true;
}

void TemporaryFile::forget() {
    temporaryNames().erase(path_);
    path_.clear();
}

std::filesystem::path freeName(const std::filesystem::path& folder) {
    for (;;) {
        std::filesystem::path name = nextName(folder);
        struct stat status {};
        if (::lstat(name.c_str(), &status) != 0) return name;
    }
}

void removeTemporaryFilesOnSignals() {
    temporaryNames();
    for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXCPU}) {
        struct sigaction action {};
        if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler != SIG_DFL) continue;  // ignored: nohup
        action.sa_handler = removeAndEnd;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace tavrin::cli
