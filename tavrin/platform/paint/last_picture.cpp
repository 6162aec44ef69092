// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/last_picture.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "tavrin/platform/layout/kept_answers.h"
#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/changed_areas.h"
#include "tavrin/platform/paint/drawn_extents.h"
#include "tavrin/platform/paint/png_fast.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/widget_painter.h"
#include "tavrin/platform/ui/primitive_views.h"

namespace tavrin::paint {
namespace {

PixelRect boundsOf(const PixelBuffer& picture) { return {0, 0, picture.width(), picture.height()}; }

void copyInto(PixelBuffer& picture, const PixelRect& area, const PixelBuffer& from) {
    for (int y = area.y0; y < area.y1; ++y)
        std::copy(from.row(y) + area.x0, from.row(y) + area.x1, picture.row(y) + area.x0);
}

PixelBuffer copyOf(const PixelBuffer& picture, const PixelRect& area) {
    PixelBuffer copy = PixelBuffer::unset(area.width(), area.height());
    for (int y = area.y0; y < area.y1; ++y)
        std::copy(picture.row(y) + area.x0, picture.row(y) + area.x1, copy.row(y - area.y0));
    return copy;
}

std::uint64_t pixelCount(const std::vector<PixelRect>& areas) {
    std::uint64_t count = 0;
    for (const PixelRect& area : areas) count += area.area();
    return count;
}

/// Where so much of a picture differs, all of it is painted: that takes no copies, and views are looked at once.
bool isMost(const std::vector<PixelRect>& areas, const PixelRect& all) {
    return 4 * pixelCount(areas) > 3 * all.area();
}

/// Whether a drawing can be divided before a view, with something drawn before it: what is around the view is drawn as
/// if it were not there.
bool canDivide(const layout::LayoutTree& tree, const DrawnWay& way) {
    const bool isFirst = way.empty() || way.back() < way.size();  // all before it are around it
    return !isFirst && std::all_of(way.begin(), way.end() - 1, [&](layout::LayoutTree::Index index) {
        const ViewTraits& traits = traitsOf(tree.node(index).kind);
        return !traits.clips && !traits.composes && !traits.drawsBesideContent;
    });
}

/// The part of an area in which a picture is not as it was; `before` gives the area's rows of before.
template <class Before>
PixelRect differingPart(const PixelBuffer& picture, const PixelRect& area, const Before& before) {
    PixelRect part{area.x1, area.y1, area.x0, area.y0};
    for (int y = area.y0; y < area.y1; ++y) {
        const std::uint32_t* const row = picture.row(y) + area.x0;
        const std::uint32_t* const other = before(y);
        const auto first = static_cast<int>(std::mismatch(row, row + area.width(), other).first - row);
        if (first == area.width()) continue;
        int end = area.width();
        while (area.x0 + end > part.x1 && row[end - 1] == other[end - 1]) --end;
        part = {std::min(part.x0, area.x0 + first), std::min(part.y0, y), std::max(part.x1, area.x0 + end), y + 1};
    }
    return part;
}

/// Windows around areas, as large as a survey finds that they have to be, and united where that is worth it.
template <class Survey>
std::vector<PixelRect> grownWindows(std::vector<PixelRect> areas, const PixelRect& all, const Survey& survey) {
    for (PixelRect& area : areas) area = intersection(area, all);
    std::erase_if(areas, [](const PixelRect& area) { return area.empty(); });
    for (;;) {
        for (PixelRect& window : areas)
            for (PixelRect smaller; window != smaller && window != all;) window = survey(smaller = window);
        const std::size_t count = areas.size();
        areas = mergedAreas(std::move(areas));
        if (areas.size() == count) break;
    }
    if (isMost(areas, all)) areas = {all};
    return areas;
}

}  // namespace

struct LastPicture::Kept {
    std::shared_ptr<const layout::LayoutTree> tree;
    WidgetLook look;
    double scale = 0;
    std::shared_ptr<TextPainter> texts;
    std::unique_ptr<DrawnExtents> extents = std::make_unique<DrawnExtents>(*tree, *texts);
    std::shared_ptr<PixelBuffer> pixels = nullptr;
    std::shared_ptr<PixelBuffer> spare = nullptr;  ///< the picture before that, where somebody else had it
    std::vector<PixelRect> inSpare = {};           ///< where it differs
    /// What is drawn before a view that changes from picture to picture, where all that is drawn would have to be.
    struct Still {
        DrawnWay divider;
        PixelBuffer pixels;
    };
    std::optional<Still> still = std::nullopt;
    /// The first view that was another in this picture, which was drawn whole.
    std::optional<layout::LayoutTree::Index> firstChanged = std::nullopt;
    FastPng fast = {};
    std::vector<PixelRect> changed = {};  ///< since the last fast PNG
    std::string png = {};                 ///< a PNG of the present picture, where it took long to make
    std::optional<PngCompression> compression = std::nullopt;  ///< that PNG's

