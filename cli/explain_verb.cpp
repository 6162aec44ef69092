// SPDX-License-Identifier: MIT
#include <cstddef>
#include <vector>

#include "cli/production.h"
#include "cli/verbs.h"
#include "tavrin/doors/explain_path.h"
#include "tavrin/platform/explain/explanation.h"
#include "tavrin/widget/widget.h"

namespace tavrin::cli {
namespace {

/// An outline, or the views at the arguments' path in sentences; or either as JSON. Throws `TavrinError` of kind
/// "Explain" for a path that names nothing that is drawn.
std::string explained(const ExplainArguments& arguments, const Production& work) {
    const Explanation explanation = work.document.widget(work.options).explanation();
    const bool isJSON = arguments.format == TextFormat::json;
    if (!arguments.path) return isJSON ? explanationJSON(explanation) : outlineText(explanation);
    const std::vector<std::size_t> chosen = viewsAtPath(explanation, *arguments.path, work.source.text);
    return isJSON ? explanationJSON(explanation, chosen) : explanationText(explanation, chosen);
}

}  // namespace

int run(const ExplainArguments& arguments, const Reporter& reporter) {
    return printAll(arguments, reporter, [&](const Production& work) { return explained(arguments, work); });
}

}  // namespace tavrin::cli
