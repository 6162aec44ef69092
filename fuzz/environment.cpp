// SPDX-License-Identifier: MIT
#include <string>

#include "fuzz/widget_input.h"
#include "tavrin/values/model_context.h"

// An expression, and behind a line of three dashes a value of the environment and of the model: resolved to each type.

namespace {

template <class T>
void resolve(const tavrin::ModelContext& context, std::string_view expression) {
    try {
        (void)context.resolve<T>(expression);
    } catch (const std::exception&) {  // an error is an answer; a crash is none
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tavrin::setPreconditionHandler(tavrin::throwPreconditionError);
    const auto [expression, value] = WidgetInput(data, size);
    tavrin::JSON model;
    try {
        model = tavrin::JSON::parse(value.value_or("null"));
    } catch (const std::exception&) {
        model = std::string(value.value_or(""));
    }
    const tavrin::ModelContext context(model, {{"a", tavrin::EnvironmentValue(value.value_or(""))},
                                               {"b", tavrin::EnvironmentValue(true)},
                                               {"c", tavrin::EnvironmentValue(0.1F)}});
    resolve<std::string>(context, expression);
    resolve<bool>(context, expression);
    resolve<double>(context, expression);
    resolve<float>(context, expression);
    resolve<std::int64_t>(context, expression);
    resolve<std::uint8_t>(context, expression);
    return 0;
}
