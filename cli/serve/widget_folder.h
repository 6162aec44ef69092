// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <sys/stat.h>

namespace tavrin::cli {

/// A document's text. Immutable.
struct FolderDocument {
    std::string text;
    std::string digest;  ///< which tells it from others
};

/// The documents of a folder, by their names: NAME is NAME.json. A file is read when it is asked for, and again once it
/// is another one, has another size or was changed since. Thread-safe.
///
/// A name leads nowhere else: it has no slash and does not begin with a dot, and a symbolic link is followed only where
/// it stays in the folder. What is no regular file is refused, and never waited for.
class WidgetFolder {
public:
    static constexpr std::size_t maximumBytes = std::size_t{8} << 20;  ///< of a document
    static constexpr std::size_t maximumCount = 256;                   ///< of documents that are kept

    /// Throws `IOError` for what is no folder.
    explicit WidgetFolder(std::filesystem::path folder);

    /// Throws `RequestFault`: 404 where there is no such document, 503 where it cannot be read now.
    [[nodiscard]] std::shared_ptr<const FolderDocument> find(const std::string& name);

private:
    struct Kept {
        std::string name;
        struct stat status = {};
        std::shared_ptr<const FolderDocument> document;
    };

    [[nodiscard]] std::shared_ptr<const FolderDocument> findKept(const std::string& name, const struct stat& status);
    void keep(Kept document);

    std::filesystem::path folder_;
    std::mutex mutex_;
    std::list<Kept> kept_;  // the latest first
};

}  // namespace tavrin::cli
