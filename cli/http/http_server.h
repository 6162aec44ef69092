// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// An HTTP server on 127.0.0.1, all of it below a path that no one can guess. One thread talks to all connections;
/// handlers run on a few others, those that take long on threads of their own.
///
/// Bounded: 64 connections, of which the one that has been idle longest makes room for a new one; 16 pages that listen;
/// heads of 16 KiB, 5 seconds to arrive; bodies of 16 MiB, 30 seconds to arrive, 64 MiB of them in all.
class HTTPServer {
public:
    /// Answers a request; called by several threads at once. What it throws becomes status 500.
    /// `HTTPRequest::cancel` tells it that the other side has gone or that the server stops.
    using Handler = std::function<HTTPResponse(const HTTPRequest&)>;
    /// Whether the answer to a request may take long. Such a one is not handled where it is known to be cancelled when
    /// its turn comes.
    using Judge = std::function<bool(const HTTPRequest&)>;
    /// Gives back what the calling thread keeps from answer to answer. Called on each thread that answers what takes
    /// long, within seconds once no page listens any more, and before the thread ends.
    using Release = std::function<void()>;

    /// Takes a port; 0 is any free one. Throws `IOError` where that fails.
    explicit HTTPServer(std::uint16_t port);
    HTTPServer(const HTTPServer&) = delete;
    HTTPServer& operator=(const HTTPServer&) = delete;
    ~HTTPServer();

    [[nodiscard]] std::uint16_t port() const;
    /// `http://127.0.0.1:PORT/SECRET/`
    [[nodiscard]] std::string address() const;
    /// Lets the first SIGINT or SIGTERM from now on call `stopping` and end `run`; the next one ends the process.
    void stopOnSignals(std::function<void()> stopping);
    /// Serves until `stop` is called and the handlers that were at work then have returned.
    void run(
        Handler handler, Judge takesLong, Release release = [] {});
    /// Cancels what is at work and ends `run`; from any thread.
    void stop();

    /// Sends an event to every page that listens; from any thread.
    void broadcast(std::string json);
    /// Whether any page listens.
    [[nodiscard]] bool hasListeners() const;

private:
    class Connections;
    std::unique_ptr<Connections> connections_;
};

}  // namespace tavrin::cli
