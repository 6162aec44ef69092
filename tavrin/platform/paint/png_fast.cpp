// SPDX-License-Identifier: MIT
#include "tavrin/platform/paint/png_fast.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "tavrin/platform/foundation/budget/meter.h"
#include "tavrin/platform/foundation/pixels/pixels.h"
#include "tavrin/platform/paint/deflate_header.h"
#include "tavrin/platform/paint/run_deflater.h"

namespace tavrin::paint {

/// Some of a picture's rows, compressed.
struct PngBand {
    int begin = 0;
    int end = 0;
    std::string blocks = {};
    ZlibSum sum = {};
};

/// Bands end between groups of so many rows.
constexpr int rowsInGroup = 16;

/// Neighbouring rows, between which no band ends.
struct PngGroup {
    std::size_t runCount = 0;
    std::vector<PixelRun> runs = {};  ///< those of all rows, or none where they are not kept
    std::array<RowBytes, rowsInGroup> bytes = {};
    bool isOpaque = false;
};

namespace {

/// So many runs take some twenty times the bytes that a band takes for itself.
constexpr std::size_t runsInBand = 2048;

/// Those of a picture with so many are not kept.
constexpr std::size_t mostKeptRuns = 500'000;

/// The rows of one picture, compressed from top to bottom.
class BandWriter {
public:
    /// `deflater` is one for pictures that are opaque or, as this one, are not. `differs` tells of each row in which
    /// columns it may be another than the groups know; without it nothing is known or kept.
    BandWriter(const PixelBuffer& picture, RunDeflater& deflater, std::vector<PngGroup>& groups,
               const std::vector<Columns>* differs)
        : picture_(picture),
          width_(static_cast<std::size_t>(picture.width())),
          groups_(groups),
          differs_(differs),
          // Nothing is above the first row; opaque pixels have no alpha there to be less than.
          nothing_(width_, deflater.isOpaque() ? 0xFF000000 : 0),
          deflater_(deflater) {
        for (const PngGroup& group : groups) keptRuns_ += group.runs.size();
    }

    /// The band that begins with a row.
    PngBand write(int begin) {
        PngBand band{begin, begin};
        do {
            const int end = std::min(band.end + rowsInGroup, picture_.height());
            addRows(band.end, end, band.sum);
            band.end = end;
        } while (!endsBand(band.end));
        band.blocks = deflater_.take(band.end == picture_.height());
        return band;
    }

    /// Whether a band ends before a row; the groups above are known.
    [[nodiscard]] bool endsBand(int y) const {
        if (y == picture_.height()) return true;
        const auto next = static_cast<std::size_t>(y / rowsInGroup);
        std::size_t runs = 0;
        std::size_t counted = 0;
        for (std::size_t count = 1; count <= next && next % count == 0; count *= 2) {
            for (; counted < count; ++counted) runs += groups_[next - 1 - counted].runCount;
            if (runs >= runsInBand) return true;
        }
        return false;
    }

    /// How many rows were looked at, and not only known by their runs.
    [[nodiscard]] std::uint64_t seenRows() const { return seenRows_; }

private:
    /// Adds the rows of a group, those that are the same as the runs they are made of.
    void addRows(int begin, int end, ZlibSum& sumOfBand) {
        PngGroup& group = groups_[static_cast<std::size_t>(begin / rowsInGroup)];
        const std::vector<PixelRun> before = std::exchange(group.runs, {});
        keptRuns_ -= before.size();
        group.runCount = 0;
        std::span<const PixelRun> left = before;
        for (int y = begin; y < end; ++y) {
            RowBytes& bytes = group.bytes[static_cast<std::size_t>(y - begin)];
            const std::span<const PixelRun> known = firstRow(left);
            left = left.subspan(known.size());
            group.runCount += addRow(y, bytes, known);
            sumOfBand.append(bytes, width_, deflater_.channels());
        }
        if (!differs_ || keptRuns_ + group.runCount > mostKeptRuns) return;
        const std::span<const PixelRun> runs = deflater_.lastRuns(group.runCount);
        group.runs.assign(runs.begin(), runs.end());
        keptRuns_ += runs.size();
    }

