// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <list>
#include <optional>
#include <string>

#include "tavrin/platform/paint/last_picture.h"
#include "tavrin/widget/widget_options.h"

namespace tavrin {

/// The pictures that a thread drew last, one for each document, room, scale and appearance: that of an edit,
/// or of the next model, then costs what differs. Bounded; what was drawn longest ago goes first.
class KeptPictures {
public:
    static constexpr std::size_t maximumCount = 64;
    static constexpr std::size_t usualBytes = std::size_t{64} << 20;

    explicit KeptPictures(std::size_t maximumBytes = usualBytes) : maximumBytes_(maximumBytes) {}
    /// The calling thread's own.
    static KeptPictures& ofThisThread();

    /// What is kept of the picture that another takes the place of: that of the document of the same name, if it has
    /// one, with options like these. Good until the next call.
    paint::LastPicture& before(const std::optional<std::string>& document, const WidgetOptions& options);
    /// Gives back what passes the bounds; called when a picture has been drawn.
    void trim();
    /// Gives back everything.
    void forget() { pictures_.clear(); }

    [[nodiscard]] std::size_t count() const { return pictures_.size(); }
    [[nodiscard]] std::size_t byteCount() const;

private:
    /// What pictures have in common that follow each other.
    struct Place {
        std::optional<std::string> document;
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

    std::size_t maximumBytes_;
    std::list<Picture> pictures_;  // the latest first
};

}  // namespace tavrin
