// SPDX-License-Identifier: MIT
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/arguments.h"
#include "cli/output.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#include "tavrin/platform/foundation/strings/number_text.h"
#ifdef TAVRIN_PREVIEW
#include "cli/preview/preview.h"
#endif

namespace tavrin::cli {

#ifdef TAVRIN_PREVIEW

namespace {

/// 0 to 65535.
std::uint16_t readPort(std::string_view option, std::string_view value) {
    if (const auto port = intFromText<std::uint16_t>(value)) return *port;
    throw UsageError(std::string(option) + " takes a number from 0 to 65535, not '" + std::string(value) + "'");
}

}  // namespace

void preview(const Command& command) {
    if (command.operands.size() > 1) throw UsageError("`tavrin preview` takes one folder");
    PreviewOptions options{.folder = command.operands.empty() ? "." : command.operands.front()};
    if (const std::string* port = command.find("--port")) options.port = readPort("--port", *port);
    const WidgetOptions widget = readWidgetOptions(command);
    options.maxImageSize = widget.maxImageSize;
    options.budget = widget.budget;
    options.fonts = widget.fonts;
    if (!options.budget.seconds) options.budget.seconds = PreviewOptions::usualSeconds;
    if (command.find("--offline")) options.fetchPolicy = FetchPolicy::none;
    servePreview(options, [&options](const std::string& address) {
        writeStandardOutput("Showing '" + options.folder.string() + "' at " + address + "\nCtrl-C ends.\n");
    });
}

#else

void preview(const Command&) { throw UsageError("this program was built without the preview"); }

#endif

}  // namespace tavrin::cli
