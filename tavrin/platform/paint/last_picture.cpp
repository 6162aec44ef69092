// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/last_picture.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/changed_areas.h"
#include "tavrin/platform/paint/drawn_extents.h"
#include "tavrin/platform/paint/png_fast.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/widget_painter.h"

namespace tavrin::paint {
namespace {

PixelRect boundsOf(const PixelBuffer& picture) { return {0, 0, picture.width(), picture.height()}; }

PixelBuffer copyOf(const PixelBuffer& picture, const PixelRect& area) {
    PixelBuffer copy = PixelBuffer::unset(area.width(), area.height());
    for (int y = area.y0; y < area.y1; ++y)
        std::copy(picture.row(y) + area.x0, picture.row(y) + area.x1, copy.row(y - area.y0));
    return copy;
}

/// Where so much of a picture differs, all of it is painted: that takes no copies, and views are looked at once.
bool isMost(const std::vector<PixelRect>& areas, const PixelRect& all) {
    std::uint64_t count = 0;
    for (const PixelRect& area : areas) count += area.area();
    return 4 * count > 3 * all.area();
}

/// Of an area, from the first to the last row in which a picture is not as it was; `before` gives its rows of before.
template <class Before>
PixelRect differingRows(const PixelBuffer& picture, PixelRect area, const Before& before) {
    const auto isAlike = [&](int y) {
        return std::equal(picture.row(y) + area.x0, picture.row(y) + area.x1, before(y));
    };
    while (!area.empty() && isAlike(area.y0)) ++area.y0;
    while (!area.empty() && isAlike(area.y1 - 1)) --area.y1;
    return area;
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
    FastPng fast = {};
    std::vector<PixelRect> changed = {};  ///< since the last fast PNG
    std::string png = {};                 ///< a PNG of the present picture, where it took long to make
    std::optional<PngCompression> compression = std::nullopt;  ///< that PNG's

    /// A picture to draw the next one on: as the last, unless all of it will be drawn.
    [[nodiscard]] PixelBuffer other(bool isDrawnWhole) {
        const bool isFree = spare && spare.use_count() == 1;
        if (isDrawnWhole) return isFree ? std::move(*spare) : PixelBuffer::unset(pixels->width(), pixels->height());
        if (!isFree) return *pixels;
        for (const PixelRect& area : inSpare)
            for (int y = area.y0; y < area.y1; ++y)
                std::copy(pixels->row(y) + area.x0, pixels->row(y) + area.x1, spare->row(y) + area.x0);
        return std::move(*spare);
    }

    /// What a picture before can give to this one.
    void takeOver(Kept& before) {
        pixels = std::move(before.pixels);
        spare = std::move(before.spare);
        inSpare = std::move(before.inSpare);
        fast = std::move(before.fast);
        changed = std::move(before.changed);
        png = std::move(before.png);
        compression = before.compression;
    }

    /// Draws in windows, with `paint`, on another picture than the last if that is shared, and makes it the present
    /// one.
    template <class Paint>
    void draw(const std::vector<PixelRect>& windows, const Paint& paint) {
        const bool isWhole = windows.front().area() == PixelRect{0, 0, pixels->width(), pixels->height()}.area();
        // Somebody else may still have the last picture: then another one is drawn, the next by turns.
        const bool isShared = pixels.use_count() > 1;
        PixelBuffer picture = isShared ? other(isWhole) : std::move(*pixels);
        std::vector<PixelRect> news;
        for (const PixelRect& window : windows) {
            const PixelBuffer before = isShared || isWhole ? PixelBuffer() : copyOf(picture, window);
            picture = paint(std::move(picture), window);
            if (isShared)
                news.push_back(differingRows(picture, window, [&](int y) { return pixels->row(y) + window.x0; }));
            else if (isWhole)
                news.push_back(window);
            else
                news.push_back(differingRows(picture, window, [&](int y) { return before.row(y - window.y0); }));
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

    [[nodiscard]] bool looksLike(const Kept& other) const {
        return look == other.look && scale == other.scale && texts == other.texts &&
               tree->environment().appearance == other.tree->environment().appearance;
    }
};

LastPicture::LastPicture(std::size_t maximumBytes) : maximumBytes_(maximumBytes) {}
LastPicture::~LastPicture() = default;
LastPicture::LastPicture(LastPicture&&) noexcept = default;
LastPicture& LastPicture::operator=(LastPicture&&) noexcept = default;

std::shared_ptr<const layout::LayoutTree> LastPicture::tree() const { return kept_ ? kept_->tree : nullptr; }

std::shared_ptr<TextPainter> LastPicture::texts() const { return kept_ ? kept_->texts : nullptr; }

void LastPicture::forget() { kept_.reset(); }

std::size_t LastPicture::byteCount() const {
    if (!kept_) return 0;
    constexpr std::size_t bytesOfNode = 512;  // with its text and its answers
    return kept_->pixels->byteCount() + (kept_->spare ? kept_->spare->byteCount() : 0) + kept_->fast.byteCount() +
           kept_->png.capacity() + kept_->extents->byteCount() + kept_->tree->nodes().size() * bytesOfNode;
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
    const auto paint = [&](Canvas canvas) {
        paintWidget(*now->tree, look, canvas, *texts, {.extents = now->extents.get()});
        return canvas;
    };

    if (!before || !before->looksLike(*now)) {
        now->pixels = std::make_shared<PixelBuffer>(paint(Canvas::raster(look.size, scale)).finishRaster());
        now->changed = {boundsOf(*now->pixels)};
        work_.pixels += now->changed.front().area();
        kept_ = std::move(now);
        return;
    }
    if (before->tree == now->tree) std::swap(before->extents, now->extents);
    const PixelRect all = boundsOf(*before->pixels);
    const std::vector<PixelRect> windows =
        grownWindows(changedAreas(*before->extents, *now->extents, scale), all,
                     [&](const PixelRect& window) { return paint(Canvas::survey(all, scale, window)).window(); });
    now->takeOver(*before);
    if (!windows.empty()) {
        for (const PixelRect& window : windows) work_.pixels += window.area();
        now->draw(windows, [&](PixelBuffer picture, const PixelRect& window) {
            return paint(Canvas::raster(std::move(picture), scale, window)).finishRaster();
        });
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
