// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/strings/json_writer.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

/// Where the views of a tree lie, for printing. Views are entered in document order, each before what it holds.
class ViewFrames {
public:
    virtual ~ViewFrames() = default;
    /// Comes to the next view; returns what `frame` knows it by.
    virtual std::size_t enter() = 0;
    /// Where an entered view lies, in points; absent when it is no view.
    [[nodiscard]] virtual std::optional<Rect> frame(std::size_t entered) const = 0;
    /// The next view to be entered is `part`, which an entered composed view holds somewhere in its body.
    virtual void findPart(std::size_t composed, const AnyView& part) = 0;
    /// The next view to be entered is the one behind an entered composed view.
    virtual void leave(std::size_t composed) = 0;
};

/// The view tree as indented JSON: `"view"` names a view, `"modifier"` one that changes its `"content"`. Absent values
/// are null, numbers that are not finite the strings "infinity", "-infinity" and "nan". What is written counts as held
/// until all is, also where it goes to a sink.
std::string viewTreeText(const AnyView& root);
void writeViewTree(const AnyView& root, const TextSink& sink);

/// The same with each view's `"frame": [x, y, width, height]`.
std::string viewTreeText(const AnyView& root, ViewFrames& frames);
void writeViewTree(const AnyView& root, ViewFrames& frames, const TextSink& sink);

}  // namespace tavrin
