#include "cli/input.h"
#include "cli/production.h"
#include "cli/verbs.h"

namespace tavrin::cli {

int check(const Arguments& arguments, const Reporter& reporter) {
    int status = 0;
    produceAll(arguments, [&](const std::string& document, const Outcome& outcome) {
        reporter.note(displayName(document), outcome.notes);
        if (!outcome.failure) return;
        reporter.report(*outcome.failure);
        status = 1;
    });
    return status;
}

}  // namespace tavrin::cli
