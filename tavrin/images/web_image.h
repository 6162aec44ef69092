// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/logger.h"
#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/foundation/net/fetch_policy.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// A picture that is loaded when the tree is laid out: the first one, else the second, else nothing. Stretched to its
/// frame. `logger` hears of failures on the thread that lays out.
struct WebImage {
    static constexpr std::string_view name = "WebImage";

    /// The picture to try first, and the one to try second.
    std::optional<URL> url = std::nullopt;
    std::optional<URL> alt = std::nullopt;
    /// The name of a picture that the program brings with it, for when neither loads. There are none here: it draws
    /// nothing.
    std::string placeholder = {};
    /// Whether the addresses are files to read instead of something to fetch.
    std::optional<bool> local = std::nullopt;
    /// A larger picture is scaled down to this size, in pixels.
    std::optional<Size> maxImageSize = std::nullopt;
    std::shared_ptr<Logger> logger = nullptr;
    /// What may be fetched. Files that are `local` are the host's own and always read.
    FetchPolicy fetchPolicy = FetchPolicy::all;
    /// Both addresses as the document or its model writes them, by which `WebImageHasher` names files.
    SharedText written = {};
    SharedText writtenAlt = {};

    [[nodiscard]] Loading loading() const;
    [[nodiscard]] AnyView body(const EnvironmentValues& environment) const { return loading().load()(environment); }
    void write(ViewWriter& writer) const;

private:
    [[nodiscard]] std::shared_ptr<const Bitmap> load(Logger* listener) const;
    [[nodiscard]] std::shared_ptr<const Bitmap> load(const URL& address, Logger* listener) const;
};

}  // namespace tavrin
