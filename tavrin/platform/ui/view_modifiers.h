// SPDX-License-Identifier: MIT
#pragma once

#include "tavrin/platform/foundation/time/time_zone.h"
#include "tavrin/platform/ui/views.h"

// The view modifiers: each is a view that changes its `content`. Lengths are in points.

namespace tavrin {

/// A room of fixed size; an absent dimension is the content's own.
struct FixedFrame {
    static constexpr ViewKind kind = ViewKind::fixedFrame;
    static constexpr ViewTraits traits{.holds = ViewHolds::content};
    static constexpr std::string_view name = "frame";

    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;
    Alignment alignment = Alignment::center;
    AnyView content = {};

    static constexpr Fields fields{Field{"width", &FixedFrame::width}, Field{"height", &FixedFrame::height},
                                   Field{"alignment", &FixedFrame::alignment}, Field{"content", &FixedFrame::content}};
};

/// A room between bounds; an absent bound is the content's.
struct FlexibleFrame {
    static constexpr ViewKind kind = ViewKind::flexibleFrame;
    static constexpr ViewTraits traits{.holds = ViewHolds::content};
    static constexpr std::string_view name = "flexFrame";

    std::optional<double> minWidth = std::nullopt;
    std::optional<double> maxWidth = std::nullopt;
    std::optional<double> minHeight = std::nullopt;
    std::optional<double> maxHeight = std::nullopt;
    Alignment alignment = Alignment::center;
    AnyView content = {};

    static constexpr Fields fields{
        Field{"minWidth", &FlexibleFrame::minWidth},   Field{"maxWidth", &FlexibleFrame::maxWidth},
        Field{"minHeight", &FlexibleFrame::minHeight}, Field{"maxHeight", &FlexibleFrame::maxHeight},
        Field{"alignment", &FlexibleFrame::alignment}, Field{"content", &FlexibleFrame::content}};
};

/// A set of edges of a rectangle.
struct Edges {
    bool top = false;
    bool leading = false;
    bool bottom = false;
    bool trailing = false;

    static const Edges all;
    friend bool operator==(const Edges&, const Edges&) = default;
};
inline constexpr Edges Edges::all{true, true, true, true};

/// The same inset at each of some edges; a negative length lets the content stick out.
struct Padding {
    static constexpr ViewKind kind = ViewKind::padding;
    static constexpr ViewTraits traits{.holds = ViewHolds::content};
    static constexpr std::string_view name = "padding";

    Edges edges = Edges::all;
    double length = 0;
    AnyView content = {};

    static constexpr Fields fields{Field{"edges", &Padding::edges}, Field{"length", &Padding::length},
                                   Field{"content", &Padding::content}};
};

/// An inset for each edge of a rectangle.
struct EdgeInsets {
    double top = 0;
    double leading = 0;
    double bottom = 0;
    double trailing = 0;

    friend bool operator==(const EdgeInsets&, const EdgeInsets&) = default;
};

/// An inset of its own at each edge; a negative one lets the content stick out.
struct InsetPadding {
    static constexpr ViewKind kind = ViewKind::insetPadding;
    static constexpr ViewTraits traits{.holds = ViewHolds::content};
    static constexpr std::string_view name = "padding";

    EdgeInsets insets = {};
    AnyView content = {};

    static constexpr Fields fields{Field{"insets", &InsetPadding::insets}, Field{"content", &InsetPadding::content}};
};

// The five effects: layout sees the content as it is, only its picture changes. A number that is not finite draws
// nothing.

/// Draws its content elsewhere; its place stays.
struct Offset {
    static constexpr ViewKind kind = ViewKind::offset;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .isEffect = true};
    static constexpr std::string_view name = "offset";

    double x = 0;
    double y = 0;
    AnyView content = {};

    static constexpr Fields fields{Field{"x", &Offset::x}, Field{"y", &Offset::y}, Field{"content", &Offset::content}};
};

/// Draws its content larger or smaller, around an anchor; a negative scale mirrors, and 0 draws nothing.
struct ScaleEffect {
    static constexpr ViewKind kind = ViewKind::scaleEffect;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .isEffect = true};
    static constexpr std::string_view name = "scaleEffect";

    double x = 1;
    double y = 1;
    UnitPoint anchor = UnitPoint::center;
    AnyView content = {};

    static constexpr Fields fields{Field{"x", &ScaleEffect::x}, Field{"y", &ScaleEffect::y},
                                   Field{"anchor", &ScaleEffect::anchor}, Field{"content", &ScaleEffect::content}};
};

