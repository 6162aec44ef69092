// SPDX-License-Identifier: MIT
#include "cli/serve/served_picture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include <xxhash.h>

#include "cli/http/http_status.h"
#include "tavrin/doors/media_type.h"
#include "tavrin/platform/foundation/strings/base64.h"

namespace tavrin::cli {
namespace {

constexpr double secondsOfDay = 24 * 60 * 60;

HTTPResponse answerWith(const ServedPicture& picture, std::string cacheControl) {
    HTTPResponse response{.contentType = std::string(mediaTypes[picture.format]), .sharedBody = picture.bytes};
    response.headers.emplace_back("ETag", picture.tag);
    response.headers.emplace_back("Cache-Control", picture.lacksPictures ? "no-store" : std::move(cacheControl));
    return response;
}

std::string maxAge(const ServedPicture& picture, Date now) {
    const double from = picture.isNow ? now.secondsSince1970 : picture.moment.secondsSince1970;
    const double seconds = picture.validUntil ? picture.validUntil->secondsSince1970 - from : secondsOfDay;
    return "max-age=" + std::to_string(static_cast<std::int64_t>(std::floor(std::clamp(seconds, 0.0, secondsOfDay))));
}

}  // namespace

bool ServedPicture::holdsAt(Date now) const {
    if (lacksPictures) return false;
    if (!isNow) return true;
    return now.secondsSince1970 >= moment.secondsSince1970 &&
           (!validUntil || now.secondsSince1970 < validUntil->secondsSince1970);
}

std::string entityTag(std::string_view bytes) {
    XXH128_canonical_t digest;
    XXH128_canonicalFromHash(&digest, XXH3_128bits(bytes.data(), bytes.size()));
    return "\"" + base64URL({reinterpret_cast<const char*>(digest.digest), sizeof digest.digest}) + "\"";
}

bool matchesTag(std::string_view ifNoneMatch, std::string_view tag) {
    if (ifNoneMatch == "*") return true;
    // A tag holds no quotes, but maybe commas.
    for (std::size_t begin = ifNoneMatch.find('"'); begin != std::string_view::npos;) {
        const std::size_t end = ifNoneMatch.find('"', begin + 1);
        if (end == std::string_view::npos) return false;
        if (ifNoneMatch.substr(begin, end + 1 - begin) == tag) return true;
        begin = ifNoneMatch.find('"', end + 1);
    }
    return false;
}

HTTPResponse widgetAnswer(const ServedPicture& picture, std::string_view ifNoneMatch) {
    HTTPResponse response = answerWith(picture, "no-cache");
    if (!matchesTag(ifNoneMatch, picture.tag)) return response;
    response.status = http_status::notModified;
    response.contentType.clear();
    response.sharedBody = nullptr;
    return response;
}

HTTPResponse renderAnswer(const ServedPicture& picture, Date now) { return answerWith(picture, maxAge(picture, now)); }

}  // namespace tavrin::cli
