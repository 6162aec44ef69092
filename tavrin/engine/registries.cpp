// SPDX-License-Identifier: MIT
#include "tavrin/dsl/registry.h"
#include "tavrin/engine/record_types.h"

namespace tavrin {
namespace {

template <class Registry, class Tagged, class... Records>
constexpr Registry registryOf(TypeList<Records...>) {
    Registry registry{};
    ((registry[static_cast<std::size_t>(Records::type)] = Tagged::template decodeAs<Records>), ...);
    return registry;
}

}  // namespace

const NodeRegistry& registerNodeType() {
    static constexpr NodeRegistry registry = registryOf<NodeRegistry, Node>(NodeRecords{});
    return registry;
}

const ModifierRegistry& registerMonifierType() {
    static constexpr ModifierRegistry registry = registryOf<ModifierRegistry, Modifier>(ModifierRecords{});
    return registry;
}

}  // namespace tavrin
