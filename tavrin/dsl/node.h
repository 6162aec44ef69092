// SPDX-License-Identifier: MIT
#pragma once

#include <concepts>
#include <span>

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// What has modifiers of its own.
template <class T>
concept Modifiable = requires(const T& node) {
    { node.modifiers.wrappedValue() } -> std::same_as<std::span<const Modifier>>;
};

/// What can stand in a document as a node: a record with a tag, a version and modifiers.
template <class T>
concept DSLNodeProtocol = DSLRecord<T> && Modifiable<T> && requires {
    { T::type } -> std::convertible_to<NodeType>;
    { T::version } -> std::convertible_to<DSLVersion>;
};

/// A node that can be drawn: `render` builds its view and applies its modifiers.
template <class T>
concept NodeProtocol = requires(const T& node, Context& context) {
    { node.render(context) } -> std::same_as<AnyView>;
};

class NodeBox : public RecordBox<NodeType> {
public:
    static constexpr const char* name = "Node";
    using Tagged = RecordBox<NodeType>;
    using RecordBox::RecordBox;

    [[nodiscard]] virtual std::span<const Modifier> modifiers() const = 0;
    [[nodiscard]] virtual CountedPtr<NodeBox> bound(const ModelContext& model) const = 0;
    [[nodiscard]] virtual AnyView render(Context& context) const = 0;
    /// Draws a bound copy, which is not kept.
    [[nodiscard]] virtual AnyView renderBound(Context& context, const ModelContext& model) const = 0;
};

template <DSLNodeProtocol Record>
class NodeBoxOf : public RecordBoxOf<Record, NodeBox, NodeProtocol<Record>> {
public:
    using RecordBoxOf<Record, NodeBox, NodeProtocol<Record>>::RecordBoxOf;

    std::span<const Modifier> modifiers() const override { return this->record_.modifiers.wrappedValue(); }
    CountedPtr<NodeBox> bound(const ModelContext& model) const override;
    AnyView render(Context& context) const override { return draw(this->record_, context); }
    AnyView renderBound(Context& context, const ModelContext& model) const override {
        return draw(this->boundRecord(model), context);
    }

private:
    AnyView draw(const Record& record, Context& context) const {
        if constexpr (NodeProtocol<Record>) return record.render(context);
        failUnsupported(NodeBox::name, *this);
    }
};

/// The box of a copy that is bound to a model.
template <DSLNodeProtocol Record>
class BoundNodeBoxOf final : public NodeBoxOf<Record> {
public:
    BoundNodeBoxOf(Record record, const void* identity) : NodeBoxOf<Record>(std::move(record)), identity_(identity) {}

    const void* identity() const override { return identity_; }

private:
    const void* identity_;
};

template <DSLNodeProtocol Record>
CountedPtr<NodeBox> NodeBoxOf<Record>::bound(const ModelContext& model) const {
    return CountedPtr<NodeBox>(new BoundNodeBoxOf<Record>(this->boundRecord(model), this->identity()));
}

/// A tagged node.
class Node : public BoxedRecord<NodeBox> {
public:
    /// An empty view.
    Node();
    template <DSLNodeProtocol Record>
    Node(Record record)  // NOLINT(google-explicit-constructor): a record is a node wherever one is asked for
        : Node(CountedPtr<NodeBox>(new NodeBoxOf<Record>(std::move(record)))) {}
    /// Decodes a record of a known type.
    template <DSLNodeProtocol Record>
    static Node decodeAs(const Decoder& decoder) {
        return Node(CountedPtr<NodeBox>(new NodeBoxOf<Record>(decoder)));
    }

    [[nodiscard]] std::span<const Modifier> modifiers() const { return box_->modifiers(); }

    /// Draws a copy that is bound to the context's model where it has one. Throws what binding and the record throw,
    /// and `TavrinError` of kind "Engine" beyond the context's bounds.
    [[nodiscard]] AnyView render(Context& context) const;

private:
    friend struct Coding<Node>;

    using BoxedRecord::BoxedRecord;
};

/// Wraps a record into a `Node` with its own tag.
template <DSLNodeProtocol Record>
[[nodiscard]] Node node(Record record) {
    return Node(std::move(record));
}

/// Applies modifiers in their order, the first innermost; each is bound to the context's model before.
[[nodiscard]] AnyView applyModifiers(std::span<const Modifier> modifiers, AnyView view, Context& context);

/// Applies a node's own modifiers: how every node's `render` ends.
template <Modifiable Record>
[[nodiscard]] AnyView applyModifiers(const Record& node, AnyView view, Context& context) {
    return applyModifiers(node.modifiers.wrappedValue(), std::move(view), context);
}

template <>
struct Coding<Node> {
    static Node decode(const Decoder& decoder);
    static void encode(const Node& node, JSONWriter& writer);
};

template <>
struct FieldContents<DSLValue<Node>> {
    static void visit(const DSLValue<Node>& value, ContentsVisitor& visitor) { visitor.visit(value.wrappedValue); }
};

/// A node held directly is bound by the record that holds it.
template <>
struct FieldBinding<DSLValue<Node>> {
    static constexpr bool boundFirst = false;
    static bool needed(const DSLValue<Node>& value) { return value.wrappedValue.needsBinding(); }
    static void bind(DSLValue<Node>& value, const ModelContext& model) { value.wrappedValue.bindModel(model); }
};

}  // namespace tavrin
