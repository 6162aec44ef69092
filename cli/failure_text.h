#pragma once

#include <string>

#include "cli/failure.h"

namespace tavrin::cli {

/// A failure for people, as compilers write it, with the line and the coding path at fault. Ends with a line end.
[[nodiscard]] std::string toText(const Failure& failure, bool colored);

/// A failure for programs: one line of JSON. `withFile` names the document of every failure, not only where a place in
/// it is known.
[[nodiscard]] std::string toJSONLine(const Failure& failure, bool withFile);

}  // namespace tavrin::cli
