// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/last_picture.h"

#include <array>
#include <cmath>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/picture_difference.h"
#include "tavrin/platform/ui/view_modifiers.h"
#include "tavrin/platform/ui/view_tree.h"
#include "tavrin/widget/image_renderer.h"

namespace tavrin {
namespace {

constexpr double start = 1'795'262'400;

/// What a random view is made by. With one of the numbers changed it makes a view that is mostly the same.
class Tape {
public:
    explicit Tape(std::mt19937& random) {
        for (std::uint32_t& number : numbers_) number = static_cast<std::uint32_t>(random());
    }

    void change(std::mt19937& random) { numbers_[random() % used_] = static_cast<std::uint32_t>(random()); }
    void rewind() { next_ = 0; }

    std::size_t below(std::size_t end) {
        const std::uint32_t number = numbers_[next_ % numbers_.size()];
        used_ = std::max(used_, std::min(++next_, numbers_.size()));
        return number % end;
    }
    template <class Value, std::size_t count>
    Value one(const Value (&values)[count]) {
        return values[below(count)];
    }
    bool rarely() { return below(6) == 0; }

private:
    std::array<std::uint32_t, 400> numbers_{};
    std::size_t next_ = 0;
    std::size_t used_ = 1;
};

Color colorOf(Tape& tape) {
    return tape.one({Color::primary, Color::white, Color::blue, Color::gray, Color::rgb(0.9, 0.1, 0.2),
                     Color::rgb(0.2, 0.7, 0.3, 0.5), Color::dynamic({1, 1, 0.8, 1}, {0.2, 0.1, 0, 1})});
}
UnitPoint unitPointOf(Tape& tape) { return {tape.one({0.0, 0.5, 1.0, 0.3}), tape.one({0.0, 0.5, 1.0, 0.8})}; }
LinearGradient gradientOf(Tape& tape) {
    return {{colorOf(tape), colorOf(tape), colorOf(tape)}, unitPointOf(tape), unitPointOf(tape)};
}
ShapeStyle styleOf(Tape& tape) {
    if (tape.rarely()) return gradientOf(tape);
    return colorOf(tape);
}
double lengthOf(Tape& tape) { return tape.one({0.0, 1.0, 2.5, 4.0, 10.0, 13.3, 25.0}); }
Shape shapeOf(Tape& tape) {
    switch (tape.below(5)) {
        case 0: return Circle{};
        case 1: return RoundedRectangle{lengthOf(tape), RoundedCornerStyle::continuous};
        case 2: return Capsule{};
        case 3: return TrimmedShape{Circle{}, tape.one({0.0, 0.2}), tape.one({0.4, 0.9})};
        default: return Rectangle{};
    }
}

AnyView textOf(Tape& tape) {
    const Font font =
        Font::system(tape.one({7.0, 11.0, 15.0, 30.0, 300.0}), tape.one({Font::Weight::regular, Font::Weight::bold}));
    if (tape.below(3) == 0) return Text{.content = Date{start + tape.one({5.0, 62.5, 3600.0, -7.0})}, .font = font};
    return Text{
        .content = SharedText(tape.one({"jolly", "Ålesund 7°", "two words", "11:30", "שלום 12", "😀 ok", "f", "\uFDFD",
                                        "ก\u0E49\u0E49\u0E49\u0E49\u0E49\u0E49\u0E49\u0E49\u0E49\u0E49\u0E49"})),
        .font = font};
}

AnyView leafOf(Tape& tape) {
    switch (tape.below(8)) {
        case 0: return colorOf(tape);
        case 1: return gradientOf(tape);
        case 2: return std::visit([](const auto& shape) -> AnyView { return shape; }, shapeOf(tape));
        case 3: return FilledShape{shapeOf(tape), styleOf(tape)};
        case 4: return StrokedShape{.shape = shapeOf(tape), .stroke = styleOf(tape), .lineWidth = lengthOf(tape)};
        case 5: return tape.rarely() ? AnyView(EmptyView{}) : AnyView(Spacer{});
        default: return textOf(tape);
    }
}

AnyView viewOf(Tape& tape, int depth);

ViewList childrenOf(Tape& tape, int depth) {
    ViewList children;
    for (std::size_t count = tape.below(4); count > 0; --count) children.push_back(viewOf(tape, depth));
    return children;
}

AnyView modified(Tape& tape, AnyView view, int depth) {
    switch (tape.below(20)) {
        case 0: return Padding{.length = lengthOf(tape), .content = view};
        case 1: return FixedFrame{.width = 5 + 2 * lengthOf(tape), .height = 5 + lengthOf(tape), .content = view};
        case 2: return Offset{.x = lengthOf(tape), .y = -lengthOf(tape), .content = view};
        case 3: return ScaleEffect{.x = tape.one({1.0, 0.5, -1.0, 1.7}), .anchor = unitPointOf(tape), .content = view};
        case 4: return RotationEffect{.angle = tape.one({0.0, 0.3, M_PI / 2, 2.5}), .content = view};
        case 5:
            return ClockHandRotationEffect{.period = ClockHandPeriod::custom(tape.one({60.0, 7.0, 0.0})),
                                           .anchor = unitPointOf(tape),
                                           .content = view};
        case 6: return ForegroundColor{.color = colorOf(tape), .content = view};
        case 7: return Background{.background = viewOf(tape, depth), .content = view};
        case 8: return Overlay{.overlay = viewOf(tape, depth), .content = view};
        case 9: return Border{.color = colorOf(tape), .width = lengthOf(tape), .content = view};
        case 10: return ClipShape{.shape = shapeOf(tape), .antialiased = !tape.rarely(), .content = view};
        case 11: return Clipped{.content = view};
        case 12: return CornerRadius{.radius = lengthOf(tape), .content = view};
        case 13: return Opacity{.value = tape.one({0.0, 0.4, 0.8, 1.0}), .content = view};
        case 14: return ZIndex{.value = tape.one({-1.0, 0.0, 1.0}), .content = view};
        case 15: return GeometryReader{[view](const GeometryProxy&) { return view; }};
        default: return view;
    }
}

AnyView viewOf(Tape& tape, int depth) {
    AnyView view;
    if (depth == 0) {
        view = leafOf(tape);
    } else {
        switch (tape.below(4)) {
            case 0: view = VStack{.spacing = lengthOf(tape), .children = childrenOf(tape, depth - 1)}; break;
            case 1: view = HStack{.spacing = lengthOf(tape), .children = childrenOf(tape, depth - 1)}; break;
            case 2: view = ZStack{.children = childrenOf(tape, depth - 1)}; break;
            default: view = leafOf(tape);
        }
    }
    view = modified(tape, view, depth > 0 ? depth - 1 : 0);
    return tape.below(2) == 0 ? modified(tape, view, depth > 0 ? depth - 1 : 0) : view;
}

RenderOptions optionsOf(Tape& tape) {
    RenderOptions options;
    options.size = {90, 70};
    options.scale = tape.one({1.0, 2.0, 1.3});
    options.environment.date = {start};
    options.environment.appearance = tape.one({Appearance::light, Appearance::dark});
    if (tape.rarely()) options.background.kind = WidgetBackground::Kind::none;
    options.rounded = tape.rarely();
    return options;
}

std::string difference(const PixelBuffer& actual, const PixelBuffer& expected) {
    const auto [sameSize, count, bounds, greatest] = paint::compare(expected, actual);
    std::ostringstream text;
    text << ": " << count << " pixels differ by up to " << greatest << " in " << bounds.x0 << ", " << bounds.y0
         << " to " << bounds.x1 << ", " << bounds.y1 << " of " << expected.width() << " x " << expected.height()
         << "\n";
    return text.str();
}

TEST(LastPicture, PicturesAfterOthersAreThoseFromScratch) {
    std::mt19937 random(16);
    std::uint64_t painted = 0;
    std::uint64_t whole = 0;
    for (int sequence = 0; sequence < 500; ++sequence) {
        Tape look(random);
        Tape tape(random);
        LastPicture last;
        RenderOptions options = optionsOf(look);
        for (int i = 0; i < 20; ++i) {
            tape.rewind();
            const AnyView view = ZStack{.children = {viewOf(tape, 3), viewOf(tape, 2)}};
            ImageRenderer renderer(view, options);
            const std::string expected = renderer.encode(PictureFormat::png);
            const std::uint64_t before = last.work().pixels;
            ImageRenderer next(view, options);
            const bool isSame = next.encode(PictureFormat::png, last) == expected;
            ASSERT_EQ(next.layoutText(), renderer.layoutText()) << sequence << ", " << i;
            ASSERT_TRUE(isSame) << sequence << ", " << i << difference(*renderer.pixels(last), renderer.pixels())
                                << viewTreeText(view);
            painted += last.work().pixels - before;
            const PixelBuffer pixels = renderer.pixels();
            whole += static_cast<std::uint64_t>(pixels.width()) * static_cast<std::uint64_t>(pixels.height());
            // Mostly one thing is another, now and then the moment or all of the look.
            tape.change(random);
            if (random() % 4 == 0) options.environment.date = {start + static_cast<double>(random() % 100) / 4};
            if (random() % 20 == 0) {
                look.rewind();
                look.change(random);
                options = optionsOf(look);
            }
        }
    }
    EXPECT_LT(painted, whole * 2 / 3);
}

/// A hand that turns on any view, in the midst of any others: what is drawn before it is drawn once.
TEST(LastPicture, WhatTurnsIsDrawnOverWhatIsStill) {
    std::mt19937 random(17);
    std::uint64_t painted = 0;
    std::uint64_t whole = 0;
    for (int sequence = 0; sequence < 300; ++sequence) {
        Tape look(random);
        Tape under(random);
        Tape over(random);
        Tape turned(random);
        Tape around(random);
        LastPicture last;
        RenderOptions options = optionsOf(look);
        for (int i = 0; i < 8; ++i) {
            const std::uint64_t before = last.work().pixels;
            for (Tape* tape : {&under, &over, &turned, &around}) tape->rewind();
            const AnyView face = RotationEffect{.angle = 0.7, .content = FilledShape{Capsule{}, Color::gray}};
            const AnyView tip = FixedFrame{.width = 9, .height = 9, .content = leafOf(turned)};
            const AnyView hand = ClockHandRotationEffect{
                .period = ClockHandPeriod::custom(60), .anchor = UnitPoint{0.5, 0.8}, .content = tip};
            const AnyView hands = ZStack{.children = {viewOf(under, 1), hand}};
            const AnyView view = ZStack{.children = {viewOf(under, 2), face, modified(around, hands, 0), leafOf(over)}};
            ImageRenderer renderer(view, options);
            const std::string expected = renderer.encode(PictureFormat::png);
            const bool isSame = ImageRenderer(view, options).encode(PictureFormat::png, last) == expected;
            ASSERT_TRUE(isSame) << sequence << ", " << i << difference(*renderer.pixels(last), renderer.pixels())
                                << viewTreeText(view);
            if (i > 2) painted += last.work().pixels - before;
            if (i > 2) whole += renderer.pixels().byteCount() / 4;
            if (i == 5) (random() % 2 == 0 ? under : over).change(random);
            options.environment.date = {start + static_cast<double>(random() % 100) / 4};
        }
    }
    EXPECT_LT(painted, whole * 17 / 20);
}

TEST(LastPicture, WhatIsStillIsDrawnOnce) {
    ViewList face;
    for (int tick = 0; tick < 12; ++tick)
        face.push_back(RotationEffect{.angle = tick * 0.5,
                                      .content = FixedFrame{.width = 70, .height = 2, .content = Rectangle{}}});
    const AnyView hand = FixedFrame{.width = 4,
                                    .height = 40,
                                    .alignment = Alignment::top,
                                    .content = FixedFrame{.height = 20, .content = Capsule{}}};
    face.push_back(ClockHandRotationEffect{.period = ClockHandPeriod::custom(60), .content = hand});
    face.push_back(FixedFrame{.width = 6, .height = 6, .content = Circle{}});
    face.push_back(RotationEffect{
        .angle = 0.4,
        .content = FixedFrame{.width = 60, .height = 60, .content = Border{.color = Color::blue, .width = 1}}});
    const AnyView view = ZStack{.children = std::move(face)};
    RenderOptions options;
    options.size = {80, 80};
    options.scale = 1;
    LastPicture last;
    std::vector<std::uint64_t> painted;
    for (int second = 0; second < 8; ++second) {
        options.environment.date = {start + second};
        const std::uint64_t before = last.work().pixels;
        EXPECT_TRUE(*ImageRenderer(view, options).pixels(last) == ImageRenderer(view, options).pixels()) << second;
        painted.push_back(last.work().pixels - before);
    }
    const std::uint64_t all = 80 * 80;
    for (std::size_t i = 0; i < painted.size(); ++i) {
        // The third picture is the second in which the hand alone has turned.
        EXPECT_EQ(painted[i] == all, i < 3) << i;
        EXPECT_LE(painted[i], i < 3 ? all : all / 2) << i;
    }
}

AnyView rowsOf(std::vector<std::string> texts, Color color = Color::primary) {
    ViewList rows;
    for (const std::string& text : texts)
        rows.push_back(
            Background{.background = RoundedRectangle{6, RoundedCornerStyle::continuous},
                       .content = FixedFrame{.width = 80, .height = 20, .content = Text{.content = SharedText(text)}}});
    return ForegroundColor{.color = color, .content = VStack{.spacing = 0, .children = std::move(rows)}};
}

TEST(LastPicture, PaintsAndCompressesOnlyWhatDiffers) {
    const AnyView view = rowsOf({"one", "two", "three"});
    const struct {
        const char* why;
        AnyView next;
        std::uint64_t mostPixels, mostRows;
    } rows[] = {
        {"the same view", view, 0, 0},
        {"an equal view", rowsOf({"one", "two", "three"}), 0, 0},
        {"the text of a row", rowsOf({"one", "six", "three"}), 1800, 80},
        {"a text as wide, in another order", rowsOf({"one", "two", "there"}), 1800, 80},
        {"all colours", rowsOf({"one", "two", "three"}, Color::blue), 7000, 80},
        {"another view", Circle{}, 7200, 80},
    };
    RenderOptions options;
    options.size = {90, 80};
    options.scale = 1;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        LastPicture last;
        static_cast<void>(ImageRenderer(view, options).encode(PictureFormat::png, last));
        EXPECT_EQ(last.work().pixels, 90U * 80);
        EXPECT_EQ(last.work().rows, 80U);
        const auto before = last.work();
        ImageRenderer renderer(row.next, options);
        EXPECT_EQ(renderer.encode(PictureFormat::png, last), renderer.encode(PictureFormat::png));
        EXPECT_LE(last.work().pixels - before.pixels, row.mostPixels);
        EXPECT_LE(last.work().rows - before.rows, row.mostRows);
        EXPECT_EQ(last.work().pixels == before.pixels, row.mostPixels == 0);
    }
}

TEST(LastPicture, LayersThatBeginElsewhereAreDrawnAnew) {
    const auto row = [](const char* text, double angle) {
        const AnyView emoji = RotationEffect{.angle = angle, .content = Text{.content = SharedText("😀")}};
        const AnyView label = FixedFrame{.width = 31, .content = Text{.content = SharedText(text)}};
        return Opacity{.value = 0.5, .content = HStack{.children = {label, emoji}}};
    };
    RenderOptions options;
    options.size = {90, 50};
    for (double angle = 0.1; angle < 3; angle += 0.2) {
        LastPicture last;
        for (const char* text : {"Aj", " ", "i", "Aj"}) {
            ImageRenderer renderer(row(text, angle), options);
            EXPECT_EQ(renderer.encode(PictureFormat::png, last), renderer.encode(PictureFormat::png)) << angle << text;
        }
    }
}

TEST(LastPicture, GlyphsThatReachFarAreDrawnInAnyPart) {
    std::string marks = "ก";
    for (int i = 0; i < 40; ++i) marks += "\u0E49";
    for (const std::string& text : {marks, std::string("\uFDFD")}) {
        LastPicture last;
        for (const Color& color : {Color::blue, Color::gray}) {
            const AnyView spot = FixedFrame{.width = 8, .height = 12, .content = color};
            const AnyView view = ZStack{
                .alignment = Alignment::topTrailing,
                .children = {spot, FixedFrame{.width = 110,
                                              .height = 100,
                                              .content = Text{.content = SharedText(text), .font = Font::system(16)}}}};
            RenderOptions options;
            options.size = {110, 100};
            ImageRenderer renderer(view, options);
            EXPECT_EQ(renderer.encode(PictureFormat::png, last), renderer.encode(PictureFormat::png)) << text;
        }
    }
}

TEST(LastPicture, LaysOutOnlyWhatIsAnotherView) {
    const auto frame = [](double minimum) {
        return FlexibleFrame{.minWidth = minimum, .maxWidth = 10, .content = Text{.content = SharedText("a")}};
    };
    const AnyView reader = GeometryReader{[](const GeometryProxy&) -> AnyView { return Circle{}; }};
    const auto otherReader = GeometryReader{[](const GeometryProxy&) -> AnyView { return Circle{}; }};
    RenderOptions options;
    options.size = {60, 40};
    RenderOptions later = options;
    later.environment.date = {start};
    RenderOptions dark = options;
    dark.environment.appearance = Appearance::dark;
    const struct {
        const char* why;
        AnyView first, second;
        const RenderOptions& secondOptions;
        bool isKept;
    } rows[] = {
        {"equal views", rowsOf({"one", "two"}), rowsOf({"one", "two"}), options, true},
        {"another text", rowsOf({"one", "two"}), rowsOf({"one", "six"}), options, false},
        {"another colour", rowsOf({"one"}), rowsOf({"one"}, Color::blue), options, false},
        {"one view less", rowsOf({"one", "two"}), rowsOf({"one"}), options, false},
        {"another moment", rowsOf({"one"}), rowsOf({"one"}), later, false},
        {"another appearance", rowsOf({"one"}), rowsOf({"one"}), dark, false},
        {"the same reader", reader, reader, options, true},
        {"a reader with a like content", reader, otherReader, options, false},
        {"an equal frame", frame(1), frame(1), options, true},
        {"an equal frame to report", frame(20), frame(20), options, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.why);
        LastPicture last;
        static_cast<void>(ImageRenderer(row.first, options).encode(PictureFormat::png, last));
        const auto tree = last.tree();
        ImageRenderer renderer(row.second, row.secondOptions);
        EXPECT_EQ(renderer.encode(PictureFormat::png, last),
                  ImageRenderer(row.second, row.secondOptions).encode(PictureFormat::png));
        EXPECT_EQ(last.tree() == tree, row.isKept);
        EXPECT_EQ(renderer.layoutText(), ImageRenderer(row.second, row.secondOptions).layoutText());
    }
}

TEST(LastPicture, PicturesOfAllFormsFollowEachOther) {
    LastPicture last;
    RenderOptions options;
    options.size = {60, 40};
    for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg, PictureFormat::webp, PictureFormat::png,
                                       PictureFormat::jpeg, PictureFormat::pdf})
        for (const PngCompression compression :
             {PngCompression::fast, PngCompression::small, PngCompression::balanced, PngCompression::fast})
            for (const char* text : {"a", "b", "b"}) {
                options.compression = compression;
                ImageRenderer renderer(Text{.content = SharedText(text)}, options);
                EXPECT_EQ(renderer.encode(format, last), renderer.encode(format));
                EXPECT_TRUE(*renderer.pixels(last) == renderer.pixels());
            }
}

