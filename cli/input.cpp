// SPDX-License-Identifier: MIT
#include "cli/input.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "cli/file_descriptor.h"
#include "cli/io_error.h"
#include "tavrin/platform/foundation/budget/metering.h"

namespace tavrin::cli {
namespace {

constexpr std::size_t maximumInputBytes = std::size_t{256} << 20;
constexpr std::size_t firstBytes = std::size_t{64} << 10;

std::string failureText(const std::string& path) {
    return "cannot read " + (path == "-" ? std::string("standard input") : "'" + path + "'");
}

[[noreturn]] void failTooLarge(const std::string& path) {
    throw IOError(failureText(path) + ": it is larger than 256 MiB", displayName(path));
}

/// How much room to begin with: a file's size, and one byte more to see its end.
std::size_t expectedBytes(int descriptor, const std::string& path) {
    struct stat status {};
    if (::fstat(descriptor, &status) != 0) throw IOError(failureText(path), errno, displayName(path));
    if (S_ISDIR(status.st_mode)) throw IOError(failureText(path), EISDIR, displayName(path));
    if (!S_ISREG(status.st_mode)) return firstBytes;
    const auto size = static_cast<std::size_t>(status.st_size);
    if (size > maximumInputBytes) failTooLarge(path);
    return size + 1;
}

std::string readAll(int descriptor, const std::string& path) {
    const std::size_t expected = expectedBytes(descriptor, path);
    HeldBytes held(expected);
    std::string text(expected, '\0');
    std::size_t size = 0;
    for (;;) {
        if (size == text.size()) {
            const std::size_t next = std::min(2 * size, maximumInputBytes + 1);
            held.grow(next - size);
            text.resize(next);
        }
        const ssize_t count = ::read(descriptor, text.data() + size, text.size() - size);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw IOError(failureText(path), errno, displayName(path));
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
        if (size > maximumInputBytes) failTooLarge(path);
    }
    text.resize(size);
    return text;
}

FileDescriptor openForReading(const std::string& path, int flags) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | flags));
    if (!file.isOpen()) throw IOError(failureText(path), errno, displayName(path));
    return file;
}

}  // namespace

std::string displayName(const std::string& path) { return path == "-" ? "<stdin>" : path; }

std::string readInput(const std::string& path, const RenderBudget& budget) {
    Cost cost;
    const Metering metering(budget, cost);
    if (path == "-") return readAll(STDIN_FILENO, path);
    const FileDescriptor file = openForReading(path, 0);
    return readAll(file.number(), path);
}

std::string readFound(const std::string& path) {
    const FileDescriptor file = openForReading(path, O_NONBLOCK);
    struct stat status {};
    if (::fstat(file.number(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode))
        throw IOError(failureText(path) + ": Not a regular file", path);
    return readAll(file.number(), path);
}

}  // namespace tavrin::cli
