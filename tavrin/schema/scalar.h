#pragma once

#include <string>
#include <string_view>

#include "tavrin/schema/language.h"

namespace tavrin {

/// How a kind of scalar is written in a document: the JSON type of its own and, where not any string stands for one,
/// what strings have to look like.
struct Scalar {
    std::string_view definition;   ///< its name in the schema
    std::string_view description;  ///< of what a key of that kind takes
    std::string_view ownType;
    std::string pattern = {};  ///< as in ECMAScript, to be matched from end to end; empty where any string will do
};

/// Of a text, boolean, integer or number.
[[nodiscard]] const Scalar& scalar(ValueKind kind);

/// What `isExpression` accepts.
inline constexpr std::string_view expressionPattern = R"(\{\{[\s\S]*\}\})";

}  // namespace tavrin
