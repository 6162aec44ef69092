// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tavrin/json/json.h"

namespace tavrin::cli {

/// A request that lacks a value or has a wrong one.
struct RequestError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The members of a posted JSON object. What is read throws `RequestError` where it is missing or of another type.
class RequestFields {
public:
    explicit RequestFields(std::string_view body);

    [[nodiscard]] std::string text(std::string_view key) const;
    /// None where the member is missing or null.
    [[nodiscard]] std::optional<std::string> optionalText(std::string_view key) const;
    /// A finite number from `least` to `most`.
    [[nodiscard]] double number(std::string_view key, double least, double most) const;
    /// False where the member is missing.
    [[nodiscard]] bool flag(std::string_view key) const;

private:
    JSON object_;
};

}  // namespace tavrin::cli
