// SPDX-License-Identifier: MIT
#include <string>

#include "cli/option_values.h"
#include "cli/output.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"
#ifdef TAVRIN_PREVIEW
#include "cli/preview/preview.h"
#endif

namespace tavrin::cli {

#ifdef TAVRIN_PREVIEW

void preview(const Command& command) {
    if (command.operands.size() > 1) throw UsageError("`tavrin preview` takes one folder");
    PreviewOptions options{.folder = command.operands.empty() ? "." : command.operands.front()};
    const auto port = command.values.find("--port");
    if (port != command.values.end()) options.port = readPort("--port", port->second);
    if (command.values.contains("--offline")) options.fetchPolicy = FetchPolicy::none;
    servePreview(options, [&options](const std::string& address) {
        writeStandardOutput("Showing '" + options.folder.string() + "' at " + address + "\nCtrl-C ends.\n");
    });
}

#else

void preview(const Command&) { throw UsageError("this program was built without the preview"); }

#endif

}  // namespace tavrin::cli
