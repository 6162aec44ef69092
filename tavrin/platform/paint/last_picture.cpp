// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/last_picture.h"

#include <algorithm>
#include <cstddef>
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

    /// What a picture before can give to this one.
    void takeOver(Kept& before) {
        pixels = std::move(before.pixels);
        spare = std::move(before.spare);
        inSpare = std::move(before.inSpare);
        fast = std::move(before.fast);
        changed = std::move(before.changed);
        png = std::move(before.png);
        isEncoded = before.isEncoded;
        compression = before.compression;
    }

    /// Makes a picture the present one that was drawn in some windows, on another than the last if that is shared.
    void put(PixelBuffer picture, std::vector<PixelRect> windows, bool isShared) {
        const bool isAlike = isShared && areAlike(*pixels, picture, windows);
        auto drawn = std::make_shared<PixelBuffer>(std::move(picture));
        if (isAlike) {
            spare = std::move(drawn);
            inSpare.clear();
            return;
        }
        spare = isShared ? std::move(pixels) : nullptr;
        pixels = std::move(drawn);
        changed.insert(changed.end(), windows.begin(), windows.end());
        changed = mergedAreas(std::move(changed));
        inSpare = std::move(windows);
        isEncoded = false;
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
    std::vector<PixelRect> windows =
        grownWindows(changedAreas(*before->extents, *now->extents, scale), all,
                     [&](const PixelRect& window) { return paint(Canvas::survey(all, scale, window)).window(); });
    now->takeOver(*before);
    if (!windows.empty()) {
        // Somebody else may still have the last picture: then another one is drawn, the next by turns.
        const bool isShared = now->pixels.use_count() > 1;
        PixelBuffer picture = isShared ? now->other(windows.front() == all) : std::move(*now->pixels);
        for (const PixelRect& window : windows) {
            work_.pixels += window.area();
            picture = paint(Canvas::raster(std::move(picture), scale, window)).finishRaster();
        }
        now->put(std::move(picture), std::move(windows), isShared);
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
