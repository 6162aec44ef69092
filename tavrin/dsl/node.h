#pragma once

#include <concepts>
#include <memory>
#include <vector>

#include "tavrin/dsl/modifier.h"

namespace tavrin {

/// What can stand in a document as a node: a record with a tag, a version and modifiers.
template <class T>
concept DSLNodeProtocol = DSLRecord<T> && requires(const T& node) {
    { T::type } -> std::convertible_to<NodeType>;
    { T::version } -> std::convertible_to<DSLVersion>;
    { node.modifiers.wrappedValue() } -> std::same_as<const std::vector<Modifier>&>;
};

/// A node that can be drawn: `render` builds its view and applies its modifiers.
template <class T>
concept NodeProtocol = requires(const T& node, Context& context) {
    { node.render(context) } -> std::same_as<AnyView>;
};

class NodeBox : public RecordBox<NodeType> {
public:
    using Tagged = RecordBox<NodeType>;
    using RecordBox::RecordBox;

    [[nodiscard]] virtual const std::vector<Modifier>& modifiers() const = 0;
    [[nodiscard]] virtual std::shared_ptr<const NodeBox> bound(const ModelContext& model) const = 0;
    [[nodiscard]] virtual AnyView render(Context& context) const = 0;
};

template <DSLNodeProtocol Record>
class NodeBoxOf final : public RecordBoxOf<Record, NodeBox> {
public:
    using RecordBoxOf<Record, NodeBox>::RecordBoxOf;

    const std::vector<Modifier>& modifiers() const override { return this->record_.modifiers.wrappedValue(); }
    std::shared_ptr<const NodeBox> bound(const ModelContext& model) const override {
        return std::make_shared<const NodeBoxOf>(this->boundRecord(model));
    }
    AnyView render(Context& context) const override {
        if constexpr (NodeProtocol<Record>) {
            return this->record_.render(context);
        } else {
            throw TavrinError("Node", "unsupported type: " + describe(*this) + ")");
        }
    }
};

/// A tagged node. A value: cheap to copy, immutable but for `bindModel`.
class Node {
public:
    /// An empty view.
    Node();
    template <DSLNodeProtocol Record>
    Node(Record record)  // NOLINT(google-explicit-constructor): a record is a node wherever one is asked for
        : box_(std::make_shared<const NodeBoxOf<Record>>(std::move(record))) {}

    [[nodiscard]] NodeType type() const { return box_->type; }
    [[nodiscard]] DSLVersion version() const { return box_->version; }
    [[nodiscard]] const std::vector<Modifier>& modifiers() const { return box_->modifiers(); }

    /// The record inside when it is a `Record`, else null.
    template <DSLNodeProtocol Record>
    [[nodiscard]] const Record* as() const {
        return box_->recordType() == typeid(Record) ? static_cast<const Record*>(box_->record()) : nullptr;
    }

    [[nodiscard]] bool needsBinding() const { return box_->needsBinding; }
    /// Resolves the record's own expressions; not those of children and modifiers, which are bound when they are drawn.
    /// Throws `ModelContextError`, and then changes nothing.
    void bindModel(const ModelContext& model) {
        if (box_->needsBinding) box_ = box_->bound(model);
    }
    /// Draws a copy that is bound to the context's model where it has one. Throws what binding and the record throw, and
    /// `TavrinError` of kind "Engine" beyond the context's bounds.
    [[nodiscard]] AnyView render(Context& context) const;

    friend bool operator==(const Node& a, const Node& b) { return a.box_ == b.box_ || a.box_->equals(*b.box_); }

private:
    friend struct Coding<Node>;
    std::shared_ptr<const NodeBox> box_;
};

/// Applies modifiers in their order, the first innermost; each is bound to the context's model before.
[[nodiscard]] AnyView applyModifiers(const std::vector<Modifier>& modifiers, AnyView view, Context& context);

template <>
struct Coding<Node> {
    static Node decode(const Decoder& decoder);
    static void encode(const Node& node, JSONWriter& writer);
};

/// A node held directly is bound by the record that holds it.
template <>
struct FieldBinding<DSLValue<Node>> {
    static bool needed(const DSLValue<Node>& value) { return value.wrappedValue.needsBinding(); }
    static void bind(DSLValue<Node>& value, const ModelContext& model) { value.wrappedValue.bindModel(model); }
};

}  // namespace tavrin
