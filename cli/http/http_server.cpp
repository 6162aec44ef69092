// SPDX-License-Identifier: MIT
#include "cli/http/http_server.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <exception>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>

#include "cli/http/http_session.h"
#include "cli/http/http_status.h"
#include "cli/io_error.h"
#include "cli/preview/request_guard.h"
#include "cli/preview/secret.h"
#include "tavrin/platform/foundation/strings/number_text.h"

namespace tavrin::cli {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;

constexpr std::size_t maximumSessions = 64;
constexpr std::size_t maximumListeners = 16;
constexpr std::chrono::milliseconds pauseAfterFailure{100};
constexpr std::size_t maximumBodies = std::size_t{64} << 20;
constexpr std::size_t shortThreads = 2;
constexpr std::chrono::seconds untilRelease{1};

std::size_t longThreads() { return std::clamp(std::thread::hardware_concurrency(), 2U, 4U); }

HTTPResponse answerTo(const HTTPRequest& request, const HTTPServer::Handler& handler) {
    try {
        return handler(request);
    } catch (const std::exception& error) {
        return HTTPResponse::failure(http_status::internalError, error.what());
    } catch (...) {
        return HTTPResponse::failure(http_status::internalError, "an unknown error");
    }
}

}  // namespace

class HTTPServer::Connections : public HTTPSessionHost {
public:
    explicit Connections(std::uint16_t port) : acceptor_(context_) {
        try {
            acceptor_.open(tcp::v4());
            acceptor_.set_option(tcp::acceptor::reuse_address(true));
            acceptor_.bind({asio::ip::address_v4::loopback(), port});
            acceptor_.listen();
        } catch (const boost::system::system_error& error) {
            throw IOError("cannot listen on port " + tavrin::toText(std::int64_t{port}), error.code().value());
        }
    }

    [[nodiscard]] std::uint16_t port() const { return acceptor_.local_endpoint().port(); }
    [[nodiscard]] bool hasListeners() const { return listenerCount_ > 0; }
    [[nodiscard]] std::string address() const {
        return "http://127.0.0.1:" + tavrin::toText(std::int64_t{port()}) + "/" + secret_ + "/";
    }

    void stop() {
        asio::post(context_, [this] {
            for (HTTPSession* const session : sessions_) session->cancel();
            context_.stop();
        });
    }

    void stopOnSignals(std::function<void()> stopping) {
        signals_.add(SIGINT);
        signals_.add(SIGTERM);
        signals_.async_wait([this, stopping = std::move(stopping)](boost::system::error_code error, int) {
            if (error) return;
            signals_.clear();
            stopping();
            stop();
        });
    }

    void run(Handler handler, Judge takesLong, Release release) {
        handler_ = std::move(handler);
        takesLong_ = std::move(takesLong);
        release_ = std::move(release);
        auto moreToCome = asio::make_work_guard(longOnes_);
        std::vector<std::thread> threads(longThreads());
        for (std::thread& thread : threads) thread = std::thread([this] { workLong(); });
        accept();
        context_.run();
        moreToCome.reset();
        for (std::thread& thread : threads) thread.join();
        shortOnes_.join();
    }

    void broadcast(std::string json) {
        asio::post(context_, [this, text = "data: " + std::move(json) + "\n\n"] {
            const auto listeners = listeners_;  // one that reads too slowly leaves the list
            for (const auto& listener : listeners)
                if (const auto session = listener.lock()) session->send(text);
        });
    }

    void handle(std::shared_ptr<HTTPSession> session, HTTPRequest request) override {
        const bool isLong = takesLong_(request);
        auto work = [this, isLong, session = std::move(session), request = std::move(request)]() mutable {
            HTTPResponse response;
            if (!isLong || !request.cancel.isCancelled()) response = answerTo(request, handler_);
            request = {};  // before its share of the bodies is given back
            // Sessions belong to the other thread, the last reference too.
            asio::post(context_, [session = std::move(session), response = std::move(response)]() mutable {
                session->answer(std::move(response));
            });
        };
        if (isLong)
            asio::post(longOnes_, std::move(work));
        else
            asio::post(shortOnes_, std::move(work));
    }

