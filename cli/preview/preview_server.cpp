// SPDX-License-Identifier: MIT
#include "cli/preview/preview_server.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <exception>
#include <thread>
#include <utility>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/thread_pool.hpp>

#include "cli/http/http_server.h"
#include "cli/http/http_status.h"
#include "cli/preview/request_guard.h"
#include "cli/preview/response_headers.h"
#include "cli/preview/secret.h"

namespace tavrin::cli {
namespace {

namespace asio = boost::asio;

constexpr std::size_t shortThreads = 2;
constexpr std::chrono::seconds untilRelease{1};

/// The page may send more than is taken, and is to hear that.
constexpr HTTPLimits previewLimits{.dropped = std::size_t{64} << 20};

std::size_t longThreads() { return std::clamp(std::thread::hardware_concurrency(), 2U, 4U); }

HTTPResponse answerTo(const HTTPRequest& request, const PreviewServer::Handler& handler) {
    try {
        return withHeaders(handler(request));
    } catch (const std::exception& error) {
        return withHeaders(HTTPResponse::failure(http_status::internalError, error.what()));
    } catch (...) {
        return withHeaders(HTTPResponse::failure(http_status::internalError, "an unknown error"));
    }
}

}  // namespace

class PreviewServer::Handlers final : public HTTPService {
public:
    explicit Handlers(std::uint16_t port) : server_(*this, previewLimits) { server_.listen("127.0.0.1", port); }

    [[nodiscard]] HTTPServer& server() { return server_; }
    [[nodiscard]] std::string address() const { return server_.addresses().front() + secret_ + "/"; }

    void run(Handler handler, Judge takesLong, Release release) {
        handler_ = std::move(handler);
        takesLong_ = std::move(takesLong);
        release_ = std::move(release);
        auto moreToCome = asio::make_work_guard(longOnes_);
        std::vector<std::thread> threads(longThreads());
        for (std::thread& thread : threads) thread = std::thread([this] { workLong(); });
        server_.run();
        moreToCome.reset();
        for (std::thread& thread : threads) thread.join();
        shortOnes_.join();
    }

    std::optional<HTTPResponse> refusal(HTTPRequest& request) override {
        auto refused = cli::refusal(request, server_.port(), secret_);
        if (refused) refused = withHeaders(*std::move(refused));
        return refused;
    }

    void handle(std::shared_ptr<HTTPExchange> exchange) override {
        const bool isLong = takesLong_(exchange->request);
        auto work = [this, isLong, exchange = std::move(exchange)] {
            HTTPResponse response;
            if (!isLong || !exchange->request.cancel.isCancelled()) response = answerTo(exchange->request, handler_);
            exchange->request = {};  // before its share of the bodies is given back
            exchange->answer(std::move(response));
        };
        if (isLong)
            asio::post(longOnes_, std::move(work));
        else
            asio::post(shortOnes_, std::move(work));
    }

    [[nodiscard]] HTTPResponse failure(unsigned status, std::string_view message) const override {
        return withHeaders(HTTPResponse::failure(status, message));
    }

private:
    /// Does what takes long until there is none and none will come.
    void workLong() {
        while (!longOnes_.stopped())
            if (longOnes_.run_one_for(untilRelease) == 0 && !server_.hasListeners()) release_();
        release_();
    }

    const std::string secret_ = newSecret();
    Handler handler_;
    Judge takesLong_;
    Release release_;
    HTTPServer server_;
    asio::thread_pool shortOnes_{shortThreads};
    asio::io_context longOnes_;
};

PreviewServer::PreviewServer(std::uint16_t port) : handlers_(std::make_unique<Handlers>(port)) {}
PreviewServer::~PreviewServer() = default;

std::uint16_t PreviewServer::port() const { return handlers_->server().port(); }
std::string PreviewServer::address() const { return handlers_->address(); }
void PreviewServer::stopOnSignals(std::function<void()> stopping) {
    handlers_->server().onSignals({SIGINT, SIGTERM}, [this, stopping = std::move(stopping)](int) {
        stopping();
        stop();
        return false;
    });
}
void PreviewServer::run(Handler handler, Judge takesLong, Release release) {
    handlers_->run(std::move(handler), std::move(takesLong), std::move(release));
}
void PreviewServer::stop() { handlers_->server().stop(); }
void PreviewServer::broadcast(std::string json) { handlers_->server().broadcast(std::move(json)); }
bool PreviewServer::hasListeners() const { return handlers_->server().hasListeners(); }

}  // namespace tavrin::cli