    /// A row of which runs may be known from before; returns of how many it is made.
    std::size_t addRow(int y, RowBytes& bytes, std::span<const PixelRun> known) {
        const Columns changed = known.empty() ? Columns{0, width_} : (*differs_)[static_cast<std::size_t>(y)];
        if (changed.empty()) {
            deflater_.addRow(known);
            return known.size();
        }
        Meter::ofThisThread().paint(width_);
        ++seenRows_;
        if (known.empty()) bytes = {};
        const std::uint32_t* const above = y == 0 ? nothing_.data() : picture_.row(y - 1);
        return deflater_.addRow({picture_.row(y), above, width_}, bytes, known, changed);
    }

    static std::span<const PixelRun> firstRow(std::span<const PixelRun> rows) {
        if (rows.empty()) return rows;
        const auto next = std::find_if(rows.begin() + 1, rows.end(), [](const PixelRun& run) { return run.startsRow; });
        return rows.first(static_cast<std::size_t>(next - rows.begin()));
    }

    const PixelBuffer& picture_;
    std::size_t width_;
    std::vector<PngGroup>& groups_;
    const std::vector<Columns>* differs_;
    std::vector<std::uint32_t> nothing_;
    RunDeflater& deflater_;
    std::size_t keptRuns_ = 0;
    std::uint64_t seenRows_ = 0;
};

std::size_t groupCount(const PixelBuffer& picture) {
    return static_cast<std::size_t>((picture.height() + rowsInGroup - 1) / rowsInGroup);
}

/// Writes bands, which are all of a picture, as a zlib stream.
void appendStream(const std::vector<PngBand>& bands, std::string& out) {
    ZlibSum sum;
    std::size_t size = zlibHeader.size() + sum.digits().size();
    for (const PngBand& band : bands) size += band.blocks.size();
    out.reserve(out.size() + size + PngFile::endSize);
    out += zlibHeader;
    for (const PngBand& band : bands) {
        out += band.blocks;
        sum.append(band.sum);
    }
    const auto digits = sum.digits();
    out.append(digits.data(), digits.size());
}

/// The pixels of a group of rows.
PixelRect groupOf(const PixelBuffer& picture, std::size_t group) {
    const int begin = static_cast<int>(group) * rowsInGroup;
    return {0, begin, picture.width(), std::min(begin + rowsInGroup, picture.height())};
}

bool isOpaque(const PixelBuffer& picture, const PixelRect& area) {
    for (int y = area.y0; y < area.y1; ++y)
        if (!allOpaque(picture.row(y) + area.x0, static_cast<std::size_t>(area.width()))) return false;
    return true;
}

}  // namespace

void appendPngRowsFast(const PixelBuffer& picture, PngColorType colorType, std::string& out) {
    std::vector<PngGroup> groups(groupCount(picture));
    RunDeflater deflater(colorType == PngColorType::rgb);
    BandWriter writer(picture, deflater, groups, nullptr);
    std::vector<PngBand> bands;
    HeldBytes held;
    for (int y = 0; y < picture.height(); y = bands.back().end) {
        bands.push_back(writer.write(y));
        held.grow(2 * bands.back().blocks.size());  // here and in `out`
    }
    appendStream(bands, out);
}

std::string encodePngFast(const PixelBuffer& picture) {
    const bool opaque = picture.isOpaque();
    PngFile file(picture.width(), picture.height(), 8, opaque ? PngColorType::rgb : PngColorType::rgba);
    file.beginChunk("IDAT");
    appendPngRowsFast(picture, opaque ? PngColorType::rgb : PngColorType::rgba, file.bytes());
    file.endChunk();
    return file.finish();
}

/// The last picture.
struct FastPng::Kept {
    int width = 0;
    int height = 0;
    std::vector<PngGroup> groups;
    std::vector<PngBand> bands;
    std::optional<RunDeflater> deflater;  // whose memory is kept, too

