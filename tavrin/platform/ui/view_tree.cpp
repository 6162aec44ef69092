// SPDX-License-Identifier: MIT
#include "tavrin/platform/ui/view_tree.h"

#include <string_view>
#include <utility>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin {
namespace {

/// A keyword as the tree prints it: an alignment, a style, a line cap.
template <class Value>
concept Keyword = requires(Value value) {
    { name(value) } -> std::same_as<std::string_view>;
};

class ViewPrinter final : public ViewWriter {
public:
    ViewPrinter(ViewFrames* frames, TextSink sink)
        : writer_(JSONWriter::Style::pretty, std::move(sink)), frames_(frames) {}

    /// A view in its place, with its frame when frames are asked for.
    void view(const AnyView& printed);

    std::string text() && { return std::move(writer_).text(); }

    JSONWriter& json() override { return writer_; }
    void viewValue(const std::optional<AnyView>& view) override {
        ViewFrames* const frames = std::exchange(frames_, nullptr);
        value(view);
        frames_ = frames;
    }
    void part(const std::optional<AnyView>& view) override {
        if (frames_ && view) frames_->findPart(composed_, *view);
        value(view);
    }

private:
    // Views are nested by thousands, so each kind of view has a function, and stack frame, of its own.
    template <class V>
    [[gnu::noinline]] void fields(const V& record);
    template <class V, class Value>
    [[gnu::noinline]] void field(const Field<V, Value>& field, const V& record);
    /// What a view prints where it stands as a value of another one.
    template <class V>
    void object(const V& record);
    void composed(const ViewBox& box, std::size_t entered);
    void colorFields(const Color& color);
    void channels(const RGBA& color);
    void frame(std::size_t entered);

    void value(const AnyView& child) { view(child); }
    void value(const Color& color) { object(color); }
    void value(const LinearGradient& gradient) { object(gradient); }
    template <class... Views>
    void value(const std::variant<Views...>& view) {
        std::visit([this](const auto& held) { this->object(held); }, view);
    }
    void value(const Font& font);
    void value(Edges edges);
    void value(const EdgeInsets& insets);
    void value(UnitPoint point) { writer_.beginArray().value(point.x).value(point.y).endArray(); }
    void value(const Axis3D& axis) { writer_.beginArray().value(axis.x).value(axis.y).value(axis.z).endArray(); }
    void value(const ClockHandPeriod& period);
    void value(const TimeZone& zone) { writer_.value(zone.identifier()); }
    void value(const URL& url) { writer_.value(url.string()); }
    template <class Scalar>
        requires std::is_arithmetic_v<Scalar>
    void value(Scalar scalar) { writer_.value(scalar); }
    template <Keyword Value>
    void value(Value keyword) {
        writer_.value(name(keyword));
    }
    template <class Value>
    void value(const std::optional<Value>& optional) {
        if (!optional) return static_cast<void>(writer_.value(nullptr));
        value(*optional);
    }
    template <class Value, class Allocator>
    void value(const std::vector<Value, Allocator>& list) {
        writer_.beginArray();
        for (const Value& element : list) value(element);
        writer_.endArray();
    }

