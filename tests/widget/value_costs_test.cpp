// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tavrin/json/json_outline.h"
#include "tavrin/widget/widget.h"
#include "tests/growth.h"

// Whatever a document makes larger, what it costs grows in proportion: counted, never timed.

namespace tavrin {
namespace {

constexpr std::size_t count = 64;

/// What a document costs that is read, drawn and written, also one whose drawing fails; nothing for one that is refused
/// before.
Cost costOf(const std::string& text, PictureFormat format) {
    WidgetOptions options;
    options.room = {"small", {80, 40}};
    options.scale = 1;
    options.date = Date{1'795'249'105};
    options.timeZone = TimeZone();
    options.fetchPolicy = FetchPolicy::none;
    std::optional<Widget> widget;
    try {
        widget.emplace(Document(text).widget(std::nullopt, options));
        (void)widget->encode(format);
    } catch (const std::exception&) {
    }
    return widget ? widget->cost() : Cost{};
}

/// The value's text, many times as large: a text, a number or the elements of an array again and again.
std::string grown(std::string_view raw, std::size_t times) {
    if (raw.front() != '"' && raw.front() != '[') {
        std::ostringstream product;
        product << std::stod(std::string(raw)) * static_cast<double>(times);
        return product.str();
    }
    const std::string_view inner = raw.substr(1, raw.size() - 2);
    std::string text(1, raw.front());
    for (std::size_t i = 0; i < times; ++i) text.append(i > 0 && raw.front() == '[' ? "," : "").append(inner);
    return text + raw.back();
}

bool isEmptyArray(std::string_view raw) {
    return raw.front() == '[' && raw.find_first_not_of(" \n", 1) == raw.size() - 1;
}

void expectLinearCost(const std::function<Cost(std::size_t times)>& costAt) {
    const Cost once = costAt(count);
    const Cost twice = costAt(2 * count);
    const Cost fourTimes = costAt(4 * count);
    const auto amounts = [&](std::string_view what, auto member, double slack) {
        expectLinear(what,
                     std::vector{static_cast<double>(once.*member), static_cast<double>(twice.*member),
                                 static_cast<double>(fourTimes.*member)},
                     slack);
    };
    amounts("steps", &Cost::steps, 300);
    amounts("pixels", &Cost::pixels, 20'000);
    amounts("bytes", &Cost::peakBytes, 300'000);  // parsing the blanks takes most of it and hides what takes less
}

class ReferenceDocument : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(ReferenceDocument, CostsNoMoreThanInProportionToEachOfItsValues) {
    std::stringstream read;
    read << std::ifstream(GetParam()).rdbuf();
    const std::string text = read.str();
    const JSONOutline outline(text);
    // So many that the values of the text before them are counted, not estimated as those of short texts are.
    const std::string blanks(1U << 16U, ' ');
    for (JSONOutline::Index index = 0; index < outline.values().size(); ++index) {
        const std::string_view raw = outline.raw(index);
        if (raw.front() == '{' || raw == "true" || raw == "false" || raw == "null" || isEmptyArray(raw)) continue;
        for (const PictureFormat format : {PictureFormat::png, PictureFormat::svg, PictureFormat::pdf}) {
            SCOPED_TRACE(testing::Message()
                         << toText(outline.path(index)) << " in format " << static_cast<int>(format));
            expectLinearCost([&](std::size_t times) {
                const auto [begin, end] = std::pair(outline[index].begin, outline[index].end);
                return costOf(text.substr(0, begin) + grown(raw, times) + text.substr(end) + blanks, format);
            });
        }
    }
}

std::vector<std::filesystem::path> referenceDocuments() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(TAVRIN_SOURCE_DIR "/docs/reference/documents"))
        if (entry.path().extension() == ".json") paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    return paths;
}

INSTANTIATE_TEST_SUITE_P(All, ReferenceDocument, testing::ValuesIn(referenceDocuments()), [](const auto& document) {
    std::string name = document.param.stem().string();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
});

}  // namespace
}  // namespace tavrin
