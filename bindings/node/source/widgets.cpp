// SPDX-License-Identifier: MIT
#include "bindings/node/source/widgets.h"

#include <mutex>
#include <new>
#include <utility>
#include <vector>

namespace tavrin::addon {

struct WidgetsAside {
    std::mutex mutex;
    std::vector<std::unique_ptr<HeldWidget>> widgets;
};

const std::shared_ptr<WidgetsAside>& asideOfThisThread() {
    thread_local const auto aside = std::make_shared<WidgetsAside>();
    return aside;
}

void putAside(std::unique_ptr<HeldWidget> widget) noexcept {
    const std::shared_ptr<WidgetsAside> aside = std::move(widget->aside);  // which would else hold itself
    try {
        const std::lock_guard lock(aside->mutex);
        aside->widgets.push_back(std::move(widget));
    } catch (const std::bad_alloc&) {  // so it is taken apart here
    }
}

void takeApart() {
    std::vector<std::unique_ptr<HeldWidget>> dead;  // longer than the lock
    WidgetsAside& aside = *asideOfThisThread();
    const std::lock_guard lock(aside.mutex);
    dead.swap(aside.widgets);
}

}  // namespace tavrin::addon
