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
#include <vector>

#include "tavrin/json/json.h"
#include "tavrin/platform/foundation/placed_error.h"
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
    using Environment = std::map<std::string, JSON, std::less<>>;

    /// `environment` holds scalars: strings, numbers and booleans.
    ModelContext(JSON model, Environment environment) : model(std::move(model)), environment(std::move(environment)) {}

    /// Resolves an expression, braces included, to a value of type `T`. Throws `ModelContextError`.
    template <LosslessDefault T>
    [[nodiscard]] T resolve(std::string_view expression) const;

    /// Walks a model along a key path; null when it leads nowhere.
    [[nodiscard]] static const JSON* getValueFrom(std::span<const JSONKey> keyPath, const JSON& model);

    JSON model;
    Environment environment;

private:
    /// A value that an expression leads to, and which store it was found in.
    struct Found {
        const JSON* value;
        bool inEnvironment;
    };
    [[nodiscard]] Found find(std::string_view expression) const;
    [[noreturn]] static void failConversion(const Found& found, const std::string& type);
};

template <LosslessDefault T>
T ModelContext::resolve(std::string_view expression) const {
    const Found found = find(expression);
    if (std::optional<T> value = convert<T>(*found.value)) return *std::move(value);
    failConversion(found, LosslessStringConvertible<T>::typeName());
}

}  // namespace tavrin
