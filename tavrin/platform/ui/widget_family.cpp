// SPDX-License-Identifier: MIT
#include "tavrin/platform/ui/widget_family.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tavrin {
namespace {

constexpr Size none{};

/// Screens that share all widget sizes.
struct ScreenSizes {
    std::array<Size, 3> screens;  // `none` behind the last
    std::array<Size, enumeratorCount<WidgetFamily>> sizes;
};

/// Only tablets have extra large widgets, and only lock screens of phones accessories.
constexpr ScreenSizes rows[] = {
    // phones
    {{{{440, 956}, {430, 932}, {428, 926}}},
     {{{170, 170}, {364, 170}, {364, 382}, none, {76, 76}, {172, 76}, {257, 26}}}},
    {{{{414, 896}}}, {{{169, 169}, {360, 169}, {360, 379}, none, {76, 76}, {160, 72}, {248, 26}}}},
    {{{{402, 874}}}, {{{162, 162}, {344, 162}, {344, 366}, none, {72, 72}, {160, 72}, {234, 26}}}},
    {{{{393, 852}, {390, 844}}}, {{{158, 158}, {338, 158}, {338, 354}, none, {72, 72}, {160, 72}, {234, 26}}}},
    {{{{414, 736}}}, {{{157, 157}, {348, 157}, {348, 351}, none, {76, 76}, {170, 76}, {248, 26}}}},
    {{{{375, 812}, {360, 780}}}, {{{155, 155}, {329, 155}, {329, 345}, none, {72, 72}, {157, 72}, {225, 26}}}},
    {{{{375, 667}}}, {{{148, 148}, {321, 148}, {321, 324}, none, {68, 68}, {153, 68}, {225, 26}}}},
    {{{{320, 568}}}, {{{141, 141}, {292, 141}, {292, 311}, none, none, none, none}}},
    // tablets
    {{{{1192, 1590}}}, {{{188, 188}, {412, 188}, {412, 412}, {860, 412}, none, none, none}}},
    {{{{1024, 1366}}}, {{{170, 170}, {378.5, 170}, {378.5, 378.5}, {795, 378.5}, none, none, none}}},
    {{{{970, 1389}, {954, 1373}}}, {{{162, 162}, {350, 162}, {350, 350}, {726, 350}, none, none, none}}},
    {{{{834, 1194}, {820, 1180}}}, {{{155, 155}, {342, 155}, {342, 342}, {715.5, 342}, none, none, none}}},
    {{{{834, 1112}}}, {{{150, 150}, {327.5, 150}, {327.5, 327.5}, {682, 327.5}, none, none, none}}},
    {{{{810, 1080}}}, {{{146, 146}, {320.5, 146}, {320.5, 320.5}, {669, 320.5}, none, none, none}}},
    {{{{744, 1133}, {768, 1024}}}, {{{141, 141}, {305.5, 141}, {305.5, 305.5}, {634.5, 305.5}, none, none, none}}},
};

}  // namespace

std::optional<WidgetFamily> widgetFamily(std::string_view name) { return enumeratorNamed<WidgetFamily>(name); }

std::span<const Size> knownScreens() {
    static const std::vector<Size> screens = [] {
        std::vector<Size> list;
        for (const ScreenSizes& row : rows)
            std::ranges::copy_if(row.screens, std::back_inserter(list), [](Size screen) { return screen != none; });
        return list;
    }();
    return screens;
}

std::optional<Size> widgetSize(WidgetFamily family, Size screen) {
    const auto row = std::ranges::find_if(rows, [screen](const ScreenSizes& each) {
        return screen != none && std::ranges::find(each.screens, screen) != each.screens.end();
    });
    if (row == std::end(rows)) return std::nullopt;
    const Size size = row->sizes[indexOf(family)];
    return size == none ? std::nullopt : std::optional(size);
}

std::optional<WidgetRoom> widgetRoom(WidgetFamily family, Size screen) {
    const std::optional<Size> size = widgetSize(family, screen);
    if (!size) return std::nullopt;
    return WidgetRoom{std::string(name(family)), *size, linksCanBeTapped(family)};
}

}  // namespace tavrin
