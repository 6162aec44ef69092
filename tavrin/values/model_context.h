// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/placed_error.h"
#include "tavrin/values/environment_value.h"
#include "tavrin/values/value_conversion.h"

namespace tavrin {

/// An expression that cannot be resolved. `kind` is always "ResolveExpression".
struct ModelContextError : PlacedError {
    std::string kind = "ResolveExpression";

    explicit ModelContextError(std::string message) : PlacedError(std::move(message)) {}
};

/// One element of a key path: a key of a dictionary or an index of an array.
using JSONKey = std::variant<std::string, std::int64_t>;

/// What can name an element of a key path: a text is a key, a whole number an index.
template <class T>
concept JSONSubscriptType = std::integral<T> || std::convertible_to<T, std::string_view>;

[[nodiscard]] JSONKey jsonKey(const JSONSubscriptType auto& element) {
    if constexpr (std::integral<std::remove_cvref_t<decltype(element)>>) {
        return static_cast<std::int64_t>(element);
    } else {
        return std::string(std::string_view(element));
    }
}

/// Resolves the expressions of one render: `{{initServerParam.…}}` against the model document and
/// `{{initEnvironment.…}}` against the host's environment. Resolving only reads; not locked.
class ModelContext {
public:
    /// The host's own values by name.
    using Environment = std::map<std::string, EnvironmentValue, std::less<>>;

    ModelContext(JSON model, Environment environment) : model(std::move(model)), environment(std::move(environment)) {}

    /// Resolves an expression, braces included, to a value of type `T`. Throws `ModelContextError`.
    template <LosslessDefault T>
    [[nodiscard]] T resolve(std::string_view expression) const;

    /// Walks a model along a key path; null when it leads nowhere.
    [[nodiscard]] static const JSON* getValueFrom(std::span<const JSONKey> keyPath, const JSON& model);

    JSON model;
    Environment environment;

private:
    /// The value that an expression leads to, in one of the stores.
    struct Found {
        const JSON* inModel = nullptr;
        const EnvironmentValue* inEnvironment = nullptr;
    };
    [[nodiscard]] Found find(std::string_view expression) const;
    [[noreturn]] static void failConversion(const Found& found, const std::string& type);
};

template <LosslessDefault T>
T ModelContext::resolve(std::string_view expression) const {
    const Found found = find(expression);
    std::optional<T> value = found.inModel ? convert<T>(*found.inModel) : found.inEnvironment->as<T>();
    if (value) return *std::move(value);
    failConversion(found, LosslessStringConvertible<T>::typeName());
}

}  // namespace tavrin
