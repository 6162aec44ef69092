#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/failure.h"
#include "tavrin/platform/foundation/fetch_policy.h"
#include "tavrin/platform/paint/image_renderer.h"

namespace tavrin::cli {

/// What the page wants to see: texts as they stand in its editors, and how they are drawn.
struct Drawing {
    std::string document;
    std::optional<std::string> model = std::nullopt;
    RenderOptions options = {};
    /// Files that the document names are read only where they lie in this folder.
    std::filesystem::path folder = {};
    std::optional<std::filesystem::path> pictures = std::nullopt;
    FetchPolicy fetchPolicy = FetchPolicy::publicOnly;
    bool withLayout = false;
};

/// What came of it.
struct Drawn {
    std::string picture = {};  ///< a PNG
    std::string layout = {};   ///< JSON; empty unless it was asked for
    std::vector<std::string> notes = {};
    double milliseconds = 0;
    std::optional<Failure> failure = std::nullopt;
};

/// Draws on the calling thread; several may draw at once.
[[nodiscard]] Drawn draw(const Drawing& drawing);

}  // namespace tavrin::cli
