// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "tavrin/platform/foundation/field.h"
#include "tavrin/platform/foundation/geometry.h"
#include "tavrin/platform/foundation/memory/shared_text.h"
#include "tavrin/platform/foundation/net/url.h"
#include "tavrin/platform/foundation/pixels/bitmap.h"
#include "tavrin/platform/foundation/time/date.h"
#include "tavrin/platform/ui/alignment.h"
#include "tavrin/platform/ui/any_view.h"
#include "tavrin/platform/ui/color.h"
#include "tavrin/platform/ui/font.h"
#include "tavrin/platform/ui/unit_point.h"

// The primitive views. Lengths are in points. `fields` lists what the view tree prints, in its order.

namespace tavrin {

/// No view at all: takes no room and no spacing, and modifiers around it draw nothing.
struct EmptyView {
    static constexpr ViewKind kind = ViewKind::emptyView;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "EmptyView";
    static constexpr Fields<> fields{};
};

/// Room that takes what its stack's other children leave along its axis, at least `minLength` (absent: 8).
struct Spacer {
    static constexpr ViewKind kind = ViewKind::spacer;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Spacer";

    std::optional<double> minLength = std::nullopt;

    static constexpr Fields fields{Field{"minLength", &Spacer::minLength}};
};

/// What a text shows: a string as it stands, or the time from or to a moment.
using TextContent = std::variant<SharedText, Date>;

/// A text. An absent font or weight is the environment's.
struct Text {
    static constexpr ViewKind kind = ViewKind::text;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Text";

    TextContent content;
    std::optional<Font> font = std::nullopt;
    std::optional<Font::Weight> fontWeight = std::nullopt;

    static constexpr Fields fields{Field{"text", &Text::content}, Field{"font", &Text::font},
                                   Field{"fontWeight", &Text::fontWeight}};
};

/// A picture, stretched to whatever room it is given; its own size is a point for each pixel. Without a bitmap it draws
/// nothing. The view tree does not print the pixels.
struct Image {
    static constexpr ViewKind kind = ViewKind::image;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Image";
    static constexpr Fields<> fields{};

    std::shared_ptr<const Bitmap> bitmap;

    [[nodiscard]] bool isLike(const Image& other) const { return bitmap == other.bitmap; }
};

/// A ramp of evenly spaced colours between two unit points, padded at both ends.
struct LinearGradient {
    static constexpr ViewKind kind = ViewKind::linearGradient;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "LinearGradient";

    std::vector<Color> colors;
    UnitPoint startPoint;
    UnitPoint endPoint;

    static constexpr Fields fields{Field{"colors", &LinearGradient::colors},
                                   Field{"startPoint", &LinearGradient::startPoint},
                                   Field{"endPoint", &LinearGradient::endPoint}};
    friend bool operator==(const LinearGradient&, const LinearGradient&) = default;
};

enum class RoundedCornerStyle : unsigned char { circular, continuous };

struct Circle {
    static constexpr ViewKind kind = ViewKind::circle;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Circle";
    static constexpr Fields<> fields{};
    friend bool operator==(const Circle&, const Circle&) = default;
};

struct Rectangle {
    static constexpr ViewKind kind = ViewKind::rectangle;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Rectangle";
    static constexpr Fields<> fields{};
    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

struct RoundedRectangle {
    static constexpr ViewKind kind = ViewKind::roundedRectangle;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "RoundedRectangle";

    double cornerRadius = 0;
    RoundedCornerStyle style = RoundedCornerStyle::circular;

    static constexpr Fields fields{Field{"cornerRadius", &RoundedRectangle::cornerRadius},
                                   Field{"style", &RoundedRectangle::style}};
    friend bool operator==(const RoundedRectangle&, const RoundedRectangle&) = default;
};

struct Capsule {
    static constexpr ViewKind kind = ViewKind::capsule;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "Capsule";

    RoundedCornerStyle style = RoundedCornerStyle::circular;

    static constexpr Fields fields{Field{"style", &Capsule::style}};
    friend bool operator==(const Capsule&, const Capsule&) = default;
};

/// A closed outline as a value. It runs clockwise: a circle's from its trailing point, a rectangle's from its top
/// leading corner, one with round corners from the trailing end of its top edge.
using ClosedShape = std::variant<Circle, Rectangle, RoundedRectangle, Capsule>;

/// The part of an outline between two fractions of its length, which are clamped to 0…1. Nothing where they are not in
/// this order or not numbers.
struct TrimmedShape {
    static constexpr ViewKind kind = ViewKind::trimmedShape;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "TrimmedShape";

    ClosedShape shape;
    double from = 0;
    double to = 1;

