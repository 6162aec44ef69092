// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tavrin/json/json_text.h"

namespace tavrin::cli {

/// The way to the member of models that names their pictures.
class ModelKey {
public:
    /// Keys with dots between them: "person.id". Throws `UsageError` for an empty one.
    explicit ModelKey(std::string_view text);

    /// The name in a model: a string, or a number as JSON writes it. Throws `DecodingError` with its place where there
    /// is none, or none that a file can have with `room` bytes for it.
    [[nodiscard]] std::string nameIn(const JSONElement& model, std::size_t room) const;

    /// That the name which a model has is that of an earlier line's picture.
    [[noreturn]] void failTaken(const std::string& name) const;

private:
    std::vector<std::string> keys_;
};

}  // namespace tavrin::cli
