// SPDX-License-Identifier: MIT
#pragma once

#include <csignal>

namespace tavrin {

/// Lets no signal from outside interrupt the calling thread, nor threads it starts, until the end of the scope; what
/// came meanwhile then takes effect. Faults of the thread itself still reach the host's handlers.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t outer;
        sigfillset(&outer);
        for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP}) sigdelset(&outer, fault);
        pthread_sigmask(SIG_SETMASK, &outer, &before_);
    }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

}  // namespace tavrin
