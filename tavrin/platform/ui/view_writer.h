// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace tavrin {

class AnyView;
class JSONWriter;

/// What a composed view writes itself with into the view tree, as keys of its own object: a view that has a
/// `write(ViewWriter&) const` is printed with them, any other by its name alone.
class ViewWriter {
public:
    virtual ~ViewWriter() = default;
    [[nodiscard]] virtual JSONWriter& json() = 0;
    /// Writes a view that stands as a value, a colour say, or null.
    virtual void viewValue(const std::optional<AnyView>& view) = 0;
    /// Writes a view that the body holds somewhere, or null. Where frames are printed it has the one that it gets
    /// there.
    virtual void part(const std::optional<AnyView>& view) = 0;
};

}  // namespace tavrin
