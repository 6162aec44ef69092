// SPDX-License-Identifier: MIT
#pragma once

#include <cerrno>
#include <cstddef>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace tavrin::cli {

/// An open file, closed at the end of its scope.
class FileDescriptor {
public:
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~FileDescriptor() {
        if (number_ >= 0) ::close(number_);
    }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }
    /// Closes the file now. Returns false, with `errno` set, when what was written has not arrived.
    [[nodiscard]] bool close() { return ::close(std::exchange(number_, -1)) == 0; }

private:
    int number_;
};

/// Writes all bytes, over interruptions. Returns false, with `errno` set, when that fails.
[[nodiscard]] inline bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

}  // namespace tavrin::cli
