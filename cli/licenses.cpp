// SPDX-License-Identifier: MIT
#include "cli/licenses.h"

#include "cli/embedded_file.h"

TAVRIN_EMBEDDED_FILE(licensesFile, TAVRIN_LICENSES)

namespace tavrin::cli {

std::string_view licenses() { return licensesFile(); }

}  // namespace tavrin::cli
