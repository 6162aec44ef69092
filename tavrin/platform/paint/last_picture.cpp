// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/last_picture.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <tuple>
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
    FastPng fast = {};
    std::vector<PixelRect> changed = {};  ///< since the last fast PNG
    std::string png = {};                 ///< of the present picture where `isEncoded`
    bool isEncoded = false;
    PngCompression compression = PngCompression::fast;

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
    return kept_->pixels->byteCount() + kept_->fast.byteCount() + kept_->png.capacity() +
           kept_->tree->nodes().size() * bytesOfNode;
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
        const std::optional<PixelRect> wider = canvas.windowForOutlines();
        return std::pair{canvas.finishRaster(), wider};
    };

    if (!before || !before->looksLike(*now)) {
        now->pixels = std::make_shared<PixelBuffer>(paint(Canvas::raster(look.size, scale)).first);
        now->changed = {boundsOf(*now->pixels)};
        work_.pixels += now->changed.front().area();
    } else {
        const PixelRect all = boundsOf(*before->pixels);
        std::vector<PixelRect> areas = changedAreas(*before->tree, *now->tree, scale, *texts);
        for (PixelRect& area : areas) area = intersection(area, all);
        std::erase_if(areas, [](const PixelRect& area) { return area.empty(); });
        if (isMost(areas, all)) areas = {all};
        if (!areas.empty()) {
            // Only what somebody else still has is copied, as far as it stays.
            const bool isShared = before->pixels.use_count() > 1;
            PixelBuffer picture;
            if (!isShared)
                picture = std::move(*before->pixels);
            else if (areas.front() == all)
                picture = PixelBuffer::unset(all.width(), all.height());
            else
                picture = *before->pixels;
            for (std::size_t i = 0; i < areas.size(); ++i)
                for (std::optional<PixelRect> window = areas[i]; window;) {
                    areas[i] = *window;
                    work_.pixels += areas[i].area();
                    std::tie(picture, window) = paint(Canvas::raster(std::move(picture), scale, areas[i]));
                    if (areas[i] == all) areas = {all};
                }
            if (isShared && areAlike(*before->pixels, picture, areas))
                areas.clear();
            else
                before->pixels = std::make_shared<PixelBuffer>(std::move(picture));
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
