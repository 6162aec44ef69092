// SPDX-License-Identifier: MIT
#include "cli/snapshot/snapshot.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "cli/input.h"
#include "tavrin/images/image_decoder.h"
#include "tavrin/json/decoding_error.h"
#include "tavrin/json/json_difference.h"
#include "tavrin/platform/foundation/tavrin_error.h"
#include "tavrin/platform/paint/picture_difference.h"
#include "tavrin/platform/paint/png_encoder.h"

namespace tavrin::cli {
namespace {

using paint::PixelBuffer;

std::optional<PixelBuffer> pixelsOf(const std::string& png) {
    const auto bitmap = decodeImage(png, {.maximumPixels = static_cast<std::size_t>(PixelBuffer::maxPixels),
                                          .maximumBytesInUse = std::numeric_limits<std::size_t>::max()});
    if (!bitmap) return std::nullopt;
    PixelBuffer pixels(bitmap->width(), bitmap->height());
    for (int y = 0; y < pixels.height(); ++y) std::copy_n(bitmap->row(y), pixels.width(), pixels.row(y));
    return pixels;
}

std::string sizeInWords(const PixelBuffer& picture) {
    return fmt::format("{} × {}", picture.width(), picture.height());
}

std::string inWords(const paint::PictureDifference& found, const PixelBuffer& before, const PixelBuffer& after) {
    if (!found.sameSize)
        return fmt::format("the picture is {} pixels instead of {}", sizeInWords(after), sizeInWords(before));
    const auto& [x0, y0, x1, y1] = found.bounds;
    return fmt::format("{} of {} pixels, within {} × {} at {}, {} and by up to {} of 255", found.count,
                       std::int64_t{after.width()} * after.height(), x1 - x0, y1 - y0, x0, y0, found.greatest);
}

/// A picture of the difference; none where it would be too large for a picture.
std::string drawnDifference(const PixelBuffer& before, const PixelBuffer& after, int tolerance) {
    try {
        return paint::encodePng(paint::differencePicture(before, after, tolerance));
    } catch (const TavrinError&) {
        return {};
    }
}

SnapshotDifference ofPictures(const std::string& kept, const std::string& drawn, int tolerance) {
    if (kept == drawn) return {};
    const auto before = pixelsOf(kept);
    const auto after = pixelsOf(drawn);
    if (!before || !after) return {"the kept picture cannot be read as one"};
    const paint::PictureDifference found = compare(*before, *after, tolerance);
    if (found.none()) return {};
    return {inWords(found, *before, *after), drawnDifference(*before, *after, tolerance)};
}

/// The name of a view or modifier of a tree; empty for any other value.
std::string viewName(const JSON& value) {
    for (const char* key : {"view", "modifier"})
        if (const JSON* word = value.find(key)) return word->description();
    return {};
}

/// The innermost view around a place of a tree, and the way from there.
struct PlaceInView {
    std::string view = "the root";
    CodingPath wayToView;
    CodingPath wayInside;
};

PlaceInView placeInView(const JSON& tree, const CodingPath& path) {
    PlaceInView place;
    const JSON* at = &tree;
    for (std::size_t step = 0; at && step <= path.size(); ++step) {
        const auto here = path.begin() + static_cast<std::ptrdiff_t>(step);
        if (const std::string name = viewName(*at); !name.empty() && step < path.size())
            place = {"the " + name, {path.begin(), here}, {here, path.end()}};
        if (step == path.size()) break;
        const auto* key = std::get_if<std::string>(&*here);
        at = key ? at->find(*key) : at->find(static_cast<std::int64_t>(std::get<std::size_t>(*here)));
    }
    return place;
}

/// A value in a few words; of a whole view only its name.
std::string valueInWords(const JSON& value) {
    constexpr std::size_t most = 120;
    if (const std::string name = viewName(value); !name.empty()) return "a " + name;
    std::string text = value.description();
    if (std::holds_alternative<SharedText>(value.object())) text = "\"" + text + "\"";
    return text.size() <= most ? text : "another value";
}

std::string inWords(const JSONDifference& first, const JSON& before) {
    const PlaceInView place = placeInView(before, first.path);
    std::string words = place.view;
    if (!place.wayToView.empty()) words += " at " + tavrin::toText(place.wayToView);
    words += ": " + (place.wayInside.empty() ? "it" : tavrin::toText(place.wayInside));
    if (!first.before) return words + " is new, " + valueInWords(*first.after);
    if (!first.after) return words + " is gone, " + valueInWords(*first.before);
    return words + " was " + valueInWords(*first.before) + " and is " + valueInWords(*first.after);
}

std::string ofTrees(const std::string& kept, const std::string& drawn) {
    if (kept == drawn) return {};
    constexpr std::size_t most = 1000;
    try {
        const JSON before = JSON::parse(kept);
        const JSON after = JSON::parse(drawn);
        const std::vector<JSONDifference> found = differences(before, after, most);
        if (found.empty()) return {};
        // Places follow from what a view is.
        const auto isFrame = [](const JSONDifference& one) { return tavrin::toText(one.path).ends_with("frame"); };
        const auto cause = std::find_if_not(found.begin(), found.end(), isFrame);
        std::string words = inWords(cause == found.end() ? found.front() : *cause, before);
        if (found.size() > 1)
            words += fmt::format(", and {}{} more difference{}", found.size() == most ? "at least " : "",
                                 found.size() - 1, found.size() == 2 ? "" : "s");
        return words;
    } catch (const DecodingError&) {
        return "the kept tree cannot be read as one";
    }
}

bool isThere(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

}  // namespace

std::optional<Snapshot> readSnapshot(const SnapshotFiles& files) {
    if (!isThere(files.png) || !isThere(files.tree)) return std::nullopt;
    return Snapshot{readFound(files.png.string()), readFound(files.tree.string())};
}

SnapshotDifference difference(const Snapshot& kept, const Snapshot& drawn, int tolerance) {
    SnapshotDifference found = ofPictures(kept.png, drawn.png, tolerance);
    const std::string ofTree = ofTrees(kept.tree, drawn.tree);
    if (!found.words.empty() && !ofTree.empty()) found.words += "; ";
    found.words += ofTree;
    return found;
}

}  // namespace tavrin::cli
