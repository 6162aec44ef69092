// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/file_contents.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrin {
namespace {

/// What is wrong with an open file that is to be read as a whole; empty when nothing is.
std::string fault(int descriptor, std::size_t maximumBytes, std::size_t& size) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) return std::strerror(errno);
    if (S_ISDIR(status.st_mode)) return std::strerror(EISDIR);
    if (!S_ISREG(status.st_mode)) return "Not a regular file";
    size = static_cast<std::size_t>(status.st_size);
    return size > maximumBytes ? "Larger than " + std::to_string(maximumBytes) + " bytes" : std::string();
}

/// Reads up to `size` bytes; a file that shrinks meanwhile has fewer.
std::string readBytes(int descriptor, std::size_t size, std::string& bytes) {
    bytes.resize(size);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(descriptor, bytes.data() + done, size - done);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::strerror(errno);
        if (count == 0) break;
        done += static_cast<std::size_t>(count);
    }
    bytes.resize(done);
    return {};
}

}  // namespace

FileContents readFile(const std::filesystem::path& path, std::size_t maximumBytes) {
    FileContents contents;
    // Without waiting: opening a pipe would wait for its writer.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    std::size_t size = 0;
    std::string reason = descriptor < 0 ? std::strerror(errno) : fault(descriptor, maximumBytes, size);
    if (reason.empty()) reason = readBytes(descriptor, size, contents.bytes);
    if (descriptor >= 0) ::close(descriptor);
    if (!reason.empty()) contents = {{}, "cannot read '" + path.string() + "': " + reason};
    return contents;
}

}  // namespace tavrin
