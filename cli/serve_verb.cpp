// SPDX-License-Identifier: MIT
#include "cli/file_descriptor.h"
#include "cli/serve/serve.h"
#include "cli/verbs.h"

namespace tavrin::cli {

int serve(const Command& command) {
    const auto read = [&command] { return readServeSettings(command); };
    // Standard output is for the lines about requests.
    servePictures(read(), read,
                  [](const std::string& line) { static_cast<void>(writeAll(STDERR_FILENO, line + "\n")); });
    return 0;
}

}  // namespace tavrin::cli
