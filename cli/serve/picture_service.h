// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <boost/asio/thread_pool.hpp>

#include "cli/http/http_service.h"
#include "cli/serve/drawing_queue.h"
#include "cli/serve/metrics.h"
#include "cli/serve/picture_cache.h"
#include "cli/serve/served_drawing.h"
#include "cli/serve/served_request.h"
#include "cli/serve/settings.h"
#include "cli/serve/signature.h"
#include "cli/serve/widget_folder.h"

namespace tavrin::cli {

/// Answers requests for pictures (`routeTable` lists them).
///
/// 1. `refusal` judges a head: whether there is such a route, by that method, with the signature it wants.
/// 2. A thread of its own reads what is asked for, and a widget's document, and looks for a finished picture; what
/// takes
///    no time is answered at once.
/// 3. What has to be drawn or checked waits in a queue for one of the threads that draw.
class PictureService final : public HTTPService {
public:
    using Listen = std::function<void(const HTTPRecord&)>;

    /// `listen` hears what became of each request. Throws `IOError` for a folder or a file of keys that cannot be read.
    PictureService(const ServeSettings& settings, Listen listen);
    ~PictureService() override { stop(); }

    /// Ends all work, once the server has ended; before the server is destroyed.
    void stop();
    /// Takes other settings from now on; how many threads, how long a queue and how large a cache there are stays as it
    /// is. Throws `IOError`, and then all stays as it is.
    void reload(const ServeSettings& settings);
    /// Has something done on the thread that reads requests.
    void doAside(std::function<void()> work);
    /// How many connections there are, for metrics.
    void setConnectionCount(std::function<std::size_t()> count) { connectionCount_ = std::move(count); }

    std::optional<HTTPResponse> refusal(HTTPRequest& request) override;
    void handle(std::shared_ptr<HTTPExchange> exchange) override;
    [[nodiscard]] HTTPResponse failure(unsigned status, std::string_view message) const override;
    void ended(const HTTPRecord& record) override;

private:
    using Clock = DrawingQueue::Clock;
    using ExchangePtr = std::shared_ptr<HTTPExchange>;

    /// What settings come to. Immutable but for what the folder keeps.
    struct State {
        ServeSettings settings;
        std::shared_ptr<WidgetFolder> folder;     // null where there is none
        std::shared_ptr<const SigningKeys> keys;  // null where nothing has to be signed
        std::uint64_t generation = 0;             // so that nothing of earlier settings is found in the cache
    };
    using StatePtr = std::shared_ptr<const State>;

    [[nodiscard]] static StatePtr stateOf(const ServeSettings& settings, std::uint64_t generation);
    [[nodiscard]] StatePtr state() const;
    [[nodiscard]] HTTPResponse dressed(HTTPResponse response) const;
    [[nodiscard]] std::optional<HTTPResponse> signatureFault(const HTTPRequest& request, const State& state);
    [[nodiscard]] HTTPResponse immediateAnswer(const HTTPRequest& request) const;
    void work(const ExchangePtr& exchange, Clock::time_point end);
    void answerWidget(const ExchangePtr& exchange, Clock::time_point end, const State& state);
    void answerRender(const ExchangePtr& exchange, Clock::time_point end, const State& state);
    void answerCheck(const ExchangePtr& exchange, Clock::time_point end, const State& state);
    void draw(const ExchangePtr& exchange, Clock::time_point end, const State& state, ServedRequest request,
              std::function<HTTPResponse(const ServedPicture&)> present);
    void refuseWhereFull(DrawingQueue::Admission admission, const ExchangePtr& exchange) const;

    Metrics metrics_;
    Listen listen_;
    std::function<std::size_t()> connectionCount_;
    mutable std::mutex mutex_;  // of the state
    StatePtr state_;
    PictureCache cache_;
    DecodedDocuments documents_;
    DrawingQueue queue_;
    boost::asio::thread_pool front_{1};
};

}  // namespace tavrin::cli
