// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/widget/image_renderer.h"

namespace tavrin::cli {

/// Where pictures go.
struct Destination {
    enum class Kind : unsigned char { standardOutput, file, folder };
    Kind kind = Kind::folder;
    /// The file or the folder; an empty folder is the working directory.
    std::filesystem::path path = {};
    PictureFormat format = PictureFormat::png;

    /// Where a document's picture goes: the file, or the document's default name ("weather.png") in the folder.
    [[nodiscard]] std::filesystem::path pathFor(const std::string& document) const;
};

/// Judges where the pictures of `documents` go. `output` and `format` are the values of the options, null where they
/// are not given. Throws `UsageError`.
[[nodiscard]] Destination readDestination(const std::vector<std::string>& documents, const std::string* output,
                                          const std::string* format);

/// What a document's pictures are called unless something says otherwise: its own name without its suffix.
[[nodiscard]] std::string stemOf(const std::string& document);
/// A file's suffix with its dot, in small letters.
[[nodiscard]] std::string lowercaseSuffix(const std::filesystem::path& path);
/// The format of single pictures that a file's suffix names, in any letter case.
[[nodiscard]] std::optional<PictureFormat> formatOf(const std::filesystem::path& path);
/// The word of `frameFormatWords` that a file's suffix says; empty where it says none.
[[nodiscard]] std::string_view animationWord(const std::filesystem::path& path);
/// Whether a path is that of a folder: it ends in "/", or there is one.
[[nodiscard]] bool namesFolder(const std::filesystem::path& path);

}  // namespace tavrin::cli
