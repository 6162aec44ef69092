// SPDX-License-Identifier: MIT
#include "bindings/python/src/arguments.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include "tavrin/doors/option_error.h"

namespace nb = nanobind;

namespace tavrin::python {
namespace {

/// The bytes of a str in UTF-8; none where it has lone surrogates.
std::optional<std::string_view> utf8(nb::handle text) {
    Py_ssize_t size = 0;
    const char* const bytes = PyUnicode_AsUTF8AndSize(text.ptr(), &size);
    if (bytes != nullptr) return std::string_view(bytes, static_cast<std::size_t>(size));
    if (PyErr_ExceptionMatches(PyExc_UnicodeError) == 0) throw nb::python_error();
    PyErr_Clear();
    return std::nullopt;
}

/// A number that is too large for its type is as good as an infinite one.
OptionValue wholeNumber(nb::handle value) {
    const std::uint64_t count = PyLong_AsUnsignedLongLong(value.ptr());
    if (PyErr_Occurred() == nullptr) return count;
    PyErr_Clear();
    const double number = PyLong_AsDouble(value.ptr());
    if (PyErr_Occurred() == nullptr) return number;
    PyErr_Clear();
    return std::numeric_limits<double>::infinity();
}

std::optional<double> number(nb::handle value) {
    if (nb::isinstance<nb::bool_>(value)) return std::nullopt;
    if (nb::isinstance<nb::float_>(value)) return PyFloat_AsDouble(value.ptr());
    if (!nb::isinstance<nb::int_>(value)) return std::nullopt;
    const OptionValue whole = wholeNumber(value);
    const auto* const count = std::get_if<std::uint64_t>(&whole);
    return count != nullptr ? static_cast<double>(*count) : std::get<double>(whole);
}

/// None for a value of a type that no option takes.
std::optional<OptionValue> valueOf(const std::string& name, nb::handle value) {
    if (nb::isinstance<nb::bool_>(value)) return nb::cast<bool>(value);
    if (nb::isinstance<nb::int_>(value)) return wholeNumber(value);
    if (nb::isinstance<nb::float_>(value)) return PyFloat_AsDouble(value.ptr());
    if (nb::isinstance<nb::str>(value)) {
        if (const auto text = utf8(value)) return std::string(*text);
        throw OptionError(OptionFault::value, name, name + " takes a text without lone surrogates");
    }
    if (!nb::isinstance<nb::tuple>(value) || nb::len(value) != 2) return std::nullopt;
    const auto width = number(value[0]);
    const auto height = number(value[1]);
    return width && height ? std::optional<OptionValue>(Size{*width, *height}) : std::nullopt;
}

}  // namespace

std::string_view textOf(nb::handle value, const char* name) {
    if (nb::isinstance<nb::bytes>(value)) {
        const nb::bytes bytes = nb::borrow<nb::bytes>(value);
        return {bytes.c_str(), bytes.size()};
    }
    if (!nb::isinstance<nb::str>(value)) throw nb::type_error((std::string(name) + " takes a str or bytes").c_str());
    if (const auto text = utf8(value)) return *text;
    throw nb::value_error((std::string(name) + " takes a str without lone surrogates").c_str());
}

std::optional<std::string_view> optionalText(nb::handle value, const char* name) {
    return value.is_none() ? std::nullopt : std::optional(textOf(value, name));
}

OptionReader optionReader(const nb::dict& options, DrawingOptions usual) {
    OptionReader reader(Spelling::snake, OptionReader::Types::own, std::move(usual));
    for (const auto& [key, value] : options) {
        const std::string name(textOf(key, "an option's name"));
        if (describe(optionSpelled(name, Spelling::snake)).use == OptionUse::answer)
            throw OptionError(OptionFault::name, name, "a widget has no option '" + name + "'");
        const auto read = valueOf(name, value);
        if (!read) reader.refuseType(name);
        reader.read(name, *read);
    }
    return reader;
}

DrawingOptions drawingOptions(const nb::dict& options) { return optionReader(options).options(); }

PictureOptions pictureOptions(const nb::dict& options) { return optionReader(options).pictureOptions(); }

}  // namespace tavrin::python
