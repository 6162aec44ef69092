// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/precondition.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

PreconditionHandler& handlerOfProcess() {
    static PreconditionHandler handler;
    return handler;
}

thread_local const PreconditionHandler* handlerOfThread = nullptr;

}  // namespace

PreconditionHandler setPreconditionHandler(PreconditionHandler handler) {
    return std::exchange(handlerOfProcess(), std::move(handler));
}

void throwPreconditionError(std::string_view message) { throw TavrinError("Precondition", std::string(message)); }

ThrowingPreconditions::ThrowingPreconditions() {
    static const PreconditionHandler throwing = throwPreconditionError;
    outer_ = std::exchange(handlerOfThread, &throwing);
}

ThrowingPreconditions::~ThrowingPreconditions() { handlerOfThread = outer_; }

void preconditionFailure(std::string_view message) {
    if (const PreconditionHandler& handler = handlerOfThread ? *handlerOfThread : handlerOfProcess()) handler(message);
    std::fprintf(stderr, "tavrin: precondition failed: %.*s\n", static_cast<int>(message.size()), message.data());
    std::abort();
}

}  // namespace tavrin
