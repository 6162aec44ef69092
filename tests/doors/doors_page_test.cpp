// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "tavrin/doors/option.h"
#include "tavrin/doors/option_values.h"
#include "tavrin/doors/words.h"

namespace tavrin {
namespace {

std::string valuesOf(const Option& option) {
    std::string text;
    if (option.kind == OptionKind::word) {
        for (const std::string_view word : option.words)
            text.append(text.empty() ? "`" : ", `").append(word).append("`");
        return text;
    }
    return wantedBy(option);
}

/// The options as the page has them.
std::string tableOfOptions() {
    std::ostringstream table;
    table << "| option | what it says | values | default |\n| --- | --- | --- | --- |\n";
    for (const Option& option : sharedOptions())
        table << "| `" << spelled(option.name, Spelling::camel) << "` | " << option.sentence << " | "
              << valuesOf(option) << " | " << option.usual << " |\n";
    return table.str();
}

TEST(Golden, ThePageOfDoorsHasAllOptions) {
    const std::string path = TAVRIN_SOURCE_DIR "/docs/doors.md";
    std::ifstream file(path);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::string begin = "<!-- options -->\n";
    const std::size_t from = page.find(begin);
    const std::size_t to = page.find("<!-- /options -->");
    ASSERT_TRUE(from != std::string::npos && to != std::string::npos);
    const std::string wanted = page.substr(0, from) + begin + tableOfOptions() + page.substr(to);
    if (std::getenv("TAVRIN_UPDATE_GOLDENS") != nullptr) std::ofstream(path) << wanted;
    EXPECT_EQ(page, wanted) << "`make update-goldens` rewrites it";
}

}  // namespace
}  // namespace tavrin
