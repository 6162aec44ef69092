// SPDX-License-Identifier: MIT
#include "tavrin/doors/json_options.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tavrin/doors/option_error.h"

namespace tavrin {
namespace {

std::optional<double> numberIn(const JSONElement& value) {
    switch (value.kind()) {
        case JSONKind::integer: return static_cast<double>(value.integer());
        case JSONKind::unsigned_: return static_cast<double>(value.unsignedInteger());
        case JSONKind::floating: return value.floating();
        default: return std::nullopt;
    }
}

std::optional<Size> sizeIn(const JSONElement& array) {
    if (array.size() != 2) return std::nullopt;
    JSONElement::Walk sides(array);
    sides.next();
    const auto width = numberIn(sides.value());
    sides.next();
    const auto height = numberIn(sides.value());
    return width && height ? std::optional(Size{*width, *height}) : std::nullopt;
}

/// The value as options have them; none for one of a type that no option takes.
std::optional<OptionValue> optionValue(const JSONElement& value) {
    switch (value.kind()) {
        case JSONKind::boolean: return value.boolean();
        case JSONKind::string: return std::string(value.string());
        case JSONKind::array:
            if (const auto size = sizeIn(value)) return *size;
            return std::nullopt;
        case JSONKind::unsigned_: return value.unsignedInteger();
        case JSONKind::integer:
            // As a count it keeps all of its digits.
            if (value.integer() >= 0) return static_cast<std::uint64_t>(value.integer());
            [[fallthrough]];
        default:
            if (const auto number = numberIn(value)) return *number;
            return std::nullopt;
    }
}

void readOption(OptionReader& reader, OptionName name, const JSONElement& value) {
    if (value.isNull()) return;
    const std::optional<OptionValue> read = optionValue(value);
    if (!read) reader.refuseType(spelled(name, Spelling::camel));
    reader.read(name, *read);
}

void readBudget(OptionReader& reader, const JSONElement& budget) {
    for (JSONElement::Walk walk(budget); walk.next();) {
        readOption(reader, budgetMember(walk.key()), walk.value());
    }
}

}  // namespace

void readOptions(OptionReader& reader, const JSONElement& options) {
    if (options.kind() != JSONKind::object)
        throw OptionError(OptionFault::type, "options",
                          "options takes an object of options, not " + std::string(describe(options.kind())));
    for (JSONElement::Walk walk(options); walk.next();) {
        const OptionName name = optionSpelled(walk.key(), Spelling::camel);
        if (name == OptionName::budget && walk.value().kind() == JSONKind::object)
            readBudget(reader, walk.value());
        else
            readOption(reader, name, walk.value());
    }
}

}  // namespace tavrin