/// Draws its content turned around an anchor, clockwise by an angle in radians.
struct RotationEffect {
    static constexpr ViewKind kind = ViewKind::rotationEffect;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .isEffect = true};
    static constexpr std::string_view name = "rotationEffect";

    double angle = 0;
    UnitPoint anchor = UnitPoint::center;
    AnyView content = {};

    static constexpr Fields fields{Field{"angle", &RotationEffect::angle}, Field{"anchor", &RotationEffect::anchor},
                                   Field{"content", &RotationEffect::content}};
};

/// A direction in space: x to the right, y downwards, z towards the viewer. Its length does not count.
struct Axis3D {
    double x = 0;
    double y = 0;
    double z = 1;

    friend bool operator==(const Axis3D&, const Axis3D&) = default;
};

/// Draws its content turned in space by an angle in radians about an axis through an anchor, as it is seen from
/// straight ahead, without perspective. Half a turn about an axis in the plane mirrors. An axis without length turns
/// nothing.
struct Rotation3DEffect {
    static constexpr ViewKind kind = ViewKind::rotation3DEffect;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .isEffect = true};
    static constexpr std::string_view name = "rotation3DEffect";

    double angle = 0;
    Axis3D axis = {};
    UnitPoint anchor = UnitPoint::center;
    AnyView content = {};

    static constexpr Fields fields{Field{"angle", &Rotation3DEffect::angle}, Field{"axis", &Rotation3DEffect::axis},
                                   Field{"anchor", &Rotation3DEffect::anchor},
                                   Field{"content", &Rotation3DEffect::content}};
};

/// How long a clock's hand takes for a full turn.
struct ClockHandPeriod {
    enum class Hand : unsigned char { custom, hour, minute, second };

    Hand hand = Hand::custom;
    /// Of a custom period; negative turns backwards, 0 or not finite does not turn.
    double customSeconds = 0;

    static constexpr ClockHandPeriod custom(double seconds) { return {Hand::custom, seconds}; }
    [[nodiscard]] constexpr double seconds() const {
        switch (hand) {
            case Hand::custom: break;
            case Hand::hour: return 43'200;
            case Hand::minute: return 3600;
            case Hand::second: return 60;
        }
        return customSeconds;
    }
    friend bool operator==(const ClockHandPeriod&, const ClockHandPeriod&) = default;
};

/// Draws its content turned like the hand of a clock in a time zone: upright as 1970 begins there, once around in each
/// period.
struct ClockHandRotationEffect {
    static constexpr ViewKind kind = ViewKind::clockHandRotationEffect;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .isEffect = true};
    static constexpr std::string_view name = "clockHandRotationEffect";

    ClockHandPeriod period = {};
    TimeZone timeZone = {};
    UnitPoint anchor = UnitPoint::center;
    AnyView content = {};

    static constexpr Fields fields{
        Field{"period", &ClockHandRotationEffect::period}, Field{"timeZone", &ClockHandRotationEffect::timeZone},
        Field{"anchor", &ClockHandRotationEffect::anchor}, Field{"content", &ClockHandRotationEffect::content}};
};

enum class ContentMode : unsigned char { fit, fill };

/// Proposes a size of one ratio (width / height) to its content; an absent ratio is the content's own.
struct AspectRatio {
    static constexpr ViewKind kind = ViewKind::aspectRatio;
    static constexpr ViewTraits traits{.holds = ViewHolds::content};
    static constexpr std::string_view name = "aspectRatio";

    std::optional<double> ratio = std::nullopt;
    ContentMode contentMode = ContentMode::fit;
    AnyView content = {};

    static constexpr Fields fields{Field{"ratio", &AspectRatio::ratio}, Field{"contentMode", &AspectRatio::contentMode},
                                   Field{"content", &AspectRatio::content}};
};

/// How many lines each text inside may have; absent: any number. Below 1 counts as 1.
struct LineLimit {
    static constexpr ViewKind kind = ViewKind::lineLimit;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true};
    static constexpr std::string_view name = "lineLimit";

    std::optional<std::int64_t> number = std::nullopt;
    AnyView content = {};

    static constexpr Fields fields{Field{"number", &LineLimit::number}, Field{"content", &LineLimit::content}};
};

/// When its content is drawn among the children of a stack: ascending, document order among equals.
struct ZIndex {
    static constexpr ViewKind kind = ViewKind::zIndex;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true};
    static constexpr std::string_view name = "zIndex";

    double value = 0;
    AnyView content = {};

    static constexpr Fields fields{Field{"value", &ZIndex::value}, Field{"content", &ZIndex::content}};
};

