// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/http/http_limits.h"
#include "cli/http/http_service.h"

namespace tavrin::cli {

/// An HTTP/1.1 server: one thread, that of `run`, talks to all connections and asks a service what to answer. What it
/// takes is bounded by `HTTPLimits`.
class HTTPServer {
public:
    HTTPServer(HTTPService& service, const HTTPLimits& limits);
    HTTPServer(const HTTPServer&) = delete;
    HTTPServer& operator=(const HTTPServer&) = delete;
    ~HTTPServer();

    // Where it listens; before `run`.

    /// Takes a port of a numeric address, "127.0.0.1" or "::1"; 0 is any free one. Throws `IOError`.
    void listen(const std::string& address, std::uint16_t port);
    /// Takes over a listening TCP socket. Throws `IOError` for what is none.
    void listenOn(int descriptor);
    /// The port of the first.
    [[nodiscard]] std::uint16_t port() const;
    /// `http://127.0.0.1:8080/` of each.
    [[nodiscard]] std::vector<std::string> addresses() const;

    /// Has `act` called, by the thread of `run`, for each of these signals as long as it returns true; from then on
    /// they do what they usually do, which is to end the process.
    void onSignals(const std::vector<int>& signals, std::function<bool(int signal)> act);
    /// Serves until `stop` is called, or until the last connection has ended after `drain`.
    void run();
    /// Gives all connections up and ends `run`; from any thread.
    void stop();
    /// Takes no connections and requests any more, but answers those that it has taken; from any thread.
    void drain();

    /// Sends an event to every page that listens; from any thread.
    void broadcast(std::string json);
    /// Whether any page listens.
    [[nodiscard]] bool hasListeners() const;
    /// How many connections there are.
    [[nodiscard]] std::size_t connectionCount() const;

private:
    class Connections;
    std::unique_ptr<Connections> connections_;
};

}  // namespace tavrin::cli