TEST(LastPicture, WhatIsHandedOutStaysAsItIs) {
    LastPicture last;
    RenderOptions options;
    options.size = {60, 40};
    const auto draw = [&](const char* text) {
        return ImageRenderer(Text{.content = SharedText(text)}, options).pixels(last);
    };
    const auto first = draw("a");
    const PixelBuffer copy = *first;
    EXPECT_EQ(draw("a"), first) << "the same object";
    const auto second = draw("b");
    EXPECT_TRUE(*first == copy);
    EXPECT_FALSE(*second == copy);
}

TEST(LastPicture, KeepsNoMoreThanItMay) {
    RenderOptions options;
    options.size = {60, 40};
    ImageRenderer renderer(Circle{}, options);
    LastPicture none(1000);
    EXPECT_EQ(renderer.encode(PictureFormat::png, none), renderer.encode(PictureFormat::png));
    EXPECT_EQ(none.byteCount(), 0U);
    LastPicture last;
    EXPECT_EQ(renderer.encode(PictureFormat::png, last), renderer.encode(PictureFormat::png));
    EXPECT_GT(last.byteCount(), 180U * 120 * 4);
    last.forget();
    EXPECT_EQ(last.byteCount(), 0U);
}

TEST(LastPicture, GoesOnAfterAFailure) {
    RenderOptions options;
    options.size = {60, 40};
    LastPicture last;
    ImageRenderer renderer(rowsOf({"one"}), options);
    static_cast<void>(renderer.encode(PictureFormat::png, last));
    RenderOptions poor = options;
    poor.budget.pixels = 100;
    ImageRenderer failing(rowsOf({"two"}), poor);
    EXPECT_THROW(static_cast<void>(failing.encode(PictureFormat::png, last)), TavrinError);
    EXPECT_EQ(last.byteCount(), 0U);
    EXPECT_EQ(renderer.encode(PictureFormat::png, last), renderer.encode(PictureFormat::png));
}

