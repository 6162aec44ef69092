// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>

#include "cli/file_stamp.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"

namespace tavrin::cli {

/// What is made of files, by their names, each once while its file stays as it is: of the same size, last changed at
/// the same moment, and no other file of that name. Those that were asked for longest ago go first. Any number of
/// threads may ask.
template <class Value>
class KeptFiles {
public:
    /// `maximumBytes` are those of the files' texts.
    KeptFiles(std::size_t maximumBytes, std::size_t maximumCount) : kept_(maximumBytes, maximumCount) {}

    /// What `read()` makes of a file: a pointer to it, and how many bytes it was made of. Throws what that throws.
    template <class Read>
    [[nodiscard]] std::shared_ptr<const Value> find(const std::string& path, const Read& read) {
        // Before the file is read: one that is changed meanwhile is read again next time.
        const std::optional<FileStamp> stamp = stampOf(path);
        if (stamp) {
            const std::lock_guard lock(mutex_);
            const Kept* const kept = kept_.find(path);
            if (kept && kept->stamp == *stamp) return kept->value;
        }
        // Two threads may both read it; neither waits for the other.
        std::pair<std::shared_ptr<const Value>, std::size_t> made = read();
        if (stamp) {
            typename Cache::Dropped dropped;  // destroyed when the lock is gone
            const std::lock_guard lock(mutex_);
            dropped = kept_.insert(path, {*stamp, made.first}, made.second);
        }
        return std::move(made.first);
    }

private:
    struct Kept {
        FileStamp stamp;
        std::shared_ptr<const Value> value;
    };
    using Cache = LRUCache<std::string, Kept>;

    static std::optional<FileStamp> stampOf(const std::string& path) {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;  // a pipe is read anew
        const FileStamp stamp(status);
        return stamp.isSettled() ? std::optional(stamp) : std::nullopt;
    }

    std::mutex mutex_;
    Cache kept_;
};

}  // namespace tavrin::cli
