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
#include "cli/project/beside_options.h"
#include "cli/serve/problem.h"

namespace tavrin::cli {
namespace {

/// Nothing is waited for, and no terminal taken over.
constexpr int readingFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

[[noreturn]] void failNoWidget(const std::string& name) {
    throw RequestFault(http_status::notFound,
                       "there is no widget '" + printable(name.substr(0, name.rfind(".json"))) + "'");
}

[[noreturn]] void failUnread(const std::string& name, int error) {
    // What the file itself is to blame for is no widget; else it may go better soon.
    constexpr int lacks[] = {EMFILE, ENFILE, ENOMEM, EINTR, EAGAIN, EIO};
    if (std::ranges::find(lacks, error) == std::end(lacks)) failNoWidget(name);
    throw RequestFault(http_status::unavailable, "'" + printable(name) + "' cannot be read now");
}

bool isName(const std::string& name) {
    constexpr std::size_t longest = 200;
    return !name.empty() && name.size() <= longest && name.front() != '.' &&
           std::ranges::none_of(name, [](char c) { return c == '/' || static_cast<unsigned char>(c) < ' '; });
}

/// Opens a file of a folder, or one in folders of it, where nothing on the way is a link.
FileDescriptor openWithoutLinks(const FileDescriptor& folder, const std::filesystem::path& file) {
    FileDescriptor opened(::openat(folder.number(), ".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (auto part = file.begin(); opened.isOpen() && part != file.end(); ++part) {
        if (*part == ".." || part->is_absolute()) {
            errno = EXDEV;
            return FileDescriptor(-1);
        }
        const bool isLast = std::next(part) == file.end();
        const int flags = isLast ? readingFlags : O_PATH | O_DIRECTORY | O_CLOEXEC;
        opened = FileDescriptor(::openat(opened.number(), part->c_str(), flags | O_NOFOLLOW));
    }
    return opened;
}

/// Opens a file of a folder; a link that leads out of it is not followed.
FileDescriptor openBeneath(const FileDescriptor& folder, const std::string& file) {
    open_how how{};
    how.flags = readingFlags;
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    const long opened = ::syscall(SYS_openat2, folder.number(), file.c_str(), &how, sizeof how);
    if (opened >= 0 || (errno != ENOSYS && errno != EPERM)) return FileDescriptor(static_cast<int>(opened));
    // Where the kernel or a sandbox has no such call, no link is followed at all.
    return openWithoutLinks(folder, file);
}

/// Files that are put in, taken out or replaced by others give a folder another one.
std::string stampOf(const std::filesystem::path& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0) return {};
    return std::to_string(status.st_ino) + "." + std::to_string(status.st_mtim.tv_sec) + "." +
           std::to_string(status.st_mtim.tv_nsec);
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

/// 1. The document by its name, or in a folder of that name.
/// 2. What is paired with it, by names alone, and its settings.
FolderWidget WidgetFolder::find(const std::string& name) {
    if (!isName(name) || isCalledModel(name + ".json")) failNoWidget(name);
    std::error_code ignored;
    std::filesystem::path file = name + ".json";
    if (const auto own = std::filesystem::path(name) / "document.json";
        !std::filesystem::exists(folder_ / file, ignored) && std::filesystem::exists(folder_ / own, ignored))
        file = own;
    FolderWidget widget{.document = read(file)};
    try {
        widget.files = pairedWith(folder_ / file);
    } catch (const IOError&) {  // which names the folder of the server's machine
        throw RequestFault(http_status::unprocessable,
                           "the models of '" + printable(name) + "' cannot be listed, or are too many");
    }
    if (widget.files.pictures) widget.picturesStamp = stampOf(*widget.files.pictures);
    if (!widget.files.settings) return widget;
    const FolderTextPtr settings = read(widget.files.settings->lexically_relative(folder_));
    widget.settings = readSettings({widget.files.settings->filename().string(), settings->text});
    widget.settingsDigest = settings->digest;
    return widget;
}

FolderTextPtr WidgetFolder::model(const FolderWidget& widget, std::string_view family) {
    const auto file = modelFile(widget.files, widget.settings, family);
    if (!file) return nullptr;
    try {
        return read(file->lexically_relative(folder_));
    } catch (const RequestFault& fault) {
        const auto own = widget.settings.models.find(std::string(family));
        if (fault.status != http_status::notFound || own == widget.settings.models.end()) throw;
        throw RequestFault(http_status::unprocessable, widget.files.settings->filename().string() +
                                                           ": there is no model '" + printable(own->second) + "'");
    }
}

FolderTextPtr WidgetFolder::read(const std::filesystem::path& path) {
    const std::string file = path.string();
    // Each time anew: another folder may have taken its name.
    const FileDescriptor folder(::open(folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen()) failUnread(file, errno);
    const FileDescriptor opened = openBeneath(folder, file);
    if (!opened.isOpen()) failUnread(file, errno);
    struct stat before {};
    if (::fstat(opened.number(), &before) != 0) failUnread(file, errno);
    if (!S_ISREG(before.st_mode)) failNoWidget(file);
    const FileStamp stamp(before);
    const bool isSettled = stamp.isSettled();
    if (auto kept = findKept(file, stamp)) return kept;
    if (before.st_size > static_cast<off_t>(maximumBytes))
        throw RequestFault(http_status::unprocessable, "'" + printable(file) + "' is larger than 8 MiB");
    std::string text = readWhole(opened, file, static_cast<std::size_t>(before.st_size));
    std::string digest = sha256(text);
    auto read = std::make_shared<const FolderText>(FolderText{std::move(text), std::move(digest)});
    // One that is written meanwhile has another stamp, and is read again next time.
    if (isSettled) keep(file, {stamp, read});
    return read;
}

FolderTextPtr WidgetFolder::findKept(const std::string& file, const FileStamp& stamp) {
    const std::lock_guard lock(mutex_);
    const Kept* const known = kept_.find(file);
    return known && known->stamp == stamp ? known->text : nullptr;
}

void WidgetFolder::keep(const std::string& file, Kept kept) {
    const std::size_t bytes = kept.text->text.size();
    LRUCache<std::string, Kept>::Dropped dropped;  // destroyed when the lock is gone
    const std::lock_guard lock(mutex_);
    dropped = kept_.insert(file, std::move(kept), bytes);
}

}  // namespace tavrin::cli
