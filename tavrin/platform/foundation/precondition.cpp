// SPDX-License-Identifier: MIT
#include "tavrin/platform/foundation/precondition.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "tavrin/platform/foundation/tavrin_error.h"

namespace tavrin {
namespace {

PreconditionHandler& installedHandler() {
    static PreconditionHandler handler;
    return handler;
}

thread_local bool thisThreadThrows = false;

}  // namespace

PreconditionHandler setPreconditionHandler(PreconditionHandler handler) {
    return std::exchange(installedHandler(), std::move(handler));
}

ThrowingPreconditions::ThrowingPreconditions() : outer_(std::exchange(thisThreadThrows, true)) {}

ThrowingPreconditions::~ThrowingPreconditions() { thisThreadThrows = outer_; }

void preconditionFailure(std::string_view message) {
    if (thisThreadThrows) throw TavrinError("Precondition", std::string(message));
    if (const PreconditionHandler& handler = installedHandler()) handler(message);
    std::fprintf(stderr, "tavrin: precondition failed: %.*s\n", static_cast<int>(message.size()), message.data());
    std::abort();
}

}  // namespace tavrin
