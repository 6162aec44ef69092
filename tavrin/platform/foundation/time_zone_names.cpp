#include "tavrin/platform/foundation/time_zone_names.h"

#include <algorithm>
#include <exception>
#include <vector>

#include <date/tz.h>

namespace tavrin {
namespace {

std::vector<std::string_view> readNames() {
    std::vector<std::string_view> names;
    try {
        for (const date::time_zone& zone : date::get_tzdb().zones) names.emplace_back(zone.name());
    } catch (const std::exception&) {  // no database
    }
    // Also folders of the same zones counted otherwise.
    std::erase_if(names, [](std::string_view name) {
        return name.starts_with("posix/") || name.starts_with("right/") || name == linkToSystemZone;
    });
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace

std::span<const std::string_view> timeZoneNames() {
    static const std::vector<std::string_view> names = readNames();
    return names;
}

}  // namespace tavrin
