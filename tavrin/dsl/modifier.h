// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>

#include "tavrin/dsl/record_box.h"
#include "tavrin/dsl/type_tags.h"
#include "tavrin/platform/ui/any_view.h"

namespace tavrin {

class Context;

/// What can stand in a "modifiers" list: a record with a tag and a version.
template <class T>
concept DSLModifierProtocol = DSLRecord<T> && requires {
    { T::type } -> std::convertible_to<ModifierType>;
    { T::version } -> std::convertible_to<DSLVersion>;
};

/// A modifier that can be applied: `modify` takes the view built so far and returns the new one.
template <class T>
concept ModifierProtocol = requires(const T& modifier, AnyView view, Context& context) {
    { modifier.modify(std::move(view), context) } -> std::same_as<AnyView>;
};

class ModifierBox : public RecordBox<ModifierType> {
public:
    static constexpr const char* name = "Modifier";
    using Tagged = RecordBox<ModifierType>;
    using RecordBox::RecordBox;

    [[nodiscard]] virtual CountedPtr<ModifierBox> bound(const ModelContext& model) const = 0;
    [[nodiscard]] virtual AnyView modify(AnyView view, Context& context) const = 0;
    /// Applies a bound copy, which is not kept.
    [[nodiscard]] virtual AnyView modifyBound(AnyView view, Context& context, const ModelContext& model) const = 0;
};

template <DSLModifierProtocol Record>
class ModifierBoxOf final : public RecordBoxOf<Record, ModifierBox, ModifierProtocol<Record>> {
public:
    using RecordBoxOf<Record, ModifierBox, ModifierProtocol<Record>>::RecordBoxOf;

    CountedPtr<ModifierBox> bound(const ModelContext& model) const override {
        return CountedPtr<ModifierBox>(new ModifierBoxOf(this->boundRecord(model)));
    }
    AnyView modify(AnyView view, Context& context) const override {
        return apply(this->record_, std::move(view), context);
    }
    AnyView modifyBound(AnyView view, Context& context, const ModelContext& model) const override {
        return apply(this->boundRecord(model), std::move(view), context);
    }

private:
    AnyView apply(const Record& record, AnyView view, Context& context) const {
        if constexpr (ModifierProtocol<Record>) return record.modify(std::move(view), context);
        failUnsupported(ModifierBox::name, *this);
    }
};

/// A tagged modifier.
class Modifier : public BoxedRecord<ModifierBox> {
public:
    template <DSLModifierProtocol Record>
    Modifier(Record record)  // NOLINT(google-explicit-constructor): a record is a modifier wherever one is asked for
        : Modifier(CountedPtr<ModifierBox>(new ModifierBoxOf<Record>(std::move(record)))) {}
    /// Decodes a record of a known type.
    template <DSLModifierProtocol Record>
    static Modifier decodeAs(const Decoder& decoder) {
        return Modifier(CountedPtr<ModifierBox>(new ModifierBoxOf<Record>(decoder)));
    }

    /// Applies the modifier as it is; binding is the caller's.
    [[nodiscard]] AnyView modify(AnyView view, Context& context) const {
        return box_->modify(std::move(view), context);
    }
    /// The same as binding a copy and applying that.
    [[nodiscard]] AnyView modifyBound(AnyView view, Context& context, const ModelContext& model) const {
        return needsBinding() ? box_->modifyBound(std::move(view), context, model) : modify(std::move(view), context);
    }

private:
    friend struct Coding<Modifier>;

    using BoxedRecord::BoxedRecord;
};

/// What authors should know of a node's "modifiers".
inline constexpr Note modifiersNote{.text = "What changes the view, in its order: the first modifier is innermost.",
                                    .defaultValue = "[]"};

/// Wraps a record into a `Modifier` with its own tag.
template <DSLModifierProtocol Record>
[[nodiscard]] Modifier modifer(Record record) {
    return Modifier(std::move(record));
}

template <>
struct Coding<Modifier> {
    static Modifier decode(const Decoder& decoder);
    static void encode(const Modifier& modifier, JSONWriter& writer);
};

}  // namespace tavrin