/// The colour of text and bare shapes inside; the innermost wins.
struct ForegroundColor {
    static constexpr ViewKind kind = ViewKind::foregroundColor;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true};
    static constexpr std::string_view name = "foregroundColor";

    Color color = Color::primary;
    AnyView content = {};

    static constexpr Fields fields{Field{"color", &ForegroundColor::color},
                                   Field{"content", &ForegroundColor::content}};
};

/// A second view behind its content, of the content's size.
struct Background {
    static constexpr ViewKind kind = ViewKind::background;
    static constexpr ViewTraits traits{.holds = ViewHolds::contentAndSecond, .isTransparentToLayout = true};
    static constexpr std::string_view name = "background";

    Alignment alignment = Alignment::center;
    AnyView background = {};
    AnyView content = {};

    static constexpr Fields fields{Field{"alignment", &Background::alignment},
                                   Field{"background", &Background::background},
                                   Field{"content", &Background::content}};
};

/// A second view in front of its content, of the content's size.
struct Overlay {
    static constexpr ViewKind kind = ViewKind::overlay;
    static constexpr ViewTraits traits{.holds = ViewHolds::contentAndSecond, .isTransparentToLayout = true};
    static constexpr std::string_view name = "overlay";

    Alignment alignment = Alignment::center;
    AnyView overlay = {};
    AnyView content = {};

    static constexpr Fields fields{Field{"alignment", &Overlay::alignment}, Field{"overlay", &Overlay::overlay},
                                   Field{"content", &Overlay::content}};
};

/// A line along the inside of the content's bounds.
struct Border {
    static constexpr ViewKind kind = ViewKind::border;
    static constexpr ViewTraits traits{
        .holds = ViewHolds::content, .isTransparentToLayout = true, .drawsBesideContent = true};
    static constexpr std::string_view name = "border";

    Color color = Color::primary;
    double width = 1;
    AnyView content = {};

    static constexpr Fields fields{Field{"color", &Border::color}, Field{"width", &Border::width},
                                   Field{"content", &Border::content}};
};

/// Cuts its content to a shape that fills its bounds.
struct ClipShape {
    static constexpr ViewKind kind = ViewKind::clipShape;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .clips = true};
    static constexpr std::string_view name = "clipShape";

    Shape shape;
    bool antialiased = true;
    AnyView content = {};

    static constexpr Fields fields{Field{"shape", &ClipShape::shape}, Field{"antialiased", &ClipShape::antialiased},
                                   Field{"content", &ClipShape::content}};
};

/// Cuts its content to its bounds.
struct Clipped {
    static constexpr ViewKind kind = ViewKind::clipped;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .clips = true};
    static constexpr std::string_view name = "clipped";

    bool antialiased = false;
    AnyView content = {};

    static constexpr Fields fields{Field{"antialiased", &Clipped::antialiased}, Field{"content", &Clipped::content}};
};

/// Cuts its content to a rectangle with circular corners.
struct CornerRadius {
    static constexpr ViewKind kind = ViewKind::cornerRadius;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .clips = true};
    static constexpr std::string_view name = "cornerRadius";

    double radius = 0;
    bool antialiased = true;
    AnyView content = {};

    static constexpr Fields fields{Field{"radius", &CornerRadius::radius},
                                   Field{"antialiased", &CornerRadius::antialiased},
                                   Field{"content", &CornerRadius::content}};
};

/// Fades its content as one layer; values outside 0…1 are clamped when drawn.
struct Opacity {
    static constexpr ViewKind kind = ViewKind::opacity;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true, .composes = true};
    static constexpr std::string_view name = "opacity";

    double value = 1;
    AnyView content = {};

    static constexpr Fields fields{Field{"value", &Opacity::value}, Field{"content", &Opacity::content}};
};

/// Marks its content with the address that opens when the widget is tapped there; absent: none.
struct WidgetURL {
    static constexpr ViewKind kind = ViewKind::widgetURL;
    static constexpr ViewTraits traits{.holds = ViewHolds::content, .isTransparentToLayout = true};
    static constexpr std::string_view name = "widgetURL";

    std::optional<URL> url = std::nullopt;
    AnyView content = {};

    static constexpr Fields fields{Field{"url", &WidgetURL::url}, Field{"content", &WidgetURL::content}};
};

}  // namespace tavrin
