// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/budget/render_budget.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/text/text_engine.h"

namespace tavrin::cli {

/// How a folder is shown.
struct PreviewOptions {
    /// How long drawing may take where no one says otherwise: who edits waits for it.
    static constexpr double usualSeconds = 10;

    std::filesystem::path folder = {};
    std::uint16_t port = 0;                             ///< 0: any that is free
    FetchPolicy fetchPolicy = FetchPolicy::publicOnly;  ///< which keeps documents from naming files
    /// Larger pictures of documents are scaled down to this size, in points.
    std::optional<Size> maxImageSize = std::nullopt;
    RenderBudget budget = {.seconds = usualSeconds};           ///< what each picture, tree or check may cost
    std::shared_ptr<const text::FontLibrary> fonts = nullptr;  ///< null: the system's
};

/// Serves the preview of a folder on 127.0.0.1 until SIGINT or SIGTERM, and ends within two seconds then; a second
/// signal ends the process at once. Hands its address to `announce` once it answers: whoever knows it may read and
/// write the folder. Throws `IOError` for a folder that cannot be opened and a port that cannot be had.
void servePreview(const PreviewOptions& options, const std::function<void(const std::string& address)>& announce);

}  // namespace tavrin::cli
