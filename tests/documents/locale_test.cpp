// SPDX-License-Identifier: MIT
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/foundation/comma_locale.h"
#include "tests/golden/golden_case.h"

namespace tavrin {
namespace {

/// All that can be made of a document, from its text on.
std::vector<std::string> outputsOf(const GoldenCase& example, const WidgetOptions& options) {
    Widget widget = example.widget(options);
    std::vector<std::string> outputs{widget.layoutText()};
    for (const PictureFormat format : enumerators<PictureFormat>) outputs.push_back(widget.encode(format));
    return outputs;
}

TEST(Locale, ChangesNoOutput) {
    for (const GoldenCase& example : exampleCases()) {
        const WidgetOptions options = example.widgetOptions();
        const std::vector<std::string> outputs = outputsOf(example, options);
        const CommaLocale locale;
        EXPECT_TRUE(outputsOf(example, options) == outputs) << example.name();
    }
}

}  // namespace
}  // namespace tavrin
