#include "tavrin/schema/scalar.h"

#include <array>

namespace tavrin {
namespace {

// What `floatFromText` reads.
constexpr std::string_view decimal = R"((?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][+-]?[0-9]+)?)";
constexpr std::string_view hexadecimal = R"(0[xX](?:[0-9a-fA-F]+\.?[0-9a-fA-F]*|\.[0-9a-fA-F]+)(?:[pP][+-]?[0-9]+)?)";
constexpr std::string_view notFinite = "[iI][nN][fF](?:[iI][nN][iI][tT][yY])?|[nN][aA][nN]";

std::string numberPattern() {
    std::string pattern = "[+-]?(?:";
    pattern.append(decimal).append("|").append(hexadecimal).append("|").append(notFinite).append(")");
    return pattern;
}

}  // namespace

const Scalar& scalar(ValueKind kind) {
    static const std::array<Scalar, 4> scalars{{
        {"text",
         "A text, a number or boolean that is shown as one, or an expression such as {{initServerParam.title}}.",
         "string"},
        {"boolean", "A boolean, also as a string, or an expression such as {{initServerParam.isNew}}.", "boolean",
         "true|false"},
        {"integer", "A whole number, also as a string, or an expression such as {{initServerParam.count}}.", "integer",
         "[+-]?[0-9]+"},
        {"number", "A number, also as a string, or an expression such as {{initServerParam.size}}.", "number",
         numberPattern()},
    }};
    return scalars[static_cast<std::size_t>(kind)];
}

}  // namespace tavrin
