// SPDX-License-Identifier: MIT
#include "cli/serve/widget_folder.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/syscall.h>
#include <system_error>
#include <unistd.h>
#include <utility>

#include <linux/openat2.h>

#include "cli/excerpt.h"
#include "cli/file_descriptor.h"
#include "cli/http/http_status.h"
#include "cli/io_error.h"
#include "cli/matrix/sha256.h"
#include "cli/serve/problem.h"

namespace tavrin::cli {
namespace {

/// Nothing is waited for, and no terminal taken over.
constexpr int readingFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

[[noreturn]] void failNoWidget(const std::string& name) {
    throw RequestFault(http_status::notFound, "there is no widget '" + printable(name) + "'");
}

[[noreturn]] void failUnread(const std::string& name, int error) {
    // What the file itself is to blame for is no widget; else it may go better soon.
    constexpr int lacks[] = {EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, EIO};
    if (std::ranges::find(lacks, error) == std::end(lacks)) failNoWidget(name);
    throw RequestFault(http_status::unavailable, "the widget '" + printable(name) + "' cannot be read now");
}

bool isName(const std::string& name) {
    constexpr std::size_t longest = 200;
    return !name.empty() && name.size() <= longest && name.front() != '.' &&
           std::ranges::none_of(name, [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; });
}

/// Opens a file of a folder; a link that leads out of it is not followed.
FileDescriptor openBeneath(const FileDescriptor& folder, const std::string& file) {
    open_how how{};
    how.flags = readingFlags;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    const long opened = ::syscall(SYS_openat2, folder.number(), file.c_str(), &how, sizeof how);
    if (opened >= 0 || (errno != ENOSYS && errno != EPERM)) return FileDescriptor(static_cast<int>(opened));
    // Where the kernel or a sandbox has no such call, no link is followed at all.
    return FileDescriptor(::openat(folder.number(), file.c_str(), readingFlags | O_NOFOLLOW));
}

bool isSame(const struct stat& a, const struct stat& b) {
    const auto areSame = [](const timespec& x, const timespec& y) {
        return x.tv_sec == y.tv_sec && x.tv_nsec == y.tv_nsec;
    };
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size && areSame(a.st_mtim, b.st_mtim) &&
           areSame(a.st_ctim, b.st_ctim);
}

std::string readWhole(const FileDescriptor& file, const std::string& name, std::size_t size) {
    std::string text(size + 1, '\0');
    std::size_t end = 0;
    while (end < text.size()) {
        const ssize_t count = ::read(file.number(), text.data() + end, text.size() - end);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) failUnread(name, errno);
        if (count == 0) break;
        end += static_cast<std::size_t>(count);
    }
    text.resize(std::min(end, size));
    return text;
}

}  // namespace

WidgetFolder::WidgetFolder(std::filesystem::path folder) : folder_(std::move(folder)) {
    const FileDescriptor opened(::open(folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!opened.isOpen()) throw IOError("cannot open the folder '" + folder_.string() + "'", errno, folder_);
}

std::shared_ptr<const FolderDocument> WidgetFolder::find(const std::string& name) {
    if (!isName(name)) failNoWidget(name);
    // Each time anew: another folder may have taken its name.
    const FileDescriptor folder(::open(folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) failUnread(name, errno);
    const FileDescriptor file = openBeneath(folder, name + ".json");
    if (!file.isOpen()) failUnread(name, errno);
    struct stat before {};
    if (::fstat(file.number(), &before) != 0) failUnread(name, errno);
    if (!S_ISREG(before.st_mode)) failNoWidget(name);
    if (auto kept = findKept(name, before)) return kept;
    if (before.st_size > static_cast<off_t>(maximumBytes))
        throw RequestFault(http_status::unprocessable, "the document '" + printable(name) + "' is larger than 8 MiB");
    std::string text = readWhole(file, name, static_cast<std::size_t>(before.st_size));
    std::string digest = sha256(text);
    auto document = std::make_shared<const FolderDocument>(FolderDocument{std::move(text), std::move(digest)});
    struct stat after {};
    // One that is written meanwhile is read again next time.
    if (::fstat(file.number(), &after) == 0 && isSame(before, after)) keep({name, after, document});
    return document;
}

std::shared_ptr<const FolderDocument> WidgetFolder::findKept(const std::string& name, const struct stat& status) {
    const std::lock_guard lock(mutex_);
    const auto found = std::ranges::find(kept_, name, &Kept::name);
    if (found == kept_.end() || !isSame(found->status, status)) return nullptr;
    kept_.splice(kept_.begin(), kept_, found);
    return found->document;
}

void WidgetFolder::keep(Kept document) {
    constexpr std::size_t mostBytes = std::size_t{64} << 20;
    const std::lock_guard lock(mutex_);
    std::erase_if(kept_, [&](const Kept& kept) { return kept.name == document.name; });
    kept_.push_front(std::move(document));
    std::size_t count = 0;
    std::size_t bytes = 0;
    const auto isTooMuch = [&](const Kept& kept) {
        bytes += kept.document->text.size();
        return ++count > maximumCount || bytes > mostBytes;
    };
    kept_.erase(std::ranges::find_if(kept_, isTooMuch), kept_.end());
}

}  // namespace tavrin::cli
