// SPDX-License-Identifier: MIT
#include "tavrin/platform/ui/any_view.h"

#include <cstdlib>
#include <memory>
#include <string>

#include <cxxabi.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {

std::string ViewBox::typeName() const {
    const char* mangled = type().name();
    const std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(mangled, nullptr, nullptr, nullptr),
                                                           &std::free);
    return name ? name.get() : mangled;
}

AnyView::AnyView() : AnyView(empty()) {}

const AnyView& AnyView::empty() {
    static const AnyView empty = EmptyView{};
    return empty;
}

void AnyView::failNesting() {
    throw TavrinError("Engine", "views are nested deeper than " + std::to_string(maximumNesting));
}

}  // namespace tavrin
