// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

#include "tavrin/schema/json_building.h"
#include "tavrin/schema/language.h"

// What a key takes, as a part of a JSON Schema.

namespace tavrin {

/// A reference to a definition of the schema.
[[nodiscard]] JSONObject::Member referenceTo(std::string_view definition);

/// The name under which a node or a modifier is defined.
[[nodiscard]] std::string nodeDefinition(std::string_view type);
[[nodiscard]] std::string modifierDefinition(std::string_view type);

/// What a field takes.
[[nodiscard]] JSONMembers valueSchema(const LanguageField& field);

/// The definitions that these refer to, but for those of records.
[[nodiscard]] JSONMembers valueDefinitions(const Language& language);

}  // namespace tavrin
