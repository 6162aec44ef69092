// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/command_line.h"
#include "tavrin/widget/animation_renderer.h"

namespace tavrin::cli {

/// The moments of a span that are drawn instead of one, and where they go.
struct Frames {
    enum class Kind : unsigned char { standardOutput, file, numberedFiles };

    FrameSpan span = {};
    std::optional<double> framesPerSecond = std::nullopt;
    Kind kind = Kind::file;
    /// The file. The name of numbered ones has a place for the number, as `printf` writes it: "%d" or "%04d".
    std::filesystem::path path = {};
    /// That place in the file's name, and how many digits a number has at least.
    struct NumberPlace {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t digits = 1;
    } number = {};
    AnimationFormat format = AnimationFormat::png;

    /// Where the frame of that number goes; the first has number 1.
    [[nodiscard]] std::filesystem::path pathOf(std::size_t frame) const;
};

/// "FROM..TO": two moments, the second not before the first. Throws `UsageError`.
[[nodiscard]] std::pair<Date, Date> readMoments(std::string_view option, std::string_view value);

/// What `--frames` and the options that go with it ask for; none where it is not given. `documents` are the paths that
/// pictures are named after. Throws `UsageError`.
[[nodiscard]] std::optional<Frames> readFrames(const Command& command, const std::vector<std::string>& documents);

}  // namespace tavrin::cli
