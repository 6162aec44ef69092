#include "tavrin/platform/foundation/precondition.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tavrin {
namespace {

PreconditionHandler& installedHandler() {
    static PreconditionHandler handler;
    return handler;
}

}  // namespace

PreconditionHandler setPreconditionHandler(PreconditionHandler handler) {
    return std::exchange(installedHandler(), std::move(handler));
}

void preconditionFailure(std::string_view message) {
    if (const PreconditionHandler& handler = installedHandler()) handler(message);
    std::fprintf(stderr, "tavrin: precondition failed: %.*s\n", static_cast<int>(message.size()), message.data());
    std::abort();
}

}  // namespace tavrin
