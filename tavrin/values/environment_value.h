// SPDX-License-Identifier: MIT
#pragma once

#include <any>
#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "tavrin/values/text_conversion.h"

namespace tavrin {

/// One of the host's own values, which `{{initEnvironment.name}}` stands for: of any type that has a text form and can
/// be built from one. Those are texts (`std::string`, `std::string_view`, `const char*`, `SharedText`), booleans,
/// numbers of any size, the language's enumerations of keywords (`AlignmentDSL::top`), optionals of all these, and the
/// types for which a host specialises `LosslessStringConvertible`. Immutable; copies may be read by several threads.
class EnvironmentValue {
public:
    template <LosslessDefault Value>
    EnvironmentValue(Value value)  // NOLINT(google-explicit-constructor): any such value is one of these
        : text_(LosslessStringConvertible<Value>::description(value)), value_(kept(std::move(value))) {}
    template <std::convertible_to<std::string_view> Text>
        requires(!LosslessDefault<Text>)
    EnvironmentValue(const Text& text)  // NOLINT(google-explicit-constructor)
        : EnvironmentValue(SharedText(std::string_view(text))) {}

    /// The value where it is a `T`, else one that is built from its text; none where that fails.
    template <LosslessDefault T>
    [[nodiscard]] std::optional<T> as() const {
        using Kept = decltype(kept(std::declval<T>()));
        if (const Kept* const held = std::any_cast<Kept>(&value_)) {
            if constexpr (std::same_as<T, std::optional<std::string>>)
                return std::optional<T>(std::in_place, *held ? T(**held) : T());
            else
                return T(*held);
        }
        return LosslessStringConvertible<T>::fromText(text_);
    }

    /// Its text form, such as "0.1", "true" or "topLeading".
    [[nodiscard]] const std::string& description() const { return text_; }

private:
    /// Both types of texts are the language's one.
    template <class Value>
    static auto kept(Value value) {
        if constexpr (std::same_as<Value, std::string>)
            return SharedText(value);
        else if constexpr (std::same_as<Value, std::optional<std::string>>)
            return value ? std::optional(SharedText(*value)) : std::nullopt;
        else
            return value;
    }

    std::string text_;
    std::any value_;
};

}  // namespace tavrin
