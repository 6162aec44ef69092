// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "tavrin/diagnostics/written_document.h"
#include "tavrin/json/decoding_error.h"

namespace tavrin {

/// A document whose decoding goes on after an error. Decoding ends at the first one; so what that is about is taken out
/// of a copy of the text, in which all else keeps its path, and the copy is decoded. Nodes stay, so that what they hold
/// is looked at, too, as far as that can be told without them.
class FurtherErrors {
public:
    /// `text` must be valid JSON.
    explicit FurtherErrors(std::string_view text) : text_(text) { written_.emplace(text_); }

    /// What is known of an error.
    enum class Verdict : unsigned char {
        real,    ///< the document's own
        made,    ///< it came of what was taken out before
        astray,  ///< what it is about cannot be taken out: decoding cannot go on
    };

    /// Takes out what an error of the present text is about.
    Verdict takeOut(const PlacedError& error);
    /// The document without that.
    [[nodiscard]] const std::string& text() const { return text_; }

private:
    using Index = JSONOutline::Index;

    bool takeOutValue(Index value);
    bool changeType(Index object, Index tag);
    bool hide(Index member);
    bool replace(Index value);
    bool edit(std::size_t begin, std::size_t end, std::string_view text);
    [[nodiscard]] const WrittenMember* ownerOf(Index value) const;
    [[nodiscard]] bool isNode(Index value) const;
    [[nodiscard]] const JSONOutline& outline() const { return written_->outline(); }

    std::string text_;
    std::optional<WrittenDocument> written_;  // as `text_` is now
    std::set<std::string> spoilt_;            // the paths of objects that lack something or go by another type
};

}  // namespace tavrin
