// SPDX-License-Identifier: MIT
#include <string>

#include "cli/arguments.h"
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
    if (const std::string* port = command.find("--port")) options.port = readPort("--port", *port);
    if (const std::string* size = command.find("--max-image-size"))
        options.maxImageSize = readSize("--max-image-size", *size);
    options.budget = readBudget(command);
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
