// SPDX-License-Identifier: MIT
#include "bindings/python/src/drawn_rows.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace tavrin::python {
namespace {

ArrowField wholeNumbers(const char* name) { return ArrowField::numbers(name, "i", sizeof(std::int32_t)); }

ArrowField moments(const char* name) { return ArrowField::numbers(name, "tsu:UTC", sizeof(std::int64_t)); }

/// A moment in microseconds since 1970, as far as years have four digits.
std::int64_t microseconds(Date date) {
    constexpr std::int64_t perSecond = 1'000'000;
    constexpr std::int64_t first = -62'135'596'800;  // year 1
    constexpr std::int64_t end = 253'402'300'800;    // year 10000
    if (date.secondsSince1970 <= static_cast<double>(first)) return first * perSecond;
    if (date.secondsSince1970 >= static_cast<double>(end)) return end * perSecond - 1;
    const double whole = std::floor(date.secondsSince1970);
    return static_cast<std::int64_t>(whole) * perSecond + std::llrint((date.secondsSince1970 - whole) * perSecond);
}

std::int32_t roundedLength(double length) {
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(std::round(length), most));
}

void addNumber(ArrowField& field, std::optional<std::size_t> number) {
    if (number)
        field.add(static_cast<std::int32_t>(*number));
    else
        field.addNull();
}

void addPath(ArrowField& field, const std::optional<CodingPath>& path) {
    if (!path) return field.addNull();
    for (const CodingKey& key : *path) {
        const auto* const name = std::get_if<std::string>(&key);
        field.field(0).addText(name != nullptr ? *name : std::to_string(std::get<std::size_t>(key)));
    }
    field.addList();
}

}  // namespace

DrawnRows::DrawnRows()
    : rows_(ArrowField::records(
          "", ArrowField::binary("picture"), wholeNumbers("width"), wholeNumbers("height"), moments("valid_until"),
          ArrowField::records("error", ArrowField::texts("type"), ArrowField::texts("kind"),
                              ArrowField::texts("message"), ArrowField::lists("path", ArrowField::texts("item")),
                              wholeNumbers("line"), wholeNumbers("column")))) {}

void DrawnRows::add(const DrawnPicture& drawn) {
    picture().addBytes(drawn.bytes);
    width().add(roundedLength(drawn.size.width));
    height().add(roundedLength(drawn.size.height));
    if (drawn.validUntil)
        validUntil().add(microseconds(*drawn.validUntil));
    else
        validUntil().addNull();
    error().addNull();
    rows_.addRecord();
}

void DrawnRows::add(const ErrorDescription& failure) {
    for (ArrowField* const field : {&picture(), &width(), &height(), &validUntil()}) field->addNull();
    addError(failure);
    rows_.addRecord();
}

void DrawnRows::addError(const ErrorDescription& failure) {
    ArrowField& fields = error();
    fields.field(0).addText(failure.type);
    if (failure.kind.empty())
        fields.field(1).addNull();
    else
        fields.field(1).addText(failure.kind);
    fields.field(2).addText(failure.message);
    addPath(fields.field(3), failure.codingPath);
    addNumber(fields.field(4), failure.place ? std::optional(failure.place->line) : std::nullopt);
    addNumber(fields.field(5), failure.place ? std::optional(failure.place->column) : std::nullopt);
    fields.addRecord();
}

}  // namespace tavrin::python
