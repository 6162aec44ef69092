// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "tavrin/tavrin.h"

// What the targets that draw share: a document and, behind a line of three dashes, a model; bounds with which one input
// takes milliseconds and everything is reached.

struct WidgetInput {
    std::string_view document;
    std::optional<std::string_view> model;

    WidgetInput(const std::uint8_t* data, std::size_t size) {
        const std::string_view input(reinterpret_cast<const char*>(data), size);
        constexpr std::string_view separator = "\n---\n";
        const std::size_t end = input.find(separator);
        document = input.substr(0, end);
        if (end != std::string_view::npos) model = input.substr(end + separator.size());
    }
};

/// Options for one input; `Options` are the library's for widgets or what is derived from them.
template <class Options = tavrin::WidgetOptions>
Options smallOptions() {
    Options options;
    options.date = tavrin::Date{1'795'249'105};
    options.timeZone = tavrin::TimeZone();
    options.fetchPolicy = tavrin::FetchPolicy::none;
    options.maximumNodes = 2000;
    options.room = {"small", {120, 80}};
    options.scale = 1;
    options.rounded = true;
    options.budget = {.steps = 400'000, .pixels = 20'000'000, .bytes = std::uint64_t{256} << 20};
    return options;
}

/// Does something with a document; an error is an answer, a crash is none.
template <class Work>
void withDocument(const WidgetInput& input, const tavrin::WidgetOptions& options, Work work) {
    tavrin::setPreconditionHandler(tavrin::throwPreconditionError);
    try {
        work(tavrin::Document(input.document, options.budget).bind(input.model, options));
    } catch (const std::exception&) {
    }
}
