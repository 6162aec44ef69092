// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <memory>

#include "tavrin/doors/open_document.h"

namespace tavrin::addon {

struct WidgetsAside;

/// A widget as scripts hold it.
struct HeldWidget {
    OpenWidget widget;
    /// Whether a picture that it shows could not be had.
    std::shared_ptr<std::atomic<bool>> lacksPictures;
    /// Of the thread that made it.
    std::shared_ptr<WidgetsAside> aside;
};

/// Where widgets wait that this thread made and no script holds any longer. What a thread makes, it takes apart: memory
/// goes back to where the next widget is made of, and the event loop has no work with it.
[[nodiscard]] const std::shared_ptr<WidgetsAside>& asideOfThisThread();
void putAside(std::unique_ptr<HeldWidget> widget) noexcept;
/// Takes apart the widgets that wait for this thread.
void takeApart();

}  // namespace tavrin::addon
