// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// A request and the way back to whom it came from. Thread-safe but for the request, which belongs to whoever works on
/// it.
class HTTPExchange {
public:
    using Deliver = std::function<void(HTTPResponse)>;

    HTTPExchange(HTTPRequest asked, Deliver deliver)
        : request(std::move(asked)), cancel_(request.cancel), deliver_(std::move(deliver)) {}
    HTTPExchange(const HTTPExchange&) = delete;
    HTTPExchange& operator=(const HTTPExchange&) = delete;
    /// Whoever waits is told at least that.
    ~HTTPExchange();

    /// Answers. What comes later, or when no one waits any more, counts for nothing.
    void answer(HTTPResponse response);
    /// Has something done once the other side has gone without an answer: at once where it has by now, else on the
    /// thread that talks to connections. It may do no more than tell others.
    void whenGone(std::function<void()> tell);
    /// The other side has gone: cancels the request's token.
    void leave();

    HTTPRequest request;

private:
    CancelToken cancel_;  // also where the request has been moved elsewhere
    std::mutex mutex_;
    bool isGone_ = false;
    std::function<void()> tell_;
    Deliver deliver_;  // none once it is answered or no one waits
};

/// What a server answers. Called by the one thread that talks to connections: none of these may wait.
class HTTPService {
public:
    HTTPService() = default;
    HTTPService(const HTTPService&) = delete;
    HTTPService& operator=(const HTTPService&) = delete;
    virtual ~HTTPService() = default;

    /// Why a request must not be answered, as its head tells; or none.
    virtual std::optional<HTTPResponse> refusal(HTTPRequest& request) = 0;
    /// Has a request answered, on another thread where that takes time.
    virtual void handle(std::shared_ptr<HTTPExchange> exchange) = 0;
    /// How the service says what it did not get to see, or cannot do.
    [[nodiscard]] virtual HTTPResponse failure(unsigned status, std::string_view message) const = 0;
    /// A request has been answered, or given up.
    virtual void ended(const HTTPRecord& record) { static_cast<void>(record); }
};

}  // namespace tavrin::cli
