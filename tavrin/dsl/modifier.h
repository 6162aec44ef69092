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
        if constexpr (!ModifierProtocol<Record>) failUnsupported("Modifier", *this);
        return CountedPtr<ModifierBox>(new ModifierBoxOf(boundCopy(this->record_, model)));
    }
    AnyView modify(AnyView view, Context& context) const override {
        return apply(this->record_, std::move(view), context);
    }
    AnyView modifyBound(AnyView view, Context& context, const ModelContext& model) const override {
        if constexpr (!ModifierProtocol<Record>) failUnsupported("Modifier", *this);
        return apply(boundCopy(this->record_, model), std::move(view), context);
    }

private:
    AnyView apply(const Record& record, AnyView view, Context& context) const {
        if constexpr (ModifierProtocol<Record>) {
            return record.modify(std::move(view), context);
        } else {
            failUnsupported("Modifier", *this);
        }
    }
};

/// A tagged modifier. A value: cheap to copy, immutable but for `bindModel`.
class Modifier {
public:
    template <DSLModifierProtocol Record>
    Modifier(Record record)  // NOLINT(google-explicit-constructor): a record is a modifier wherever one is asked for
        : box_(new ModifierBoxOf<Record>(std::move(record))) {}
    /// Decodes a record of a known type.
    template <DSLModifierProtocol Record>
    static Modifier decodeAs(const Decoder& decoder) {
        return Modifier(CountedPtr<ModifierBox>(new ModifierBoxOf<Record>(decoder)));
    }

    [[nodiscard]] ModifierType type() const { return box_->type; }
    [[nodiscard]] DSLVersion version() const { return box_->version; }

    /// The record inside when it is a `Record`, else null.
    template <DSLModifierProtocol Record>
    [[nodiscard]] const Record* as() const {
        return box_->recordType() == typeid(Record) ? static_cast<const Record*>(box_->record()) : nullptr;
    }

    [[nodiscard]] bool needsBinding() const { return box_->needsBinding(); }
    /// Resolves the record's expressions. Throws `ModelContextError`, or `TavrinError` for a record that is no
    /// `ModifierProtocol`, and then changes nothing.
    void bindModel(const ModelContext& model) {
        if (box_->needsBinding()) box_ = box_->bound(model);
    }
    /// Applies the modifier as it is; binding is the caller's.
    [[nodiscard]] AnyView modify(AnyView view, Context& context) const {
        return box_->modify(std::move(view), context);
    }
    /// The same as binding a copy and applying that.
    [[nodiscard]] AnyView modifyBound(AnyView view, Context& context, const ModelContext& model) const {
        return needsBinding() ? box_->modifyBound(std::move(view), context, model) : modify(std::move(view), context);
    }

    /// Names the record; copies that are not bound have the same.
    [[nodiscard]] const void* identity() const { return box_->identity(); }
    /// Shows `visitor` the nodes and modifiers that the record holds itself.
    void showContents(ContentsVisitor& visitor) const { box_->showContents(visitor); }

    friend bool operator==(const Modifier& a, const Modifier& b) { return a.box_ == b.box_ || a.box_->equals(*b.box_); }

private:
    friend struct Coding<Modifier>;

    explicit Modifier(CountedPtr<ModifierBox> box) : box_(std::move(box)) {}

    CountedPtr<ModifierBox> box_;
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
