// SPDX-License-Identifier: MIT
#pragma once

#include <ctime>
#include <sys/stat.h>

namespace tavrin::cli {

/// What tells that a file has not been changed: it is the same one, of the same size, last changed at the same moment.
class FileStamp {
public:
    FileStamp() = default;
    explicit FileStamp(const struct stat& status)
        : device_(status.st_dev),
          file_(status.st_ino),
          size_(status.st_size),
          written_(status.st_mtim),
          changed_(status.st_ctim) {}

    /// Whether any change from now on shows. Files are stamped with a clock of a few milliseconds' ticks: what is
    /// changed twice within one looks as it did after the first time.
    [[nodiscard]] bool isSettled() const {
        timespec now{};
        if (::clock_gettime(CLOCK_REALTIME_COARSE, &now) != 0) return false;
        return changed_.tv_sec != now.tv_sec ? changed_.tv_sec < now.tv_sec : changed_.tv_nsec < now.tv_nsec;
    }

    friend bool operator==(const FileStamp& a, const FileStamp& b) {
        const auto areSame = [](const timespec& x, const timespec& y) {
            return x.tv_sec == y.tv_sec && x.tv_nsec == y.tv_nsec;
        };
        return a.device_ == b.device_ && a.file_ == b.file_ && a.size_ == b.size_ && areSame(a.written_, b.written_) &&
               areSame(a.changed_, b.changed_);
    }

private:
    dev_t device_ = 0;
    ino_t file_ = 0;
    off_t size_ = 0;
    timespec written_ = {};
    timespec changed_ = {};
};

}  // namespace tavrin::cli
