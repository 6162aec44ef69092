// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/last_picture.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "tavrin/platform/paint/canvas.h"
#include "tavrin/platform/paint/changed_areas.h"
#include "tavrin/platform/paint/png_fast.h"
#include "tavrin/platform/paint/text/text_painter.h"
#include "tavrin/platform/paint/widget_painter.h"

namespace tavrin::paint {
namespace {

PixelRect boundsOf(const PixelBuffer& picture) { return {0, 0, picture.width(), picture.height()}; }

/// Where so much of a picture differs, all of it is painted: that takes no copies, and views are looked at once.
bool isMost(const std::vector<PixelRect>& areas, const PixelRect& all) {
    std::uint64_t count = 0;
    for (const PixelRect& area : areas) count += area.area();
    return 4 * count > 3 * all.area();
}

bool areAlike(const PixelBuffer& a, const PixelBuffer& b, const std::vector<PixelRect>& areas) {
    return std::ranges::all_of(areas, [&](const PixelRect& area) {
        for (int y = area.y0; y < area.y1; ++y)
            if (!std::equal(a.row(y) + area.x0, a.row(y) + area.x1, b.row(y) + area.x0)) return false;
        return true;
    });
}

}  // namespace

struct LastPicture::Kept {
    std::shared_ptr<const layout::LayoutTree> tree;
    WidgetLook look;
    double scale = 0;
    std::shared_ptr<TextPainter> texts;
    std::shared_ptr<PixelBuffer> pixels = nullptr;
    std::shared_ptr<PixelBuffer> spare = nullptr;  ///< the picture before that, where somebody else had it
    std::vector<PixelRect> inSpare = {};           ///< where it differs
    FastPng fast = {};
    std::vector<PixelRect> changed = {};  ///< since the last fast PNG
    std::string png = {};                 ///< of the present picture where `isEncoded`
    bool isEncoded = false;
    PngCompression compression = PngCompression::fast;

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
    constexpr std::size_t bytesOfNode = 256;  // with its text
    return kept_->pixels->byteCount() + (kept_->spare ? kept_->spare->byteCount() : 0) + kept_->fast.byteCount() +
           kept_->png.capacity() + kept_->tree->nodes().size() * bytesOfNode;
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
    encode(compression);
    std::string bytes = kept_->png;
    forgetTooMuch();
    return bytes;
}

void LastPicture::draw(std::shared_ptr<const layout::LayoutTree> tree, const WidgetLook& look, double scale,
                       const std::shared_ptr<TextPainter>& texts) {
    std::unique_ptr<Kept> before = std::move(kept_);
    auto now = std::make_unique<Kept>(Kept{std::move(tree), look, scale, texts});
    const auto paint = [&](Canvas canvas) {
        paintWidget(*now->tree, look, canvas, *texts);
        return canvas;
    };

    if (!before || !before->looksLike(*now)) {
        now->pixels = std::make_shared<PixelBuffer>(paint(Canvas::raster(look.size, scale)).finishRaster());
        now->changed = {boundsOf(*now->pixels)};
        work_.pixels += now->changed.front().area();
    } else {
        const PixelRect all = boundsOf(*before->pixels);
        std::vector<PixelRect> areas = changedAreas(*before->tree, *now->tree, scale, *texts);
        for (PixelRect& area : areas) area = intersection(area, all);
        std::erase_if(areas, [](const PixelRect& area) { return area.empty(); });
        // Windows grow to what they must not cut, and then may be worth uniting.
        const auto grown = [&](PixelRect window) {
            for (PixelRect smaller; window != smaller && window != all;)
                window = paint(Canvas::survey(all, scale, smaller = window)).window();
            return window;
        };
        for (bool isDone = false; !isDone;) {
            std::vector<PixelRect> windows;
            for (const PixelRect& area : areas) windows.push_back(grown(area));
            windows = mergedAreas(std::move(windows));
            isDone = windows.size() == areas.size();
            areas = std::move(windows);
        }
        if (isMost(areas, all)) areas = {all};
        if (!areas.empty()) {
            // Somebody else may still have the last picture: then another one is drawn, the next by turns.
            const bool isShared = before->pixels.use_count() > 1;
            PixelBuffer picture = isShared ? before->other(areas.front() == all) : std::move(*before->pixels);
            for (const PixelRect& area : areas) {
                work_.pixels += area.area();
                picture = paint(Canvas::raster(std::move(picture), scale, area)).finishRaster();
            }
            const bool isAlike = isShared && areAlike(*before->pixels, picture, areas);
            auto drawn = std::make_shared<PixelBuffer>(std::move(picture));
            if (isAlike) {
                now->spare = std::move(drawn);
                areas.clear();
            } else {
                if (isShared) now->spare = std::exchange(before->pixels, nullptr);
                now->inSpare = areas;
                before->pixels = std::move(drawn);
            }
        } else {
            now->spare = std::move(before->spare);
            now->inSpare = std::move(before->inSpare);
        }
        now->pixels = std::move(before->pixels);
        now->fast = std::move(before->fast);
        now->changed = std::move(before->changed);
        now->png = std::move(before->png);
        now->isEncoded = before->isEncoded && areas.empty();
        now->compression = before->compression;
        now->changed.insert(now->changed.end(), areas.begin(), areas.end());
        now->changed = mergedAreas(std::move(now->changed));
    }

    kept_ = std::move(now);
}

void LastPicture::encode(PngCompression compression) {
    if (kept_->isEncoded && kept_->compression == compression) return;
    kept_->isEncoded = false;
    kept_->compression = compression;
    if (compression != PngCompression::fast) {
        kept_->png = encodePng(*kept_->pixels, compression);
    } else {
        const std::uint64_t before = kept_->fast.seenRows();
        kept_->png = kept_->fast.encode(*kept_->pixels, kept_->changed, std::move(kept_->png));
        kept_->changed.clear();
        work_.rows += kept_->fast.seenRows() - before;
    }
    kept_->isEncoded = true;
}

}  // namespace tavrin::paint