    static constexpr Fields fields{Field{"shape", &TrimmedShape::shape}, Field{"from", &TrimmedShape::from},
                                   Field{"to", &TrimmedShape::to}};
    friend bool operator==(const TrimmedShape&, const TrimmedShape&) = default;
};

/// An outline as a value.
using Shape = std::variant<Circle, Rectangle, RoundedRectangle, Capsule, TrimmedShape>;
/// What a shape is filled or stroked with.
using ShapeStyle = std::variant<Color, LinearGradient>;

struct FilledShape {
    static constexpr ViewKind kind = ViewKind::filledShape;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "FilledShape";

    Shape shape;
    ShapeStyle fill = Color::primary;

    static constexpr Fields fields{Field{"shape", &FilledShape::shape}, Field{"fill", &FilledShape::fill}};
};

enum class LineCap : unsigned char { butt, round };
enum class LineJoin : unsigned char { miter };

/// An outline drawn with a pen centred on it.
struct StrokedShape {
    static constexpr ViewKind kind = ViewKind::strokedShape;
    static constexpr ViewTraits traits{};
    static constexpr std::string_view name = "StrokedShape";

    Shape shape;
    ShapeStyle stroke = Color::primary;
    double lineWidth = 1;
    LineCap lineCap = LineCap::butt;
    LineJoin lineJoin = LineJoin::miter;
    double miterLimit = 10;

    static constexpr Fields fields{
        Field{"shape", &StrokedShape::shape},         Field{"stroke", &StrokedShape::stroke},
        Field{"lineWidth", &StrokedShape::lineWidth}, Field{"lineCap", &StrokedShape::lineCap},
        Field{"lineJoin", &StrokedShape::lineJoin},   Field{"miterLimit", &StrokedShape::miterLimit}};
};

/// Children from top to bottom. An absent spacing is the distance that suits each two neighbours: 8 between shapes,
/// what font metrics ask for beside texts, 0 beside a spacer.
struct VStack {
    static constexpr ViewKind kind = ViewKind::vstack;
    static constexpr ViewTraits traits{.holds = ViewHolds::children};
    static constexpr std::string_view name = "VStack";

    HorizontalAlignment alignment = HorizontalAlignment::center;
    std::optional<double> spacing = std::nullopt;
    ViewList children = {};

    static constexpr Fields fields{Field{"alignment", &VStack::alignment}, Field{"spacing", &VStack::spacing},
                                   Field{"children", &VStack::children}};
};

/// Children from leading to trailing, spaced as in a `VStack`.
struct HStack {
    static constexpr ViewKind kind = ViewKind::hstack;
    static constexpr ViewTraits traits{.holds = ViewHolds::children};
    static constexpr std::string_view name = "HStack";

    VerticalAlignment alignment = VerticalAlignment::center;
    std::optional<double> spacing = std::nullopt;
    ViewList children = {};

    static constexpr Fields fields{Field{"alignment", &HStack::alignment}, Field{"spacing", &HStack::spacing},
                                   Field{"children", &HStack::children}};
};

/// Children on top of each other.
struct ZStack {
    static constexpr ViewKind kind = ViewKind::zstack;
    static constexpr ViewTraits traits{.holds = ViewHolds::children};
    static constexpr std::string_view name = "ZStack";

    Alignment alignment = Alignment::center;
    ViewList children = {};

    static constexpr Fields fields{Field{"alignment", &ZStack::alignment}, Field{"children", &ZStack::children}};
};

/// What the content of a geometry reader is told.
struct GeometryProxy {
    /// The reader's size; infinite where it is offered infinite room.
    Size size;
};

/// A view whose content depends on its size: it takes all the room it is offered, and `content` is called once, while
/// the tree is laid out, when that is known. The content is offered that size and lies at the top leading corner.
struct GeometryReader {
    static constexpr ViewKind kind = ViewKind::geometryReader;
    static constexpr ViewTraits traits{.holds = ViewHolds::content};
    static constexpr std::string_view name = "GeometryReader";

    std::function<AnyView(const GeometryProxy&)> content;

    static constexpr Fields<> fields{};

    /// Functions cannot be compared.
    [[nodiscard]] bool isLike(const GeometryReader&) const { return false; }
};

/// A label that leads to an address when it is tapped; it looks and is laid out as the label alone.
struct Link {
    static constexpr ViewKind kind = ViewKind::link;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true};
    static constexpr std::string_view name = "Link";

    URL destination;
    AnyView label = {};

    static constexpr Fields fields{Field{"destination", &Link::destination}, Field{"label", &Link::label}};
};

}  // namespace tavrin