    std::optional<HTTPResponse> refusal(HTTPRequest& request) override {
        return cli::refusal(request, port(), secret_);
    }

    bool takeShare(std::size_t bytes) override {
        if (bytes > maximumBodies - bodies_) return false;
        bodies_ += bytes;
        return true;
    }

    void giveShareBack(std::size_t bytes) override { bodies_ -= bytes; }

    void listens(const std::shared_ptr<HTTPSession>& session) override {
        if (listeners_.size() == maximumListeners) {
            if (const auto oldest = listeners_.front().lock()) oldest->close();
            listeners_.erase(listeners_.begin());
        }
        listeners_.push_back(session);
        listenerCount_ = listeners_.size();
    }

    void begun(HTTPSession& session) override { sessions_.push_back(&session); }

    void ended(HTTPSession& session) override {
        std::erase(sessions_, &session);
        std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
        listenerCount_ = listeners_.size();
    }

private:
    /// Does what takes long until there is none and none will come.
    void workLong() {
        while (!longOnes_.stopped())
            if (longOnes_.run_one_for(untilRelease) == 0 && !hasListeners()) release_();
        release_();
    }

    void accept() {
        acceptor_.async_accept([this](boost::system::error_code error, tcp::socket socket) {
            if (error) return acceptLater();
            if (sessions_.size() < maximumSessions || closeOldestIdle()) {
                socket.set_option(tcp::no_delay(true), error);
                std::make_shared<HTTPSession>(std::move(socket), *this)->start();
            }
            accept();
        });
    }

    /// Where there is no room for another connection even in the process, asking again at once would not help.
    void acceptLater() {
        closeOldestIdle();
        pause_.expires_after(pauseAfterFailure);
        pause_.async_wait([this](boost::system::error_code) { accept(); });
    }

    /// Makes room for a new connection. False where every other one is busy.
    bool closeOldestIdle() {
        HTTPSession* oldest = nullptr;
        for (HTTPSession* const session : sessions_) {
            if (!session->idleSince()) continue;
            if (oldest == nullptr || *session->idleSince() < *oldest->idleSince()) oldest = session;
        }
        if (oldest != nullptr) oldest->close();
        return oldest != nullptr;
    }

    // Sessions stand in the context's queue and call this object when they end, so all they use stands above it.
    std::vector<HTTPSession*> sessions_;
    std::vector<std::weak_ptr<HTTPSession>> listeners_;
    std::atomic<std::size_t> listenerCount_ = 0;
    std::size_t bodies_ = 0;
    const std::string secret_ = newSecret();
    Handler handler_;
    Judge takesLong_;
    Release release_;
    asio::io_context context_{1};
    tcp::acceptor acceptor_;
    asio::signal_set signals_{context_};
    asio::steady_timer pause_{context_};
    asio::thread_pool shortOnes_{shortThreads};
    asio::io_context longOnes_;
};

HTTPServer::HTTPServer(std::uint16_t port) : connections_(std::make_unique<Connections>(port)) {}
HTTPServer::~HTTPServer() = default;

std::uint16_t HTTPServer::port() const { return connections_->port(); }
std::string HTTPServer::address() const { return connections_->address(); }
void HTTPServer::stopOnSignals(std::function<void()> stopping) { connections_->stopOnSignals(std::move(stopping)); }
void HTTPServer::run(Handler handler, Judge takesLong, Release release) {
    connections_->run(std::move(handler), std::move(takesLong), std::move(release));
}
void HTTPServer::stop() { connections_->stop(); }
void HTTPServer::broadcast(std::string json) { connections_->broadcast(std::move(json)); }
bool HTTPServer::hasListeners() const { return connections_->hasListeners(); }

}  // namespace tavrin::cli
