// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "cli/command_line.h"
#include "cli/serve/setting_sources.h"
#include "tavrin/doors/option_reader.h"

namespace tavrin::cli {

/// Where a server listens.
struct ListenAddress {
    std::string host;        ///< of IPv4 or IPv6, in digits and without brackets
    std::uint16_t port = 0;  ///< 0: any that is free

    friend bool operator==(const ListenAddress&, const ListenAddress&) = default;
};

/// How a folder is served.
struct ServeSettings {
    /// The folder of the documents; absent: there are none, and pictures only of what is sent.
    std::optional<std::filesystem::path> folder = std::nullopt;
    ListenAddress listen = {.host = "127.0.0.1", .port = 8080};
    /// How many pictures are drawn at once; at least 1.
    unsigned workers = 1;
    /// How many requests wait to be drawn; at least 1.
    std::size_t queue = 64;
    std::size_t maxBodyBytes = std::size_t{1} << 20;
    /// How long a request may take, in seconds.
    double timeLimit = 2;
    /// How many bytes of finished pictures are kept; 0: none.
    std::size_t cacheBytes = std::size_t{64} << 20;
    /// Whose pages may read the answers: an origin or "*"; empty: nobody's.
    std::string corsOrigin = {};
    /// The keys of signatures; absent: nothing has to be signed.
    std::optional<std::string> keyFile = std::nullopt;
    /// Whether documents are taken from everybody although there are keys.
    bool opensPost = false;
    /// What holds where a request says nothing, its fonts loaded.
    DrawingOptions drawing = {};
};

/// The settings of `tavrin serve`: the command line's, then the environment's, then those of a file (see
/// `gatherSettings`). May be called again, to read them anew. Throws `UsageError`, `OptionError` and `IOError`, and as
/// `FontLibrary::inFolder` does.
[[nodiscard]] ServeSettings readServeSettings(const Command& command);
[[nodiscard]] ServeSettings readServeSettings(const Command& command, const Environment& environment);

}  // namespace tavrin::cli
