// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/net/url.h"

namespace tavrin::paint {

/// Whether a document may lead there: not to what a viewer would run, since the address may be a stranger's.
[[nodiscard]] bool mayLeadTo(const URL& destination);

/// An SVG element that covers `area`, cannot be seen and leads to `destination`.
[[nodiscard]] std::string svgLink(const Rect& area, const URL& destination);

/// The attributes of the tag by which Cairo makes `area` lead to `destination` in a PDF.
[[nodiscard]] std::string pdfLinkAttributes(const Rect& area, const URL& destination);

}  // namespace tavrin::paint
