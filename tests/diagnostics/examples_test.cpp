// SPDX-License-Identifier: MIT
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/diagnostics/diagnosed.h"
#include "tests/golden/golden_case.h"

namespace tavrin {
namespace {

using std::filesystem::path;

/// The families that an example is meant for.
std::vector<WidgetRoom> roomsOf(const path& example) {
    std::vector<WidgetRoom> rooms;
    for (const std::string& name : familiesOf(example))
        if (const auto family = widgetFamily(name)) rooms.push_back(widgetRoom(*family, {390, 844}).value());
    return rooms;
}

TEST(Examples, AreClean) {
    int examples = 0;
    for (const auto& entry : std::filesystem::directory_iterator(path(TAVRIN_SOURCE_DIR) / "examples")) {
        if (!exists(entry.path() / "document.json")) continue;
        SCOPED_TRACE(entry.path().filename());
        ++examples;
        DiagnoseOptions options = quietOptions();
        options.rooms = roomsOf(entry.path());
        ASSERT_FALSE(options.rooms.empty());
        options.date = Date::parseRFC3339("2026-11-21T12:00:00Z");
        if (exists(entry.path() / "pictures")) options.imageCacheDir = URL::fileURL(entry.path() / "pictures");
        auto found = diagnose(readFile(entry.path() / "document.json"), readFile(entry.path() / "model.json"), options);
        std::erase_if(found, [](const Diagnostic& each) { return each.severity == Severity::note; });
        EXPECT_EQ(toJSON(found), "[]");
    }
    EXPECT_GT(examples, 10);
}

}  // namespace
}  // namespace tavrin
