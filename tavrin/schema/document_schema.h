// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace tavrin {

/// A JSON Schema (2020-12) of documents, as pretty-printed text that is always the same, with which editors complete,
/// explain and check them. It accepts what this library decodes, as far as a schema can tell. Thread-safe.
[[nodiscard]] std::string documentSchema();

}  // namespace tavrin
