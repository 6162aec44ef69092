// SPDX-License-Identifier: MIT
#include "cli/http/http_service.h"

#include "cli/http/http_status.h"

namespace tavrin::cli {

HTTPExchange::~HTTPExchange() {
    if (deliver_) deliver_(HTTPResponse::failure(http_status::internalError, "nothing came of the request"));
}

void HTTPExchange::answer(HTTPResponse response) {
    Deliver deliver;
    std::function<void()> forgotten;  // outside the lock
    {
        const std::lock_guard lock(mutex_);
        deliver = std::exchange(deliver_, nullptr);
        forgotten = std::exchange(tell_, nullptr);
    }
    if (deliver) deliver(std::move(response));
}

void HTTPExchange::whenGone(std::function<void()> tell) {
    {
        const std::lock_guard lock(mutex_);
        if (!isGone_) {
            if (deliver_) tell_ = std::move(tell);
            return;
        }
    }
    tell();
}

void HTTPExchange::leave() {
    std::function<void()> tell;
    Deliver forgotten;
    {
        const std::lock_guard lock(mutex_);
        isGone_ = true;
        forgotten = std::exchange(deliver_, nullptr);
        tell = std::exchange(tell_, nullptr);
    }
    cancel_.cancel();
    if (tell) tell();
}

}  // namespace tavrin::cli
