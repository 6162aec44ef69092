#include "tavrin/platform/ui/any_view.h"

#include <cxxabi.h>

#include <cstdlib>
#include <string>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/ui/views.h"

namespace tavrin {

std::string ViewBox::typeName() const {
    const char* mangled = type().name();
    const std::unique_ptr<char, decltype(&std::free)> name(abi::__cxa_demangle(mangled, nullptr, nullptr, nullptr),
                                                           &std::free);
    return name ? name.get() : mangled;
}

AnyView::AnyView() : box_(emptyBox()) {}

const std::shared_ptr<const ViewBox>& AnyView::emptyBox() {
    static const std::shared_ptr<const ViewBox> empty = std::make_shared<const Box<EmptyView>>(EmptyView{});
    return empty;
}

std::uint32_t AnyView::nestingAround(std::uint32_t inner) {
    if (inner >= maximumNesting)
        throw TavrinError("Engine", "views are nested deeper than " + std::to_string(maximumNesting));
    return inner + 1;
}

}  // namespace tavrin
