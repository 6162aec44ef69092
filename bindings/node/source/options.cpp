// SPDX-License-Identifier: MIT
#include "bindings/node/source/options.h"

#include <string>
#include <string_view>

#include "tavrin/doors/option_error.h"

namespace tavrin::addon {
namespace {

constexpr double millisecondsInSecond = 1000;

bool isPair(const Napi::Value& value) {
    if (!value.IsArray()) return false;
    const auto array = value.As<Napi::Array>();
    return array.Length() == 2 && array.Get(0u).IsNumber() && array.Get(1u).IsNumber();
}

OptionValue optionValue(const OptionReader& reader, const std::string& name, const Napi::Value& value) {
    if (value.IsBoolean()) return value.As<Napi::Boolean>().Value();
    if (value.IsNumber()) return value.As<Napi::Number>().DoubleValue();
    if (value.IsString()) return value.As<Napi::String>().Utf8Value();
    if (value.IsDate()) return Date{value.As<Napi::Date>().ValueOf() / millisecondsInSecond};
    if (!isPair(value)) reader.refuseType(name);
    const auto pair = value.As<Napi::Array>();
    return Size{pair.Get(0u).As<Napi::Number>().DoubleValue(), pair.Get(1u).As<Napi::Number>().DoubleValue()};
}

bool isBudget(OptionName name) { return tavrin::name(name).starts_with("budget"); }

/// Calls `use` with the name and value of each member that is defined.
template <class Use>
void forEachMember(const Napi::Object& object, const Use& use) {
    const Napi::Array names = object.GetPropertyNames();
    for (std::uint32_t i = 0; i < names.Length(); ++i) {
        const std::string name = names.Get(i).ToString().Utf8Value();
        const Napi::Value value = object.Get(name);
        if (!value.IsUndefined()) use(name, value);
    }
}

/// Reads all members; `has` says which options the call has.
template <class Has>
void readMembers(OptionReader& reader, const Napi::Object& options, const Has& has) {
    const auto read = [&](const std::string& name, const Napi::Value& value) {
        if (!has(optionSpelled(name, Spelling::camel)))
            throw OptionError(OptionFault::name, name, "this call has no option '" + name + "'");
        reader.read(name, optionValue(reader, name, value));
    };
    forEachMember(options, [&](const std::string& name, const Napi::Value& value) {
        const bool isObject = value.IsObject() && !value.IsArray() && !value.IsDate() && !value.IsFunction();
        if (name != tavrin::name(OptionName::budget) || !isObject) return read(name, value);
        forEachMember(value.As<Napi::Object>(), [&](const std::string& member, const Napi::Value& bound) {
            read(std::string(tavrin::name(budgetMember(member))), bound);
        });
    });
}

}  // namespace

DrawingOptions readOptions(const Napi::Object& options) {
    OptionReader reader(Spelling::camel, OptionReader::Types::own);
    readMembers(reader, options, [](OptionName name) { return describe(name).use != OptionUse::answer; });
    return reader.options();
}

RenderBudget readBudget(const Napi::Object& options) {
    OptionReader reader(Spelling::camel, OptionReader::Types::own);
    readMembers(reader, options, isBudget);
    return reader.options().widget.budget;
}

PictureOptions readPictureOptions(const Napi::Value& format, const Napi::Object& options) {
    OptionReader reader(Spelling::camel, OptionReader::Types::own);
    readMembers(reader, options, [](OptionName name) { return describe(name).use == OptionUse::picture; });
    const std::string name(tavrin::name(OptionName::format));
    if (!format.IsUndefined()) reader.read(OptionName::format, optionValue(reader, name, format));
    return reader.pictureOptions();
}

}  // namespace tavrin::addon
