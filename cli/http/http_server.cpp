// SPDX-License-Identifier: MIT
#include "cli/http/http_server.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <list>
#include <new>
#include <sys/socket.h>
#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/signal_set.hpp>
#include <boost/asio/steady_timer.hpp>

#include "cli/http/http_session.h"
#include "cli/io_error.h"

namespace tavrin::cli {
namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using Acceptor = asio::basic_socket_acceptor<tcp, asio::io_context::executor_type>;

constexpr std::chrono::milliseconds pauseAfterFailure{100};
/// How long requests that were sent before their sender could know of the end may still be on their way.
constexpr std::chrono::milliseconds drainGrace{250};

std::string addressText(const tcp::endpoint& endpoint) {
    const std::string address = endpoint.address().to_string();
    return (endpoint.address().is_v6() ? "[" + address + "]" : address) + ":" + std::to_string(endpoint.port());
}

}  // namespace

class HTTPServer::Connections : public HTTPSessionHost {
public:
    Connections(HTTPService& service, const HTTPLimits& limits) : service_(service), limits_(limits) {}

    ~Connections() override { closeAll(); }

    void listen(const std::string& address, std::uint16_t port) {
        boost::system::error_code error;
        const tcp::endpoint endpoint(asio::ip::make_address(address, error), port);
        if (error) throw IOError("cannot listen on '" + address + "': it is no numeric address");
        try {
            Acceptor& acceptor = acceptors_.emplace_back(context_);
            acceptor.open(endpoint.protocol());
            acceptor.set_option(tcp::acceptor::reuse_address(true));
            acceptor.bind(endpoint);
            acceptor.listen();
            endpoints_.push_back(acceptor.local_endpoint());
        } catch (const boost::system::system_error& failure) {
            throw IOError("cannot listen on " + addressText(endpoint), failure.code().value());
        }
    }

    void listenOn(int descriptor) {
        int isListening = 0;
        socklen_t size = sizeof isListening;
        sockaddr_storage address{};
        socklen_t addressSize = sizeof address;
        // NOLINTNEXTLINE: the interface of sockets
        const int known = ::getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &addressSize);
        if (::getsockopt(descriptor, SOL_SOCKET, SO_ACCEPTCONN, &isListening, &size) != 0 || known != 0)
            throw IOError("cannot listen on the socket that was handed over", errno);
        const bool isTCP = address.ss_family == AF_INET || address.ss_family == AF_INET6;
        if (isListening == 0 || !isTCP) throw IOError("the socket that was handed over is no listening TCP socket");
        acceptors_.emplace_back(context_, address.ss_family == AF_INET ? tcp::v4() : tcp::v6(), descriptor);
        endpoints_.push_back(acceptors_.back().local_endpoint());
    }

    [[nodiscard]] std::uint16_t port() const { return endpoints_.front().port(); }
    [[nodiscard]] std::vector<std::string> addresses() const {
        std::vector<std::string> texts;
        for (const tcp::endpoint& endpoint : endpoints_) texts.push_back("http://" + addressText(endpoint) + "/");
        return texts;
    }
    [[nodiscard]] bool hasListeners() const { return listenerCount_ > 0; }
    [[nodiscard]] std::size_t connectionCount() const { return sessionCount_; }

    void onSignals(const std::vector<int>& signals, std::function<bool(int)> act) {
        asio::signal_set& set = signals_.emplace_back(context_);
        for (const int signal : signals) set.add(signal);
        awaitSignal(set, std::move(act));
    }

    void run() {
        for (Acceptor& acceptor : acceptors_) accept(acceptor);
        while (!context_.stopped()) runOn();
        closeAll();
    }

    void stop() {
        asio::post(context_, [this] {
            closeAll();
            context_.stop();
        });
    }

    void drain() {
        asio::post(context_, [this] {
            if (isDraining_) return;
            isDraining_ = true;
            for (Acceptor& acceptor : acceptors_) {
                acceptAllWaiting(acceptor);
                acceptor.close();
            }
            pause_.expires_after(drainGrace);
            pause_.async_wait([this](boost::system::error_code) { closeIdle(); });
        });
    }

    void broadcast(std::string json) {
        asio::post(context_, [this, text = "data: " + std::move(json) + "\n\n"] {
            const auto listeners = listeners_;  // one that reads too slowly leaves the list
            for (const auto& listener : listeners)
                if (const auto session = listener.lock()) session->send(text);
        });
    }

    [[nodiscard]] const HTTPLimits& limits() const override { return limits_; }
    [[nodiscard]] HTTPService& service() override { return service_; }
    [[nodiscard]] bool isDraining() const override { return isDraining_; }

    bool takeShare(std::size_t bytes) override {
        if (bytes > limits_.bodies - bodies_) return false;
        bodies_ += bytes;
        return true;
    }

    void giveShareBack(std::size_t bytes) override { bodies_ -= bytes; }

    void listens(const std::shared_ptr<HTTPSession>& session) override {
        if (listeners_.size() == limits_.listeners) {
            if (const auto oldest = listeners_.front().lock()) oldest->close();
            listeners_.erase(listeners_.begin());
        }
        listeners_.push_back(session);
        listenerCount_ = listeners_.size();
    }

    void begun(HTTPSession& session) override {
        sessions_.push_back(&session);
        sessionCount_ = sessions_.size();
    }

    void ended(HTTPSession& session) override {
        std::erase(sessions_, &session);
        sessionCount_ = sessions_.size();
        std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
        listenerCount_ = listeners_.size();
        if (hasClosedIdle_ && sessions_.empty()) context_.stop();
    }

