// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <concepts>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/field.h"
#include "tavrin/platform/foundation/memory/counted.h"
#include "tavrin/platform/foundation/memory/pool_allocator.h"
#include "tavrin/platform/ui/view_kind.h"
#include "tavrin/platform/ui/view_writer.h"

namespace tavrin {

class AnyView;
struct EnvironmentValues;
struct Loading;

/// The views that a stack holds.
using ViewList = pool::Vector<AnyView>;

/// A view whose layout and painting the platform knows itself.
template <class V>
concept PrimitiveView = requires {
    { V::kind } -> std::convertible_to<ViewKind>;
    { V::traits } -> std::convertible_to<ViewTraits>;
};

/// A view that is made of other views: `body` says of which, when the tree is laid out.
template <class V>
concept ComposedView = !PrimitiveView<V> && requires(const V& view, const EnvironmentValues& environment) {
    { view.body(environment) } -> std::convertible_to<AnyView>;
};

/// A composed view whose body is the same at every moment, and says so: `readsDate` is false. Any other body may read
/// the environment's date, and is asked for again when that changes.
template <class V>
concept TimelessView = ComposedView<V> && requires {
    { V::readsDate } -> std::convertible_to<bool>;
} && !V::readsDate;

/// A composed view that waits for something outside, a file or the network, before its body can be told: `loading` says
/// for what. A tree waits for all such views at once, `body` for its own alone.
template <class V>
concept LoadingView = ComposedView<V> && requires(const V& view) {
    { view.loading() } -> std::same_as<Loading>;
};

/// What an `AnyView` holds: one view behind its kind. Immutable, shared between copies.
class ViewBox : public Counted, public pool::Pooled {
public:
    ViewBox(ViewKind heldKind, std::uint16_t heldNesting, bool heldLoads)
        : kind(heldKind), loads(heldLoads), nesting(heldNesting) {}
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
    /// What the view waits for before it has a body; none when it waits for nothing.
    [[nodiscard]] virtual std::optional<Loading> loading() const = 0;
    /// Whether the view has a body that may be another at another moment.
    [[nodiscard]] virtual bool mayReadDate() const = 0;
    /// Writes what the view tree shows of a composed view beside its name.
    virtual void write(ViewWriter& writer) const = 0;
    /// Whether another box holds an equal view. Not known, and so false, of most that are no primitive ones.
    [[nodiscard]] virtual bool isLike(const ViewBox& other) const = 0;
    /// Calls `visit` with each view that this one holds, in document order.
    virtual void forEachInside(const std::function<void(const AnyView&)>& visit) const = 0;

    const ViewKind kind;
    /// Whether this view, or one nested in it, waits for something before it has a body.
    const bool loads;
    /// How many views are nested in each other here, this one included.
    const std::uint16_t nesting;
    /// Names what made the view, so that errors can tell where they come from; null where that is not known. Set while
    /// the view has one owner.
    mutable const void* origin = nullptr;
};

/// Any view behind one type. A value: cheap to copy, immutable, safe to share between threads.
class AnyView {
public:
    /// How deeply views may be nested in each other; more is a `TavrinError` of kind "Engine" when the view is made.
    static constexpr std::uint16_t maximumNesting = 4096;

    /// An `EmptyView`.
    AnyView();

    template <class V>
        requires(PrimitiveView<std::remove_cvref_t<V>> || ComposedView<std::remove_cvref_t<V>>)
    AnyView(V&& view);  // NOLINT(google-explicit-constructor): a view is an AnyView wherever one is asked for

    /// The view inside when it is a `V`, else null.
    template <class V>
    [[nodiscard]] const V* as() const;

    /// Whether both are equal views; see `ViewBox::isLike`. Copies of one are, at no cost.
    [[nodiscard]] bool isLike(const AnyView& other) const { return box_ == other.box_ || box_->isLike(*other.box_); }

    [[nodiscard]] ViewKind kind() const { return box_->kind; }
    [[nodiscard]] const ViewBox& box() const { return *box_; }

