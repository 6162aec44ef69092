// SPDX-License-Identifier: MIT
#include "cli/serve/request_options.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

#include "tavrin/doors/option_error.h"
#include "tavrin/doors/option_words.h"
#include "tavrin/doors/words.h"

namespace tavrin::cli {
namespace {

/// The words of the policies that allow no more than one.
std::string policiesUpTo(FetchPolicy most) {
    return listed(std::span<const std::string_view>(fetchWords).first(indexOf(most) + 1));
}

}  // namespace

bool isForRequests(OptionName name) {
    return describe(name).kind != OptionKind::folder && describe(name).use != OptionUse::answer;
}

void refuseServersOwn(OptionName name) {
    if (isForRequests(name)) return;
    const std::string option = spelled(name, Spelling::camel);
    throw OptionError(OptionFault::name, option, option + " is not for requests to say");
}

DrawingOptions within(const DrawingOptions& served, DrawingOptions asked) {
    const FetchPolicy most = served.widget.fetchPolicy;
    if (asked.widget.fetchPolicy > most)
        throw OptionError(OptionFault::value, "fetch",
                          "fetch takes " + policiesUpTo(most) + " here, not '" +
                              std::string(fetchWords[indexOf(asked.widget.fetchPolicy)]) + "'");
    const RenderBudget& bounds = served.widget.budget;
    RenderBudget& budget = asked.widget.budget;
    budget.steps = std::min(budget.steps, bounds.steps);
    budget.pixels = std::min(budget.pixels, bounds.pixels);
    budget.bytes = std::min(budget.bytes, bounds.bytes);
    if (bounds.seconds) budget.seconds = std::min(budget.seconds.value_or(*bounds.seconds), *bounds.seconds);
    return asked;
}

}  // namespace tavrin::cli
