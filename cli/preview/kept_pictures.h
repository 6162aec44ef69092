// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>

#include "cli/preview/drawing.h"
#include "tavrin/platform/paint/last_picture.h"

namespace tavrin::cli {

/// The pictures that the calling thread drew last, one for each that a page shows: an edit then costs what it changes.
/// Bounded; what was drawn longest ago goes first.
class KeptPictures {
public:
    static constexpr std::size_t maximumCount = 64;
    static constexpr std::size_t maximumBytes = std::size_t{64} << 20;

    static KeptPictures& ofThisThread();

    /// What is kept of the picture that this one takes the place of. Good until the next call.
    paint::LastPicture& before(const Drawing& drawing);
    /// Gives back what passes the bounds; called when a picture has been drawn.
    void trim();
    /// Gives back everything.
    void forget() { pictures_.clear(); }

    [[nodiscard]] std::size_t count() const { return pictures_.size(); }
    [[nodiscard]] std::size_t byteCount() const;

private:
    /// Where a picture stands on a page.
    struct Place {
        std::optional<std::string> path;
        std::string family;
        Size size;
        double scale = 0;
        Appearance appearance = {};

        friend bool operator==(const Place&, const Place&) = default;
    };
    struct Picture {
        Place place;
        paint::LastPicture last;
    };

    std::list<Picture> pictures_;  // the latest first
};

}  // namespace tavrin::cli
