// SPDX-License-Identifier: MIT
#include <cmath>
#include <limits>
#include <random>

#include "tavrin/platform/foundation/tavrin_error.h"
#include "tests/layout/laid_out.h"

namespace tavrin::layout {
namespace {

/// Views of all kinds at random, with lengths that no sane document has.
class Hostile {
public:
    explicit Hostile(unsigned seed) : random_(seed) {}

    AnyView view(int depth) {
        switch (depth > 0 ? pick(19) : pick(5)) {
            case 0: return Rectangle{};
            case 1: return StrokedShape{.shape = Circle{}, .lineWidth = length()};
            case 2: return Spacer{.minLength = maybe()};
            case 3: return Text{.content = "some words to break", .font = Font::system(12)};
            case 4: return pick(3) == 0 ? AnyView(EmptyView{}) : AnyView(Color::rgb(length(), 0, 0, length()));
            case 5: return VStack{.spacing = maybe(), .children = views(depth)};
            case 6: return HStack{.spacing = maybe(), .children = views(depth)};
            case 7: return ZStack{.alignment = alignment(), .children = views(depth)};
            case 8: return FixedFrame{maybe(), maybe(), alignment(), view(depth - 1)};
            case 9: return FlexibleFrame{maybe(), maybe(), maybe(), maybe(), alignment(), view(depth - 1)};
            case 10:
                return Padding{
                    .edges = {pick(2) == 0, true, pick(2) == 0, false}, .length = length(), .content = view(depth - 1)};
            case 11: return AspectRatio{maybe(), pick(2) == 0 ? ContentMode::fit : ContentMode::fill, view(depth - 1)};
            case 12: return ZIndex{length(), view(depth - 1)};
            case 13: return Background{alignment(), view(depth - 1), view(depth - 1)};
            case 14: return Overlay{alignment(), view(depth - 1), view(depth - 1)};
            case 15:
                return LineLimit{pick(2) == 0 ? std::nullopt : std::optional<std::int64_t>(pick(5) - 2),
                                 view(depth - 1)};
            case 16: return Offset{length(), length(), view(depth - 1)};
            case 17: return Text{.content = Date{length()}};
            default: return Opacity{length(), view(depth - 1)};
        }
    }

    double length() {
        constexpr double lengths[] = {std::numeric_limits<double>::quiet_NaN(),
                                      infinity,
                                      -infinity,
                                      1e308,
                                      -1e308,
                                      5e-324,
                                      -0.0,
                                      0,
                                      1,
                                      -1,
                                      30,
                                      1e-300,
                                      1e17};
        return lengths[pick(std::size(lengths))];
    }

private:
    int pick(std::size_t count) { return static_cast<int>(random_() % count); }
    std::optional<double> maybe() { return pick(2) == 0 ? std::nullopt : std::optional(length()); }
    Alignment alignment() {
        return {static_cast<HorizontalAlignment>(pick(3)), static_cast<VerticalAlignment>(pick(3))};
    }
    ViewList views(int depth) {
        ViewList children;
        for (int left = pick(5); left > 0; --left) children.push_back(view(depth - 1));
        return children;
    }

    std::mt19937 random_;
};

TEST(HostileNumbers, MakeNoPlaceNaNAndNoSizeNegative) {
    for (unsigned seed = 0; seed < 3'000; ++seed) {
        SCOPED_TRACE(seed);
        Hostile hostile(seed);
        const LayoutTree tree = laidOut(hostile.view(6), seed % 5 == 0 ? Size{hostile.length(), 158} : mediumWidget);
        for (const LayoutNode& node : tree.nodes()) {
            if (node.absent) continue;
            ASSERT_FALSE(std::isnan(node.frame.origin.x) || std::isnan(node.frame.origin.y));
            ASSERT_GE(node.frame.size.width, 0);
            ASSERT_GE(node.frame.size.height, 0);
        }
    }
}

}  // namespace
}  // namespace tavrin::layout
