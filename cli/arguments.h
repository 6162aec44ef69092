// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/check_options.h"
#include "cli/command_line.h"
#include "cli/destination.h"
#include "cli/frames.h"
#include "cli/matrix/matrix.h"
#include "cli/snapshot/snapshot_options.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/paint/image_renderer.h"

namespace tavrin::cli {

/// For whom something is written: people or programs.
enum class TextFormat : unsigned char { text, json };

/// A command line whose every value is right.
struct Arguments {
    Verb verb = Verb::render;
    /// Documents as they are written; "-" is standard input. At least one.
    std::vector<std::string> documents = {};
    /// For `explain`: the way to what is explained; without it everything is.
    std::optional<std::string> path = std::nullopt;
    TextFormat textFormat = TextFormat::text;
    std::optional<std::string> model = std::nullopt;
    Destination destination = {};
    /// What is drawn instead of one picture; `destination` counts for nothing then.
    std::optional<Frames> frames = std::nullopt;
    std::optional<SnapshotOptions> snapshot = std::nullopt;
    /// For `snapshot` and `render`: what is drawn, by `render` in `matrixFolder` instead of a picture for each
    /// document.
    std::optional<Matrix> matrix = std::nullopt;
    std::filesystem::path matrixFolder = {};
    RenderOptions options = {};
    std::optional<std::filesystem::path> imageCacheDir = std::nullopt;
    std::optional<Size> maxImageSize = std::nullopt;
    FetchPolicy fetchPolicy = FetchPolicy::all;
    CheckOptions check = {};
};

/// Judges the values of a command that works on documents. Throws `UsageError`, and `IOError` for a folder that cannot
/// be read.
[[nodiscard]] Arguments readArguments(const Command& command);

/// The format that a command line asks for, whatever else is wrong with it.
[[nodiscard]] TextFormat errorFormatOf(std::span<const std::string> words);

}  // namespace tavrin::cli