TEST(LastPicture, SaysWhatIsDoubtfulOnceWhereItIsDrawnAnew) {
    RenderOptions options;
    options.size = {60, 40};
    const auto doubtful = [](const char* text) {
        const AnyView narrow = FlexibleFrame{.minWidth = 30, .maxWidth = 20, .content = Text{.content = text}};
        return AnyView(VStack{.children = {narrow, narrow}});
    };
    LastPicture last;
    static_cast<void>(ImageRenderer(doubtful("one"), options).encode(PictureFormat::png, last));
    ImageRenderer scratch(doubtful("two"), options);
    static_cast<void>(scratch.encode(PictureFormat::png));
    options.budget.steps = scratch.cost().steps;  // which the next picture might not keep
    std::vector<std::string> notes;
    options.diagnostics = [&](std::string_view note) { notes.emplace_back(note); };
    static_cast<void>(ImageRenderer(doubtful("two"), options).encode(PictureFormat::png, last));
    EXPECT_EQ(last.byteCount(), 0U) << "it was not drawn anew";
    EXPECT_EQ(notes.size(), 2U) << "one for each frame";
}

TEST(LastPicture, PassesTheBudgetsThatAPictureFromScratchPasses) {
    RenderOptions options;
    options.size = {120, 80};
    const auto outcome = [](const auto& draw) -> std::string {
        try {
            return draw();
        } catch (const TavrinError& error) {
            return error.kind + ": " + error.message;
        }
    };
    const AnyView first = rowsOf({"one", "two", "three"});
    const AnyView second = rowsOf({"one", "six", "three"});
    ImageRenderer scratch(second, options);
    static_cast<void>(scratch.encode(PictureFormat::png));
    const Cost cost = scratch.cost();
    int passed = 0;
    int failed = 0;
    for (int part = 0; part < 3; ++part)
        for (const double share : {0.05, 0.3, 0.9, 0.99, 1.0, 1.01, 1.5, 3.0}) {
            const auto of = [share](auto whole) {
                return static_cast<std::uint64_t>(static_cast<double>(whole) * share);
            };
            RenderOptions poor = options;
            if (part == 0) poor.budget.steps = of(cost.steps);
            if (part == 1) poor.budget.pixels = of(cost.pixels);
            if (part == 2) poor.budget.bytes = of(cost.peakBytes);
            const std::string expected =
                outcome([&] { return ImageRenderer(second, poor).encode(PictureFormat::png); });
            LastPicture last;
            static_cast<void>(ImageRenderer(first, options).encode(PictureFormat::png, last));
            for (int again = 0; again < 3; ++again)
                EXPECT_EQ(outcome([&] { return ImageRenderer(second, poor).encode(PictureFormat::png, last); }),
                          expected)
                    << part << " " << share;
            ++(expected.starts_with("Budget") ? failed : passed);
        }
    EXPECT_GT(passed, 5);
    EXPECT_GT(failed, 5);
}

}  // namespace
}  // namespace tavrin
