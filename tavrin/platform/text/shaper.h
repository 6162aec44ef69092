// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string_view>

#include <hb.h>

#include "tavrin/platform/text/font_chooser.h"
#include "tavrin/platform/text/font_faces.h"
#include "tavrin/platform/text/shaped_text.h"
#include "tavrin/platform/ui/font.h"

namespace tavrin::text {

/// Turns texts into positioned glyphs.
class Shaper {
public:
    explicit Shaper(FontFaces& faces);

    std::shared_ptr<const ShapedText> shape(std::string_view text, const Font& font);

private:
    void setEllipsis(const Font& font, ShapedText& shaped);

    FontFaces& faces_;
    FontChooser chooser_;
    Handle<hb_buffer_t, hb_buffer_destroy> buffer_;
};

}  // namespace tavrin::text