    /// A picture to draw the next one on: as the last, unless all of it will be drawn.
    [[nodiscard]] PixelBuffer other(bool isDrawnWhole) {
        const bool isFree = spare && spare.use_count() == 1;
        if (isDrawnWhole) return isFree ? std::move(*spare) : PixelBuffer::unset(pixels->width(), pixels->height());
        if (!isFree) return *pixels;
        for (const PixelRect& area : inSpare) copyInto(*spare, area, *pixels);
        return std::move(*spare);
    }

    /// What a picture before can give to this one.
    void takeOver(Kept& before) {
        if (tree == before.tree) extents = std::move(before.extents);
        pixels = std::move(before.pixels);
        spare = std::move(before.spare);
        inSpare = std::move(before.inSpare);
        still = std::move(before.still);
        fast = std::move(before.fast);
        changed = std::move(before.changed);
        png = std::move(before.png);
        compression = before.compression;
    }

    /// Draws in windows, with `paint`, on another picture than the last if that is shared, and makes it the present
    /// one.
    template <class Paint>
    void drawIn(const std::vector<PixelRect>& windows, const Paint& paint) {
        const bool isWhole = windows.front().area() == PixelRect{0, 0, pixels->width(), pixels->height()}.area();
        // Somebody else may still have the last picture: then another one is drawn, the next by turns.
        const bool isShared = pixels.use_count() > 1;
        PixelBuffer picture = isShared ? other(isWhole) : std::move(*pixels);
        std::vector<PixelRect> news;
        for (const PixelRect& window : windows) {
            const PixelBuffer before = isShared || isWhole ? PixelBuffer() : copyOf(picture, window);
            picture = paint(std::move(picture), window);
            if (isShared)
                news.push_back(differingPart(picture, window, [&](int y) { return pixels->row(y) + window.x0; }));
            else if (isWhole)
                news.push_back(window);
            else
                news.push_back(differingPart(picture, window, [&](int y) { return before.row(y - window.y0); }));
        }
        std::erase_if(news, [](const PixelRect& area) { return area.empty(); });
        if (!isShared) {
            *pixels = std::move(picture);
            spare = nullptr;
        } else if (news.empty()) {
            spare = std::make_shared<PixelBuffer>(std::move(picture));
        } else {
            spare = std::exchange(pixels, std::make_shared<PixelBuffer>(std::move(picture)));
        }
        if (!news.empty()) compression = std::nullopt;
        changed.insert(changed.end(), news.begin(), news.end());
        changed = mergedAreas(std::move(changed));
        inSpare = std::move(news);
    }

    /// Draws the tree on a canvas.
    PixelBuffer drawn(Canvas canvas) {
        paint(canvas, {});
        return canvas.finishRaster();
    }
    void paint(Canvas& canvas, PaintOptions how) {
        how.extents = extents.get();
        paintWidget(*tree, look, canvas, *texts, how);
    }

    std::uint64_t drawAfter(Kept& before);
    std::uint64_t drawOverStill(const PixelRect& area);
    std::uint64_t drawInWindows(const std::vector<PixelRect>& windows, const DrawnWay& stillBefore);

