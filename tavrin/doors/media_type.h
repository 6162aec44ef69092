// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "tavrin/platform/foundation/enumerators.h"
#include "tavrin/widget/image_renderer.h"

namespace tavrin {

/// What each picture is called on the web.
inline constexpr EnumeratorTable<PictureFormat, std::string_view> mediaTypes{{
    {PictureFormat::png, "image/png"},
    {PictureFormat::svg, "image/svg+xml"},
    {PictureFormat::pdf, "application/pdf"},
    {PictureFormat::webp, "image/webp"},
    {PictureFormat::jpeg, "image/jpeg"},
}};

}  // namespace tavrin
