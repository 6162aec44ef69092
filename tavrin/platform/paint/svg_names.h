// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tavrin::paint {

/// Cairo names an SVG's groups and images by a count that goes on through the process ("image17"); here they are
/// counted anew for each document, so that the same drawing is the same bytes, and as many.
class SVGNames {
public:
    /// Adds a piece of the document to `text`; what may be the beginning of a name waits for the next one.
    void append(std::string_view piece, std::string& text);
    /// Adds what waits.
    void finish(std::string& text);

private:
    /// Adds as much of `rest` as is known to be whole.
    void rename(std::string_view rest, std::string& text, bool isLast);

    std::map<std::string, std::size_t, std::less<>> numbers_;
    std::string waiting_;
};

}  // namespace tavrin::paint