    [[nodiscard]] bool looksLike(const Kept& other) const {
        return look == other.look && scale == other.scale && texts == other.texts &&
               tree->environment().appearance == other.tree->environment().appearance;
    }
};

/// Draws what differs from a picture before, and returns how many pixels have been painted.
std::uint64_t LastPicture::Kept::drawAfter(Kept& before) {
    // 1. What differs, and what of a still under it holds.
    const PixelRect all = boundsOf(*before.pixels);
    const auto divider = before.still ? std::optional(before.still->divider.back()) : std::nullopt;
    const ChangedAreas difference = changedAreas(*before.extents, *extents, scale, divider);
    takeOver(before);
    if (tree == before.tree) return 0;
    if (still) still->divider = difference.divider;
    if (still && still->divider.empty()) still.reset();
    if (difference.areas.empty()) return 0;
    const PixelRect overStill = intersection(difference.fromDivider, all);
    if (still && overStill.area() <= 2 * pixelCount(difference.areas)) return drawOverStill(overStill);

    // 2. How large windows around it have to be.
    const std::vector<PixelRect> windows = grownWindows(difference.areas, all, [&](const PixelRect& window) {
        Canvas canvas = Canvas::survey(all, scale, window);
        paint(canvas, {});
        return canvas.window();
    });
    if (windows.empty()) return 0;
    if (still && overStill.area() <= pixelCount(windows)) return drawOverStill(overStill);

    // 3. Where all is drawn, and was for the same view the last time, it will be so again.
    const bool isWhole = windows.front() == all;
    const bool isAgain = isWhole && !still && before.firstChanged == difference.firstBefore;
    const bool keepsStill = isAgain && !look.rounded && canDivide(*tree, difference.first);
    if (isWhole) firstChanged = difference.first.back();
    return drawInWindows(windows, keepsStill ? difference.first : DrawnWay());
}

std::uint64_t LastPicture::Kept::drawOverStill(const PixelRect& area) {
    drawIn({area}, [&](PixelBuffer picture, const PixelRect&) {
        copyInto(picture, area, still->pixels);
        Canvas canvas = Canvas::over(std::move(picture), scale);
        paint(canvas, {.divider = still->divider, .startsAtDivider = true});
        return canvas.finishRaster();
    });
    return area.area();
}

/// `stillBefore` divides the drawing where what is drawn until then is to be kept.
std::uint64_t LastPicture::Kept::drawInWindows(const std::vector<PixelRect>& windows, const DrawnWay& stillBefore) {
    drawIn(windows, [&](PixelBuffer picture, const PixelRect& window) {
        Canvas canvas = Canvas::raster(std::move(picture), scale, window);
        PaintOptions how{.divider = stillBefore};
        if (!stillBefore.empty()) how.atDivider = [&] { still = {stillBefore, canvas.copy()}; };
        paint(canvas, std::move(how));
        return canvas.finishRaster();
    });
    return pixelCount(windows);
}

LastPicture::LastPicture(std::size_t maximumBytes) : maximumBytes_(maximumBytes) {}
LastPicture::~LastPicture() = default;
LastPicture::LastPicture(LastPicture&&) noexcept = default;
LastPicture& LastPicture::operator=(LastPicture&&) noexcept = default;

std::shared_ptr<const layout::LayoutTree> LastPicture::tree() const { return kept_ ? kept_->tree : nullptr; }

std::shared_ptr<TextPainter> LastPicture::texts() const { return kept_ ? kept_->texts : nullptr; }

void LastPicture::forget() { kept_.reset(); }

std::size_t LastPicture::byteCount() const {
    if (!kept_) return 0;
    constexpr std::size_t bytesOfNode = 256;  // with its text
    const layout::KeptAnswers* const answers = kept_->tree->answers();
    return kept_->pixels->byteCount() + (kept_->spare ? kept_->spare->byteCount() : 0) +
           (kept_->still ? kept_->still->pixels.byteCount() : 0) + kept_->fast.byteCount() + kept_->png.capacity() +
           kept_->extents->byteCount() + kept_->tree->nodes().size() * bytesOfNode +
           (answers ? answers->byteCount() : 0);
}

void LastPicture::forgetTooMuch() {
    if (byteCount() > maximumBytes_) forget();
}

std::shared_ptr<const PixelBuffer> LastPicture::pixels(std::shared_ptr<const layout::LayoutTree> tree,
                                                       const WidgetLook& look, double scale,
                                                       const std::shared_ptr<TextPainter>& texts) {
    draw(std::move(tree), look, scale, texts);
    std::shared_ptr<const PixelBuffer> picture = kept_->pixels;
    forgetTooMuch();
    return picture;
}

std::string LastPicture::png(std::shared_ptr<const layout::LayoutTree> tree, const WidgetLook& look, double scale,
                             const std::shared_ptr<TextPainter>& texts, PngCompression compression) {
    draw(std::move(tree), look, scale, texts);
    std::string bytes = encode(compression);
    forgetTooMuch();
    return bytes;
}

void LastPicture::draw(std::shared_ptr<const layout::LayoutTree> tree, const WidgetLook& look, double scale,
                       const std::shared_ptr<TextPainter>& texts) {
    std::unique_ptr<Kept> before = std::move(kept_);
    auto now = std::make_unique<Kept>(Kept{std::move(tree), look, scale, texts});
    if (before && before->looksLike(*now)) {
        work_.pixels += now->drawAfter(*before);
    } else {
        now->pixels = std::make_shared<PixelBuffer>(now->drawn(Canvas::raster(look.size, scale)));
        now->changed = {boundsOf(*now->pixels)};
        work_.pixels += now->changed.front().area();
    }
    kept_ = std::move(now);
}

std::string LastPicture::encode(PngCompression compression) {
    if (compression == PngCompression::fast) {
        const std::uint64_t before = kept_->fast.seenRows();
        std::string png = kept_->fast.encode(*kept_->pixels, kept_->changed);
        kept_->changed.clear();
        work_.rows += kept_->fast.seenRows() - before;
        return png;
    }
    if (kept_->compression != compression) {
        kept_->png = encodePng(*kept_->pixels, compression);
        kept_->compression = compression;
    }
    return kept_->png;
}

}  // namespace tavrin::paint
