#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/counted.h"
#include "tavrin/platform/foundation/field.h"
#include "tavrin/platform/foundation/pool_allocator.h"
#include "tavrin/platform/ui/view_kind.h"
#include "tavrin/platform/ui/view_writer.h"

namespace tavrin {

class AnyView;
struct EnvironmentValues;

/// A view whose layout and painting the platform knows itself.
template <class V>
concept PrimitiveView = requires {
    { V::kind } -> std::convertible_to<ViewKind>;
};

/// A view that is made of other views: `body` says of which, when the tree is laid out.
template <class V>
concept ComposedView = !PrimitiveView<V> && requires(const V& view, const EnvironmentValues& environment) {
    { view.body(environment) } -> std::convertible_to<AnyView>;
};

/// What an `AnyView` holds: one view behind its kind. Immutable, shared between copies.
class ViewBox : public Counted, public pool::Pooled {
public:
    ViewBox(ViewKind heldKind, std::uint32_t heldNesting) : kind(heldKind), nesting(heldNesting) {}
    ViewBox(const ViewBox&) = delete;
    ViewBox& operator=(const ViewBox&) = delete;
    virtual ~ViewBox() = default;

    /// The type of the view inside.
    [[nodiscard]] virtual const std::type_info& type() const = 0;
    /// The qualified name of that type.
    [[nodiscard]] std::string typeName() const;
    /// The view's name, as the view tree prints it.
    [[nodiscard]] virtual std::string_view name() const = 0;
    /// What a composed view is made of. Not to be called on a primitive one.
    [[nodiscard]] virtual AnyView body(const EnvironmentValues& environment) const = 0;
    /// Writes what the view tree shows of a composed view beside its name.
    virtual void write(ViewWriter& writer) const = 0;

    const ViewKind kind;
    /// How many views are nested in each other here, this one included.
    const std::uint32_t nesting;
};

/// Any view behind one type. A value: cheap to copy, immutable, safe to share between threads.
class AnyView {
public:
    /// How deeply views may be nested in each other; more is a `TavrinError` of kind "Engine" when the view is made.
    static constexpr std::uint32_t maximumNesting = 4096;

    /// An `EmptyView`.
    AnyView();

    template <class V>
        requires(PrimitiveView<std::remove_cvref_t<V>> || ComposedView<std::remove_cvref_t<V>>)
    AnyView(V&& view);  // NOLINT(google-explicit-constructor): a view is an AnyView wherever one is asked for

    /// The view inside when it is a `V`, else null.
    template <class V>
    [[nodiscard]] const V* as() const;

    [[nodiscard]] ViewKind kind() const { return box_->kind; }
    [[nodiscard]] const ViewBox& box() const { return *box_; }

private:
    template <class V>
    struct Box;

    static const AnyView& empty();
    static std::uint32_t nestingAround(std::uint32_t inner) {
        if (inner >= maximumNesting) failNesting();
        return inner + 1;
    }
    [[noreturn]] static void failNesting();

    CountedPtr<ViewBox> box_;
};

template <class V>
struct AnyView::Box final : ViewBox {
    template <class Held>
    explicit Box(Held&& held) : ViewBox(kindOf(), nestingAround(innerNesting(held))), view(std::forward<Held>(held)) {}

    const std::type_info& type() const override { return typeid(V); }

    std::string_view name() const override {
        if constexpr (requires { V::name; }) {
            return V::name;
        } else {
            return typeid(V).name();
        }
    }

    AnyView body(const EnvironmentValues& environment) const override {
        if constexpr (ComposedView<V>) {
            return view.body(environment);
        } else {
            return {};
        }
    }

    void write(ViewWriter& writer) const override {
        if constexpr (requires { view.write(writer); }) view.write(writer);
    }

    static constexpr ViewKind kindOf() {
        if constexpr (PrimitiveView<V>) {
            return V::kind;
        } else {
            return ViewKind::composed;
        }
    }

    static std::uint32_t innerNesting(const V& view) {
        std::uint32_t deepest = 0;
        if constexpr (requires { view.innerNesting(); }) {
            deepest = view.innerNesting();  // a composed view that says itself what it holds
        } else if constexpr (requires { V::fields; }) {
            forEachField<V>([&]<class Value>(const Field<V, Value>& field) {
                if constexpr (std::same_as<Value, AnyView>) {
                    deepest = std::max(deepest, (view.*field.member).box().nesting);
                } else if constexpr (std::same_as<Value, std::vector<AnyView>>) {
                    for (const AnyView& child : view.*field.member) deepest = std::max(deepest, child.box().nesting);
                }
            });
        }
        return deepest;
    }

    V view;
};

template <class V>
    requires(PrimitiveView<std::remove_cvref_t<V>> || ComposedView<std::remove_cvref_t<V>>)
AnyView::AnyView(V&& view) : box_(new Box<std::remove_cvref_t<V>>(std::forward<V>(view))) {}

template <class V>
const V* AnyView::as() const {
    if constexpr (PrimitiveView<V>) {
        if (box_->kind != V::kind) return nullptr;
    } else {
        if (box_->type() != typeid(V)) return nullptr;
    }
    return &static_cast<const Box<V>&>(*box_).view;
}

}  // namespace tavrin
