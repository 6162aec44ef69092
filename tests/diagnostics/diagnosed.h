// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tavrin/diagnostics.h"
#include "tavrin/tavrin.h"

namespace tavrin {

/// Options that ask no network and whose moment stands still.
inline DiagnoseOptions quietOptions() {
    DiagnoseOptions options;
    options.date = Date{1'795'249'105};
    options.timeZone = TimeZone();
    options.fetchPolicy = FetchPolicy::none;
    return options;
}

/// A document whose node "main" is the given one.
inline std::string documentOf(std::string_view main, std::string_view version = "1.2") {
    return "{\"version\": \"" + std::string(version) + "\", \"nodes\": {\"main\": " + std::string(main) + "}}";
}

/// "warning unknown-key nodes.main.fontsize" of each diagnostic, in their order.
inline std::vector<std::string> linesOf(const std::vector<Diagnostic>& diagnostics) {
    std::vector<std::string> lines;
    for (const Diagnostic& found : diagnostics) {
        const std::string role = found.role == TextRole::model ? " model:" : " ";
        lines.push_back(std::string(name(found.severity)) + " " + std::string(found.code) + role + toText(found.path));
    }
    return lines;
}

}  // namespace tavrin
