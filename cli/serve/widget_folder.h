// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "cli/file_stamp.h"
#include "cli/project/widget_files.h"
#include "cli/project/widget_settings.h"
#include "tavrin/platform/foundation/memory/lru_cache.h"

namespace tavrin::cli {

/// The text of a file. Immutable.
struct FolderText {
    std::string text;
    std::string digest;  ///< which tells it from others
};
using FolderTextPtr = std::shared_ptr<const FolderText>;

/// A document of a folder, and what lies beside it.
struct FolderWidget {
    FolderTextPtr document = nullptr;
    WidgetFiles files = {};
    WidgetSettings settings = {};
    std::string settingsDigest = {};  ///< empty where there are none
    /// Which tells its folder of pictures from one in which other files are; empty where there is none.
    std::string picturesStamp = {};
};

/// The widgets of a folder, by their names: NAME is NAME.json, or NAME/document.json, with what is paired with it. A
/// file is read when it is asked for, and again once it is another one, has another size or was changed since.
/// Thread-safe.
///
/// A name leads nowhere else: it has no slash, does not begin with a dot and is not called as models are, and a
/// symbolic link is followed only where it stays in the folder. What is no regular file is refused, and never waited
/// for.
class WidgetFolder {
public:
    static constexpr std::size_t maximumBytes = std::size_t{8} << 20;  ///< of a file
    static constexpr std::size_t maximumCount = 256;                   ///< of files that are kept

    /// Throws `IOError` for what is no folder.
    explicit WidgetFolder(std::filesystem::path folder);

    /// Throws `RequestFault`: 404 where there is no such document, 503 where it or its settings cannot be read now; and
    /// `SettingsError`.
    [[nodiscard]] FolderWidget find(const std::string& name);
    /// The model that lies beside a widget, in a family; null where there is none. Throws `RequestFault`.
    [[nodiscard]] FolderTextPtr model(const FolderWidget& widget, std::string_view family);

private:
    struct Kept {
        FileStamp stamp = {};
        FolderTextPtr text;
    };

    [[nodiscard]] FolderTextPtr read(const std::filesystem::path& file);
    [[nodiscard]] FolderTextPtr findKept(const std::string& file, const FileStamp& stamp);
    void keep(const std::string& file, Kept kept);

    static constexpr std::size_t mostKeptBytes = std::size_t{64} << 20;

    std::filesystem::path folder_;
    std::mutex mutex_;
    LRUCache<std::string, Kept> kept_{mostKeptBytes, maximumCount};  // by the file's path in the folder
};

}  // namespace tavrin::cli
