// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "cli/http/http_message.h"

namespace tavrin::cli {

/// The preview's HTTP server on 127.0.0.1, all of it below a path that no one can guess. Handlers run on a few threads,
/// those that take long on threads of their own. It takes what `HTTPLimits` says, from 64 connections.
class PreviewServer {
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
    explicit PreviewServer(std::uint16_t port);
    PreviewServer(const PreviewServer&) = delete;
    PreviewServer& operator=(const PreviewServer&) = delete;
    ~PreviewServer();

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
    class Handlers;
    std::unique_ptr<Handlers> handlers_;
};

}  // namespace tavrin::cli
