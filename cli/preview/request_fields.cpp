// SPDX-License-Identifier: MIT
#include "cli/preview/request_fields.h"

#include <cstdint>
#include <type_traits>
#include <variant>

#include "tavrin/json/decoding_error.h"

namespace tavrin::cli {
namespace {

[[noreturn]] void fail(std::string_view key, std::string_view wanted) {
    throw RequestError("the request's \"" + std::string(key) + "\" must be " + std::string(wanted));
}

std::optional<double> numberIn(const JSON* value) {
    if (!value) return std::nullopt;
    return std::visit(
        [](const auto& held) -> std::optional<double> {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_arithmetic_v<Held> && !std::is_same_v<Held, bool>) return static_cast<double>(held);
            return std::nullopt;
        },
        value->object());
}

JSON parsed(std::string_view body) {
    try {
        return JSON::parse(body);
    } catch (const DecodingError& error) {
        throw RequestError("the request is not JSON: " + error.message);
    }
}

}  // namespace

RequestFields::RequestFields(std::string_view body) : object_(parsed(body)) {}

std::string RequestFields::text(std::string_view key) const {
    if (auto value = optionalText(key)) return *std::move(value);
    fail(key, "a string");
}

std::optional<std::string> RequestFields::optionalText(std::string_view key) const {
    const JSON* const value = object_.find(key);
    if (!value || std::holds_alternative<std::nullptr_t>(value->object())) return std::nullopt;
    if (const auto* held = std::get_if<SharedText>(&value->object())) return std::string(*held);
    fail(key, "a string");
}

double RequestFields::number(std::string_view key, double least, double most) const {
    const std::optional<double> number = numberIn(object_.find(key));
    if (number && *number >= least && *number <= most) return *number;
    fail(key, "a number in its range");
}

bool RequestFields::flag(std::string_view key) const {
    const JSON* const value = object_.find(key);
    if (!value) return false;
    if (const bool* held = std::get_if<bool>(&value->object())) return *held;
    fail(key, "true or false");
}

}  // namespace tavrin::cli
