// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "cli/http/http_message.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/widget/image_renderer.h"

namespace tavrin::cli {

/// A finished picture. Immutable.
struct ServedPicture {
    std::shared_ptr<const std::string> bytes = nullptr;
    PictureFormat format = PictureFormat::png;
    std::string tag = {};  ///< its strong entity tag, with quotes
    Date moment = {};      ///< that is drawn
    bool isNow = false;    ///< whether that moment is when it was drawn, for want of another
    std::optional<Date> validUntil = std::nullopt;
    bool lacksPictures = false;  ///< whether something it should show could not be had

    /// Whether a request at a moment may be answered with it.
    [[nodiscard]] bool holdsAt(Date now) const;
};

using ServedPicturePtr = std::shared_ptr<const ServedPicture>;

/// The strong entity tag of some bytes.
[[nodiscard]] std::string entityTag(std::string_view bytes);

/// Whether a header `If-None-Match` names a tag: "*", or a list that has it, weak or strong.
[[nodiscard]] bool matchesTag(std::string_view ifNoneMatch, std::string_view tag);

/// The answer to who asks for a picture at an address whose document may change, and may have it already.
[[nodiscard]] HTTPResponse widgetAnswer(const ServedPicture& picture, std::string_view ifNoneMatch);
/// The answer to who has sent the document: it says how long the picture holds, a day at most.
[[nodiscard]] HTTPResponse renderAnswer(const ServedPicture& picture, Date now);

}  // namespace tavrin::cli
