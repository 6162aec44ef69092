#include "tavrin/platform/ui/widget_family.h"

#include <algorithm>
#include <cstddef>

namespace tavrin {
namespace {

/// One row of widget sizes; screens of the same sizes share it. Phones have no extra large widgets.
struct ScreenSizes {
    Size small;
    Size medium;
    Size large;
    std::optional<Size> extraLarge = std::nullopt;
};

constexpr std::array<ScreenSizes, 9> sizes{{
    {{170, 170}, {364, 170}, {364, 382}},
    {{158, 158}, {338, 158}, {338, 354}},
    {{169, 169}, {360, 169}, {360, 379}},
    {{155, 155}, {329, 155}, {329, 345}},
    {{157, 157}, {348, 157}, {348, 351}},
    {{148, 148}, {321, 148}, {321, 324}},
    {{141, 141}, {292, 141}, {292, 311}},
    {{170, 170}, {379, 170}, {379, 379}, Size{795, 379}},
    {{155, 155}, {342, 155}, {342, 342}, Size{716, 342}},
}};

constexpr std::array<Size, 11> screens{{{428, 926},
                                        {430, 932},
                                        {390, 844},
                                        {393, 852},
                                        {414, 896},
                                        {375, 812},
                                        {414, 736},
                                        {375, 667},
                                        {320, 568},
                                        {1024, 1366},
                                        {834, 1194}}};
constexpr std::array<std::size_t, 11> rowOfScreen{0, 0, 1, 1, 2, 3, 4, 5, 6, 7, 8};

bool isTablet(const ScreenSizes& row) { return row.extraLarge.has_value(); }

}  // namespace

std::optional<WidgetFamily> widgetFamily(std::string_view name) {
    const auto found = std::find(widgetFamilyNames.begin(), widgetFamilyNames.end(), name);
    if (found == widgetFamilyNames.end()) return std::nullopt;
    return static_cast<WidgetFamily>(found - widgetFamilyNames.begin());
}

const std::array<Size, 11>& knownScreens() { return screens; }

std::optional<Size> widgetSize(WidgetFamily family, Size screen) {
    const auto found = std::find(screens.begin(), screens.end(), screen);
    if (found == screens.end()) return std::nullopt;
    const ScreenSizes& row = sizes[rowOfScreen[static_cast<std::size_t>(found - screens.begin())]];
    switch (family) {
        case WidgetFamily::systemSmall: return row.small;
        case WidgetFamily::systemMedium: return row.medium;
        case WidgetFamily::systemLarge: return row.large;
        case WidgetFamily::systemExtraLarge: return row.extraLarge;
        case WidgetFamily::accessoryCircular: return isTablet(row) ? std::nullopt : std::optional(Size{72, 72});
        case WidgetFamily::accessoryRectangular: return isTablet(row) ? std::nullopt : std::optional(Size{160, 72});
        case WidgetFamily::accessoryInline: return isTablet(row) ? std::nullopt : std::optional(Size{234, 26});
    }
    return std::nullopt;
}

}  // namespace tavrin
