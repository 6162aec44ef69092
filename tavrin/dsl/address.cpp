// SPDX-License-Identifier: MIT
#include "tavrin/dsl/address.h"

#include "tavrin/dsl/context.h"

namespace tavrin {

std::optional<URL> addressOf(const LosslessDSLValue<SharedText>& url) {
    return url.resolved() ? URL::parse(url.wrappedValue()) : std::nullopt;
}

std::optional<URL> addressOf(const LosslessDSLValue<std::optional<SharedText>>& url) {
    const std::optional<SharedText> text = url.resolved() ? url.wrappedValue() : std::nullopt;
    return text ? URL::parse(*text) : std::nullopt;
}

std::optional<URL> convertedLink(const LosslessDSLValue<SharedText>& url, const Context& context) {
    std::optional<URL> address = addressOf(url);
    return address && context.linkConverter ? context.linkConverter(*address) : address;
}

}  // namespace tavrin
