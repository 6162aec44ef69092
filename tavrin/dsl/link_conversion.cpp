#include "tavrin/dsl/link_conversion.h"

#include "tavrin/dsl/context.h"

namespace tavrin {

std::optional<URL> convertedLink(std::string_view text, const Context& context) {
    std::optional<URL> url = URL::parse(text);
    return url && context.linkConverter ? context.linkConverter(*url) : url;
}

}  // namespace tavrin
