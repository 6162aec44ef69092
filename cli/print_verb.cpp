// SPDX-License-Identifier: MIT
#include "cli/input.h"
#include "cli/output.h"
#include "cli/production.h"
#include "cli/verbs.h"

namespace tavrin::cli {

int print(const Arguments& arguments, const Reporter& reporter) {
    int status = 0;
    produceAll(arguments, [&](const std::string& document, const Outcome& outcome) {
        reporter.note(displayName(document), outcome.notes);
        if (outcome.failure) {
            reporter.report(*outcome.failure);
            status = 1;
        } else {
            writeStandardOutput(outcome.bytes);
        }
    });
    return status;
}

}  // namespace tavrin::cli