private:
    /// Without memory for a connection that one ends, and no other.
    void runOn() {
        try {
            context_.run();
        } catch (const std::bad_alloc&) {
            closeOldestIdle();
        }
    }

    void awaitSignal(asio::signal_set& set, std::function<bool(int)> act) {
        set.async_wait([this, &set, act = std::move(act)](boost::system::error_code error, int signal) mutable {
            if (error) return;
            if (act(signal)) return awaitSignal(set, std::move(act));
            set.clear();
        });
    }

    void accept(Acceptor& acceptor) {
        acceptor.async_accept(context_, [this, &acceptor](boost::system::error_code error, tcp::socket socket) {
            if (!error) begin(std::move(socket));  // also one that was let in just before the end
            if (!acceptor.is_open()) return;
            error ? acceptLater(acceptor) : accept(acceptor);
        });
    }

    void begin(tcp::socket socket) {
        if (sessions_.size() >= limits_.connections && !closeOldestIdle()) return;
        boost::system::error_code ignored;
        socket.set_option(tcp::no_delay(true), ignored);
        std::make_shared<HTTPSession>(std::move(socket), *this)->start();
    }

    /// Where there is no room for another connection even in the process, asking again at once would not help.
    void acceptLater(Acceptor& acceptor) {
        closeOldestIdle();
        auto pause = std::make_shared<asio::steady_timer>(context_, pauseAfterFailure);
        pause->async_wait([this, &acceptor, pause](boost::system::error_code) {
            if (acceptor.is_open()) accept(acceptor);
        });
    }

    /// Who was let in by the system is not turned away by the end.
    void acceptAllWaiting(Acceptor& acceptor) {
        boost::system::error_code error;
        acceptor.non_blocking(true, error);
        for (std::size_t count = 0; count < limits_.connections && !error; ++count) {
            tcp::socket socket(context_);
            acceptor.accept(socket, error);
            if (!error) begin(std::move(socket));
        }
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

    void closeIdle() {
        hasClosedIdle_ = true;
        closeWhere([](const HTTPSession& session) { return session.isBetweenRequests(); });
        if (sessions_.empty()) context_.stop();
    }

    void closeAll() {
        closeWhere([](const HTTPSession&) { return true; });
    }

    template <class Condition>
    void closeWhere(const Condition& condition) {
        std::vector<std::shared_ptr<HTTPSession>> closed;  // one that is closed may leave the list
        for (HTTPSession* const session : sessions_)
            if (condition(*session)) closed.push_back(session->shared_from_this());
        for (const auto& session : closed) session->close();
    }

    HTTPService& service_;
    const HTTPLimits limits_;
    // Sessions stand in the context's queue and call this object when they end, so all they use stands above it.
    std::vector<HTTPSession*> sessions_;
    std::atomic<std::size_t> sessionCount_ = 0;
    std::vector<std::weak_ptr<HTTPSession>> listeners_;
    std::atomic<std::size_t> listenerCount_ = 0;
    std::size_t bodies_ = 0;
    bool isDraining_ = false;
    bool hasClosedIdle_ = false;
    asio::io_context context_{1};
    std::list<Acceptor> acceptors_;
    std::vector<tcp::endpoint> endpoints_;  // where they listen, or did
    std::list<asio::signal_set> signals_;
    asio::steady_timer pause_{context_};
};

HTTPServer::HTTPServer(HTTPService& service, const HTTPLimits& limits)
    : connections_(std::make_unique<Connections>(service, limits)) {}
HTTPServer::~HTTPServer() = default;

void HTTPServer::listen(const std::string& address, std::uint16_t port) { connections_->listen(address, port); }
void HTTPServer::listenOn(int descriptor) { connections_->listenOn(descriptor); }
std::uint16_t HTTPServer::port() const { return connections_->port(); }
std::vector<std::string> HTTPServer::addresses() const { return connections_->addresses(); }
void HTTPServer::onSignals(const std::vector<int>& signals, std::function<bool(int)> act) {
    connections_->onSignals(signals, std::move(act));
}
void HTTPServer::run() { connections_->run(); }
void HTTPServer::stop() { connections_->stop(); }
void HTTPServer::drain() { connections_->drain(); }
void HTTPServer::broadcast(std::string json) { connections_->broadcast(std::move(json)); }
bool HTTPServer::hasListeners() const { return connections_->hasListeners(); }
std::size_t HTTPServer::connectionCount() const { return connections_->connectionCount(); }

}  // namespace tavrin::cli