    JSONWriter writer_;
    HeldBytes written_;
    std::size_t counted_ = 0;  // of what is written
    ViewFrames* frames_;
    std::size_t composed_ = 0;  // what the frames know the innermost composed view by
};

void ViewPrinter::view(const AnyView& printed) {
    const std::size_t entered = frames_ ? frames_->enter() : 0;
    writer_.beginObject();
    if (printed.kind() == ViewKind::composed) {
        composed(printed.box(), entered);
    } else {
        visitPrimitive(printed, [this](const auto& primitive) { fields(primitive); });
    }
    if (frames_) frame(entered);
    writer_.endObject();
    Meter::ofThisThread().step();
    written_.grow(writer_.size() - std::exchange(counted_, writer_.size()));
}

void ViewPrinter::composed(const ViewBox& box, std::size_t entered) {
    writer_.key("view").value(box.name());
    const std::size_t outer = std::exchange(composed_, entered);
    box.write(*this);
    composed_ = outer;
    if (frames_) frames_->leave(entered);
}

template <class V>
void ViewPrinter::fields(const V& record) {
    writer_.key(ModifiedView<V> ? "modifier" : "view").value(V::name);
    if constexpr (std::same_as<V, Color>) {
        colorFields(record);
    } else {
        forEachField<V>([&](const auto& listed) { field(listed, record); });
    }
}

template <class V, class Value>
void ViewPrinter::field(const Field<V, Value>& field, const V& record) {
    const Value& member = record.*field.member;
    if constexpr (std::same_as<Value, TextContent>) {
        if (const auto* date = std::get_if<Date>(&member)) {
            writer_.key("timer").value(date->secondsSince1970);
        } else {
            writer_.key(field.key).value(std::get<SharedText>(member).view());
        }
    } else {
        writer_.key(field.key);
        value(member);
    }
}

template <class V>
void ViewPrinter::object(const V& record) {
    writer_.beginObject();
    fields(record);
    writer_.endObject();
}

void ViewPrinter::colorFields(const Color& color) {
    switch (color.source()) {
        case Color::Source::rgb: return channels(color.resolved(Appearance::light));
        case Color::Source::dynamic:
            for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
                const RGBA& form = color.resolved(appearance);
                writer_.key(appearance == Appearance::light ? "light" : "dark");
                object(Color::rgb(form.red, form.green, form.blue, form.opacity));
            }
            return;
        default: writer_.key("name").value(name(color.source()));
    }
}

void ViewPrinter::channels(const RGBA& color) {
    writer_.key("red").value(color.red).key("green").value(color.green);
    writer_.key("blue").value(color.blue).key("opacity").value(color.opacity);
}

void ViewPrinter::frame(std::size_t entered) {
    writer_.key("frame");
    if (const std::optional<Rect> place = frames_->frame(entered)) {
        const auto& [origin, size] = *place;
        writer_.beginArray().value(origin.x).value(origin.y).value(size.width).value(size.height).endArray();
    } else {
        writer_.value(nullptr);
    }
}

void ViewPrinter::value(const Font& font) {
    const bool isSystem = font.family == Font::Family::system;
    writer_.beginObject().key(isSystem ? "system" : "monospacedDigitSystem").value(font.size);
    writer_.key("weight").value(name(font.weight));
    if (isSystem) writer_.key("design").value("default");
    writer_.endObject();
}

void ViewPrinter::value(const ClockHandPeriod& period) {
    if (period.hand != ClockHandPeriod::Hand::custom) return value(period.hand);
    writer_.beginObject().key(name(period.hand)).value(period.customSeconds).endObject();
}

void ViewPrinter::value(const EdgeInsets& insets) {
    writer_.beginArray().value(insets.top).value(insets.leading);
    writer_.value(insets.bottom).value(insets.trailing).endArray();
}

void ViewPrinter::value(Edges edges) {
    writer_.beginArray();
    if (edges.top) writer_.value("top");
    if (edges.leading) writer_.value("leading");
    if (edges.bottom) writer_.value("bottom");
    if (edges.trailing) writer_.value("trailing");
    writer_.endArray();
}

std::string print(const AnyView& root, ViewFrames* frames, const TextSink& sink = {}) {
    ViewPrinter printer(frames, sink);
    printer.view(root);
    return std::move(printer).text();
}

}  // namespace

std::string viewTreeText(const AnyView& root) { return print(root, nullptr); }

void writeViewTree(const AnyView& root, const TextSink& sink) { print(root, nullptr, sink); }

std::string viewTreeText(const AnyView& root, ViewFrames& frames) { return print(root, &frames); }

void writeViewTree(const AnyView& root, ViewFrames& frames, const TextSink& sink) { print(root, &frames, sink); }

}  // namespace tavrin
