// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <string>
#include <unordered_map>

#include "cli/serve/served_picture.h"

namespace tavrin::cli {

/// Finished pictures by all that makes their bytes. Bounded by their bytes; those that were asked for longest ago go
/// first. Thread-safe.
class PictureCache {
public:
    /// 0 bytes: nothing is kept.
    explicit PictureCache(std::size_t maximumBytes) : maximumBytes_(maximumBytes) {}

    /// Null where there is none, or none that still holds.
    [[nodiscard]] ServedPicturePtr find(const std::string& key, Date now);
    /// Keeps one that holds now.
    void keep(const std::string& key, ServedPicturePtr picture, Date now);
    [[nodiscard]] std::size_t bytes() const;

private:
    struct Kept {
        std::string key;
        ServedPicturePtr picture;
    };
    using List = std::list<Kept>;

    [[nodiscard]] static std::size_t cost(const Kept& kept);
    void drop(List::iterator kept);

    const std::size_t maximumBytes_;
    mutable std::mutex mutex_;
    std::size_t bytes_ = 0;
    List kept_;  // the latest first
    std::unordered_map<std::string_view, List::iterator> byKey_;
};

}  // namespace tavrin::cli