    /// Notes what made a new view. One that already knows, or that others have too, stays as it is.
    void noteOrigin(const void* origin) const {
        if (box_->owners.isSole() && !box_->origin) box_->origin = origin;
    }

private:
    template <class V>
    struct Box;

    static const AnyView& empty();
    static std::uint16_t nestingAround(std::uint16_t inner) {
        if (inner >= maximumNesting) failNesting();
        return static_cast<std::uint16_t>(inner + 1);
    }
    [[noreturn]] static void failNesting();

    CountedPtr<ViewBox> box_;
};

/// What a composed view waits for before it has a body.
struct Loading {
    using Body = std::function<AnyView(const EnvironmentValues&)>;

    /// Names what is loaded: in one tree, views with the same key share one load and what it came to.
    std::string key;
    /// Whether there is nothing to wait for.
    bool isReady;
    /// Waits, on any thread. What it returns makes the body, on the thread that lays out.
    std::function<Body()> load;
};

template <class V>
struct AnyView::Box final : ViewBox {
    template <class Held>
    explicit Box(Held&& held) : Box(lookInside(held), std::forward<Held>(held)) {}

    const std::type_info& type() const override { return typeid(V); }

    std::string_view name() const override {
        if constexpr (requires { V::name; }) return V::name;
        return typeid(V).name();
    }

    AnyView body(const EnvironmentValues& environment) const override {
        if constexpr (ComposedView<V>) return view.body(environment);
        return {};
    }

    bool mayReadDate() const override { return ComposedView<V> && !TimelessView<V>; }

    void write(ViewWriter& writer) const override {
        if constexpr (requires { view.write(writer); }) view.write(writer);
    }

    static constexpr ViewKind kindOf() {
        if constexpr (PrimitiveView<V>) return V::kind;
        return ViewKind::composed;
    }

    std::optional<Loading> loading() const override {
        if constexpr (LoadingView<V>) return view.loading();
        return std::nullopt;
    }

    bool isLike(const ViewBox& other) const override {
        if (kind != other.kind || nesting != other.nesting || type() != other.type()) return false;
        const V& second = static_cast<const Box&>(other).view;
        if constexpr (requires { view.isLike(second); })
            return view.isLike(second);  // a view that says itself what makes it equal
        else if constexpr (PrimitiveView<V> && requires { V::fields; })
            return V::fields.apply(
                [&](const auto&... field) { return (areLike(view.*field.member, second.*field.member) && ...); });
        else if constexpr (PrimitiveView<V>)
            return view == second;
        else
            return false;
    }

    template <class Value>
    static bool areLike(const Value& a, const Value& b) {
        if constexpr (std::same_as<Value, AnyView>)
            return a.isLike(b);
        else if constexpr (std::same_as<Value, ViewList>)
            return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                              [](const AnyView& one, const AnyView& other) { return one.isLike(other); });
        else
            return a == b;
    }

    void forEachInside(const std::function<void(const AnyView&)>& visit) const override { forEachInner(view, visit); }

    template <class Visit>
    static void forEachInner(const V& view, const Visit& visit) {
        if constexpr (requires { view.forEachInside(visit); }) {
            view.forEachInside(visit);  // a composed view that says itself what it holds
        } else if constexpr (requires { V::fields; }) {
            forEachField<V>([&]<class Value>(const Field<V, Value>& field) {
                if constexpr (std::same_as<Value, AnyView>) {
                    visit(view.*field.member);
                } else if constexpr (std::same_as<Value, ViewList>) {
                    for (const AnyView& child : view.*field.member) visit(child);
                }
            });
        }
    }

    V view;

private:
    /// What a box knows of the views inside.
    struct Inside {
        std::uint16_t nesting = 0;
        bool loads = LoadingView<V>;
    };

    template <class Held>
    Box(Inside inside, Held&& held)
        : ViewBox(kindOf(), nestingAround(inside.nesting), inside.loads), view(std::forward<Held>(held)) {}

    static Inside lookInside(const V& view) {
        Inside inside;
        forEachInner(view, [&](const AnyView& inner) {
            if (inner.box().nesting > inside.nesting) inside.nesting = inner.box().nesting;
            inside.loads = inside.loads || inner.box().loads;
        });
        return inside;
    }
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
