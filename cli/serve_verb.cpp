// SPDX-License-Identifier: MIT
#include "cli/serve/settings.h"
#include "cli/usage_error.h"
#include "cli/verbs.h"

namespace tavrin::cli {

int serve(const Command& command) {
    static_cast<void>(readServeSettings(command));
    throw UsageError("this program was built without the server");
}

}  // namespace tavrin::cli
