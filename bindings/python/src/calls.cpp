// SPDX-License-Identifier: MIT
#include "bindings/python/src/calls.h"

#include <atomic>

#include "tavrin/doors/open_document.h"
#include "tavrin/platform/foundation/threads/forked_child.h"

namespace tavrin::python {
namespace {

std::atomic<int> underWay = 0;
bool isForkedFromCall = false;

}  // namespace

Call::Call() {
    if (isForkedFromCall)
        throw CallError({"TavrinError",
                         "this process was forked while another thread was drawing; fork earlier, or start processes "
                         "by the methods spawn or forkserver",
                         "Program"});
    ++underWay;
}

Call::~Call() { --underWay; }

void watchForks() {
    // The thread that forks is in no call itself.
    beginAnewInChildren([] {
        if (underWay.exchange(0) > 0) isForkedFromCall = true;
    });
}

}  // namespace tavrin::python