    /// Prepares for the next picture; which of its rows may be compressed to others.
    std::vector<Columns> renew(const PixelBuffer& picture, std::span<const PixelRect> changed);
};

FastPng::FastPng() = default;
FastPng::~FastPng() = default;
FastPng::FastPng(FastPng&&) noexcept = default;
FastPng& FastPng::operator=(FastPng&&) noexcept = default;

std::size_t FastPng::byteCount() const {
    if (!kept_) return 0;
    std::size_t count = kept_->groups.size() * sizeof(PngGroup) + (kept_->deflater ? kept_->deflater->byteCount() : 0);
    for (const PngGroup& group : kept_->groups) count += group.runs.capacity() * sizeof(PixelRun);
    for (const PngBand& band : kept_->bands) count += band.blocks.capacity();
    return count;
}

std::vector<Columns> FastPng::Kept::renew(const PixelBuffer& picture, std::span<const PixelRect> changed) {
    const bool isAnother = width != picture.width() || height != picture.height();
    const std::size_t count = groupCount(picture);
    width = picture.width();
    height = picture.height();
    groups.resize(count);
    if (isAnother) bands.clear();
    // 1. Where rows may be others: where they have changed, and those above, with which they are compared.
    const Columns all{0, static_cast<std::size_t>(width)};
    std::vector<Columns> differs(static_cast<std::size_t>(height), isAnother ? all : Columns());
    // 2. Whether there is an alpha channel.
    if (isAnother)
        for (std::size_t group = 0; group < count; ++group)
            groups[group].isOpaque = isOpaque(picture, groupOf(picture, group));
    for (const PixelRect& any : changed) {
        const PixelRect area = intersection(any, {0, 0, width, height});
        if (area.empty()) continue;
        const Columns columns{static_cast<std::size_t>(area.x0), static_cast<std::size_t>(area.x1)};
        for (int y = area.y0; y < std::min(area.y1 + 1, height); ++y) differs[static_cast<std::size_t>(y)].add(columns);
        const auto last = static_cast<std::size_t>((area.y1 - 1) / rowsInGroup);
        for (auto group = static_cast<std::size_t>(area.y0 / rowsInGroup); group <= last; ++group) {
            const PixelRect rows = groupOf(picture, group);
            // In what was opaque only what has changed need be looked at.
            const bool wasOpaque = groups[group].isOpaque;
            groups[group].isOpaque = isOpaque(picture, wasOpaque ? intersection(rows, area) : rows);
        }
    }
    const bool opaque = std::ranges::all_of(groups, &PngGroup::isOpaque);
    // 3. If that changes, so do all.
    const bool isUnlike = !deflater || deflater->isOpaque() != opaque;
    if (isUnlike) {
        deflater.emplace(opaque);
        differs.assign(differs.size(), all);
    }
    if (isAnother || isUnlike)
        for (PngGroup& group : groups) group.runs.clear();
    return differs;
}

std::string FastPng::encode(const PixelBuffer& picture, std::span<const PixelRect> changed) {
    std::unique_ptr<Kept> kept = std::move(kept_);
    if (!kept) kept = std::make_unique<Kept>();
    const std::vector<Columns> differs = kept->renew(picture, changed);
    // 4. From top to bottom: a band that begins and ends where one did, in rows that are the same, is that one. Of
    //    another the rows that are the same need not be looked at again.
    BandWriter writer(picture, *kept->deflater, kept->groups, &differs);
    const auto isStillThere = [&](const PngBand& band) {
        for (int y = band.begin; y < band.end; ++y)
            if (!differs[static_cast<std::size_t>(y)].empty()) return false;
        for (int y = band.begin; y < band.end; y += rowsInGroup) {
            const int end = std::min(y + rowsInGroup, band.end);
            if (writer.endsBand(end) != (end == band.end)) return false;
        }
        return true;
    };
    std::vector<PngBand> bands;
    HeldBytes held;
    auto next = kept->bands.begin();
    for (int y = 0; y < picture.height(); y = bands.back().end) {
        while (next != kept->bands.end() && next->begin < y) ++next;
        const bool isKept = next != kept->bands.end() && next->begin == y && isStillThere(*next);
        bands.push_back(isKept ? std::move(*next) : writer.write(y));
        held.grow(2 * bands.back().blocks.size());  // here and in the file
    }
    kept->bands = std::move(bands);
    seenRows_ += writer.seenRows();

    const PngColorType colorType = kept->deflater->isOpaque() ? PngColorType::rgb : PngColorType::rgba;
    PngFile file(picture.width(), picture.height(), 8, colorType);
    file.beginChunk("IDAT");
    appendStream(kept->bands, file.bytes());
    file.endChunk();
    kept_ = std::move(kept);
    return file.finish();
}

}  // namespace tavrin::paint
